#include "media/AudioPreviewWidget.h"

#include "actions/FileActionController.h"
#include "common/WaitNotice.h"
#include "image/TSDBGraphicsScene.h"
#include "image/TSLargePreviewView.h"
#include "interfaces/services/ITSCacheManager.h"
#include "media/AudioCoverTask.h"
#include "media/AudioPlayerControlWidget.h"
#include "plugin/PluginInnerData.h"
#include "theme/TSSkinSetting.h"

#include <QContextMenuEvent>
#include <QGraphicsItem>
#include <QPixmap>
#include <QShortcut>
#include <QThreadPool>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int LoadDelay = 100;
constexpr double LargestMovingScale = 3.0;

} // namespace

AudioPreviewWidget::AudioPreviewWidget(QWidget *pParent)
    : PreviewRoom(pParent)
    , m_pLayout(new QVBoxLayout(this))
    , m_pView(new TSLargePreviewView(this))
    , m_pScene(new TSDBGraphicsScene(this))
    , m_pLoadTimer(new QTimer(this))
{
    m_pLayout->setMargin(0);
    m_pLayout->setSpacing(0);
    m_pLayout->addWidget(m_pView, 1);
    createView();
    m_pControl = new AudioPlayerControlWidget(true);
    m_pLayout->addWidget(m_pControl);
    m_pControl->setFailureHandler([this] { tellFailure(); });
    m_pPlayer.onGone(this, [this] { showPlayerThere(); });
    showPlayerThere();
    takeSharedVolume();
    m_pLoadTimer->setSingleShot(true);
    m_pLoadTimer->setInterval(LoadDelay);
    connect(m_pLoadTimer, &QTimer::timeout, this, &AudioPreviewWidget::loadCover);
    connect(m_pControl, &AudioPlayerControlWidget::signal_animationUpdate, this,
            &AudioPreviewWidget::slot_animationRotate);
    createFileActions();
    connectRecycleKeys([this] { slot_removeToRecycle(); }, PluginInnerData::instance()->isShortcutEnabled());
}

AudioPreviewWidget::~AudioPreviewWidget()
{
    m_pScene->removeEventFilter(this);
}

void AudioPreviewWidget::createView()
{
    m_pView->setScene(m_pScene);
    m_pScene->installEventFilter(this);
    if (!m_pPlayer)
        return;
    m_pPlayer->initAudioView();
    m_pItem = m_pPlayer->audioItem();
    if (m_pItem != nullptr)
        m_pScene->addItem(m_pItem);
}

void AudioPreviewWidget::createFileActions()
{
    FileActionHooks hooks;
    hooks.beforeMenu = [this] {
        m_pControl->setPlayStatus(ITsMediaPlayerPlugin::Paused);
    };
    hooks.beforeRemoval = [this] {
        m_pControl->stopAudio();
    };
    hooks.setCover = [this] {
        slot_setCover();
    };
    hooks.refresh = [this] {
        PluginInnerData::instance()->reloadCurrentTags();
        loadCover();
        Q_EMIT signal_previewPictureChanged();
    };
    m_pFileActions = new FileActionController(FileActionType::audio(), hooks, this);
}

void AudioPreviewWidget::playAudio(const QString &path)
{
    m_bFailureTold = false;
    showFile(path);
    // A square, until the first layout: the item finds the middle of it.
    const int nWidth = m_pView->width();
    m_pScene->setSceneRect(-(nWidth / 2), -(nWidth / 2), nWidth, nWidth);
    takeSharedVolume();
    ++m_nLoad;
    showCover(QImage(), QImage());
    // Without a path there is still the last file.
    if (path.isEmpty())
        return;
    m_pControl->setFilePath(path);
    m_pControl->start();
    m_pLoadTimer->start();
}

void AudioPreviewWidget::showPlayerThere()
{
    m_pView->setVisible(bool(m_pPlayer));
    m_pControl->setVisible(bool(m_pPlayer));
    setPlaceholderShown(!m_pPlayer);
}

void AudioPreviewWidget::takeSharedVolume()
{
    m_pControl->setVolumePercent(PluginInnerData::instance()->audioVolume());
}

void AudioPreviewWidget::stopPreview()
{
    m_pLoadTimer->stop();
    ++m_nLoad;
    m_pControl->stopAudio();
    PluginInnerData::instance()->setAudioVolume(m_pControl->volume());
}

