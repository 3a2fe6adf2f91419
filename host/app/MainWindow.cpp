#include "app/MainWindow.h"

#include "app/EmptyState.h"
#include "app/FileGridModel.h"
#include "app/FileGridView.h"
#include "app/FolderTree.h"
#include "app/FullPreviewPlace.h"
#include "app/LeftColumn.h"
#include "app/LibraryBanner.h"
#include "app/PaneSplitter.h"
#include "app/ResizeHandles.h"
#include "app/StatusLine.h"
#include "app/ThumbnailSource.h"
#include "app/TitleBar.h"
#include "app/ToolRow.h"
#include "app/panel/InfoPanel.h"
#include "library/Library.h"
#include "theme/TSSkinSetting.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QPainter>
#include <QScreen>
#include <QSettings>
#include <QShortcut>
#include <QStackedWidget>
#include <QToolTip>
#include <QVBoxLayout>

namespace {

constexpr int k_nLeftWidth = 208;
constexpr int k_nPanelWidth = 280;
/** Narrower windows belong to the files alone. */
constexpr int k_nLeastWidthForFolders = 760;

QString geometryKey()
{
    return QStringLiteral("window/geometry");
}

QString columnsKey()
{
    return QStringLiteral("window/columns");
}

QString panelKey()
{
    return QStringLiteral("window/informationShown");
}

QString orderKey()
{
    return QStringLiteral("window/order");
}

} // namespace

MainWindow::MainWindow(Library *pLibrary, FileGridModel *pModel)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::WindowMinMaxButtonsHint)
    , m_pLibrary(pLibrary)
    , m_pModel(pModel)
    , m_pThumbnails(new ThumbnailSource(this))
    , m_pTitleBar(new TitleBar(this, this))
    , m_pBanner(new LibraryBanner(pLibrary, this))
    , m_pSplitter(new PaneSplitter(this))
    , m_pLeft(new LeftColumn(pLibrary, pModel, this))
    , m_pCenter(new QStackedWidget(this))
    , m_pTools(new ToolRow(pModel, this))
    , m_pPages(new QStackedWidget(this))
    , m_pGrid(new FileGridView(pModel, m_pThumbnails, m_pPages))
    , m_pEmpty(new EmptyState(m_pPages))
    , m_pPanel(new InfoPanel(pLibrary, m_pThumbnails, this))
    , m_pStatus(new StatusLine(this))
    , m_pFullPlace(nullptr)
{
    setObjectName(QStringLiteral("hostMainWindow"));
    setWindowTitle(QApplication::applicationDisplayName());
    setMinimumSize(640, 420);
    resize(1280, 800);
    buildLayout();
    m_pFullPlace = new FullPreviewPlace(m_pCenter, m_pPanel, {m_pTitleBar, m_pLeft}, this);
    connectLibrary();
    connectParts();
    addShortcuts();
    new ResizeHandles(this);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &MainWindow::applyTheme);
    applyTheme();
    m_pLeft->hide();
    m_pTools->setPanelShown(m_pFullPlace->isPanelWanted());
    showPage();
    if (!m_pLibrary->folders().isEmpty()) // they are listed already
        startOver();
    m_pGrid->setFocus();
}

MainWindow::~MainWindow() = default;

QWidget *MainWindow::buildFilesPage()
{
    auto *pFiles = new QWidget(this);
    auto *pFilesLayout = new QVBoxLayout(pFiles);
    pFilesLayout->setContentsMargins(0, 0, 0, 0);
    pFilesLayout->setSpacing(0);
    pFilesLayout->addWidget(m_pTools);
    // The row of cards begins where the text of the other rows does.
    auto *pPagesLayout = new QHBoxLayout;
    pPagesLayout->setContentsMargins(12, 0, 4, 0);
    pPagesLayout->addWidget(m_pPages);
    pFilesLayout->addLayout(pPagesLayout, 1);
    m_pPages->addWidget(m_pGrid);
    m_pPages->addWidget(m_pEmpty);
    return pFiles;
}

