#include "app/MainWindow.h"

#include "app/ElidedLabel.h"
#include "app/EmptyState.h"
#include "app/FileGridModel.h"
#include "app/FileGridView.h"
#include "app/FolderTree.h"
#include "app/HostIcons.h"
#include "app/ResizeHandles.h"
#include "app/StatusLine.h"
#include "app/ThumbnailSource.h"
#include "app/TitleBar.h"
#include "library/Library.h"
#include "theme/TSSkinSetting.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QPainter>
#include <QShortcut>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolButton>
#include <QToolTip>
#include <QVBoxLayout>
#include <QVariant>

namespace {

constexpr int k_nToolRowHeight = 48;
constexpr int k_nFolderColumnWidth = 208;
/** Narrower windows belong to the files alone. */
constexpr int k_nLeastWidthForFolders = 760;

} // namespace

MainWindow::MainWindow(Library *pLibrary, FileGridModel *pModel)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::WindowMinMaxButtonsHint)
    , m_pLibrary(pLibrary)
    , m_pContent(new QWidget(this))
    , m_pModel(pModel)
    , m_pThumbnails(new ThumbnailSource(this))
    , m_pTitleBar(new TitleBar(this, m_pContent))
    , m_pPlace(new ElidedLabel(Qt::ElideMiddle, m_pContent))
    , m_pOrder(new QComboBox(m_pContent))
    , m_pFolderButton(
          HostIcons::makeToolButton(QStringLiteral("hostFolderButton"), tr("Open folder (Ctrl+O)"), m_pContent))
    , m_pRefreshButton(
          HostIcons::makeToolButton(QStringLiteral("hostRefreshButton"), tr("Look for changes (F5)"), m_pContent))
    , m_pFolders(new FolderTree(m_pContent))
    , m_pFolderColumn(new QWidget(m_pContent))
    , m_pPages(new QStackedWidget(m_pContent))
    , m_pGrid(new FileGridView(pModel, m_pThumbnails, m_pPages))
    , m_pEmpty(new EmptyState(m_pPages))
    , m_pStatus(new StatusLine(m_pContent))
{
    setObjectName(QStringLiteral("hostMainWindow"));
    setWindowTitle(QApplication::applicationDisplayName());
    setMinimumSize(640, 420);
    resize(1180, 760);
    buildLayout();
    connectLibrary();
    connectFolders();
    addShortcuts();
    new ResizeHandles(this);
    connect(m_pTitleBar, &TitleBar::signalThemeToggled, this, &MainWindow::signalThemeToggled);
    connect(m_pTitleBar, &TitleBar::signalMaximizeToggled, this, &MainWindow::toggleMaximized);
    connect(m_pEmpty, &EmptyState::signalChooseFolder, this, &MainWindow::chooseFolder);
    connect(m_pGrid, &FileGridView::signalQuickPreview, this,
            [this] { Q_EMIT signalQuickPreview(m_pGrid->currentFileId()); });
    connect(m_pGrid, &FileGridView::signalOpen, this, [this] { Q_EMIT signalOpenFile(m_pGrid->currentFileId()); });
    connect(m_pGrid, &FileGridView::signalSelectionChanged, this, &MainWindow::showCounts);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &MainWindow::applyTheme);
    applyTheme();
    m_pFolderColumn->hide();
    showPage();
    m_pGrid->setFocus();
}

MainWindow::~MainWindow() = default;

