#include "media/VideoPlayerWidget.h"

#include "media/MediaButton.h"
#include "media/VideoPlayerControlWidget.h"

#include <QSlider>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>
#include <limits>

namespace {

constexpr int StartDelay = 300;
constexpr int PollInterval = 400;
constexpr int SliderHeight = 8;
constexpr int MuteSide = 15;
constexpr int MutePosition = 30;
constexpr float FullVolume = 100.0F;
/** Wider than any screen: a frame of one line of pixels is not to become a surface of millions of them. */
constexpr qreal WidestSurface = 16384.0;

qint64 monotonicMsec()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

int toInt(qint64 nMsec)
{
    return int(qBound<qint64>(0, nMsec, std::numeric_limits<int>::max()));
}

} // namespace

VideoPlayerWidget::VideoPlayerWidget(const QString &name, const QString &filePath, int nStartPos, bool bEmbed,
                                     QWidget *pParent)
    : TSBaseViewWidget(pParent)
    , m_pLayout(new QVBoxLayout(this))
    , m_pSlider(new QSlider(Qt::Horizontal, this))
    , m_name(name)
    , m_strFilePath(filePath)
    , m_pMuteBtn(new MediaButton(QSize(MuteSide, MuteSide), this))
    , m_pStartTimer(new QTimer(this))
    , m_bEmbed(bEmbed)
    , m_nStartPos(nStartPos)
{
    m_pStartTimer->setSingleShot(true);
    m_pStartTimer->setInterval(StartDelay);
    connect(m_pStartTimer, &QTimer::timeout, this, &VideoPlayerWidget::slot_delayStartPlayer);
    if (m_pPlayer) {
        m_bTellsTimes =
            m_pPlayer.connectTimes(this, SLOT(slot_TotalTimeChanged(qint64)), SLOT(slot_currentTimeChanged(qint64)));
        m_pPlayer->attachOwner(this);
    }
    layOut();
}

VideoPlayerWidget::~VideoPlayerWidget()
{
    if (m_pPlayer)
        m_pPlayer->detachOwner(this);
    delete m_pTimer;
    m_pTimer = nullptr;
    m_bStarted = false;
    if (m_pPlayer)
        m_pPlayer->stop(this);
    m_sizeVideo = QSizeF(0.0, 0.0);
}

void VideoPlayerWidget::layOut()
{
    setStyleSheet(QStringLiteral("QWidget{background-color: rgb(22, 22, 22);}"));
    setAttribute(Qt::WA_StyledBackground);
    m_pMuteBtn->setWindowFlag(Qt::WindowStaysOnTopHint);
    m_pMuteBtn->move(MutePosition, MutePosition);
    m_pMuteBtn->setAccessibleName(tr("Mute or unmute"));
    showMuted();
    connect(m_pMuteBtn, &QPushButton::clicked, this, &VideoPlayerWidget::slot_muteBtnClicked);
    m_pSlider->setFixedHeight(SliderHeight);
    m_pSlider->setFocusPolicy(Qt::NoFocus);
    QWidget *pVideo = m_pPlayer ? m_pPlayer->videoWidget(this) : nullptr;
    if (pVideo != nullptr)
        m_pLayout->addWidget(pVideo);
    m_pLayout->addWidget(m_pSlider);
    m_pLayout->setMargin(0);
    m_pLayout->setSpacing(0);
    m_pMuteBtn->raise();
    if (m_bEmbed) {
        m_pSlider->hide();
        m_pMuteBtn->hide();
    } else {
        m_pSlider->setStyleSheet(QStringLiteral(
            "QSlider::groove:horizontal{height: 5px;left: 5px; right: 5px;background:rgba(56,59,76,255);}"
            "                           QSlider::handle:horizontal{border-radius:3px;width:6px; margin: -1px "
            "-1px;background:#4F84FA;}"
            "                           QSlider::sub-page:horizontal{background: qlineargradient(spread:pad, x1:0, "
            "y1:1, "
            "x2:0, y2:0, stop:0 rgba(79, 132, 250, 255),stop:1 rgba(79, 132, 250, 255));}"));
    }
}

void VideoPlayerWidget::setFilePath(const QString &path, int nStartPos)
{
    if (path.isEmpty())
        return;
    m_strFilePath = path;
    m_nStartPos = nStartPos;
}