void AudioPreviewWidget::loadCover()
{
    PluginInnerData *pData = PluginInnerData::instance();
    const FileInfoPtr pInfo = pData->currentFileInfo();
    if (!pInfo || !m_pPlayer)
        return;
    const QSharedPointer<ITSCacheManager> pCache = pData->cacheManager();
    QStringList paths = {pInfo->largePreviewPath(), pInfo->thumbnailPath()};
    paths.removeAll(QString());
    auto *pTask = new AudioCoverTask(paths, pCache ? pCache->largePicture(pInfo) : QImage(), m_pControl->coverPixels());
    const int nLoad = ++m_nLoad;
    connect(pTask, &AudioCoverTask::signal_audioCoverReady, this,
            [this, nLoad](const QImage &cover, const QImage &label) {
                if (nLoad == m_nLoad)
                    showCover(cover, label);
            });
    QThreadPool::globalInstance()->start(pTask);
}

void AudioPreviewWidget::showCover(const QImage &cover, const QImage &label)
{
    if (label.isNull())
        m_pControl->setCoverImage(
            TSSkinSetting::GetInstance()->GetResourceAbsolutePath(QStringLiteral("preview_audio_cover.svg")));
    else
        m_pControl->showCover(label);
    // The host may have taken its item away together with the player.
    if (m_pItem == nullptr || !m_pScene->items().contains(m_pItem))
        return;
    m_pItem->setData(ITsMediaPlayerPlugin::CoverPicture,
                     cover.isNull() ? QVariant() : QVariant(QPixmap::fromImage(cover)));
    m_pItem->update();
}

void AudioPreviewWidget::slot_animationRotate(int nValue)
{
    if (!m_pPlayer)
        return;
    m_pPlayer->animateAudioItem(nValue);
    if (m_pPlayer && m_pPlayer->audioItemScale() <= LargestMovingScale)
        layOutView();
}

void AudioPreviewWidget::resizeEvent(QResizeEvent *pEvent)
{
    PreviewRoom::resizeEvent(pEvent);
    layOutView();
}

void AudioPreviewWidget::layOutView()
{
    // The layout would come after this: the control's height is needed now.
    m_pLayout->activate();
    const int nWidth = width();
    const int nHeight = height() - (m_pControl->isHidden() ? 0 : m_pControl->height());
    m_pView->resize(nWidth, nHeight);
    m_pScene->setSceneRect(-(nWidth / 2), -(nHeight / 2), nWidth, nHeight);
    if (m_pPlayer)
        m_pPlayer->layoutAudioItem();
}

void AudioPreviewWidget::tellFailure()
{
    // A loop would say it again and again.
    if (!m_bFailureTold)
        WaitNotice::showWarning(this, tr("This audio file cannot be played"));
    m_bFailureTold = true;
}

bool AudioPreviewWidget::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    // The cover is to be looked at: the scene would let it be dragged away.
    if (pWatched == m_pScene && pEvent->type() == QEvent::GraphicsSceneMousePress) {
        pEvent->ignore();
        return true;
    }
    return PreviewRoom::eventFilter(pWatched, pEvent);
}

void AudioPreviewWidget::contextMenuEvent(QContextMenuEvent *pEvent)
{
    pEvent->accept();
    if (m_bContextMenuEnabled)
        m_pFileActions->showMenu(m_shortcut->key());
}

void AudioPreviewWidget::slot_defaultOpen()
{
    m_pFileActions->defaultOpen();
}

void AudioPreviewWidget::slot_checkFilePath()
{
    m_pFileActions->checkFilePath();
}

void AudioPreviewWidget::slot_exportToPackage()
{
    m_pFileActions->exportToPackage();
}

void AudioPreviewWidget::slot_exportToComputer()
{
    m_pFileActions->exportToComputer();
}

void AudioPreviewWidget::slot_copyFile()
{
    m_pFileActions->copyFile();
}

void AudioPreviewWidget::slot_copyFilePath()
{
    m_pFileActions->copyFilePath();
}

void AudioPreviewWidget::slot_copyTag()
{
    m_pFileActions->copyTag();
}

void AudioPreviewWidget::slot_pasteTag()
{
    m_pFileActions->pasteTag();
}

void AudioPreviewWidget::slot_setCover()
{
    m_pFileActions->chooseCover();
}

void AudioPreviewWidget::slot_deleteComplete()
{
    m_pFileActions->deleteComplete();
}

void AudioPreviewWidget::slot_removeToRecycle()
{
    m_pFileActions->removeToRecycle();
}