QWidget *MainWindow::buildToolRow()
{
    auto *pRow = new QWidget(m_pContent);
    pRow->setObjectName(QStringLiteral("hostToolRow"));
    pRow->setFixedHeight(k_nToolRowHeight);
    m_pPlace->setObjectName(QStringLiteral("hostPlace"));
    m_pPlace->setProperty("role", QStringLiteral("secondary"));
    m_pOrder->setObjectName(QStringLiteral("hostOrder"));
    m_pOrder->setAccessibleName(tr("Order of the files"));
    m_pOrder->addItem(tr("By name"), int(FileGridModel::Order::Name));
    m_pOrder->addItem(tr("Newest first"), int(FileGridModel::Order::NewestFirst));
    m_pOrder->setFocusPolicy(Qt::TabFocus);
    connect(m_pOrder, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] {
        m_pModel->setOrder(FileGridModel::Order(m_pOrder->currentData().toInt()));
        m_pGrid->setFocus();
    });
    connect(m_pFolderButton, &QToolButton::clicked, this, &MainWindow::chooseFolder);
    connect(m_pRefreshButton, &QToolButton::clicked, this, &MainWindow::rescan);
    auto *pLayout = new QHBoxLayout(pRow);
    pLayout->setContentsMargins(16, 0, 16, 0);
    pLayout->setSpacing(8);
    pLayout->addWidget(m_pPlace, 1);
    pLayout->addWidget(m_pOrder);
    pLayout->addWidget(m_pFolderButton);
    pLayout->addWidget(m_pRefreshButton);
    return pRow;
}

QWidget *MainWindow::buildMiddle()
{
    m_pFolderColumn->setProperty("area", QStringLiteral("left"));
    m_pFolderColumn->setAttribute(Qt::WA_StyledBackground);
    auto *pFoldersLayout = new QVBoxLayout(m_pFolderColumn);
    pFoldersLayout->setContentsMargins(8, 8, 8, 8);
    pFoldersLayout->addWidget(m_pFolders);
    auto *pFiles = new QWidget(m_pContent);
    auto *pFilesLayout = new QVBoxLayout(pFiles);
    pFilesLayout->setContentsMargins(0, 0, 0, 0);
    pFilesLayout->setSpacing(0);
    pFilesLayout->addWidget(buildToolRow());
    // The row of cards begins where the text of the other rows does.
    auto *pPagesLayout = new QHBoxLayout;
    pPagesLayout->setContentsMargins(12, 0, 4, 0);
    pPagesLayout->addWidget(m_pPages);
    pFilesLayout->addLayout(pPagesLayout, 1);
    auto *pSplitter = new QSplitter(m_pContent);
    pSplitter->setHandleWidth(1);
    pSplitter->setChildrenCollapsible(false);
    pSplitter->addWidget(m_pFolderColumn);
    pSplitter->addWidget(pFiles);
    pSplitter->setStretchFactor(1, 1);
    pSplitter->setSizes({k_nFolderColumnWidth, width() - k_nFolderColumnWidth});
    m_pFolderColumn->setMinimumWidth(k_nFolderColumnWidth / 2);
    return pSplitter;
}

void MainWindow::buildLayout()
{
    m_pPages->addWidget(m_pGrid);
    m_pPages->addWidget(m_pEmpty);
    auto *pFrame = new QVBoxLayout(this);
    pFrame->setContentsMargins(1, 1, 1, 1);
    pFrame->addWidget(m_pContent);
    auto *pLayout = new QVBoxLayout(m_pContent);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(m_pTitleBar);
    pLayout->addWidget(buildMiddle(), 1);
    pLayout->addWidget(m_pStatus);
}

void MainWindow::connectLibrary()
{
    connect(m_pLibrary, &Library::signalCleared, m_pModel, &FileGridModel::clear);
    connect(m_pLibrary, &Library::signalCleared, this, &MainWindow::startOver);
    connect(m_pLibrary, &Library::signalRecords, m_pModel, &FileGridModel::addRecords);
    connect(m_pLibrary, &Library::signalRemoved, m_pModel, &FileGridModel::removeFiles);
    connect(m_pLibrary, &Library::signalScanProgress, this,
            [this](int nFiles) { m_pStatus->setScanning(true, nFiles); });
    connect(m_pLibrary, &Library::signalScanEnded, this, &MainWindow::reportScan);
    connect(m_pLibrary, &Library::signalProblem, m_pStatus, &StatusLine::addProblem);
    connect(m_pModel, &QAbstractItemModel::modelReset, this, &MainWindow::showPage);
}

