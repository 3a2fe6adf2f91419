#include "preview/MiddleResourcePreviewWidget.h"

#include "common/CNotificationFloatingWidget.h"
#include "common/CircleBtn.h"
#include "image/ImgPreviewWidget.h"
#include "interfaces/services/IShortcutSetting.h"
#include "media/AudioPreviewWidget.h"
#include "media/PPtPreviewWidget.h"
#include "media/VideoPreviewWidget.h"
#include "plugin/PluginInnerData.h"
#include "preview/HubLoadingPage.h"
#include "preview/HubOpenings.h"
#include "preview/HubTitleBar.h"
#include "preview/TSHidenSideWidget.h"
#include "tracking/TsEventTrack.h"

#include <QShortcut>
#include <QTimer>

namespace {

constexpr int PageTurnPatience = 250;
constexpr int CloseRetryInterval = 100;

} // namespace

MiddleResourcePreviewWidget::MiddleResourcePreviewWidget(QWidget *pParent, int nMode)
    : QStackedWidget(pParent)
    , m_nMode(nMode)
{
    setFocusPolicy(Qt::StrongFocus);
    createPages();
    m_pTitleBar = new HubTitleBar(this);
    m_pTitleBar->setVisible(m_nMode == DoubleClickMode);
    createSideTriggers();
    connect(m_pTitleBar->backButton(), &QPushButton::clicked, this,
            &MiddleResourcePreviewWidget::slot_returnBtnClicked);
    connect(m_pTitleBar->columnButton(), &QPushButton::clicked, this,
            &MiddleResourcePreviewWidget::slot_fullViewBtnClicked);
    m_pFitTimer = new QTimer(this);
    m_pFitTimer->setSingleShot(true);
    connect(m_pFitTimer, &QTimer::timeout, m_pImgWidget, &ImgPreviewWidget::showLoaded);
    m_pOpenings = new HubOpenings(this);
    m_pPageTimer = new QTimer(this);
    m_pPageTimer->setSingleShot(true);
    m_pPageTimer->setInterval(PageTurnPatience);
    m_pCloseTimer = new QTimer(this);
    m_pCloseTimer->setInterval(CloseRetryInterval);
    connectPages();
    connectPresentations();
    createShortcuts(this);
    setCurrentIndex(LoadingPage);
}

MiddleResourcePreviewWidget::~MiddleResourcePreviewWidget() = default;

void MiddleResourcePreviewWidget::createPages()
{
    m_pImgWidget = new ImgPreviewWidget(this);
    m_pVideoWidget = new VideoPreviewWidget(this);
    m_pAudioWidget = new AudioPreviewWidget(this);
    m_pPptWidget = new PPtPreviewWidget(this);
    m_pLoadingPage = new HubLoadingPage(this);
    insertWidget(ImagePage, m_pImgWidget);
    insertWidget(VideoPage, HubTitleBar::makePageBelow(m_pVideoWidget));
    insertWidget(AudioPage, m_pAudioWidget);
    insertWidget(PresentationPage, m_pPptWidget);
    insertWidget(LoadingPage, m_pLoadingPage);
    insertWidget(ReservedPage, new QWidget(this));
}

void MiddleResourcePreviewWidget::connectPages()
{
    using Hub = MiddleResourcePreviewWidget;
    connect(m_pImgWidget, &ImgPreviewWidget::signal_load_img_end, this, &Hub::slot_imgLoadEnd);
    connect(m_pImgWidget, &ImgPreviewWidget::signal_quit, this, &Hub::leaveByQuit);
    // The picture, or the record behind it, is new: so may be what the strip shows of it.
    connect(m_pImgWidget, &ImgPreviewWidget::signal_img_preview_update, this, &Hub::siganl_updateLeftList);
    connect(m_pVideoWidget, &PreviewRoom::signal_previewPictureChanged, this, &Hub::siganl_updateLeftList);
    connect(m_pAudioWidget, &PreviewRoom::signal_previewPictureChanged, this, &Hub::siganl_updateLeftList);
    const BasePreviewWidget *const pages[] = {m_pImgWidget, m_pVideoWidget, m_pAudioWidget, m_pPptWidget};
    for (const BasePreviewWidget *pPage : pages) {
        connect(pPage, &BasePreviewWidget::signal_PreviewWidgetDoubleClicked, this,
                &Hub::slot_exitCurPreview_ByDBClicked);
        connect(pPage, &BasePreviewWidget::signal_deleteFile, this, &Hub::signal_deletedFile);
    }
}

