#pragma once

#include "interfaces/plugin/IPlugin.h"
#include "interfaces/plugin/IPluginManager.h"

#include <QString>

/**
 * The one way to another plug-in of the host: the first one registered under the interface's class name, asked for the
 * interface by its identifier. Null where the manager, the plug-in, its object or the interface is missing.
 */
template <typename Interface>
Interface *lookupHostInterface(IPluginManager *pManager, const QString &className)
{
    if (pManager == nullptr)
        return nullptr;
    const QList<IPlugin *> plugins = pManager->getPlugins(className);
    if (plugins.isEmpty() || plugins.first() == nullptr)
        return nullptr;
    QObject *pObject = plugins.first()->getObject();
    if (pObject == nullptr)
        return nullptr;
    return static_cast<Interface *>(pObject->qt_metacast(qobject_interface_iid<Interface *>()));
}
