#pragma once

#include <QList>
#include <QString>

class IPlugin;

/**
 * The host's register of loaded plug-ins. Owned by the host; must outlive every plug-in it was handed to.
 *
 * Thread: GUI thread only.
 */
class IPluginManager {
public:
    /**
     * Returns the plug-ins registered under the class name of an interface, for example "ISettingPlugin", the
     * preferred one first. An unknown name gives an empty list. The pointers stay owned by the host.
     */
    virtual QList<IPlugin *> getPlugins(const QString &className) = 0;

protected:
    ~IPluginManager() = default;
};
