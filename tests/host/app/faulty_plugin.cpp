#include "interfaces/plugin/IPlugin.h"
#include "interfaces/plugin/PluginInfo.h"

#include <QObject>

#ifdef FAULT_NO_PLUGIN

/** A Qt plug-in that knows nothing of this program. */
class FaultyPlugin : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "BigImgPreview.Test.Faulty/1.0" FILE "faulty.json")
};

#else

/** A plug-in that fails at the one stage it was built for. */
class FaultyPlugin : public QObject, public IPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "BigImgPreview.Test.Faulty/1.0" FILE "faulty.json")
    Q_INTERFACES(IPlugin)

public:
    QObject *getObject() override { return this; }
    QUuid getPluginId() override { return {}; }
    void getPluginInfo(PluginInfo &info) override { info.name = QStringLiteral("faulty"); }

    bool setPluginManager(IPluginManager *pManager) override
    {
#ifdef FAULT_REFUSES_MANAGER
        Q_UNUSED(pManager)
        return false;
#else
        return pManager != nullptr;
#endif
    }

    bool initialize() override
    {
#ifdef FAULT_FAILS_INITIALIZE
        return false;
#else
        return true;
#endif
    }

    bool extensionsInitialized() override
    {
#ifdef FAULT_FAILS_EXTENSIONS
        return false;
#else
        return true;
#endif
    }

    bool aboutToShutdown() override
    {
        return true;
    }
};

#endif

#include "faulty_plugin.moc"
