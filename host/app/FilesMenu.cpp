#include "app/FilesMenu.h"

#include "actions/HostDataSource.h"
#include "actions/PackArchive.h"
#include "app/FileGridView.h"
#include "app/MainWindow.h"
#include "app/StatusLine.h"
#include "app/panel/InfoPanel.h"
#include "interfaces/actions/IExportAction.h"
#include "interfaces/actions/IRecycleAction.h"
#include "interfaces/data/IResponseInfo.h"
#include "library/Library.h"
#include "theme/TSSkinSetting.h"

#include <QAction>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QUrl>

#include <algorithm>

FilesMenu::FilesMenu(Library *pLibrary, HostDataSource *pDataSource, MainWindow *pWindow, QObject *pParent)
    : QObject(pParent)
    , m_pLibrary(pLibrary)
    , m_pDataSource(pDataSource)
    , m_pWindow(pWindow)
    , m_pCopy(addKey(tr("Copy"), QKeySequence::Copy))
    , m_pRecycle(addKey(tr("Move to Recycle Bin"), QKeySequence::Delete))
{
    FileGridView *pGrid = pWindow->grid();
    pGrid->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(pGrid, &QWidget::customContextMenuRequested, this, &FilesMenu::show);
    connect(m_pCopy, &QAction::triggered, this, &FilesMenu::copyFiles);
    connect(m_pRecycle, &QAction::triggered, this, &FilesMenu::recycle);
}

QAction *FilesMenu::addKey(const QString &text, const QKeySequence &key)
{
    auto *pAction = new QAction(text, this);
    pAction->setShortcut(key);
    // Not in the fields beside the grid, where these keys mean the text.
    pAction->setShortcutContext(Qt::WidgetShortcut);
    m_pWindow->grid()->addAction(pAction);
    return pAction;
}

QVector<qint64> FilesMenu::selection() const
{
    return m_pWindow != nullptr ? m_pWindow->grid()->selectedFileIds() : QVector<qint64>();
}

QStringList FilesMenu::paths() const
{
    QStringList paths;
    for (const qint64 nId : selection()) {
        const FileRecordPtr pRecord = m_pLibrary->record(nId);
        if (pRecord != nullptr && !pRecord->isUnavailable())
            paths.append(pRecord->filePath());
    }
    return paths;
}

void FilesMenu::show(const QPoint &position)
{
    FileGridView *pGrid = m_pWindow->grid();
    if (selection().isEmpty())
        return;
    auto *pMenu = new QMenu(pGrid);
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    addDeeds(pMenu, !paths().isEmpty());
    pMenu->popup(pGrid->viewport()->mapToGlobal(position));
}

void FilesMenu::addDeeds(QMenu *pMenu, bool bFiles)
{
    const auto add = [this, pMenu](const QString &text, auto deed) {
        QAction *pAction = pMenu->addAction(text);
        connect(pAction, &QAction::triggered, this, deed);
        return pAction;
    };
    if (!bFiles) {
        add(tr("Remove from Library"), [this] { forget(); });
        return;
    }
    FileGridView *pGrid = m_pWindow->grid();
    add(tr("Quick Preview"), [pGrid] { Q_EMIT pGrid->signalQuickPreview(); });
    add(tr("Full Preview"), [pGrid] { Q_EMIT pGrid->signalOpen(); });
    add(tr("Open with Default App"), [this] { openOutside(false); });
    add(tr("Open Folder"), [this] { openOutside(true); });
    pMenu->addSeparator();
    pMenu->addAction(m_pCopy);
    add(tr("Copy Path"), [this] { copyPaths(); });
    add(tr("Rename"), [this] { m_pWindow->renameFile(); })->setEnabled(selection().size() == 1);
    pMenu->addSeparator();
    add(tr("Export to Folder…"), [this] { chooseExport(false); });
    add(tr("Export as Library Pack…"), [this] { chooseExport(true); });
    pMenu->addSeparator();
    pMenu->addAction(m_pRecycle);
}

