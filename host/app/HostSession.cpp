#include "app/HostSession.h"

#include "actions/HostDataSource.h"
#include "app/AnalysisQueue.h"
#include "app/FileDeeds.h"
#include "app/FileGridView.h"
#include "app/FullPreviewPlace.h"
#include "app/HostIcons.h"
#include "app/HostLanguage.h"
#include "app/LanguageMenu.h"
#include "app/MainWindow.h"
#include "app/MainWindowHandle.h"
#include "app/PreviewController.h"
#include "app/StatusLine.h"
#include "app/TitleBar.h"
#include "app/panel/InfoPanel.h"
#include "basemodule/IHostAnalysis.h"
#include "interfaces/plugin/IBigImgPreviewPlugin.h"
#include "interfaces/plugin/IPreviewNotes.h"
#include "interfaces/services/IBaseModulePlugin.h"
#include "mediaplayer/IHostMedia.h"
#include "settings/HostSettings.h"

#include <QFileInfo>
#include <QLoggingCategory>
#include <QTimer>

namespace {

/** The window behind a preview that is opened at the start: not before its picture has had the machine for itself. */
constexpr int k_nWindowBehindMsec = 500;
/** When the file asked for is not even listed by then, the window is shown without it. */
constexpr int k_nWindowPatienceMsec = 2000;

Q_LOGGING_CATEGORY(hostLog, "bigimgpreview.host")

QString themeKey()
{
    return QStringLiteral("window/theme");
}

QString panelHiddenKey()
{
    return QStringLiteral("preview/rightPanelHidden");
}

} // namespace

HostSession::HostSession(const CommandLine &commandLine, const QString &applicationFolder)
    : m_commandLine(commandLine)
    , m_applicationFolder(applicationFolder)
    , m_ini(HostSettings::defaultPath(), QSettings::IniFormat)
    , m_wantedFile(commandLine.file)
{
}

HostSession::~HostSession()
{
    shutdown();
}

void HostSession::start()
{
    restoreTheme();
    HostIcons::loadLibraries();
    m_plugins.preload(pluginFolder());
    // The library lists files on its own thread while windows are made here; who listens to it hears it afterwards.
    m_library.open(m_commandLine.libraryPath.isEmpty() ? Library::defaultPath() : m_commandLine.libraryPath);
    showPlaces();
    m_pQueue = std::make_unique<AnalysisQueue>(&m_library);
    m_pWindow = std::make_unique<MainWindow>(&m_library, &m_model);
    m_pHandle = std::make_unique<MainWindowHandle>(m_pWindow.get());
    m_pPreviews = std::make_unique<PreviewController>(m_pWindow.get(), &m_model, nullptr);
    loadPlugins();
    connectLanguage();
    connectPreviews();
    connectFullPreview();
    connectAnalysis();
    m_pWindow->restoreState(&m_ini);
    if (m_wantedFile.isEmpty()) {
        showWindow();
        return;
    }
    // The picture asked for comes first: the preview needs the window's place alone, not its contents.
    m_pWindow->winId();
    QTimer::singleShot(k_nWindowPatienceMsec, this, &HostSession::showWindow);
}

void HostSession::showWindow()
{
    if (m_pWindow == nullptr || m_pWindow->isVisible())
        return;
    m_pWindow->setAttribute(Qt::WA_ShowWithoutActivating, m_pPreviews->isOpen());
    m_pWindow->show();
    m_pWindow->setAttribute(Qt::WA_ShowWithoutActivating, false);
    if (m_pPreviews->isOpen())
        m_pPreviews->bringToFront();
    else
        m_pWindow->activateWindow();
}

QString HostSession::pluginFolder() const
{
    return m_commandLine.pluginFolder.isEmpty() ? PluginManager::findPluginFolder(m_applicationFolder)
                                                : m_commandLine.pluginFolder;
}

void HostSession::restoreTheme()
{
    const bool bLight = m_ini.value(themeKey()).toString() == QLatin1String("light");
    const auto remembered = bLight ? TSSkinSetting::LightTheme : TSSkinSetting::DarkTheme;
    TSSkinSetting::GetInstance()->SetTheme(m_commandLine.theme.value_or(remembered));
}

void HostSession::toggleTheme()
{
    TSSkinSetting *pTheme = TSSkinSetting::GetInstance();
    const bool bToLight = pTheme->GetTheme() == TSSkinSetting::DarkTheme;
    pTheme->SetTheme(bToLight ? TSSkinSetting::LightTheme : TSSkinSetting::DarkTheme);
    m_ini.setValue(themeKey(), bToLight ? QStringLiteral("light") : QStringLiteral("dark"));
}

void HostSession::connectLanguage()
{
    LanguageMenu *pMenu = m_pWindow->titleBar()->languageMenu();
    pMenu->setChosen(HostLanguage::remembered(m_ini));
    connect(pMenu, &LanguageMenu::signalChosen, this, [this](const QString &code) {
        HostLanguage::remember(&m_ini, code);
        m_pWindow->statusLine()->setMessage(tr("The language takes effect at the next start."));
    });
}

