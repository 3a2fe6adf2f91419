#include "GatedServices.h"

bool GatedDecoder::openFile(const QByteArray &utf8Path)
{
    gate.pass();
    return pReal->openFile(utf8Path);
}

GatedServices::GatedServices(IPluginManager *pReal)
    : m_pReal(pReal)
{
    const QList<IPlugin *> plugins = pReal->getPlugins(QStringLiteral("IBaseModulePlugin"));
    auto *pModule = plugins.isEmpty() ? nullptr : qobject_cast<IBaseModulePlugin *>(plugins.first()->getObject());
    if (pModule == nullptr)
        return;
    m_decoder.pReal = pModule->imageDecoder();
    m_baseModule.cache = pModule->cacheManager();
    m_baseModule.decoder = &m_decoder;
}

QList<IPlugin *> GatedServices::getPlugins(const QString &className)
{
    if (missing.contains(className))
        return {};
    if (className == QLatin1String("IBaseModulePlugin") && m_decoder.pReal != nullptr)
        return {&m_baseModule};
    return m_pReal->getPlugins(className);
}
