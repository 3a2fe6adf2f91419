#include "media/PPtPreviewWidget.h"

#include "actions/FileActionController.h"
#include "common/CResourceItem.h"
#include "common/CircleBtn.h"
#include "image/PictureZoom.h"
#include "image/PreviewResourceThread.h"
#include "image/TSDBGraphicsScene.h"
#include "image/TSLargePreviewView.h"
#include "media/PPtPreviewToolBar.h"
#include "plugin/PluginInnerData.h"
#include "theme/TSSkinSetting.h"

#include <QContextMenuEvent>
#include <QShortcut>

namespace {

constexpr int ToolBarTop = 58;
constexpr int SharpenDelay = 150;

/** Unlike pictures, pages are never shrunk to nothing. */
QVector<int> zoomSteps()
{
    return {5, 25, 50, 75, 100, 125, 150, 175, 200, 250, 300, 400, 500, 600, 700, 800};
}

} // namespace

PPtPreviewWidget::PPtPreviewWidget(QWidget *pParent)
    : BasePreviewWidget(pParent)
    , m_pToolBar(new PPtPreviewToolBar(this))
    , m_scene(new TSDBGraphicsScene(this))
    , m_view(new TSLargePreviewView(this))
    , m_pZoom(new PictureZoom(zoomSteps(), m_view, this))
{
    m_view->setScene(m_scene);
    m_view->move(0, 0);
    m_pToolBar->setPagesVisible(false);
    m_pToolBar->raise();
    createItem();
    m_sharpenTimer.setSingleShot(true);
    m_sharpenTimer.setInterval(SharpenDelay);
    connect(&m_sharpenTimer, &QTimer::timeout, this, &PPtPreviewWidget::sharpenPage);
    connectTools();
    createFileActions();
    connectRecycleKeys([this] { slot_removeToRecycle(); });
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this,
            &PPtPreviewWidget::updatePlaceholder);
}

PPtPreviewWidget::~PPtPreviewWidget()
{
    PluginInnerData::instance()->endLoadingsOf(this);
    clearPreview();
}

void PPtPreviewWidget::connectTools()
{
    struct Command {
        PPtPreviewToolBar::Button button;
        void (PPtPreviewWidget::*pSlot)();
    };
    const Command commands[] = {
        {PPtPreviewToolBar::FitToWindowButton, &PPtPreviewWidget::slot_fullPreviewBtnClicked},
        {PPtPreviewToolBar::FitToWidthButton, &PPtPreviewWidget::slot_adaptWidthBtnClicked},
        {PPtPreviewToolBar::ActualSizeButton, &PPtPreviewWidget::slot_NormalBtnClicked},
        {PPtPreviewToolBar::PreviousButton, &PPtPreviewWidget::slot_leftBtnClicked},
        {PPtPreviewToolBar::NextButton, &PPtPreviewWidget::slot_rightBtnClicked},
        {PPtPreviewToolBar::ZoomOutButton, &PPtPreviewWidget::slot_ZoomOutBtnClicked},
        {PPtPreviewToolBar::ZoomInButton, &PPtPreviewWidget::slot_ZoomInBtnClicked},
    };
    for (const Command &command : commands)
        connect(m_pToolBar->button(command.button), &QPushButton::clicked, this, command.pSlot);
    connect(m_view, &TSLargePreviewView::signal_wheelPos, this, &PPtPreviewWidget::slot_viewWeelChanged);
    connect(m_pZoom->animationTimer(), &QTimer::timeout, this, &PPtPreviewWidget::slot_PreviewTimerout);
    connect(m_pZoom, &PictureZoom::signal_scaleChanged, this, [this](int nPercent) {
        m_pToolBar->setPercent(nPercent);
        // When the zoom has come to rest, not at each of its ticks.
        m_sharpenTimer.start();
    });
    connect(m_pZoom, &PictureZoom::signal_animationRunning, this,
            [this](bool bRunning) { m_pToolBar->setButtonsEnabled(!bRunning); });
}

void PPtPreviewWidget::createFileActions()
{
    FileActionHooks hooks;
    hooks.setCover = [this] {
        slot_setCover();
    };
    hooks.refresh = [this] {
        PluginInnerData::instance()->reloadCurrentTags();
        if (m_coverChanged)
            m_coverChanged();
    };
    m_pFileActions = new FileActionController(FileActionType::presentation(), hooks, this);
}

