#pragma once

#include "interfaces/plugin/IPlugin.h"
#include "interfaces/plugin/IPluginManager.h"

#include <QString>

/** The object of the first plug-in of the host registered under a class name; null where any of them is missing. */
inline QObject *lookupHostObject(IPluginManager *pManager, const QString &className)
{
    if (pManager == nullptr)
        return nullptr;
    const QList<IPlugin *> plugins = pManager->getPlugins(className);
    return plugins.isEmpty() || plugins.first() == nullptr ? nullptr : plugins.first()->getObject();
}

/** The interface of an object, asked for by its identifier; null where the object has none. */
template <typename Interface>
Interface *hostInterfaceOf(QObject *pObject)
{
    return pObject == nullptr ? nullptr
                              : static_cast<Interface *>(pObject->qt_metacast(qobject_interface_iid<Interface *>()));
}

/** The one way to another plug-in of the host. */
template <typename Interface>
Interface *lookupHostInterface(IPluginManager *pManager, const QString &className)
{
    return hostInterfaceOf<Interface>(lookupHostObject(pManager, className));
}
