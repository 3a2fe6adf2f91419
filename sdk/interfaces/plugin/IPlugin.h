#pragma once

#include <QObject>
#include <QUuid>
#include <QtPlugin>

class IPluginManager;
struct PluginInfo;

/**
 * Base interface of every plug-in, on the host's side and on ours. The order of the operations is fixed.
 *
 * Owner: the Qt plug-in loader owns the object. Thread: GUI thread only.
 */
class IPlugin {
public:
    /** The plug-in as a QObject, through which qobject_cast reaches its other interfaces. Never null. */
    virtual QObject *getObject() = 0;

    /** The plug-in's fixed identity: the same on every call and on every load. */
    virtual QUuid getPluginId() = 0;

    /** Fills the record with name, version and author. */
    virtual void getPluginInfo(PluginInfo &info) = 0;

    /**
     * Hands in the host's plug-in manager (not owned; it must outlive the plug-in). Returns false and changes nothing
     * for a null manager.
     */
    virtual bool setPluginManager(IPluginManager *pManager) = 0;

    /** Called once after every plug-in was loaded and has its manager. False: the host leaves the plug-in unused. */
    virtual bool initialize() = 0;

    /** Called once after every plug-in was initialized, so that plug-ins may look each other up. */
    virtual bool extensionsInitialized() = 0;

    /** Called once before the host ends, so that a plug-in with background work of its own may stop it. */
    virtual bool aboutToShutdown() = 0;

protected:
    ~IPlugin() = default;
};

Q_DECLARE_INTERFACE(IPlugin, "KOR.Core.IPlugin/1.0")