void VideoPlayerWidget::setControlWidget(VideoPlayerControlWidget *pControl)
{
    using Bar = VideoPlayerControlWidget;
    if (pControl == nullptr)
        return;
    m_pControlWidget = pControl;
    connect(pControl, &Bar::signal_setPlayStatus, this, &VideoPlayerWidget::slot_setPlayerToTheStatus);
    connect(pControl, &Bar::signal_PlayPause, this, &VideoPlayerWidget::slot_pauseOrPlay);
    connect(pControl, &Bar::signal_seekPlay, this, &VideoPlayerWidget::slot_seekPlayPos);
    connect(pControl, &Bar::signal_stopPlay, this, &VideoPlayerWidget::slot_receivedStopSignal);
    connect(pControl, &Bar::signal_setVolume, this, &VideoPlayerWidget::slot_setVolume);
    connect(pControl, &Bar::signal_setReplay, this, &VideoPlayerWidget::slot_setPlayRecycle);
    connect(pControl, &Bar::signal_VideoSliderPressed, this, &VideoPlayerWidget::slot_VideoSliderPressed);
    connect(pControl, &Bar::signal_VideoSliderReleased, this, &VideoPlayerWidget::slot_VideoSliderReleased);
}

QString VideoPlayerWidget::currentFrame()
{
    return m_pPlayer ? m_pPlayer->currentFrame(this) : QString();
}

void VideoPlayerWidget::resetToIdle()
{
    if (!m_bEmbed)
        return;
    if (m_pPlayer)
        m_pPlayer->resetOwner(this);
    m_nStartPos = 0;
}

void VideoPlayerWidget::startPlay()
{
    m_bStarted = true;
    m_nStartTime = monotonicMsec();
    m_pStartTimer->start();
}

void VideoPlayerWidget::slot_delayStartPlayer()
{
    if (!m_pPlayer)
        return;
    switch (m_pPlayer.state()) {
    case ITsMediaPlayerPlugin::Paused:
        goOn();
        break;
    case ITsMediaPlayerPlugin::Stopped:
        if (!m_strFilePath.isEmpty())
            open();
        break;
    default:
        break;
    }
    if (!m_pPlayer)
        return;
    if (m_bEmbed) {
        // The flag alone is set here: the sound stays on.
        m_bMute = true;
        m_pPlayer->setVolume(float(m_nVolume) / FullVolume);
    } else {
        // Without a bar it always starts silent.
        m_bMute = false;
        slot_muteBtnClicked();
    }
}

void VideoPlayerWidget::open()
{
    m_bHeardOf = false;
    m_pPlayer->openAndPlay(this, m_strFilePath, m_nStartPos);
    watchForEnd();
    showPlayLook(true);
}

void VideoPlayerWidget::goOn()
{
    m_pPlayer->play();
    // A player that was sought back from its end comes to it once more.
    if (m_pTimer != nullptr && !m_pTimer->isActive())
        watchForEnd();
}

void VideoPlayerWidget::watchForEnd()
{
    if (m_pTimer == nullptr) {
        m_pTimer = new QTimer(this);
        connect(m_pTimer, &QTimer::timeout, this, &VideoPlayerWidget::slot_timerout);
    }
    m_pTimer->start(PollInterval);
}

void VideoPlayerWidget::stopPlay()
{
    m_bStarted = false;
    m_pStartTimer->stop();
    if (m_pTimer != nullptr && m_pTimer->isActive())
        m_pTimer->stop();
    if (m_pPlayer)
        m_pPlayer->stop(this);
    m_sizeVideo = QSizeF(0.0, 0.0);
}

bool VideoPlayerWidget::isPlaying()
{
    return m_pPlayer.state() == ITsMediaPlayerPlugin::Playing;
}

void VideoPlayerWidget::slot_timerout()
{
    if (m_pPlayer.state() == ITsMediaPlayerPlugin::Stopped) {
        if (m_pControlWidget)
            m_pControlWidget->slot_stopPlay();
        if (m_pTimer != nullptr)
            m_pTimer->stop();
        if (m_bTellsTimes && !m_bHeardOf && m_onFailure)
            m_onFailure();
    }
    if (m_bReplay && m_pPlayer.state() == ITsMediaPlayerPlugin::Stopped)
        startPlay();
}

void VideoPlayerWidget::slot_pauseOrPlay()
{
    if (!m_pPlayer)
        return;
    switch (m_pPlayer.state()) {
    case ITsMediaPlayerPlugin::Stopped:
        // A second click does not put off what the first one began.
        if (!m_pStartTimer->isActive())
            startPlay();
        showPlayLook(true);
        break;
    case ITsMediaPlayerPlugin::Paused:
        goOn();
        showPlayLook(true);
        break;
    case ITsMediaPlayerPlugin::Playing:
        m_pPlayer->pause();
        showPlayLook(false);
        break;
    default:
        break;
    }
}