void MiddleResourcePreviewWidget::createSideTriggers()
{
    using Hub = MiddleResourcePreviewWidget;
    m_pLeftTrigger = new TSLeftHidenSideWidget(this);
    m_pRightTrigger = new TSRightHidenSideWidget(this);
    connect(m_pLeftTrigger, &TSHidenSideWidget::signalLeftClicked, this, &Hub::signal_left_chenged);
    connect(m_pRightTrigger, &TSHidenSideWidget::signalRightClicked, this, &Hub::signal_right_changed);
    connect(this, &Hub::signal_start_left_side_timer, m_pLeftTrigger, &TSHidenSideWidget::slotStartTimer);
    connect(this, &Hub::signal_start_right_side_timer, m_pRightTrigger, &TSHidenSideWidget::slotStartTimer);
    for (TSHidenSideWidget *pTrigger : {m_pLeftTrigger, m_pRightTrigger}) {
        connect(pTrigger, &TSHidenSideWidget::signalTriggered, this, &Hub::slot_side_triggered);
        connect(this, &Hub::signal_stop_side_timer, pTrigger, &TSHidenSideWidget::slotStopTimer);
        // The space dialog has no columns.
        pTrigger->setVisible(m_nMode == DoubleClickMode);
    }
}

void MiddleResourcePreviewWidget::refreshTitleBar()
{
    const PluginInnerData *pData = PluginInnerData::instance();
    m_pTitleBar->refresh();
    m_pLeftTrigger->setArrowLeft(pData->isLeftColumnShown());
    m_pRightTrigger->setArrowLeft(!pData->isRightPanelHidden());
}

void MiddleResourcePreviewWidget::shareKeysWith(QWidget *pNeighbour)
{
    createShortcuts(pNeighbour);
}

void MiddleResourcePreviewWidget::createShortcuts(QWidget *pOwner)
{
    const auto add = [this, pOwner](const QKeySequence &key, const char *pSlot, bool bRepeats) {
        auto *pShortcut = new QShortcut(key, pOwner);
        pShortcut->setContext(Qt::WidgetWithChildrenShortcut);
        pShortcut->setAutoRepeat(bRepeats);
        connect(pShortcut, SIGNAL(activated()), this, pSlot);
    };
    // A key that is still held down from opening the preview must not close it again.
    add(Qt::Key_Escape, SLOT(slot_exitCurPreview_Key()), false);
    add(Qt::Key_Tab, SLOT(slot_tabKey()), false);
    add(Qt::Key_Left, SLOT(slot_leftKey()), true);
    add(Qt::Key_Right, SLOT(slot_rightKey()), true);
    if (pOwner == this) {
        add(Qt::Key_Up, SLOT(slot_UpKey()), true);
        add(Qt::Key_Down, SLOT(slot_DownKey()), true);
        add(Qt::Key_Space, SLOT(slot_spaceKey()), false);
    }

    const PluginInnerData *pData = PluginInnerData::instance();
    if (!pData->isShortcutEnabled())
        return;
    struct UserKey {
        int nShortcutId;
        const char *pSlot;
    };
    const UserKey userKeys[] = {
        {IShortcutSetting::FitToWindow, SLOT(slot_fullPreview_key())},
        {IShortcutSetting::ActualSize, SLOT(slot_orgPreview_key())},
        {IShortcutSetting::FitToWidth, SLOT(slot_adaptPreview_key())},
        {IShortcutSetting::ZoomOut, SLOT(slot_zoomOut_key())},
        {IShortcutSetting::ZoomIn, SLOT(slot_zoomIn_key())},
    };
    // A key with two meanings has none in Qt: the preview's own keys, and the first user key, keep theirs.
    QVector<QKeySequence> taken = {Qt::Key_Escape, Qt::Key_Up,  Qt::Key_Down, Qt::Key_Left,
                                   Qt::Key_Right,  Qt::Key_Tab, Qt::Key_Space};
    taken.append(
        QKeySequence::fromString(pData->shortcutText(IShortcutSetting::MoveToRecycleBin), QKeySequence::PortableText));
    for (const UserKey &userKey : userKeys) {
        const QKeySequence key =
            QKeySequence::fromString(pData->shortcutText(userKey.nShortcutId), QKeySequence::PortableText);
        if (key.isEmpty() || taken.contains(key))
            continue;
        taken.append(key);
        add(key, userKey.pSlot, true);
    }
}

void MiddleResourcePreviewWidget::slot_switchPreviewWidget(int nPreviewResourceType)
{
    setCurrentIndex(nPreviewResourceType);
    Q_EMIT signal_forbidden_right(nPreviewResourceType == LoadingPage);
    raiseOverlays();
}

void MiddleResourcePreviewWidget::slot_fullViewBtnClicked()
{
    TsEventTrack::GetInstance()->PreviewBtnClick(QStringLiteral("隐藏/显示左右栏"));
    Q_EMIT signal_SourcePreviewFullScreen();
}

void MiddleResourcePreviewWidget::slot_returnBtnClicked()
{
    TsEventTrack::GetInstance()->PreviewBtnClick(QStringLiteral("返回"));
    exitCurrentPreview();
}

void MiddleResourcePreviewWidget::slot_exitCurPreview_Key()
{
    exitCurrentPreview();
}