void MainWindow::startOver()
{
    QStringList places;
    for (const QString &folder : m_pLibrary->folders())
        places.append(QDir::toNativeSeparators(folder));
    m_pPlace->setFullText(places.join(QStringLiteral("  ·  ")), places.join(QLatin1Char('\n')));
    m_pFolders->setRoots(m_pLibrary->folders());
    m_pFolderColumn->setVisible(width() >= k_nLeastWidthForFolders && !m_pLibrary->folders().isEmpty());
    m_pStatus->clearScanProblems();
    m_pStatus->setScanning(true, 0);
    showPage();
}

void MainWindow::rescan()
{
    m_pStatus->clearScanProblems();
    m_pStatus->setScanning(true, 0);
    m_pLibrary->rescan();
    if (m_pModel->rowCount() == 0)
        showPage();
}

void MainWindow::connectFolders()
{
    connect(m_pLibrary, &Library::signalRecords, m_pFolders, &FolderTree::addFoldersOf);
    connect(m_pFolders, &FolderTree::signalFolderWanted, this, [this](const QString &folder) {
        m_pGrid->startOver();
        m_pModel->setFolder(folder);
    });
    connect(m_pFolders, &FolderTree::signalLeft, m_pGrid, QOverload<>::of(&QWidget::setFocus));
}

void MainWindow::addShortcuts()
{
    const auto add = [this](const QKeySequence &key, auto handler) {
        auto *pShortcut = new QShortcut(key, this);
        connect(pShortcut, &QShortcut::activated, this, handler);
    };
    add(QKeySequence(Qt::Key_F5), [this] { rescan(); });
    add(QKeySequence(QKeySequence::Open), [this] { chooseFolder(); });
    add(QKeySequence(QKeySequence::Quit), [this] { close(); });
}

void MainWindow::setThumbnailCache(const QSharedPointer<ITSCacheManager> &pCache)
{
    m_pThumbnails->setCache(pCache);
    m_pGrid->viewport()->update();
}

bool MainWindow::areThumbnailsComing() const
{
    return m_pThumbnails->isBusy();
}

void MainWindow::applyTheme()
{
    const TSSkinSetting *pTheme = TSSkinSetting::GetInstance();
    QPalette colors;
    colors.setColor(QPalette::Window, pTheme->GetWindowBackgroundColor());
    colors.setColor(QPalette::Base, pTheme->GetWindowBackgroundColor());
    colors.setColor(QPalette::Button, pTheme->GetInputAndButtonColor());
    colors.setColor(QPalette::ToolTipBase, pTheme->GetPopupWinBackgroundColor());
    colors.setColor(QPalette::ToolTipText, pTheme->GetTextColor(0));
    colors.setColor(QPalette::Highlight, pTheme->GetMainColor());
    colors.setColor(QPalette::HighlightedText, pTheme->GetTextColor(3));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        colors.setColor(role, pTheme->GetTextColor(0));
    // For the whole program: dialogs of the desktop's kind have no style sheet of ours.
    QApplication::setPalette(colors);
    QToolTip::setPalette(colors);
    pTheme->SetWidgetStyleSheetWithQssName(m_pContent, QStringLiteral("host"));
    HostIcons::setButtonIcon(m_pFolderButton, QStringLiteral("host_folder.svg"), QStringLiteral("…"));
    HostIcons::setButtonIcon(m_pRefreshButton, QStringLiteral("host_refresh.svg"), QStringLiteral("\u27F3"));
    update();
}

void MainWindow::chooseFolder()
{
    // Not QFileDialog::getExistingDirectory: that would run an event loop of its own.
    auto *pDialog = new QFileDialog(this, tr("Open folder"), m_pLibrary->folders().value(0));
    pDialog->setAttribute(Qt::WA_DeleteOnClose);
    TSSkinSetting::GetInstance()->SetWidgetStyleSheetWithQssName(pDialog, QStringLiteral("host"));
    pDialog->setFileMode(QFileDialog::Directory);
    pDialog->setOption(QFileDialog::ShowDirsOnly);
    connect(pDialog, &QFileDialog::fileSelected, this, &MainWindow::signalFolderChosen);
    pDialog->open();
}

