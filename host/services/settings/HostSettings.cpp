#include "settings/HostSettings.h"

#include <QStandardPaths>

HostSettings::HostSettings(const QString &iniPath)
    : m_ini(iniPath, QSettings::IniFormat)
{
}

QString HostSettings::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/bigimgpreview/host.ini");
}

QString HostSettings::lastExportPath() const
{
    return m_ini.value(QStringLiteral("export/lastPath")).toString();
}

void HostSettings::setLastExportPath(const QString &path)
{
    m_ini.setValue(QStringLiteral("export/lastPath"), path);
}

bool HostSettings::isLeftColumnShown() const
{
    return m_ini.value(QStringLiteral("preview/leftColumnShown"), true).toBool();
}

bool HostSettings::isRightPanelHidden() const
{
    return m_ini.value(QStringLiteral("preview/rightPanelHidden"), false).toBool();
}
