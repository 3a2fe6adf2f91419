#include "image/ImgPreviewWidget.h"

#include "common/CNotificationFloatingWidget.h"
#include "common/CPushButton.h"
#include "common/CResourceItem.h"
#include "common/CircleBtn.h"
#include "image/ImgPreviewToolBar.h"
#include "image/PictureNotes.h"
#include "image/PictureZoom.h"
#include "image/TSDBGraphicsScene.h"
#include "image/TSLargePreviewView.h"
#include "plugin/PluginInnerData.h"
#include "tracking/TsEventTrack.h"

#include <QResizeEvent>

namespace {

constexpr int SpareMemoryMsec = 1500;
constexpr int ToolBarTop = 58;
constexpr int TitleHeight = 36; ///< Over the picture stand the buttons of the surface.
constexpr int CornerTop = 20;
constexpr int FirstCornerRight = 220;
constexpr int SecondCornerRight = 110;

/** The leading 0 is meant: a picture can be shrunk to nothing, and grown again. */
QVector<int> zoomSteps()
{
    return {0, 5, 25, 50, 75, 100, 125, 150, 175, 200, 250, 300, 400, 500, 600, 700, 800};
}

void reportClick(const QString &label)
{
    TsEventTrack::GetInstance()->PreviewBtnClick(label);
}

} // namespace

ImgPreviewWidget::ImgPreviewWidget(QWidget *pParent)
    : BasePreviewWidget(pParent)
    , m_scene(new TSDBGraphicsScene(this))
    , m_view(new TSLargePreviewView(this))
    , m_pZoom(new PictureZoom(zoomSteps(), m_view, this))
    , m_pToolBar(new ImgPreviewToolBar(this))
    , m_pNotes(new PictureNotes(m_view, m_pZoom, m_pToolBar, this))
    , m_pCutPushBtn(new CPushButton(this))
    , m_pCancelPushBtn(new CPushButton(this))
{
    m_view->setScene(m_scene);
    m_view->move(0, 0);
    m_pCutPushBtn->setText(tr("Crop"));
    m_pCancelPushBtn->setText(tr("Cancel"));
    // Cropping is not offered: its two buttons have their places and stay away.
    m_pCutPushBtn->hide();
    m_pCancelPushBtn->hide();
    m_pToolBar->raise();
    m_trimTimer.setSingleShot(true);
    m_trimTimer.setInterval(SpareMemoryMsec);
    connect(&m_trimTimer, &QTimer::timeout, this, &ImgPreviewWidget::trimMemory);
    connectTools();
    createFileActions();

    connectRecycleKeys([this] { slot_removeToRecycle(); });
}

ImgPreviewWidget::~ImgPreviewWidget()
{
    PluginInnerData::instance()->endLoadingsOf(this);
    m_pNotes->leave(false);
    clearPreview();
}

void ImgPreviewWidget::connectTools()
{
    struct Command {
        ImgPreviewToolBar::Button button;
        void (ImgPreviewWidget::*pSlot)();
    };
    const Command commands[] = {
        {ImgPreviewToolBar::FitToWindowButton, &ImgPreviewWidget::slot_fullPreviewBtnClicked},
        {ImgPreviewToolBar::FitToWidthButton, &ImgPreviewWidget::slot_adaptWidthBtnClicked},
        {ImgPreviewToolBar::ActualSizeButton, &ImgPreviewWidget::slot_NormalBtnClicked},
        {ImgPreviewToolBar::RotateButton, &ImgPreviewWidget::slot_RotateBtnCllicked},
        {ImgPreviewToolBar::FlipButton, &ImgPreviewWidget::slot_HorizonalRotateBtnClicked},
        {ImgPreviewToolBar::CropButton, &ImgPreviewWidget::slot_cutBtnClicked},
        {ImgPreviewToolBar::CommentButton, &ImgPreviewWidget::slot_EditBtnClicked},
        {ImgPreviewToolBar::ZoomOutButton, &ImgPreviewWidget::slot_ZoomOutBtnClicked},
        {ImgPreviewToolBar::ZoomInButton, &ImgPreviewWidget::slot_ZoomInBtnClicked},
    };
    for (const Command &command : commands)
        connect(m_pToolBar->button(command.button), &QPushButton::clicked, this, command.pSlot);
    connect(m_pCutPushBtn, &QPushButton::clicked, this, &ImgPreviewWidget::slot_cutPushBtnClicked);
    connect(m_pCancelPushBtn, &QPushButton::clicked, this, &ImgPreviewWidget::slot_cancelPushBtnClicked);
    connect(m_pToolBar->cancelButton(), &QPushButton::clicked, this, &ImgPreviewWidget::slot_cancelPushBtnClicked);

    connect(m_view, &TSLargePreviewView::signal_wheelPos, this, &ImgPreviewWidget::slot_viewWeelChanged);
    connect(m_pZoom->animationTimer(), &QTimer::timeout, this, &ImgPreviewWidget::slot_PreviewTimerout);
    connect(m_pZoom, &PictureZoom::signal_scaleChanged, m_pToolBar, &ImgPreviewToolBar::setPercent);
    connect(m_pZoom, &PictureZoom::signal_animationRunning, this,
            [this](bool bRunning) { m_pToolBar->setButtonsEnabled(!bRunning); });

    const CNoteWidget *pOverlay = m_pNotes->overlay();
    connect(pOverlay, &CNoteWidget::signal_saveNoteInfo, this, &ImgPreviewWidget::slot_saveNoteInfo);
    connect(pOverlay, &CNoteWidget::signal_deleteNoteInfo, this, &ImgPreviewWidget::slot_deleteNoteInfo);
    connect(pOverlay, &CNoteWidget::signal_sendMousePos, this, &ImgPreviewWidget::slot_acceptMousePosFromNoteWidget);
}

