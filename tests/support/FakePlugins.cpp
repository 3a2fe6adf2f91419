#include "FakePlugins.h"

#include "interfaces/plugin/PluginInfo.h"
#include "interfaces/services/ITSCacheManager.h"

QObject *FakePlugin::getObject()
{
    if (!hasObject) {
        return nullptr;
    }
    return answersInterface ? this : &m_bareObject;
}

void FakePlugin::getPluginInfo(PluginInfo &info)
{
    info.name = QString::fromLatin1(metaObject()->className());
}

QSharedPointer<ITSCacheManager> FakeBaseModulePlugin::cacheManager()
{
    return cache;
}
