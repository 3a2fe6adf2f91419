#pragma once

#include "interfaces/plugin/IPlugin.h"
#include "interfaces/services/IBaseModulePlugin.h"
#include "interfaces/services/IDataCenterPlugin.h"
#include "interfaces/services/ISettingPlugin.h"
#include "interfaces/services/ITSCacheManager.h"

/** What the fake host plug-ins have in common. Owner: FakeHost. GUI thread only. */
class FakePlugin : public QObject, public IPlugin {
    Q_OBJECT
    Q_INTERFACES(IPlugin)

public:
    QObject *getObject() override
    {
        QObject *const pObject = answersInterface ? this : &m_bareObject;
        return hasObject ? pObject : nullptr;
    }
    QUuid getPluginId() override { return {}; }
    void getPluginInfo(PluginInfo &) override {}
    bool setPluginManager(IPluginManager *pManager) override { return pManager != nullptr; }
    bool initialize() override { return true; }
    bool extensionsInitialized() override { return true; }
    bool aboutToShutdown() override { return true; }

    bool hasObject = true;        ///< False: getObject answers null.
    bool answersInterface = true; ///< False: the object does not know the interface.

private:
    QObject m_bareObject;
};

class FakeSettingPlugin final : public FakePlugin, public ISettingPlugin {
    Q_OBJECT
    Q_INTERFACES(ISettingPlugin)

public:
    ISettingsObject *settingsObject() override { return settings; }
    IShortcutSetting *shortcutSetting() override { return shortcuts; }

    ISettingsObject *settings = nullptr;
    IShortcutSetting *shortcuts = nullptr;
};

class FakeBaseModulePlugin final : public FakePlugin, public IBaseModulePlugin {
    Q_OBJECT
    Q_INTERFACES(IBaseModulePlugin)

public:
    QSharedPointer<ITSCacheManager> cacheManager() override { return cache; }
    IImageDecoder *imageDecoder() override { return decoder; }
    IPresentationRenderer *presentationRenderer() override { return renderer; }

    QSharedPointer<ITSCacheManager> cache;
    IImageDecoder *decoder = nullptr;
    IPresentationRenderer *renderer = nullptr;
};

class FakeDataCenterPlugin final : public FakePlugin, public IDataCenterPlugin {
    Q_OBJECT
    Q_INTERFACES(IDataCenterPlugin)

public:
    QSharedPointer<QObject> dataCenter() override { return center; }

    QSharedPointer<QObject> center;
};
