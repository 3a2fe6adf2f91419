#include "media/TSembedVideoWidget.h"

#include "media/VideoPlayerWidget.h"
#include "plugin/PluginInnerData.h"

namespace {

constexpr int ThumbnailSide = 200;
constexpr int FirstPosition = 30;

/** The frame's size, or the largest of its shape that the room seems to allow; see fitToContainer. */
QSize fittingSize(const QSize &frame, const QSize &room)
{
    if (frame.width() <= room.width() && frame.height() <= room.height())
        return frame;
    const double fAspect = double(frame.width()) / frame.height();
    const double fRoomAspect = double(room.width()) / room.height();
    if (fRoomAspect > fAspect) {
        const int nHeight = qMin(frame.height(), room.height());
        return {int(nHeight * fAspect), nHeight};
    }
    const int nWidth = qMin(frame.width(), room.width());
    return {nWidth, int(nWidth / fAspect)};
}

} // namespace

TSembedVideoWidget::TSembedVideoWidget(QWidget *pParent)
    : QWidget(pParent)
    , m_pPlayer(new VideoPlayerWidget(QString(), QString(), 0, true, this))
    , m_idleSize(ThumbnailSide, ThumbnailSide)
{
    connect(m_pPlayer, &VideoPlayerWidget::signal_sizeAdaptToVideoFrame, this,
            &TSembedVideoWidget::slot_setSizeByVideoFrameSize);
    m_pPlayer->move(FirstPosition, FirstPosition);
    m_pPlayer->resize(m_idleSize);
}

void TSembedVideoWidget::setFilePath(const QString &path, int nStartPos)
{
    m_pPlayer->setFilePath(path, nStartPos);
}

void TSembedVideoWidget::setControlWidget(VideoPlayerControlWidget *pControl)
{
    m_pPlayer->setControlWidget(pControl);
}

void TSembedVideoWidget::startWithSharedVolume()
{
    m_pPlayer->setVolumePercent(PluginInnerData::instance()->videoVolume());
    m_pPlayer->startPlay();
}

QString TSembedVideoWidget::captureCurrentFrame()
{
    m_pPlayer->slot_VideoSliderPressed();
    return m_pPlayer->currentFrame();
}

void TSembedVideoWidget::setHandlers(const std::function<void()> &onFailure, const std::function<void()> &onPlayerGone)
{
    m_pPlayer->setFailureHandler(onFailure);
    m_pPlayer->setPlayerGoneHandler(onPlayerGone);
}

bool TSembedVideoWidget::hasPlayer() const
{
    return m_pPlayer->hasPlayer();
}

void TSembedVideoWidget::stopPlay()
{
    m_pPlayer->stopPlay();
}

void TSembedVideoWidget::resetToIdle()
{
    m_pPlayer->resetToIdle();
    centre(m_idleSize);
}

void TSembedVideoWidget::shrinkToThumbnail()
{
    if (m_pPlayer->width() <= ThumbnailSide && m_pPlayer->height() <= ThumbnailSide)
        return;
    m_pPlayer->resize(ThumbnailSide, ThumbnailSide);
    const QSizeF frame = m_pPlayer->videoFrameSize();
    if (frame.isEmpty())
        return;
    const int nWidth = qRound(ThumbnailSide * frame.width() / frame.height());
    // The height is meant to be compared with the width that was computed.
    if (width() > ThumbnailSide && height() > nWidth)
        centre(QSize(nWidth, ThumbnailSide));
}

void TSembedVideoWidget::fitToContainer()
{
    const QSize frame(int(m_pPlayer->videoFrameSize().width()), int(m_pPlayer->videoFrameSize().height()));
    if (frame.isEmpty() || size().isEmpty())
        return;
    const QSize fitting = fittingSize(frame, size());
    if (fitting.isEmpty() || fitting.width() > width() || fitting.height() > height())
        return;
    centre(fitting);
}

void TSembedVideoWidget::refit()
{
    if (m_pPlayer->size().isEmpty() || size().isEmpty())
        return;
    if (m_pPlayer->videoFrameSize().isEmpty())
        centre(m_pPlayer->size());
    else
        fitToContainer();
}

void TSembedVideoWidget::slot_setSizeByVideoFrameSize()
{
    fitToContainer();
}

void TSembedVideoWidget::centre(const QSize &size)
{
    m_pPlayer->setGeometry(QRect(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size));
}
