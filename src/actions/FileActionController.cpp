#include "actions/FileActionController.h"

#include "actions/CoverTask.h"
#include "actions/FileActionMenu.h"
#include "actions/FileChooser.h"
#include "actions/HostRequest.h"
#include "actions/TsQtUtils.h"
#include "common/TSCustomMenu.h"
#include "common/TsProgressDialog.h"
#include "interfaces/actions/IExportAction.h"
#include "interfaces/actions/IFileAction.h"
#include "interfaces/actions/IRecycleAction.h"
#include "interfaces/actions/IRemoveAction.h"
#include "interfaces/data/IPreviewDataSource.h"
#include "plugin/PluginInnerData.h"

#include <QCursor>
#include <QDebug>
#include <QDesktopServices>
#include <QKeySequence>
#include <QStandardPaths>
#include <QThreadPool>
#include <QUrl>

#include <utility>

namespace {

/** Words of the kinds of requests, in the order of FileActionController::Kind. */
struct KindWords {
    const char *pTitle;   ///< Of the progress dialog; null for the kind that has none.
    const char *pRefused; ///< In the log line of a refused request.
};

const KindWords kindWords[] = {
    {QT_TRANSLATE_NOOP("ImgPreviewWidget", "Exporting"), "export pkg"},
    {QT_TRANSLATE_NOOP("ImgPreviewWidget", "Deleting files permanently"), "remove"},
    {QT_TRANSLATE_NOOP("ImgPreviewWidget", "Deleting files..."), "recycle"},
    {nullptr, "set cover"},
};

QString documentsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

} // namespace

FileActionController::FileActionController(const FileActionType &type, FileActionHooks hooks, QWidget *pWidget)
    : QObject(pWidget)
    , m_type(type)
    , m_hooks(std::move(hooks))
    , m_pWidget(pWidget)
{
    for (int i = 0; i < KindCount; ++i) {
        const Kind kind = Kind(i);
        HostRequest *pRequest = m_requests[kind] = new HostRequest(this);
        connect(pRequest, &HostRequest::signal_progress, this,
                [this, kind](double fProgress, int nTotal, int nAlready) {
                    handleProgress(kind, fProgress, nTotal, nAlready);
                });
        connect(pRequest, &HostRequest::signal_result, this,
                [this, kind](const ResponseInfoPtr &pInfo) { handleResult(kind, pInfo); });
        connect(pRequest, &HostRequest::signal_lost, this, [this, kind] { closeDialog(kind); });
    }
}

FileActionController::~FileActionController()
{
    // A menu that dies while one of its entries is being carried out corrupts memory: those that are open outlive the
    // widget, hidden, until showMenu is back from them.
    for (const QPointer<TSCustomMenu> &pMenu : qAsConst(m_openMenus)) {
        if (pMenu)
            pMenu->setParent(nullptr);
    }
}

QString FileActionController::text(const char *pSource) const
{
    return m_type.text(pSource);
}

void FileActionController::showMenu(const QKeySequence &recycleKey)
{
    if (m_hooks.beforeMenu)
        m_hooks.beforeMenu();
    const QPointer<TSCustomMenu> pMenu = FileActionMenu::create(m_type, m_hooks, recycleKey, this, m_pWidget);
    m_openMenus.append(pMenu);
    const QPointer<FileActionController> pThis(this);
    // Qt keeps the menu on the screen by itself. It waits here; whatever is chosen, or happens meanwhile, may take the
    // widget away.
    pMenu->exec(QCursor::pos());
    if (pThis)
        m_openMenus.removeOne(pMenu);
    delete pMenu.data();
}

void FileActionController::defaultOpen()
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(PluginInnerData::instance()->currentFilePath()));
}

void FileActionController::checkFilePath()
{
    QString path = PluginInnerData::instance()->currentFilePath();
    if (path.isEmpty()) {
        qInfo("file path is empty");
        return;
    }
    path.replace(QLatin1String("\\"), QLatin1String("/"));
    path.replace(QLatin1String("\\\\"), QLatin1String("/"));
    TsQtUtils::showInGraphicalShell(path);
}

