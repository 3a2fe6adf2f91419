#include "media/VideoPreviewWidget.h"

#include "actions/FileActionController.h"
#include "common/CircleBtn.h"
#include "common/WaitNotice.h"
#include "interfaces/services/ITsMediaPlayerPlugin.h"
#include "media/TSembedVideoWidget.h"
#include "media/VideoPlayerControlWidget.h"
#include "plugin/PluginInnerData.h"

#include <QContextMenuEvent>
#include <QShortcut>
#include <QVBoxLayout>

namespace {

constexpr int ButtonSide = 26;
constexpr int ButtonTop = 20;
constexpr int AdaptRight = 82;
constexpr int NormalRight = 46;
constexpr int BarHeight = 40;
constexpr int BottomSpacing = 20;

} // namespace

VideoPreviewWidget::VideoPreviewWidget(QWidget *pParent)
    : PreviewRoom(pParent)
    , m_pLayout(new QVBoxLayout(this))
    , m_pAdaptBtn(createButton(QStringLiteral("preview_adapt"), tr("Self-Adaption")))
    , m_pNormalBtn(createButton(QStringLiteral("preview_actual"), tr("Actual Size")))
    , m_pVideo(new TSembedVideoWidget(this))
    , m_pControl(new VideoPlayerControlWidget(this))
{
    m_pLayout->setSpacing(0);
    m_pLayout->setMargin(0);
    m_pControl->setFixedHeight(BarHeight);
    m_pLayout->addWidget(m_pVideo, 1);
    m_pLayout->addWidget(m_pControl);
    m_pLayout->addSpacing(BottomSpacing);
    m_pAdaptBtn->raise();
    m_pNormalBtn->raise();
    m_pVideo->setControlWidget(m_pControl);
    m_pVideo->setHandlers([this] { tellFailure(); }, [this] { showPlayerThere(); });
    showPlayerThere();
    takeSharedVolume();
    connect(m_pAdaptBtn, &QPushButton::clicked, this, &VideoPreviewWidget::slot_AdaptBtnClicked);
    connect(m_pNormalBtn, &QPushButton::clicked, this, &VideoPreviewWidget::slot_NormalBtnClicked);
    createFileActions();
    connectRecycleKeys([this] { slot_removeToRecycle(); }, PluginInnerData::instance()->isShortcutEnabled());
}

CircleBtn *VideoPreviewWidget::createButton(const QString &iconName, const QString &toolTip)
{
    auto *pButton = new CircleBtn(this, ButtonSide, ButtonSide);
    pButton->setIcons(iconName + QStringLiteral("_normal.svg"), iconName + QStringLiteral("_select.svg"));
    pButton->setToolTipText(toolTip);
    pButton->hide();
    return pButton;
}

void VideoPreviewWidget::createFileActions()
{
    FileActionHooks hooks;
    hooks.beforeMenu = [this] {
        m_pControl->requestPlayStatus(ITsMediaPlayerPlugin::Paused);
    };
    hooks.beforeRemoval = [this] {
        m_pVideo->stopPlay();
        m_pControl->slot_stopPlay();
    };
    hooks.setCover = [this] {
        slot_setCurFramToCover();
    };
    hooks.refresh = [this] {
        PluginInnerData::instance()->reloadCurrentTags();
        Q_EMIT signal_previewPictureChanged();
    };
    m_pFileActions = new FileActionController(FileActionType::video(), hooks, this);
}

void VideoPreviewWidget::setFilePath(const QString &path, int nStartPos)
{
    m_bFailureTold = false;
    m_pVideo->setFilePath(path, nStartPos);
    // What the bar tells of the last file does not hold for this one.
    m_pControl->slot_setVideoTotalTime(0);
    takeSharedVolume();
    // Without a path the room still has the last file.
    if (!path.isEmpty())
        m_pVideo->startWithSharedVolume();
    showFile(path);
}

bool VideoPreviewWidget::hasPlayer() const
{
    return m_pVideo->hasPlayer();
}

void VideoPreviewWidget::showPlayerThere()
{
    m_pVideo->setVisible(m_pVideo->hasPlayer());
    setPlaceholderShown(!m_pVideo->hasPlayer());
}

void VideoPreviewWidget::takeSharedVolume()
{
    m_pControl->showVolume(PluginInnerData::instance()->videoVolume());
}

void VideoPreviewWidget::stopPreview()
{
    m_pControl->requestStop();
    PluginInnerData::instance()->setVideoVolume(m_pControl->volume());
}

void VideoPreviewWidget::resetPreview()
{
    m_pVideo->resetToIdle();
    clearPreview();
}

void VideoPreviewWidget::setToolsVisible(bool bVisible)
{
    m_pAdaptBtn->setVisible(bVisible);
    m_pNormalBtn->setVisible(bVisible);
    m_pControl->setVisible(bVisible);
}

void VideoPreviewWidget::tellFailure()
{
    // A loop would say it again and again.
    if (!m_bFailureTold)
        WaitNotice::showWarning(this, tr("This video cannot be played"));
    m_bFailureTold = true;
}

void VideoPreviewWidget::resizeEvent(QResizeEvent *pEvent)
{
    PreviewRoom::resizeEvent(pEvent);
    m_pAdaptBtn->move(width() - AdaptRight, ButtonTop);
    m_pNormalBtn->move(width() - NormalRight, ButtonTop);
    // The layout comes after this: the room's new size is needed now.
    m_pLayout->activate();
    m_pVideo->refit();
}

void VideoPreviewWidget::contextMenuEvent(QContextMenuEvent *pEvent)
{
    pEvent->accept();
    if (m_bContextMenuEnabled)
        m_pFileActions->showMenu(m_shortcut->key());
}

void VideoPreviewWidget::slot_AdaptBtnClicked()
{
    m_pVideo->shrinkToThumbnail();
}

void VideoPreviewWidget::slot_NormalBtnClicked()
{
    m_pVideo->fitToContainer();
}

void VideoPreviewWidget::slot_defaultOpen()
{
    m_pFileActions->defaultOpen();
}

void VideoPreviewWidget::slot_checkFilePath()
{
    m_pFileActions->checkFilePath();
}

void VideoPreviewWidget::slot_exportToPackage()
{
    m_pFileActions->exportToPackage();
}

void VideoPreviewWidget::slot_exportToComputer()
{
    m_pFileActions->exportToComputer();
}

void VideoPreviewWidget::slot_copyFile()
{
    m_pFileActions->copyFile();
}

void VideoPreviewWidget::slot_copyFilePath()
{
    m_pFileActions->copyFilePath();
}

void VideoPreviewWidget::slot_copyTag()
{
    m_pFileActions->copyTag();
}

void VideoPreviewWidget::slot_pasteTag()
{
    m_pFileActions->pasteTag();
}

void VideoPreviewWidget::slot_setCurFramToCover()
{
    m_pFileActions->setCover(m_pVideo->captureCurrentFrame());
}

void VideoPreviewWidget::slot_deleteComplete()
{
    m_pFileActions->deleteComplete();
}

void VideoPreviewWidget::slot_removeToRecycle()
{
    m_pFileActions->removeToRecycle();
}
