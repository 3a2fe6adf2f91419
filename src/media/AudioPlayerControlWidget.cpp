#include "media/AudioPlayerControlWidget.h"

#include "common/ElidedLabel.h"
#include "common/TimeText.h"
#include "media/AudioCoverTask.h"
#include "media/MediaButton.h"
#include "media/MediaStyle.h"
#include "media/SoundControl.h"
#include "media/SoundControlWin.h"
#include "media/TimeLabel.h"
#include "theme/TSSkinSetting.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QThreadPool>
#include <QTimer>

#include <limits>

namespace {

constexpr int StartDelay = 100;
constexpr int PollInterval = 300;
constexpr int AnimationInterval = 25;
constexpr float FullVolume = 100.0F;
constexpr int CoverSide = 34;
constexpr int FileNameWidth = 84;
constexpr int CurrentTimeWidth = 50;
constexpr int TotalTimeWidth = 34;

void makeFlush(QBoxLayout *pLayout, int nSpacing)
{
    pLayout->setSpacing(nSpacing);
    pLayout->setMargin(0);
}

} // namespace

AudioPlayerControlWidget::AudioPlayerControlWidget(bool bAnimation, QWidget *pParent)
    : QWidget(pParent)
    , m_pLayout(new QVBoxLayout(this))
    , m_pCover(new QLabel(this))
    , m_pFileName(new ElidedLabel(this))
    , m_pPlayBtn(new MediaButton(QSize(44, 44), this))
    , m_pVolumeBtn(new MediaButton(QSize(20, 16), this))
    , m_pCurrentTime(new TimeLabel(CurrentTimeWidth, this))
    , m_pTotalTime(new TimeLabel(TotalTimeWidth, this))
    , m_pLoopBtn(new MediaButton(QSize(18, 18), this))
    , m_pStartTimer(new QTimer(this))
{
    setObjectName(QStringLiteral("AudioPlayerControlWidget"));
    setAttribute(Qt::WA_StyledBackground);
    connectPlayer();
    createTimers(bAnimation);
    makeFlush(m_pLayout, 0);
    m_pLayout->addLayout(layOutButtons());
    m_pLayout->addSpacing(60);
    m_pLayout->addLayout(layOutInformation());
    m_pLayout->addSpacing(40);
    m_pSound = new SoundControl(m_pVolumeBtn, this);
    connectButtons();
    setPlayLook(true);
    m_pLoopBtn->showIcon(QStringLiteral("preview_loop_normal.svg"));
    applyStyle();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this,
            &AudioPlayerControlWidget::applyStyle);
}

AudioPlayerControlWidget::~AudioPlayerControlWidget()
{
    if (!m_pPlayer)
        return;
    m_pPlayer->stop(this);
    if (m_pPlayer)
        m_pPlayer->detachOwner(this);
}

void AudioPlayerControlWidget::connectPlayer()
{
    if (!m_pPlayer)
        return;
    m_pPlayer->attachAudioOwner(this, true);
    m_bTellsTimes = m_pPlayer.connectTimes(this, SLOT(slot_setAudioTotalTime(qint64)), SLOT(slot_updateWave(qint64)));
    m_pWave = m_pPlayer->waveWidget(this);
    if (m_pWave)
        connect(m_pWave, SIGNAL(signal_seekPlay(qint64)), this, SLOT(slot_seekPlay(qint64)));
}

void AudioPlayerControlWidget::createTimers(bool bAnimation)
{
    m_pStartTimer->setSingleShot(true);
    m_pStartTimer->setInterval(StartDelay);
    connect(m_pStartTimer, &QTimer::timeout, this, &AudioPlayerControlWidget::slot_delayStartPlayer);
    if (!bAnimation)
        return;
    m_pAnimationTimer = new QTimer(this);
    m_pAnimationTimer->setInterval(AnimationInterval);
    connect(m_pAnimationTimer, &QTimer::timeout, this, &AudioPlayerControlWidget::slot_animationTimerout);
}

QBoxLayout *AudioPlayerControlWidget::layOutButtons()
{
    auto *pRow = new QHBoxLayout;
    makeFlush(pRow, 0);
    pRow->addStretch();
    pRow->addWidget(m_pVolumeBtn);
    pRow->addSpacing(40);
    pRow->addWidget(m_pPlayBtn);
    pRow->addSpacing(40);
    pRow->addWidget(m_pLoopBtn);
    pRow->addStretch();
    return pRow;
}

