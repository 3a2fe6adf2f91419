#pragma once

#include <QtPlugin>

/**
 * What a host may ask of the preview plug-in about region notes. Answered by the plug-in's root object beside its other
 * interfaces: `qobject_cast<IPreviewNotes *>(loader.instance())`, null with a plug-in that does not know it.
 *
 * Thread: GUI thread.
 */
class IPreviewNotes {
public:
    /**
     * Shows one note of a file, by its position in IFileInfo::notes(), and draws the eye to it: at once where an open
     * preview shows the file, else when one comes to show it next. A later call takes the place of an earlier one.
     */
    virtual void showNote(qint64 nFileId, int nPosition) = 0;

protected:
    ~IPreviewNotes() = default;
};

Q_DECLARE_INTERFACE(IPreviewNotes, "Tessaro.Plugin.IPreviewNotes/1.0")