void MainWindow::buildLayout()
{
    m_pCenter->addWidget(buildFilesPage());
    for (QWidget *pPane :
         {static_cast<QWidget *>(m_pLeft), static_cast<QWidget *>(m_pCenter), static_cast<QWidget *>(m_pPanel)})
        m_pSplitter->addWidget(pPane);
    m_pSplitter->setStretchFactor(1, 1);
    m_pSplitter->setSizes({k_nLeftWidth, width() - k_nLeftWidth - k_nPanelWidth, k_nPanelWidth});
    m_pLeft->setMinimumWidth(k_nLeftWidth / 2);
    m_pPanel->setMinimumWidth(k_nPanelWidth * 3 / 4);
    m_pPanel->setMaximumWidth(2 * k_nPanelWidth);
    auto *pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(1, 1, 1, 1);
    pLayout->setSpacing(0);
    pLayout->addWidget(m_pTitleBar);
    pLayout->addWidget(m_pBanner);
    pLayout->addWidget(m_pSplitter, 1);
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
    connect(m_pLibrary, &Library::signalProblemSolved, m_pStatus, &StatusLine::removeProblem);
    connect(m_pModel, &QAbstractItemModel::modelReset, this, &MainWindow::showPage);
}

void MainWindow::connectParts()
{
    connect(m_pTitleBar, &TitleBar::signalThemeToggled, this, &MainWindow::signalThemeToggled);
    connect(m_pTitleBar, &TitleBar::signalMaximizeToggled, this, &MainWindow::toggleMaximized);
    connect(m_pEmpty, &EmptyState::signalChooseFolder, this, &MainWindow::chooseFolder);
    connect(m_pGrid, &FileGridView::signalQuickPreview, this,
            [this] { Q_EMIT signalQuickPreview(m_pGrid->currentFileId()); });
    connect(m_pGrid, &FileGridView::signalOpen, this, [this] { Q_EMIT signalOpenFile(m_pGrid->currentFileId()); });
    connect(m_pGrid, &FileGridView::signalSelectionChanged, this, &MainWindow::showSelection);
    connect(m_pLeft, &LeftColumn::signalChosen, m_pGrid, &FileGridView::startOver);
    connect(m_pLeft, &LeftColumn::signalLeft, this, &MainWindow::focusFiles);
    connect(m_pTools, &ToolRow::signalFilterChanged, m_pGrid, &FileGridView::startOver);
    connect(m_pTools, &ToolRow::signalLeft, this, &MainWindow::focusFiles);
    connect(m_pTools, &ToolRow::signalOpenFolder, this, &MainWindow::chooseFolder);
    connect(m_pTools, &ToolRow::signalRefresh, this, &MainWindow::rescan);
    connect(m_pTools, &ToolRow::signalPanelToggled, this, &MainWindow::togglePanel);
    connect(m_pPanel, &InfoPanel::signalLeft, this, &MainWindow::focusFiles);
}