void ImgPreviewWidget::quitPreview()
{
    m_pNotes->leave();
    Q_EMIT signal_quit();
}

void ImgPreviewWidget::clearPreview()
{
    m_pNotes->leave();
    m_pNotes->setPicture(nullptr, -1);
    m_pZoom->setItem(nullptr);
    cancelAnimationTask();
    abandonLoads();
    // What was said of this picture is not to be read as said of the next.
    const auto notices = findChildren<CNotificationFloatingWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (CNotificationFloatingWidget *pNotice : notices)
        pNotice->close();
    if (m_imageItem != nullptr) {
        m_scene->forgetPress();
        m_scene->removeItem(m_imageItem);
        delete m_imageItem;
        m_imageItem = nullptr;
        m_scene->update();
    }
    disposeOfPictures();
}

void ImgPreviewWidget::showLoaded()
{
    m_pZoom->fitToWindow(false);
    placeTools();
    m_pNotes->follow();
    m_pNotes->showRequested();
}

void ImgPreviewWidget::slot_fullPreviewBtnClicked()
{
    reportClick(QStringLiteral("完整预览"));
    m_pZoom->fitToWindow(true);
    m_pNotes->followAndRefresh();
}

void ImgPreviewWidget::slot_adaptWidthBtnClicked()
{
    reportClick(QStringLiteral("适应宽度"));
    m_pZoom->fitToWidth();
    m_pNotes->followAndRefresh();
}

void ImgPreviewWidget::slot_NormalBtnClicked()
{
    reportClick(QStringLiteral("原尺寸"));
    m_pZoom->actualSize();
    m_pNotes->followAndRefresh();
}

void ImgPreviewWidget::slot_RotateBtnCllicked()
{
    reportClick(QStringLiteral("旋转"));
    m_pZoom->rotate();
    m_pNotes->followAndRefresh();
}

void ImgPreviewWidget::slot_HorizonalRotateBtnClicked()
{
    reportClick(QStringLiteral("翻转"));
    m_pZoom->finish();
    if (m_imageItem != nullptr)
        m_imageItem->flipHorizontally();
    m_pNotes->followAndRefresh();
}

void ImgPreviewWidget::slot_cutBtnClicked()
{
    // The button is shown with the others; cropping itself is not offered.
}

void ImgPreviewWidget::slot_EditBtnClicked()
{
    reportClick(QStringLiteral("标注"));
    if (m_pNotes->mode() == PictureNotes::On)
        m_pNotes->leave();
    else
        m_pNotes->enter();
    placeTools();
}

void ImgPreviewWidget::slot_ZoomOutBtnClicked()
{
    m_pZoom->zoomOut();
    m_pNotes->followAndRefresh();
}

void ImgPreviewWidget::slot_ZoomInBtnClicked()
{
    m_pZoom->zoomIn();
    m_pNotes->followAndRefresh();
}

void ImgPreviewWidget::slot_cutPushBtnClicked()
{
    // See slot_cutBtnClicked.
}

void ImgPreviewWidget::slot_cancelPushBtnClicked()
{
    // See slot_cutBtnClicked.
}

void ImgPreviewWidget::slot_viewWeelChanged(bool bValue)
{
    m_pZoom->wheel(bValue);
    m_pNotes->followAndRefresh();
}

void ImgPreviewWidget::slot_setSavedImgFlat(bool bChecked)
{
    PluginInnerData::instance()->setSavedImage(!bChecked);
}

void ImgPreviewWidget::slot_PreviewTimerout()
{
    m_pZoom->tick();
    m_pNotes->followAndRefresh();
}

void ImgPreviewWidget::resizeEvent(QResizeEvent *pEvent)
{
    BasePreviewWidget::resizeEvent(pEvent);
    placeTools();
    m_view->resize(size());
    m_scene->setSceneRect(-width() / 2.0, -height() / 2.0, width(), height());
    m_view->centerOn(0.0, 0.0);
    if (m_imageItem != nullptr)
        m_imageItem->update();
    m_pNotes->followAndRefresh();
}

void ImgPreviewWidget::showEvent(QShowEvent *pEvent)
{
    BasePreviewWidget::showEvent(pEvent);
    if (m_imageItem != nullptr)
        m_imageItem->setAnimationPaused(false);
}

void ImgPreviewWidget::hideEvent(QHideEvent *pEvent)
{
    if (m_imageItem != nullptr)
        m_imageItem->setAnimationPaused(true);
    BasePreviewWidget::hideEvent(pEvent);
}

QWidget *ImgPreviewWidget::toolBar() const
{
    return m_pToolBar;
}

void ImgPreviewWidget::placeTools()
{
    m_pCutPushBtn->move(width() - FirstCornerRight, CornerTop);
    m_pCancelPushBtn->move(width() - SecondCornerRight, CornerTop);
    m_pToolBar->resize(width(), ImgPreviewToolBar::BarHeight);
    m_pToolBar->move(0, height() - ToolBarTop);
    m_pToolBar->raise();
    m_pNotes->placeOverlay(QRect(0, TitleHeight, width(), height() - ToolBarTop - TitleHeight));
}