void FileActionController::copyFile()
{
    PluginInnerData::instance()->copyFile();
}

void FileActionController::copyFilePath()
{
    PluginInnerData::instance()->copyFilePath();
}

void FileActionController::copyTag()
{
    PluginInnerData::instance()->copyTags();
}

void FileActionController::pasteTag()
{
    PluginInnerData::instance()->pasteTags();
}

FileActionController::Target FileActionController::currentTarget()
{
    const PluginInnerData *pData = PluginInnerData::instance();
    return {pData->currentFileId(), pData->dataSource()};
}

QSharedPointer<IPreviewDataSource> FileActionController::sourceOf(const Target &target)
{
    const QSharedPointer<IPreviewDataSource> pSource = target.pSource.toStrongRef();
    return pSource == PluginInnerData::instance()->dataSource() ? pSource : QSharedPointer<IPreviewDataSource>();
}

template <class Action, class Progress, class Result, class Send>
void FileActionController::runRequest(Kind kind, const QSharedPointer<Action> &pAction, Progress pProgress,
                                      Result pResult, const Send &send)
{
    if (!pAction)
        return;
    // That of a request that this one replaces, or of one that was refused.
    closeDialog(kind);
    auto *pDialog = new TsProgressDialog(m_pWidget);
    pDialog->setTitle(text(kindWords[kind].pTitle));
    m_dialogs[kind] = pDialog;
    m_bFinished = false;
    HostRequest *pRequest = m_requests[kind];
    pRequest->take(pAction, pResult);
    pRequest->watchProgress(pAction.data(), pProgress);
    begin(kind, [pAction, send] { return send(*pAction); });
}

void FileActionController::begin(Kind kind, const std::function<qint64()> &send)
{
    HostRequest *pRequest = m_requests[kind];
    const HostRequest::Sent sent = pRequest->send(send);
    if (sent == HostRequest::Superseded)
        return;
    if (sent == HostRequest::Refused) {
        // The dialog stays, hidden, until the next request or the end of the widget.
        qDebug("preview %s %s action id <= 0", m_type.pTypeWord, kindWords[kind].pRefused);
        return;
    }
    TsProgressDialog *pDialog = m_dialogs[kind];
    if (pDialog != nullptr)
        connect(pDialog, &TsProgressDialog::userCancle, this, [this, kind] { cancel(kind); });
    if (pRequest->hasEarlyResult())
        pRequest->deliverEarlyResult();
    else if (pDialog != nullptr)
        pDialog->showPopup();
}

void FileActionController::cancel(Kind kind)
{
    if (!m_bFinished)
        m_requests[kind]->cancel();
}

void FileActionController::exportFile(bool bPackage)
{
    const Target target = currentTarget();
    if (!sourceOf(target))
        return;
    const QPointer<FileActionController> pThis(this);
    const QString path = chooseExportPath(bPackage);
    if (!pThis || path.isEmpty())
        return;
    PluginInnerData::instance()->setLastExportPath(path);
    const QSharedPointer<IPreviewDataSource> pSource = sourceOf(target);
    if (!pSource)
        return;
    m_exportPath = path;
    m_bExportPackage = bPackage;
    runRequest(ExportKind, pSource->exportAction(), &IExportAction::signalExportProgress,
               &IExportAction::signalExportResult,
               [=](IExportAction &action) { return action.requestExport(path, {target.nFileId}, bPackage); });
}

QString FileActionController::chooseExportPath(bool bPackage)
{
    const QString last = PluginInnerData::instance()->settingsText();
    const QString start = last.isEmpty() ? documentsFolder() : last;
    if (bPackage) {
        return FileChooser::saveFile(m_pWidget, text(QT_TRANSLATE_NOOP("ImgPreviewWidget", "Export Library Pack")),
                                     start, QStringLiteral("*.MORAYPack"));
    }
    const QString caption = last.isEmpty() ? text(QT_TRANSLATE_NOOP("ImgPreviewWidget", "Export file path..."))
                                           : text(QT_TRANSLATE_NOOP("ImgPreviewWidget", "Select file path..."));
    return FileChooser::folder(m_pWidget, caption, start);
}

