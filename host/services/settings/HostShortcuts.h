#pragma once

#include "interfaces/services/IShortcutSetting.h"

#include <QSettings>

/**
 * The keys that the user can choose, with defaults. A key that cannot be read, or that two shortcuts claim, is
 * answered with the default, so that a damaged file never takes a function away.
 *
 * Owner: the settings plug-in. Thread: GUI thread only.
 */
class HostShortcuts final : public IShortcutSetting {
public:
    explicit HostShortcuts(const QString &iniPath);
    virtual ~HostShortcuts() = default;
    Q_DISABLE_COPY(HostShortcuts)

    bool isShortcutEnabled() const override;
    ShortcutRecord shortcut(int nShortcutId) const override;

    /** Keeps a key; an empty text means no key. False, and nothing is changed, where the text names no single key. */
    bool setKeySequence(int nShortcutId, const QString &keySequence);

private:
    QString storedKey(int nShortcutId) const;

    QSettings m_ini;
};