QBoxLayout *AudioPlayerControlWidget::layOutInformation()
{
    m_pCover->setFixedSize(CoverSide, CoverSide);
    m_pCover->setScaledContents(true);
    m_pFileName->setFixedWidth(FileNameWidth);
    m_pFileName->setText(tr("File Name"));
    m_pFileName->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_pTotalTime->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_pCurrentTime->setAlignment(Qt::AlignCenter);

    auto *pTimes = new QHBoxLayout;
    makeFlush(pTimes, 0);
    pTimes->addWidget(m_pCurrentTime);
    pTimes->addWidget(m_pTotalTime);
    auto *pInformation = new QVBoxLayout;
    makeFlush(pInformation, 3);
    pInformation->addWidget(m_pFileName);
    pInformation->addLayout(pTimes);
    auto *pRow = new QHBoxLayout;
    makeFlush(pRow, 0);
    pRow->addSpacing(40);
    pRow->addWidget(m_pCover);
    pRow->addSpacing(5);
    pRow->addLayout(pInformation);
    pRow->addSpacing(5);
    if (m_pWave)
        pRow->addWidget(m_pWave, 1);
    else
        pRow->addStretch();
    return pRow;
}

void AudioPlayerControlWidget::connectButtons()
{
    m_pPlayBtn->setToolTip(tr("Play or pause"));
    m_pPlayBtn->setAccessibleName(m_pPlayBtn->toolTip());
    m_pLoopBtn->setToolTip(tr("Loop"));
    m_pLoopBtn->setAccessibleName(m_pLoopBtn->toolTip());
    connect(m_pPlayBtn, &QPushButton::clicked, this, &AudioPlayerControlWidget::slot_pauseOrPlay);
    connect(m_pVolumeBtn, &QPushButton::clicked, this, &AudioPlayerControlWidget::SlotVolumClick);
    connect(m_pLoopBtn, &QPushButton::clicked, this, &AudioPlayerControlWidget::slot_cycleBtnClicked);
    connect(m_pSound->window(), &SoundControlWin::SoundChange, this, &AudioPlayerControlWidget::SlotSoundChange);
}

void AudioPlayerControlWidget::applyStyle()
{
    const QString transparent = QStringLiteral("background-color:rgba(0,0,0,0);");
    setStyleSheet(MediaStyle::bar(objectName()));
    m_pCover->setStyleSheet(QStringLiteral("border-radius:2px"));
    m_pCurrentTime->setStyleSheet(transparent + MediaStyle::label(0));
    m_pFileName->setStyleSheet(transparent + MediaStyle::label(0));
    m_pTotalTime->setStyleSheet(transparent + MediaStyle::label(1));
}

void AudioPlayerControlWidget::setFilePath(const QString &path)
{
    if (path.isEmpty())
        return;
    m_path = path;
    m_wavePath.clear();
    m_pFileName->showText(QFileInfo(path).fileName());
    // What is told of the last file does not hold for this one.
    showDuration(0);
}

void AudioPlayerControlWidget::setVolumePercent(int nPercent)
{
    m_nVolume = nPercent;
    m_pSound->showVolume(nPercent);
}

void AudioPlayerControlWidget::setCoverImage(const QString &path)
{
    if (path == m_coverPath)
        return;
    m_coverPath = path;
    const int nTurn = ++m_nCoverTurn;
    auto *pTask = new AudioCoverTask({path}, QImage(), coverPixels());
    connect(pTask, &AudioCoverTask::signal_audioCoverReady, this,
            [this, nTurn](const QImage &cover, const QImage &label) {
                Q_UNUSED(cover)
                if (nTurn == m_nCoverTurn)
                    m_pCover->setPixmap(QPixmap::fromImage(label));
            });
    QThreadPool::globalInstance()->start(pTask);
}

void AudioPlayerControlWidget::showCover(const QImage &picture)
{
    m_coverPath.clear();
    ++m_nCoverTurn;
    m_pCover->setPixmap(QPixmap::fromImage(picture));
}

QSize AudioPlayerControlWidget::coverPixels() const
{
    return m_pCover->size() * devicePixelRatioF();
}

void AudioPlayerControlWidget::start()
{
    m_pStartTimer->start();
}

void AudioPlayerControlWidget::stopAudio()
{
    setPlayStatus(ITsMediaPlayerPlugin::Stopped);
}

void AudioPlayerControlWidget::setPlayStatus(int nStatus)
{
    const bool bPlaying = m_pPlayer.state() == ITsMediaPlayerPlugin::Playing;
    if (nStatus == ITsMediaPlayerPlugin::Stopped) {
        // What was stopped does not begin a moment later.
        m_pStartTimer->stop();
        if (m_pAnimationTimer != nullptr)
            m_pAnimationTimer->stop();
        if (m_pTimer != nullptr)
            m_pTimer->stop();
        if (m_pPlayer)
            m_pPlayer->stop(this);
        setPlayLook(false);
    } else if ((nStatus == ITsMediaPlayerPlugin::Paused && bPlaying) ||
               (nStatus == ITsMediaPlayerPlugin::Playing && !bPlaying)) {
        slot_pauseOrPlay();
    }
}

int AudioPlayerControlWidget::volume() const
{
    return m_pSound->volume();
}