void HostSession::showPlaces()
{
    if (!m_wantedFile.isEmpty()) {
        const QFileInfo wanted(m_wantedFile);
        m_library.showFolderNow(wanted.absolutePath(), wanted.fileName());
        return;
    }
    const QStringList folders = m_commandLine.folders.isEmpty() ? defaultFolders() : m_commandLine.folders;
    if (!folders.isEmpty())
        m_library.showFolders(folders);
}

void HostSession::loadPlugins()
{
    m_plugins.loadFolder(pluginFolder());
    const QStringList problems = m_plugins.problems();
    for (const QString &problem : problems) {
        qCWarning(hostLog).noquote() << problem;
        m_pWindow->statusLine()->addProblem(problem);
    }
    auto *pBaseModule = m_plugins.service<IBaseModulePlugin>(QStringLiteral("IBaseModulePlugin"));
    if (pBaseModule != nullptr) {
        m_pAnalysis = qobject_cast<IHostAnalysis *>(
            m_plugins.getPlugins(QStringLiteral("IBaseModulePlugin")).first()->getObject());
        if (!m_wantedFile.isEmpty()) // decoded while everything else is made ready
            m_pAnalysis->setFilesAhead({m_wantedFile});
        m_pWindow->setThumbnailCache(pBaseModule->cacheManager());
        m_pWindow->infoPanel()->setMetadataReader(
            [pAnalysis = m_pAnalysis](const QString &path) { return pAnalysis->readMetadata(path); });
        m_pAnalysis->setProblemHandler(
            [this](const QString &problem) { m_pWindow->statusLine()->addProblem(problem); });
    } else {
        m_pWindow->statusLine()->addProblem(tr("Thumbnails and pictures are missing: there is no base module."));
    }
    if (auto *pMedia = mediaPlayer()) {
        pMedia->setProblemHandler([this](const QString &problem) { m_pWindow->statusLine()->addProblem(problem); });
    } else {
        m_pWindow->statusLine()->addProblem(tr("Videos and sounds do not play: there is no media player."));
    }
    m_library.setAnalysis(m_pAnalysis);
    m_pDataSource = QSharedPointer<HostDataSource>::create(&m_library);
    m_pDataSource->setAnalysis(m_pAnalysis);
    m_pDeeds = std::make_unique<FileDeeds>(&m_library, m_pDataSource.data(), m_pWindow.get());
    QObject *pRoot = m_plugins.objectByIid(QString::fromLatin1(qobject_interface_iid<IBigImgPreviewPlugin *>()));
    auto *pPreview = qobject_cast<IBigImgPreviewPlugin *>(pRoot);
    m_pPreviews->setNotes(qobject_cast<IPreviewNotes *>(pRoot));
    if (pPreview == nullptr)
        m_pWindow->statusLine()->addProblem(tr("Files cannot be previewed: there is no preview plug-in."));
    m_pPreviews->setPlugin(pPreview, m_pDataSource, m_pHandle.get());
    m_pPreviews->setAnalysis(m_pAnalysis);
}

IHostMedia *HostSession::mediaPlayer()
{
    const QList<IPlugin *> players = m_plugins.getPlugins(QStringLiteral("ITsMediaPlayerPlugin"));
    return players.isEmpty() ? nullptr : qobject_cast<IHostMedia *>(players.first()->getObject());
}

void HostSession::connectPreviews()
{
    connect(m_pWindow.get(), &MainWindow::signalQuickPreview, this,
            [this](qint64 nFileId) { openPreview(nFileId, false); });
    connect(m_pWindow.get(), &MainWindow::signalOpenFile, this, [this](qint64 nFileId) { openPreview(nFileId, true); });
    connect(m_pWindow.get(), &MainWindow::signalThemeToggled, this, &HostSession::toggleTheme);
    connect(m_pWindow.get(), &MainWindow::signalAboutToClose, this, &HostSession::saveWindow);
    connect(m_pWindow.get(), &MainWindow::signalFolderChosen, this,
            [this](const QString &folder) { m_library.showFolders({folder}); });
    connect(m_pPreviews.get(), &PreviewController::signalFileShown, m_pWindow->grid(), &FileGridView::selectFile);
    connect(m_pPreviews.get(), &PreviewController::signalClosed, this, &HostSession::leavePreview);
    connect(m_pPreviews.get(), &PreviewController::signalFileShown, this,
            [this](qint64 nFileId) { m_pDataSource->setCurrentFile(nFileId); });
    connect(&m_library, &Library::signalCleared, m_pPreviews.get(), &PreviewController::drop);
    // A long list is arranged on a thread: the rows may follow the end of the scan.
    connect(&m_library, &Library::signalScanEnded, this, [this] {
        m_bWantedListed = true;
        openWantedFile();
    });
    connect(&m_model, &FileGridModel::signalArranged, this, &HostSession::openWantedFile);
    if (!m_commandLine.pack.isEmpty())
        m_pDeeds->importPack(m_commandLine.pack);
}

