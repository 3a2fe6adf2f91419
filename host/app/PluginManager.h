#pragma once

#include "interfaces/plugin/IPlugin.h"
#include "interfaces/plugin/IPluginManager.h"

#include <QHash>
#include <QObject>
#include <QStringList>

#include <memory>
#include <mutex>
#include <vector>

class QPluginLoader;
class QThread;

/** One module of the plug-ins folder and how far it came. */
struct PluginState {
    PluginState();
    ~PluginState();
    PluginState(PluginState &&) noexcept;
    PluginState &operator=(PluginState &&) noexcept;

    QString filePath;
    QString iid;
    QStringList keys;
    QStringList classNames;     ///< The interfaces under which others find it.
    QString error;              ///< Readable; empty while nothing went wrong.
    IPlugin *pPlugin = nullptr; ///< Null when it is not in use.
    std::unique_ptr<QPluginLoader> pLoader;
};

/**
 * Loads the modules of one folder, registers them by class name, starts and ends them. A module that fails is left
 * out with a message; it never takes the others with it.
 *
 * Owner: HostSession. Thread: GUI thread only. Modules stay loaded to the end of the process, because records and
 * widgets made by them may outlive everything here.
 */
class PluginManager final : public IPluginManager {
public:
    PluginManager();
    virtual ~PluginManager();
    Q_DISABLE_COPY(PluginManager)

    /** The folders in which an application in this folder looks; the first that exists counts. */
    static QString findPluginFolder(const QString &applicationFolder);

    /**
     * Brings the folder's modules and all that they need into memory, on a thread, while the caller does something
     * else. loadFolder finds them there, or waits for them, and tells what is wrong with them.
     */
    void preload(const QString &folder);

    /** Reads the metadata of every module, loads those that are ours and starts them. Call once. */
    void loadFolder(const QString &folder);

    /** Tells every plug-in that the host ends, the last started first. Further calls do nothing. */
    void shutdown();

    QList<IPlugin *> getPlugins(const QString &className) override;

    /** The root object of the module with this interface id; null when there is none in use. */
    QObject *objectByIid(const QString &iid) const;

    /** The first service of this class name, by its interface; null when there is none in use. */
    template <typename Interface>
    Interface *service(const QString &className)
    {
        const QList<IPlugin *> plugins = getPlugins(className);
        return plugins.isEmpty() ? nullptr : qobject_cast<Interface *>(plugins.first()->getObject());
    }

    const std::vector<PluginState> &states() const { return m_states; }

    /** One line for each thing that went wrong; for the status line and the log. */
    QStringList problems() const;

private:
    static PluginState readMetaData(const QString &filePath);
    void load(PluginState *pState);
    void callStage(bool (IPlugin::*stage)(), const QString &failure);

    std::vector<PluginState> m_states;
    QHash<QString, QList<IPlugin *>> m_byClassName;
    QStringList m_folderProblems;
    /** Held for one module at a time: two threads must not load the same one at once, which Qt does not guard. */
    std::mutex m_loading;
    std::unique_ptr<QThread> m_preload;
    bool m_bRunning = false;
};