void VideoPlayerWidget::slot_setPlayerToTheStatus(int nStatus)
{
    if (!m_pPlayer || nStatus < ITsMediaPlayerPlugin::Stopped || nStatus > ITsMediaPlayerPlugin::Playing)
        return;
    if (nStatus == ITsMediaPlayerPlugin::Stopped) {
        // What was stopped does not begin a moment later.
        m_pStartTimer->stop();
        m_pPlayer->stop(this);
    } else if (nStatus == ITsMediaPlayerPlugin::Paused) {
        m_pPlayer->pause();
    } else {
        goOn();
    }
    showPlayLook(nStatus == ITsMediaPlayerPlugin::Playing);
}

void VideoPlayerWidget::slot_receivedStopSignal()
{
    stopPlay();
}

void VideoPlayerWidget::slot_seekPlayPos(int ms)
{
    if (m_pPlayer)
        m_pPlayer->seek(ms);
}

void VideoPlayerWidget::slot_VideoSliderPressed()
{
    if (m_pPlayer)
        m_pPlayer->pause();
}

void VideoPlayerWidget::slot_VideoSliderReleased()
{
    // Going on after a drag is the bar's business.
}

void VideoPlayerWidget::slot_setVolume(float fValue)
{
    if (!m_pPlayer)
        return;
    m_pPlayer->setVolume(fValue);
    m_nVolume = qRound(fValue * FullVolume);
}

void VideoPlayerWidget::slot_setPlayRecycle(bool bReplay)
{
    m_bReplay = bReplay;
}

void VideoPlayerWidget::slot_muteBtnClicked()
{
    m_bMute = !m_bMute;
    if (m_pPlayer)
        m_pPlayer->setMute(m_bMute);
    showMuted();
}

void VideoPlayerWidget::showMuted()
{
    m_pMuteBtn->showIcon(m_bMute ? QStringLiteral("playnav_mute.svg") : QStringLiteral("playnav_voice.svg"));
}

void VideoPlayerWidget::showPlayLook(bool bPlaying)
{
    if (m_pControlWidget)
        m_pControlWidget->setPlayLook(bPlaying);
}

void VideoPlayerWidget::slot_TotalTimeChanged(qint64 nmSec)
{
    m_bHeardOf = true;
    m_pSlider->setRange(0, toInt(nmSec));
    if (!m_pControlWidget)
        return;
    m_pControlWidget->slot_setVideoTotalTime(toInt(nmSec));
    takeFrameSize();
    resizeToFrame();
}

void VideoPlayerWidget::takeFrameSize()
{
    if (m_pPlayer)
        m_sizeVideo = QSizeF(m_pPlayer->videoWidth(), m_pPlayer->videoHeight());
}

void VideoPlayerWidget::resizeToFrame()
{
    if (!m_pPlayer || m_sizeVideo.isEmpty())
        return;
    const qreal fAspect = m_sizeVideo.width() / m_sizeVideo.height();
    const int nHeight = m_bEmbed ? height() : height() - SliderHeight;
    resize(qRound(qMin(nHeight * fAspect, WidestSurface)), nHeight);
    if (m_bEmbed)
        Q_EMIT signal_sizeAdaptToVideoFrame();
}

void VideoPlayerWidget::slot_currentTimeChanged(qint64 nMsec)
{
    m_bHeardOf = true;
    m_pSlider->setValue(toInt(nMsec));
    if (m_pControlWidget)
        m_pControlWidget->slot_updatePlayPos(toInt(nMsec));
    if (!m_pPlayer)
        return;
    // The frame may be known only after the duration, without one at all, or change on the way.
    const QSizeF frame(m_pPlayer->videoWidth(), m_pPlayer->videoHeight());
    if (m_bEmbed && m_pControlWidget && m_bStarted && !frame.isEmpty() && frame != m_sizeVideo) {
        m_sizeVideo = frame;
        resizeToFrame();
    }
    m_pPlayer->positionShown(this);
}

void VideoPlayerWidget::setViewRect(const QRectF &rect)
{
    m_rectView = rect;
    resize(int(rect.width()), int(rect.height()));
}

void VideoPlayerWidget::viewMousePress(const QPointF &point)
{
    if (m_rectView.width() <= 0.0)
        return;
    const QPoint position(int(point.x() - m_rectView.x()), int(point.y() - m_rectView.y()));
    const auto isStrictlyInside = [&position](const QRect &rect) {
        return position.x() > rect.x() && position.x() < rect.x() + rect.width() && position.y() > rect.y() &&
               position.y() < rect.y() + rect.height();
    };
    if (isStrictlyInside(m_pMuteBtn->geometry()))
        slot_muteBtnClicked();
    if (isStrictlyInside(m_pSlider->geometry()) && m_pPlayer.state() != ITsMediaPlayerPlugin::Stopped)
        m_pPlayer->seek(int(position.x() * double(m_pSlider->maximum()) / m_rectView.width()));
}
