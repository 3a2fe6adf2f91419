#include "settings/HostSettingsPlugin.h"

#include "interfaces/plugin/PluginInfo.h"

HostSettingsPlugin::HostSettingsPlugin()
    : m_settings(HostSettings::defaultPath())
    , m_shortcuts(HostSettings::defaultPath())
{
}

QUuid HostSettingsPlugin::getPluginId()
{
    return QUuid(QStringLiteral("{6f0b7d2e-2a5d-4d0e-9a53-6e7c4b0f8d11}"));
}

void HostSettingsPlugin::getPluginInfo(PluginInfo &info)
{
    info.name = QStringLiteral("Host settings");
    info.displayName = tr("Settings");
    info.version = QStringLiteral("1.0");
}