void FilesMenu::copyFiles()
{
    QList<QUrl> urls;
    const QStringList files = paths();
    for (const QString &path : files)
        urls.append(QUrl::fromLocalFile(path));
    if (urls.isEmpty())
        return;
    auto *pData = new QMimeData;
    pData->setUrls(urls);
    pData->setText(files.join(QLatin1Char('\n')));
    // What the file managers of this desktop take a copy, not a move, from.
    QByteArray list = QByteArrayLiteral("copy");
    for (const QUrl &url : qAsConst(urls))
        list += '\n' + url.toEncoded();
    pData->setData(QStringLiteral("x-special/gnome-copied-files"), list);
    QGuiApplication::clipboard()->setMimeData(pData);
}

void FilesMenu::copyPaths()
{
    QStringList native;
    const QStringList files = paths();
    for (const QString &path : files)
        native.append(QDir::toNativeSeparators(path));
    QGuiApplication::clipboard()->setText(native.join(QLatin1Char('\n')));
}

void FilesMenu::openOutside(bool bFolder)
{
    const FileRecordPtr pRecord = m_pLibrary->record(m_pWindow->grid()->currentFileId());
    if (pRecord == nullptr)
        return;
    const QString path = bFolder ? QFileInfo(pRecord->filePath()).absolutePath() : pRecord->filePath();
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        m_pWindow->statusLine()->addProblem(tr("No program opens %1.").arg(QDir::toNativeSeparators(path)));
}

void FilesMenu::chooseExport(bool bPackage)
{
    auto *pDialog = new QFileDialog(m_pWindow, bPackage ? tr("Export as Library Pack") : tr("Export to Folder"));
    pDialog->setAttribute(Qt::WA_DeleteOnClose);
    TSSkinSetting::GetInstance()->SetWidgetStyleSheetWithQssName(pDialog, QStringLiteral("host"));
    pDialog->setAcceptMode(bPackage ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    pDialog->setFileMode(bPackage ? QFileDialog::AnyFile : QFileDialog::Directory);
    pDialog->setOption(QFileDialog::ShowDirsOnly, !bPackage);
    if (bPackage) {
        pDialog->setNameFilter(tr("Library packs") + QStringLiteral(" (*") + PackFormat::suffix() +
                               QStringLiteral(")"));
        pDialog->setDefaultSuffix(PackFormat::suffix().mid(1));
    }
    connect(pDialog, &QFileDialog::fileSelected, this,
            [this, bPackage](const QString &path) { exportTo(path, bPackage); });
    pDialog->open();
}

void FilesMenu::exportTo(const QString &path, bool bPackage)
{
    const QSharedPointer<IExportAction> pAction = m_pDataSource->exportAction();
    connect(pAction.data(), &IExportAction::signalExportProgress, this,
            [this](qint64 /*nActionId*/, double fPercent, int /*nTotal*/, int /*nAlready*/) {
                if (m_pWindow != nullptr)
                    m_pWindow->statusLine()->setMessage(tr("Exporting… %1%").arg(int(fPercent)));
            });
    connect(pAction.data(), &IExportAction::signalExportResult, this, &FilesMenu::takeResult);
    if (pAction->requestExport(path, selection(), bPackage) > 0)
        m_running.append(pAction);
}

void FilesMenu::recycle()
{
    if (paths().isEmpty())
        return;
    const QSharedPointer<IRecycleAction> pAction = m_pDataSource->recycleAction();
    connect(pAction.data(), &IRecycleAction::signalRecycleResult, this, &FilesMenu::takeResult);
    if (pAction->requestRecycle(selection()) > 0)
        m_running.append(pAction);
}

void FilesMenu::forget()
{
    m_pLibrary->forgetFiles(selection());
}

void FilesMenu::takeResult(qint64 /*nActionId*/, const QSharedPointer<const IResponseInfo> &pInfo)
{
    // Not while it speaks.
    QMetaObject::invokeMethod(
        this,
        [this, pDone = sender()] {
            const auto isDone = [pDone](const QSharedPointer<QObject> &pAction) {
                return pAction == pDone;
            };
            m_running.erase(std::remove_if(m_running.begin(), m_running.end(), isDone), m_running.end());
        },
        Qt::QueuedConnection);
    if (m_pWindow == nullptr)
        return;
    m_pWindow->statusLine()->setMessage(QString());
    if (pInfo->returnCode() != IResponseInfo::Success && !pInfo->errorMessage().isEmpty())
        m_pWindow->statusLine()->addProblem(pInfo->errorMessage());
}
