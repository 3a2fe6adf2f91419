#include "app/FileDeeds.h"

#include "actions/HostDataSource.h"
#include "actions/PackArchive.h"
#include "app/FilesMenu.h"
#include "app/FolderTree.h"
#include "app/MainWindow.h"
#include "app/StatusLine.h"
#include "app/panel/InfoPanel.h"
#include "interfaces/actions/IFileAction.h"
#include "library/Library.h"
#include "theme/TSSkinSetting.h"

#include <QAction>
#include <QDir>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QStandardPaths>
#include <QUrl>

namespace {

/** The pack among what is dragged; empty: there is none. */
QString packOf(const QMimeData *pData)
{
    const QList<QUrl> urls = pData->urls();
    for (const QUrl &url : urls) {
        if (PackFormat::isPackName(url.toLocalFile()))
            return url.toLocalFile();
    }
    return {};
}

} // namespace

FileDeeds::FileDeeds(Library *pLibrary, HostDataSource *pDataSource, MainWindow *pWindow)
    : m_pLibrary(pLibrary)
    , m_pDataSource(pDataSource)
    , m_pWindow(pWindow)
{
    auto *pImport = new QAction(tr("Import pack…"), pWindow);
    pImport->setObjectName(QStringLiteral("hostImportPack"));
    pImport->setShortcut(QKeySequence(Qt::CTRL + Qt::Key_I));
    pWindow->addAction(pImport);
    connect(pImport, &QAction::triggered, this, &FileDeeds::choosePack);
    pWindow->setAcceptDrops(true);
    pWindow->installEventFilter(this);
    FolderTree *pFolders = pWindow->folderTree();
    pFolders->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(pFolders, &QWidget::customContextMenuRequested, this, &FileDeeds::showFolderMenu);
    new FilesMenu(pLibrary, pDataSource, pWindow, this);
    connect(pWindow->infoPanel(), &InfoPanel::signalRemoveCover, this, &FileDeeds::removeCover);
    connect(pDataSource->runner(), &ActionRunner::signalProblem, pWindow->statusLine(), &StatusLine::addProblem);
}

void FileDeeds::removeCover(qint64 nFileId)
{
    m_pCoverAction = m_pDataSource->fileAction();
    connect(m_pCoverAction.data(), &IFileAction::signalFileResult, this,
            [this](qint64 /*nActionId*/, const QSharedPointer<const IResponseInfo> &pInfo) {
                if (m_pWindow == nullptr)
                    return;
                if (pInfo->returnCode() != IResponseInfo::Success)
                    m_pWindow->statusLine()->addProblem(pInfo->errorMessage());
                // A preview in the window has no other way to hear that a picture in its strip is another one now.
                const QList<QWidget *> children = m_pWindow->findChildren<QWidget *>();
                for (QWidget *pChild : children)
                    pChild->update();
            });
    m_pCoverAction->setFileCover(nFileId, QString());
}

bool FileDeeds::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    if (pWatched == m_pWindow && (pEvent->type() == QEvent::DragEnter || pEvent->type() == QEvent::Drop)) {
        // A drag that enters is a kind of drop.
        auto *pDrop = static_cast<QDropEvent *>(pEvent);
        const QString pack = packOf(pDrop->mimeData());
        if (pack.isEmpty())
            return false;
        pDrop->setDropAction(Qt::CopyAction);
        pDrop->accept();
        if (pEvent->type() == QEvent::Drop)
            importPack(pack);
        return true;
    }
    return QObject::eventFilter(pWatched, pEvent);
}

void FileDeeds::choosePack()
{
    auto *pDialog =
        new QFileDialog(m_pWindow, tr("Import pack"), importFolder(),
                        tr("Library packs") + QStringLiteral(" (*") + PackFormat::suffix() + QStringLiteral(")"));
    pDialog->setAttribute(Qt::WA_DeleteOnClose);
    TSSkinSetting::GetInstance()->SetWidgetStyleSheetWithQssName(pDialog, QStringLiteral("host"));
    pDialog->setFileMode(QFileDialog::ExistingFile);
    connect(pDialog, &QFileDialog::fileSelected, this, &FileDeeds::importPack);
    pDialog->open();
}

void FileDeeds::showFolderMenu(const QPoint &position)
{
    FolderTree *pFolders = m_pWindow->folderTree();
    const QString folder = pFolders->folderAt(position);
    auto *pMenu = new QMenu(pFolders);
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    QAction *pProtect = pMenu->addAction(tr("Protect from deleting"));
    pProtect->setCheckable(true);
    // What a folder above protects cannot be unprotected here.
    const bool bByParent = m_pLibrary->isDeletingBlocked(folder) && !m_pLibrary->isProtected(folder);
    pProtect->setChecked(m_pLibrary->isDeletingBlocked(folder));
    pProtect->setEnabled(!folder.isEmpty() && !bByParent);
    connect(pProtect, &QAction::toggled, this,
            [this, folder](bool bProtected) { m_pLibrary->protectFolder(folder, bProtected); });
    pMenu->addSeparator();
    pMenu->addAction(m_pWindow->findChild<QAction *>(QStringLiteral("hostImportPack")));
    pMenu->popup(pFolders->viewport()->mapToGlobal(position));
}

QString FileDeeds::importFolder() const
{
    QString shown = m_pLibrary->folders().value(0);
    if (!shown.isEmpty() && QFileInfo(shown).isWritable())
        return shown;
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return pictures.isEmpty() ? QDir::homePath() : pictures;
}

void FileDeeds::importPack(const QString &packPath)
{
    const QString name = QFileInfo(packPath).fileName();
    StatusLine *pStatus = m_pWindow->statusLine();
    m_pDataSource->importPack(
        packPath, importFolder(),
        [pStatus, name](const ActionProgress &progress) {
            pStatus->setMessage(tr("Importing %1… %2%").arg(name).arg(int(progress.fPercent)));
        },
        [pSelf = QPointer<FileDeeds>(this)](const QString &folder, int nFiles, const QString &error) {
            if (pSelf != nullptr && pSelf->m_pWindow != nullptr)
                pSelf->showImported(folder, nFiles, error);
        });
}

void FileDeeds::showImported(const QString &folder, int nFiles, const QString &error)
{
    StatusLine *pStatus = m_pWindow->statusLine();
    if (folder.isEmpty()) {
        pStatus->setMessage(QString());
        if (!error.isEmpty())
            pStatus->addProblem(error);
    } else {
        bool bInView = false;
        for (const QString &shown : m_pLibrary->folders())
            bInView = bInView || folder.startsWith(shown + QLatin1Char('/'));
        if (bInView)
            m_pLibrary->rescan();
        else
            m_pLibrary->showFolders({folder});
        pStatus->setMessage(tr("Imported into %1: %2").arg(QDir::toNativeSeparators(folder)).arg(nFiles));
    }
    Q_EMIT signalImported(folder);
}
