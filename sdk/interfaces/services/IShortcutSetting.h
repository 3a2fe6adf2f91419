#pragma once

#include <QString>

/** One keyboard shortcut of the host. */
struct ShortcutRecord {
    QString name;        ///< Short name, for lists.
    QString description; ///< What the shortcut does, translated.
    QString keySequence; ///< QKeySequence in portable text form; empty when no key is set.
};

/** The host's keyboard shortcuts. Owner: the settings plug-in. Thread: GUI thread only. */
class IShortcutSetting {
public:
    /** Numbers of the shortcuts that previews use. */
    enum ShortcutId {
        ZoomIn = 32,
        ZoomOut = 64,
        FitToWindow = 128,
        ActualSize = 256,
        FitToWidth = 512,
        MoveToRecycleBin = 0x8000
    };

    /** False: previews offer none of the user-defined zoom keys. */
    virtual bool isShortcutEnabled() const = 0;

    /** The shortcut with this number; an unknown number gives a record of empty texts. */
    virtual ShortcutRecord shortcut(int nShortcutId) const = 0;

protected:
    ~IShortcutSetting() = default;
};
