#pragma once

#include "interfaces/services/ISettingsObject.h"

#include <QSettings>

/**
 * What the user chose, as far as previews read it. A missing or damaged file gives the defaults.
 *
 * Owner: the settings plug-in. Thread: GUI thread only.
 */
class HostSettings final : public ISettingsObject {
public:
    explicit HostSettings(const QString &iniPath);
    virtual ~HostSettings() = default;
    Q_DISABLE_COPY(HostSettings)

    /** The INI file of the host: its windows keep their state there too. */
    static QString defaultPath();

    QString lastExportPath() const override;
    void setLastExportPath(const QString &path) override;
    bool isLeftColumnShown() const override;
    bool isRightPanelHidden() const override;

private:
    QSettings m_ini;
};