void MainWindow::showCounts()
{
    int nSelected = 0;
    const QItemSelection selection = m_pGrid->selectionModel()->selection();
    for (const QItemSelectionRange &range : selection)
        nSelected += range.height();
    m_pStatus->setCounts(m_pModel->rowCount(), nSelected);
}

void MainWindow::showPage()
{
    showCounts();
    if (m_pModel->rowCount() > 0) {
        // A hidden grid cannot hold the focus; without it Space would press a button.
        if (m_pPages->currentWidget() != m_pGrid) {
            m_pPages->setCurrentWidget(m_pGrid);
            m_pGrid->setFocus();
        }
        return;
    }
    if (m_pLibrary->folders().isEmpty())
        m_pEmpty->showText(tr("No folder yet"), tr("Open a folder to see the files in it and in its sub-folders."),
                           true);
    else if (m_pLibrary->isScanning())
        m_pEmpty->showText(tr("Looking for files…"), QString(), false);
    else
        m_pEmpty->showText(tr("No files here"),
                           tr("This folder and its sub-folders are empty. Open another one, or put "
                              "files into it and press F5."),
                           true);
    m_pPages->setCurrentWidget(m_pEmpty);
    m_pEmpty->setFocus();
}

void MainWindow::reportScan(const ScanReport &report)
{
    m_pStatus->setScanning(false, report.nFiles);
    if (report.nUnrepresentable > 0)
        m_pStatus->addScanProblem(
            tr("Files whose names cannot be told apart were left out: %1. Rename them to see them here.")
                .arg(report.nUnrepresentable));
    if (report.nUnreadableFolders > 0)
        m_pStatus->addScanProblem(tr("Folders that cannot be read: %1.").arg(report.nUnreadableFolders));
    showPage();
}

QByteArray MainWindow::geometryState() const
{
    return saveGeometry();
}

void MainWindow::restoreGeometryState(const QByteArray &state)
{
    if (!state.isEmpty())
        restoreGeometry(state);
}

void MainWindow::toggleMaximized()
{
    if (isMaximized())
        showNormal();
    else
        showMaximized();
}

void MainWindow::resizeEvent(QResizeEvent *pEvent)
{
    QWidget::resizeEvent(pEvent);
    m_pFolderColumn->setVisible(width() >= k_nLeastWidthForFolders && !m_pLibrary->folders().isEmpty());
}

void MainWindow::closeEvent(QCloseEvent *pEvent)
{
    Q_EMIT signalAboutToClose();
    QWidget::closeEvent(pEvent);
}

void MainWindow::paintEvent(QPaintEvent * /*pEvent*/)
{
    const TSSkinSetting *pTheme = TSSkinSetting::GetInstance();
    QPainter painter(this);
    painter.fillRect(rect(), pTheme->GetWindowBackgroundColor());
    painter.setPen(pTheme->GetPopupWinBorderColor());
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

MainWindowHandle::MainWindowHandle(MainWindow *pWindow)
    : m_pWindow(pWindow)
{
}

void MainWindowHandle::moveBy(const QPoint &offset)
{
    if (m_pWindow != nullptr && !m_pWindow->isMaximized())
        m_pWindow->move(m_pWindow->pos() + offset);
}

bool MainWindowHandle::isMaximized() const
{
    return m_pWindow != nullptr && m_pWindow->isMaximized();
}

void MainWindowHandle::minimize()
{
    if (m_pWindow != nullptr)
        m_pWindow->showMinimized();
}

void MainWindowHandle::toggleMaximized()
{
    if (m_pWindow != nullptr)
        m_pWindow->toggleMaximized();
}

void MainWindowHandle::close()
{
    if (m_pWindow != nullptr)
        m_pWindow->close();
}