QWidget *PPtPreviewWidget::toolBar() const
{
    return m_pToolBar;
}

void PPtPreviewWidget::showFrame()
{
    m_pZoom->fitToWindow(false);
    updatePageLabel();
}

void PPtPreviewWidget::updatePageLabel()
{
    if (!m_bPageShown)
        return;
    m_pToolBar->setPage(m_nPageIndex, m_nPageCount);
    m_pToolBar->setPagesVisible(m_nPageCount > 0);
}

void PPtPreviewWidget::slot_fullPreviewBtnClicked()
{
    m_pZoom->fitToWindow(true);
    updatePageLabel();
}

void PPtPreviewWidget::slot_adaptWidthBtnClicked()
{
    m_pZoom->fitToWidth();
}

void PPtPreviewWidget::slot_NormalBtnClicked()
{
    m_pZoom->actualSize();
}

void PPtPreviewWidget::slot_leftBtnClicked()
{
    if (m_nPageIndex > 0)
        turnPage(-1);
}

void PPtPreviewWidget::slot_rightBtnClicked()
{
    if (m_nPageIndex >= 0 && m_nPageIndex < m_nPageCount - 1)
        turnPage(1);
}

void PPtPreviewWidget::slot_ZoomOutBtnClicked()
{
    m_pZoom->zoomOut();
}

void PPtPreviewWidget::slot_ZoomInBtnClicked()
{
    m_pZoom->zoomIn();
}

void PPtPreviewWidget::slot_viewWeelChanged(bool bValue)
{
    m_pZoom->wheel(bValue);
}

void PPtPreviewWidget::slot_PreviewTimerout()
{
    m_pZoom->tick();
}

void PPtPreviewWidget::slot_defaultOpen()
{
    m_pFileActions->defaultOpen();
}

void PPtPreviewWidget::slot_checkFilePath()
{
    m_pFileActions->checkFilePath();
}

void PPtPreviewWidget::slot_exportToPackage()
{
    m_pFileActions->exportToPackage();
}

void PPtPreviewWidget::slot_exportToComputer()
{
    m_pFileActions->exportToComputer();
}

void PPtPreviewWidget::slot_copyFile()
{
    m_pFileActions->copyFile();
}

void PPtPreviewWidget::slot_copyFilePath()
{
    m_pFileActions->copyFilePath();
}

void PPtPreviewWidget::slot_copyTag()
{
    m_pFileActions->copyTag();
}

void PPtPreviewWidget::slot_pasteTag()
{
    m_pFileActions->pasteTag();
}

void PPtPreviewWidget::slot_setCover()
{
    m_pFileActions->setCover(coverPicture());
}

void PPtPreviewWidget::slot_deleteComplete()
{
    m_pFileActions->deleteComplete();
}

void PPtPreviewWidget::slot_removeToRecycle()
{
    m_pFileActions->removeToRecycle();
}

void PPtPreviewWidget::contextMenuEvent(QContextMenuEvent *pEvent)
{
    pEvent->accept();
    if (m_bContextMenuEnabled)
        m_pFileActions->showMenu(m_shortcut->key());
}

void PPtPreviewWidget::resizeEvent(QResizeEvent *pEvent)
{
    BasePreviewWidget::resizeEvent(pEvent);
    m_pToolBar->resize(width(), PPtPreviewToolBar::BarHeight);
    m_pToolBar->move(0, height() - ToolBarTop);
    // A page that is seen whole stays so: it may have come before the columns beside it.
    const bool bFitted = isFitted();
    layOutView();
    if (bFitted)
        m_pZoom->fitToWindow(false);
}

bool PPtPreviewWidget::isFitted() const
{
    if (!m_bPageShown || m_pPageItem == nullptr || m_pZoom->isAnimating() || !m_pPageItem->pos().isNull())
        return false;
    const double fFit = ZoomModel::fitToWindowTarget(m_view->size(), m_pPageItem->shownSize()).value_or(1.0);
    return qFuzzyCompare(m_pZoom->scale(), fFit);
}

void PPtPreviewWidget::layOutView()
{
    m_view->resize(size());
    m_scene->setSceneRect(-(width() / 2), -(height() / 2), width(), height());
    m_view->centerOn(0.0, 0.0);
}
