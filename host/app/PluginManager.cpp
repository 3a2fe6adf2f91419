#include "app/PluginManager.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QLibrary>
#include <QPluginLoader>
#include <QThread>

#include <algorithm>

namespace {

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(PluginManager)
};

/** The libraries of a folder by name, so that every start goes the same way. */
QStringList modulesIn(const QDir &folder)
{
    QStringList files;
    const QStringList names = folder.entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        if (QLibrary::isLibrary(name))
            files.append(folder.absoluteFilePath(name));
    }
    return files;
}

/** A text or a list of texts. */
QStringList textsOf(const QJsonValue &value)
{
    QStringList texts;
    if (value.isString())
        texts.append(value.toString());
    const QJsonArray list = value.toArray();
    for (const QJsonValue &entry : list)
        texts.append(entry.toString());
    texts.removeAll(QString());
    return texts;
}

} // namespace

PluginState::PluginState() = default;
PluginState::~PluginState() = default;
PluginState::PluginState(PluginState &&) noexcept = default;
PluginState &PluginState::operator=(PluginState &&) noexcept = default;

PluginManager::PluginManager() = default;

PluginManager::~PluginManager()
{
    shutdown();
    if (m_preload != nullptr)
        m_preload->wait();
}

QString PluginManager::findPluginFolder(const QString &applicationFolder)
{
    const QDir base(applicationFolder + QStringLiteral("/.."));
    const QString built = base.filePath(QStringLiteral("plugins"));
    if (QFileInfo(built).isDir())
        return QDir::cleanPath(built);
    // An installation keeps them below the library folder, whose name depends on the distribution.
    QStringList libraryFolders = base.entryList({QStringLiteral("lib*")}, QDir::Dirs | QDir::NoDotAndDotDot);
    const QStringList multiArch =
        QDir(base.filePath(QStringLiteral("lib"))).entryList({QStringLiteral("*-linux-*")}, QDir::Dirs);
    for (const QString &folder : multiArch)
        libraryFolders.append(QStringLiteral("lib/") + folder);
    for (const QString &folder : qAsConst(libraryFolders)) {
        const QString installed = base.filePath(folder + QStringLiteral("/bigimgpreview/plugins"));
        if (QFileInfo(installed).isDir())
            return QDir::cleanPath(installed);
    }
    return QDir::cleanPath(built);
}

PluginState PluginManager::readMetaData(const QString &filePath)
{
    PluginState state;
    state.filePath = filePath;
    state.pLoader = std::make_unique<QPluginLoader>(filePath);
    const QJsonObject metaData = state.pLoader->metaData();
    state.iid = metaData.value(QStringLiteral("IID")).toString();
    if (state.iid.isEmpty()) {
        state.error = Words::tr("it is no plug-in, or was built for another version");
        return state;
    }
    const QJsonObject own = metaData.value(QStringLiteral("MetaData")).toObject();
    state.keys = textsOf(own.value(QStringLiteral("Keys")));
    state.classNames = textsOf(own.value(QStringLiteral("ClassName")));
    return state;
}

void PluginManager::preload(const QString &folder)
{
    m_preload.reset(QThread::create([this, folder] {
        const QStringList files = modulesIn(QDir(folder));
        for (const QString &file : files) {
            const std::lock_guard<std::mutex> lock(m_loading);
            QPluginLoader loader(file);
            // Only what is a plug-in by its metadata, which are read without running its code.
            if (!loader.metaData().value(QStringLiteral("IID")).toString().isEmpty())
                loader.load();
        }
    }));
    m_preload->setObjectName(QStringLiteral("plug-ins"));
    m_preload->start();
}

void PluginManager::loadFolder(const QString &folder)
{
    m_bRunning = true;
    const QDir dir(folder);
    if (!dir.exists()) {
        m_folderProblems.append(Words::tr("There is no plug-ins folder %1").arg(QDir::toNativeSeparators(folder)));
        return;
    }
    const QStringList files = modulesIn(dir);
    for (const QString &file : files) {
        const std::lock_guard<std::mutex> lock(m_loading);
        m_states.push_back(readMetaData(file));
    }
    for (PluginState &state : m_states) {
        if (state.error.isEmpty())
            load(&state);
    }
    callStage(&IPlugin::initialize, Words::tr("it could not be started"));
    callStage(&IPlugin::extensionsInitialized, Words::tr("it could not work with the other plug-ins"));
}

void PluginManager::load(PluginState *pState)
{
    {
        const std::lock_guard<std::mutex> lock(m_loading);
        pState->pLoader->load();
    }
    QObject *pObject = pState->pLoader->instance();
    if (pObject == nullptr) {
        pState->error = pState->pLoader->errorString();
        return;
    }
    IPlugin *pPlugin = qobject_cast<IPlugin *>(pObject);
    if (pPlugin == nullptr || pPlugin->getObject() == nullptr) {
        pState->error = Words::tr("it is not a plug-in of this program");
        return;
    }
    if (!pPlugin->setPluginManager(this)) {
        pState->error = Words::tr("it refuses this program");
        return;
    }
    pState->pPlugin = pPlugin;
    for (const QString &className : qAsConst(pState->classNames))
        m_byClassName[className].append(pPlugin);
}

void PluginManager::callStage(bool (IPlugin::*stage)(), const QString &failure)
{
    for (PluginState &state : m_states) {
        if (state.pPlugin == nullptr || (state.pPlugin->*stage)())
            continue;
        state.error = failure;
        for (QList<IPlugin *> &plugins : m_byClassName)
            plugins.removeAll(state.pPlugin);
        state.pPlugin = nullptr;
    }
}

void PluginManager::shutdown()
{
    if (!m_bRunning)
        return;
    m_bRunning = false;
    std::for_each(m_states.rbegin(), m_states.rend(), [](const PluginState &state) {
        if (state.pPlugin != nullptr)
            state.pPlugin->aboutToShutdown();
    });
}

QList<IPlugin *> PluginManager::getPlugins(const QString &className)
{
    return m_byClassName.value(className);
}

QObject *PluginManager::objectByIid(const QString &iid) const
{
    const auto found = std::find_if(m_states.begin(), m_states.end(), [&iid](const PluginState &state) {
        return state.pPlugin != nullptr && state.iid == iid;
    });
    return found != m_states.end() ? found->pPlugin->getObject() : nullptr;
}

QStringList PluginManager::problems() const
{
    QStringList lines = m_folderProblems;
    for (const PluginState &state : m_states) {
        if (!state.error.isEmpty())
            lines.append(Words::tr("%1 is not used: %2").arg(QFileInfo(state.filePath).fileName(), state.error));
    }
    return lines;
}