void MainWindow::startOver()
{
    QStringList places;
    for (const QString &folder : m_pLibrary->folders())
        places.append(QDir::toNativeSeparators(folder));
    m_pTools->setPlace(places.join(QStringLiteral("  ·  ")), places.join(QLatin1Char('\n')));
    m_pLeft->folders()->setRoots(m_pLibrary->folders());
    showColumns();
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

void MainWindow::addShortcuts()
{
    // Keys of the preview are its own while it is open.
    const auto add = [this](const QKeySequence &key, bool bWithPreview, auto handler) {
        auto *pShortcut = new QShortcut(key, this);
        connect(pShortcut, &QShortcut::activated, this, [this, bWithPreview, handler] {
            if (bWithPreview || !m_pFullPlace->isOpen())
                handler();
        });
    };
    add(QKeySequence(Qt::Key_F5), true, [this] { rescan(); });
    add(QKeySequence(QKeySequence::Open), false, [this] { chooseFolder(); });
    add(QKeySequence(QKeySequence::Find), false, [this] { m_pTools->search(); });
    add(QKeySequence(Qt::ALT + Qt::Key_Return), false, [this] { togglePanel(); });
    add(QKeySequence(Qt::Key_F2), false, [this] { renameFile(); });
    add(QKeySequence(QKeySequence::Quit), true, [this] { close(); });
}

void MainWindow::renameFile()
{
    m_pFullPlace->setPanelWanted(true);
    m_pTools->setPanelShown(true);
    m_pPanel->editName();
}

void MainWindow::focusFiles()
{
    if (m_pFullPlace->isOpen())
        m_pCenter->currentWidget()->setFocus();
    else
        m_pPages->currentWidget()->setFocus();
}

void MainWindow::togglePanel()
{
    m_pFullPlace->setPanelWanted(!m_pFullPlace->isPanelWanted());
    m_pTools->setPanelShown(m_pFullPlace->isPanelWanted());
}

void MainWindow::setThumbnailCache(const QSharedPointer<ITSCacheManager> &pCache)
{
    m_pThumbnails->setCache(pCache);
    m_pGrid->viewport()->update();
}

FolderTree *MainWindow::folderTree() const
{
    return m_pLeft->folders();
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
    colors.setColor(QPalette::PlaceholderText, pTheme->GetTextColor(1));
    colors.setColor(QPalette::HighlightedText, pTheme->GetTextColor(3));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        colors.setColor(role, pTheme->GetTextColor(0));
    // For the whole program: dialogs of the desktop's kind have no style sheet of ours.
    QApplication::setPalette(colors);
    QToolTip::setPalette(colors);
    // Each part has the style sheet for itself; one for the window would reach the previews opened over and in it.
    for (QWidget *pPart :
         {static_cast<QWidget *>(m_pTitleBar), m_pCenter->widget(0), static_cast<QWidget *>(m_pStatus)})
        pTheme->SetWidgetStyleSheetWithQssName(pPart, QStringLiteral("host"));
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

void MainWindow::showSelection()
{
    showCounts();
    // While a preview is open the panel tells of the file that is looked at, and its labels go to this one alone.
    m_pPanel->setSelection(m_pFullPlace->isOpen() ? QVector<qint64>() : m_pGrid->selectedFileIds());
    if (!m_pFullPlace->isOpen())
        m_pPanel->showFile(m_pGrid->currentFileId());
}

void MainWindow::showColumns()
{
    if (!m_pFullPlace->isOpen())
        m_pLeft->setVisible(width() >= k_nLeastWidthForFolders && !m_pLibrary->folders().isEmpty());
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
    // Whoever types into the search line keeps the keys.
    QWidget *pFocus = QApplication::focusWidget();
    const bool bTyping = pFocus != nullptr && m_pTools->isAncestorOf(pFocus);
    if (m_pModel->rowCount() > 0) {
        // A hidden grid cannot hold the focus; without it Space would press a button.
        if (m_pPages->currentWidget() != m_pGrid) {
            m_pPages->setCurrentWidget(m_pGrid);
            if (!bTyping)
                m_pGrid->setFocus();
        }
        return;
    }
    showEmptyText();
    m_pPages->setCurrentWidget(m_pEmpty);
    if (!bTyping)
        m_pEmpty->setFocus();
}

void MainWindow::showEmptyText()
{
    if (m_pLibrary->folders().isEmpty())
        m_pEmpty->showText(tr("No folder yet"), tr("Open a folder to see the files in it and in its sub-folders."),
                           true);
    else if (m_pModel->totalCount() > 0 && m_pModel->filter().isNarrowed())
        m_pEmpty->showText(tr("Nothing matches"),
                           tr("None of %1 files fits search, kind and label.").arg(m_pModel->totalCount()), false);
    else if (m_pLibrary->isScanning())
        m_pEmpty->showText(tr("Looking for files…"), QString(), false);
    else
        m_pEmpty->showText(tr("No files here"),
                           tr("This folder and its sub-folders are empty. Open another one, or put files into it."),
                           true);
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

void MainWindow::saveState(QSettings *pIni) const
{
    pIni->setValue(geometryKey(), saveGeometry());
    pIni->setValue(columnsKey(), m_pSplitter->saveState());
    pIni->setValue(panelKey(), m_pFullPlace->isPanelWanted());
    pIni->setValue(orderKey(), m_pTools->order());
}

void MainWindow::restoreState(QSettings *pIni)
{
    const QByteArray geometry = pIni->value(geometryKey()).toByteArray();
    if (geometry.isEmpty() || !restoreGeometry(geometry))
        standInTheMiddle();
    m_pSplitter->restoreState(pIni->value(columnsKey()).toByteArray());
    m_pFullPlace->setPanelWanted(pIni->value(panelKey(), true).toBool());
    m_pTools->setPanelShown(m_pFullPlace->isPanelWanted());
    m_pTools->setOrder(pIni->value(orderKey()).toString());
}

void MainWindow::standInTheMiddle()
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QRect place(QPoint(), size().boundedTo(screen.size()));
    place.moveCenter(screen.center());
    setGeometry(place);
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
    if (m_pFullPlace != nullptr)
        showColumns();
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
