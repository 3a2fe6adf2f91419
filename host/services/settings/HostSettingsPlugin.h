#pragma once

#include "interfaces/plugin/IPlugin.h"
#include "interfaces/services/ISettingPlugin.h"
#include "settings/HostSettings.h"
#include "settings/HostShortcuts.h"

#include <QObject>

/** The settings service of the reference host. Owner: the plug-in loader. Thread: GUI thread only. */
class HostSettingsPlugin final : public QObject, public IPlugin, public ISettingPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "BigImgPreview.Host.Settings/1.0" FILE "hostsettings.json")
    Q_INTERFACES(IPlugin ISettingPlugin)

public:
    HostSettingsPlugin();

    QObject *getObject() override { return this; }
    QUuid getPluginId() override;
    void getPluginInfo(PluginInfo &info) override;
    bool setPluginManager(IPluginManager *pManager) override { return pManager != nullptr; }
    bool initialize() override { return true; }
    bool extensionsInitialized() override { return true; }
    bool aboutToShutdown() override { return true; }

    ISettingsObject *settingsObject() override { return &m_settings; }
    IShortcutSetting *shortcutSetting() override { return &m_shortcuts; }

private:
    HostSettings m_settings;
    HostShortcuts m_shortcuts;
};