void HostSession::connectFullPreview()
{
    FullPreviewPlace *pPlace = m_pWindow->fullPreviewPlace();
    connect(m_pPreviews.get(), &PreviewController::signalFullPreviewOpened, pPlace,
            [this, pPlace](IPreviewDbClickWidget *pPreview) {
                pPlace->enter(pPreview, m_ini.value(panelHiddenKey(), false).toBool());
                m_pWindow->showSelection();
            });
    connect(m_pPreviews.get(), &PreviewController::signalFullPreviewLeft, pPlace, &FullPreviewPlace::leave);
    connect(m_pPreviews.get(), &PreviewController::signalFileShown, m_pWindow->infoPanel(), &InfoPanel::showFile);
    connect(m_pWindow->infoPanel(), &InfoPanel::signalNoteActivated, m_pPreviews.get(), &PreviewController::showNote);
    connect(m_pWindow->infoPanel(), &InfoPanel::signalRenaming, m_pPreviews.get(), &PreviewController::releaseFile);
    connect(&m_library, &Library::signalRenamed, m_pPreviews.get(),
            [this](qint64 /*nActionId*/, qint64 nFileId) { m_pPreviews->takeFileBack(nFileId); });
    // The preview reads it when it opens the next time.
    connect(pPlace, &FullPreviewPlace::signalPanelHidden, this,
            [this](bool bHidden) { m_ini.setValue(panelHiddenKey(), bHidden); });
}

void HostSession::connectAnalysis()
{
    connect(m_pPreviews.get(), &PreviewController::signalAnalysisWanted, m_pQueue.get(), &AnalysisQueue::raise);
    connect(m_pQueue.get(), &AnalysisQueue::signalProgress, m_pWindow->statusLine(), &StatusLine::setAnalysis);
    m_pQueue->setAnalysis(m_pAnalysis);
}

void HostSession::leavePreview(qint64 nFileId)
{
    showWindow();
    m_pWindow->activateWindow();
    m_pWindow->grid()->selectFile(nFileId);
    m_pWindow->grid()->setFocus();
    // After the columns that came back have taken their room; who has chosen another file by then keeps it.
    const qint64 nLeftAt = m_pWindow->grid()->currentFileId();
    QTimer::singleShot(0, m_pWindow.get(), [this, nLeftAt] {
        if (m_pWindow->grid()->currentFileId() == nLeftAt)
            m_pWindow->grid()->returnTo(nLeftAt);
        m_pWindow->showSelection();
    });
}

void HostSession::openPreview(qint64 nFileId, bool bFull)
{
    if (!m_pPreviews->isAvailable())
        m_pWindow->statusLine()->addProblem(tr("Files cannot be previewed: there is no preview plug-in."));
    else if (nFileId != 0) {
        m_pDataSource->setCurrentFile(nFileId);
        if (bFull)
            m_pPreviews->openFullPreview(nFileId);
        else
            m_pPreviews->openQuickPreview(nFileId);
    }
}

void HostSession::openWantedFile()
{
    if (m_wantedFile.isEmpty() || !m_bWantedListed || !m_model.isArranged())
        return;
    const QString path = m_wantedFile;
    m_wantedFile.clear();
    for (int i = 0; i < m_model.rowCount(); ++i) {
        const FileRecordPtr pRecord = m_model.recordAt(i);
        if (pRecord->filePath() != path)
            continue;
        m_pWindow->grid()->selectFile(pRecord->fileId());
        openPreview(pRecord->fileId(), false);
        QTimer::singleShot(m_pPreviews->isOpen() ? k_nWindowBehindMsec : 0, this, &HostSession::showWindow);
        return;
    }
    showWindow();
    m_pWindow->statusLine()->addScanProblem(tr("The file %1 cannot be shown.").arg(path));
}

void HostSession::saveWindow()
{
    m_pWindow->saveState(&m_ini);
}

void HostSession::shutdown()
{
    if (m_pWindow == nullptr)
        return;
    // The plug-in still needs its host while it lets go; the base module must outlive everything that decodes.
    m_pPreviews->shutdown();
    m_pQueue->setAnalysis(nullptr);
    // Actions read pictures through the base module, and tell the library.
    m_pDeeds.reset();
    m_pDataSource->shutdown();
    if (auto *pMedia = mediaPlayer())
        pMedia->setProblemHandler({});
    if (m_pAnalysis != nullptr)
        m_pAnalysis->setProblemHandler({});
    m_plugins.shutdown();
    m_pWindow->setThumbnailCache({});
    m_pWindow->infoPanel()->setMetadataReader({});
    m_library.setAnalysis(nullptr);
    if (m_pAnalysis != nullptr)
        m_pAnalysis->shutdown();
    m_pAnalysis = nullptr;
    m_pPreviews.reset();
    m_pWindow.reset();
    m_pHandle.reset();
}