void AudioPlayerControlWidget::setPlayLook(bool bPlaying)
{
    m_pPlayBtn->showIcon(bPlaying ? QStringLiteral("preview_audio_stop.svg")
                                  : QStringLiteral("preview_audio_play.svg"));
}

void AudioPlayerControlWidget::slot_setAudioTotalTime(qint64 nMSec)
{
    m_bHeardOf = true;
    if (m_pPlayer)
        m_pPlayer->setWaveDuration(this, nMSec);
    showDuration(nMSec);
}

void AudioPlayerControlWidget::showDuration(qint64 nMSec)
{
    m_nDuration = nMSec;
    m_totalText = TimeText::minutesAndSeconds(nMSec);
    m_pCurrentTime->showTime(QStringLiteral("0:0/"));
    m_pTotalTime->showTime(m_totalText);
}

void AudioPlayerControlWidget::slot_updateWave(qint64 nMsec)
{
    m_bHeardOf = true;
    if (m_pPlayer.state() != ITsMediaPlayerPlugin::Playing)
        return;
    m_pPlayer->setWavePosition(this, nMsec);
    m_pCurrentTime->showTime(TimeText::minutesAndSeconds(nMsec) + QStringLiteral("  /  "));
    m_pTotalTime->showTime(m_totalText);
    m_nPosition = nMsec;
}

void AudioPlayerControlWidget::slot_seekPlay(qint64 nMsec)
{
    if (m_pPlayer)
        m_pPlayer->seek(int(qBound<qint64>(0, nMsec, std::numeric_limits<int>::max())));
}

void AudioPlayerControlWidget::SlotSoundChange(int value)
{
    m_nVolume = value;
    if (m_pPlayer)
        m_pPlayer->setVolume(float(value) / FullVolume);
    m_pSound->showAudible(value != 0);
}

void AudioPlayerControlWidget::slot_delayStartPlayer()
{
    if (!m_pPlayer)
        return;
    const int nState = m_pPlayer.state();
    if (nState == ITsMediaPlayerPlugin::Stopped)
        open();
    else if (nState == ITsMediaPlayerPlugin::Paused)
        m_pPlayer->play();
    setPlayLook(true);
}

void AudioPlayerControlWidget::open()
{
    if (!m_pPlayer || m_path.isEmpty())
        return;
    m_bHeardOf = false;
    if (m_pWave && m_wavePath != m_path) {
        m_wavePath = m_path;
        m_pPlayer->setWaveSource(this, m_path, m_pWave->width());
    }
    if (m_pPlayer)
        m_pPlayer->openAudio(m_path);
    if (!m_pPlayer)
        return;
    m_pPlayer->setVolume(float(m_nVolume) / FullVolume);
    m_pSound->showAudible(m_nVolume != 0);
    if (m_pTimer == nullptr) {
        m_pTimer = new QTimer(this);
        connect(m_pTimer, &QTimer::timeout, this, &AudioPlayerControlWidget::slot_timerout);
    }
    if (!m_pTimer->isActive())
        m_pTimer->start(PollInterval);
    if (m_pAnimationTimer != nullptr)
        m_pAnimationTimer->start();
}

void AudioPlayerControlWidget::slot_pauseOrPlay()
{
    if (!m_pPlayer)
        return;
    const int nState = m_pPlayer.state();
    if (nState == ITsMediaPlayerPlugin::Stopped)
        open();
    else if (nState == ITsMediaPlayerPlugin::Paused)
        m_pPlayer->play();
    else
        m_pPlayer->pause();
    setPlayLook(nState != ITsMediaPlayerPlugin::Playing);
}

void AudioPlayerControlWidget::SlotVolumClick()
{
    m_pSound->toggleMute();
}

void AudioPlayerControlWidget::slot_cycleBtnClicked()
{
    m_bLoop = !m_bLoop;
    m_pLoopBtn->showIcon(m_bLoop ? QStringLiteral("preview_loop_select.svg")
                                 : QStringLiteral("preview_loop_normal.svg"));
}

void AudioPlayerControlWidget::slot_timerout()
{
    if (m_pPlayer.state() != ITsMediaPlayerPlugin::Stopped)
        return;
    setPlayLook(false);
    if (m_pPlayer)
        m_pPlayer->setWavePosition(this, -1);
    if (m_bTellsTimes && !m_bHeardOf && m_onFailure)
        m_onFailure();
    if (m_bLoop && !m_pStartTimer->isActive())
        m_pStartTimer->start();
}

void AudioPlayerControlWidget::slot_animationTimerout()
{
    Q_EMIT signal_animationUpdate(m_pPlayer.state());
}

bool AudioPlayerControlWidget::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    if (m_pSound->filterEvent(pWatched, pEvent))
        return true;
    return QWidget::eventFilter(pWatched, pEvent);
}