QSharedPointer<IPreviewDataSource> FileActionController::prepareRemoval(const Target &target)
{
    const QPointer<FileActionController> pThis(this);
    const QSharedPointer<IPreviewDataSource> pSource = sourceOf(target);
    // A host that asks its user first may be about something else afterwards.
    if (!pSource || pSource->isDeletingBlocked() || !pThis || sourceOf(target) != pSource)
        return {};
    if (m_hooks.beforeRemoval)
        m_hooks.beforeRemoval();
    return pSource;
}

void FileActionController::deleteComplete()
{
    const Target target = currentTarget();
    const QSharedPointer<IPreviewDataSource> pSource = prepareRemoval(target);
    if (!pSource)
        return;
    runRequest(RemoveKind, pSource->removeAction(), &IRemoveAction::signalRemoveProgress,
               &IRemoveAction::signalRemoveResult,
               [=](IRemoveAction &action) { return action.requestRemove({target.nFileId}); });
}

void FileActionController::removeToRecycle()
{
    const Target target = currentTarget();
    const QSharedPointer<IPreviewDataSource> pSource = prepareRemoval(target);
    if (!pSource)
        return;
    runRequest(RecycleKind, pSource->recycleAction(), &IRecycleAction::signalRecycleProgress,
               &IRecycleAction::signalRecycleResult,
               [=](IRecycleAction &action) { return action.requestRecycle({target.nFileId}); });
}

void FileActionController::chooseCover()
{
    const Target target = currentTarget();
    const QPointer<FileActionController> pThis(this);
    const QString path = FileChooser::openFile(m_pWidget, text(QT_TRANSLATE_NOOP("ImgPreviewWidget", "Choose a photo")),
                                               documentsFolder(), QStringLiteral("Images (*.png *.webp *.jpg *.jpeg)"));
    if (pThis && !path.isEmpty())
        addCoverJob({target, path, true, {}});
}

void FileActionController::setCover(const QString &picturePath)
{
    addCoverJob({currentTarget(), picturePath, false, {}});
}

void FileActionController::setCover(const QImage &picture)
{
    if (!picture.isNull())
        addCoverJob({currentTarget(), {}, false, picture});
}

void FileActionController::addCoverJob(const CoverJob &job)
{
    m_coverJobs.enqueue(job);
    // One after the other: of two pictures for one file, the one chosen last is to stay.
    if (m_coverJobs.size() == 1)
        startCoverJob();
}

void FileActionController::startCoverJob()
{
    const CoverJob &job = m_coverJobs.head();
    auto *pTask = job.picture.isNull() ? new CoverTask(job.path, job.bSquare) : new CoverTask(job.picture);
    connect(pTask, &CoverTask::signal_coverReady, this, [this](const QString &path) {
        const QPointer<FileActionController> pThis(this);
        // It stays in the queue while the host's code runs, which may come back with the next one.
        sendCover(CoverJob(m_coverJobs.head()), path);
        if (!pThis)
            return;
        m_coverJobs.dequeue();
        if (!m_coverJobs.isEmpty())
            startCoverJob();
    });
    QThreadPool::globalInstance()->start(pTask);
}

void FileActionController::sendCover(const CoverJob &job, const QString &picturePath)
{
    const QSharedPointer<IPreviewDataSource> pSource = sourceOf(job.target);
    const QSharedPointer<IFileAction> pAction =
        pSource && !picturePath.isEmpty() ? pSource->fileAction() : QSharedPointer<IFileAction>();
    if (!pAction)
        return;
    m_nCoverFileId = job.target.nFileId;
    m_bFinished = false;
    m_requests[CoverKind]->take(pAction, &IFileAction::signalFileResult);
    begin(CoverKind, [&] { return pAction->setFileCover(job.target.nFileId, picturePath); });
}