void MiddleResourcePreviewWidget::slot_exitCurPreview_ByDBClicked()
{
    exitCurrentPreview();
}

void MiddleResourcePreviewWidget::slot_UpKey()
{
    if (currentIndex() == LoadingPage)
        return;
    if (m_nMode == SpaceDialogMode)
        Q_EMIT signal_up_Key_Pressed();
    else
        goPrevious();
}

void MiddleResourcePreviewWidget::slot_DownKey()
{
    if (currentIndex() == LoadingPage)
        return;
    if (m_nMode == SpaceDialogMode)
        Q_EMIT signal_down_Key_Pressed();
    else
        goNext();
}

void MiddleResourcePreviewWidget::slot_leftKey()
{
    if (currentIndex() == LoadingPage)
        return;
    if (m_nMode == SpaceDialogMode)
        Q_EMIT signal_left_Key_Pressed();
    else
        goPrevious();
}

void MiddleResourcePreviewWidget::slot_rightKey()
{
    if (currentIndex() == LoadingPage)
        return;
    if (m_nMode == SpaceDialogMode)
        Q_EMIT signal_right_Key_Pressed();
    else
        goNext();
}

bool MiddleResourcePreviewWidget::turnPage(bool bForward)
{
    if (currentIndex() != PresentationPage || (bForward ? m_pPptWidget->isLastPage() : m_pPptWidget->isFirstPage()))
        return false;
    if (bForward)
        m_pPptWidget->slot_rightBtnClicked();
    else
        m_pPptWidget->slot_leftBtnClicked();
    return true;
}

void MiddleResourcePreviewWidget::goNext()
{
    if (!turnPage(true))
        Q_EMIT signal_nextSource();
}

void MiddleResourcePreviewWidget::goPrevious()
{
    if (!turnPage(false))
        Q_EMIT signal_previousSource();
}

void MiddleResourcePreviewWidget::slot_tabKey()
{
    Q_EMIT signal_SourcePreviewFullScreen();
}

void MiddleResourcePreviewWidget::slot_spaceKey()
{
    if (m_nMode == SpaceDialogMode)
        Q_EMIT signal_exitCurWidget();
}

void MiddleResourcePreviewWidget::slot_fullPreview_key()
{
    if (currentIndex() == ImagePage)
        m_pImgWidget->slot_fullPreviewBtnClicked();
    else if (currentIndex() == PresentationPage)
        m_pPptWidget->slot_fullPreviewBtnClicked();
}

void MiddleResourcePreviewWidget::slot_orgPreview_key()
{
    if (currentIndex() == ImagePage)
        m_pImgWidget->slot_NormalBtnClicked();
    else if (currentIndex() == PresentationPage)
        m_pPptWidget->slot_NormalBtnClicked();
}

void MiddleResourcePreviewWidget::slot_adaptPreview_key()
{
    if (currentIndex() == ImagePage)
        m_pImgWidget->slot_adaptWidthBtnClicked();
    else if (currentIndex() == PresentationPage)
        m_pPptWidget->slot_adaptWidthBtnClicked();
}

void MiddleResourcePreviewWidget::slot_zoomOut_key()
{
    if (currentIndex() == ImagePage)
        m_pImgWidget->slot_ZoomOutBtnClicked();
    else if (currentIndex() == PresentationPage)
        m_pPptWidget->slot_ZoomOutBtnClicked();
}

void MiddleResourcePreviewWidget::slot_zoomIn_key()
{
    if (currentIndex() == ImagePage)
        m_pImgWidget->slot_ZoomInBtnClicked();
    else if (currentIndex() == PresentationPage)
        m_pPptWidget->slot_ZoomInBtnClicked();
}

void MiddleResourcePreviewWidget::slot_side_triggered(QWidget *w, bool force)
{
    const PluginInnerData *pData = PluginInnerData::instance();
    // The two conditions are no mirror images of each other, and are not meant to be.
    if (w == m_pLeftTrigger && (force || !pData->isLeftColumnShown()))
        Q_EMIT signal_start_left_side_timer();
    else if (w == m_pRightTrigger && (force || !pData->isRightPanelHidden()))
        Q_EMIT signal_start_right_side_timer();
}

void MiddleResourcePreviewWidget::resizeEvent(QResizeEvent *pEvent)
{
    QStackedWidget::resizeEvent(pEvent);
    raiseOverlays();
}

void MiddleResourcePreviewWidget::raiseOverlays()
{
    if (m_pTitleBar == nullptr) // a resize while the pages are being made
        return;
    m_pTitleBar->relayout();
    m_pLeftTrigger->raise();
    m_pRightTrigger->raise();
    // A page that is turned to comes to the front, and would hide a notice that is still being read.
    const auto notices = findChildren<CNotificationFloatingWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (CNotificationFloatingWidget *pNotice : notices)
        pNotice->raise();
}
