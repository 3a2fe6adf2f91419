#include "media/VideoPlayerControlWidget.h"

#include "common/TimeText.h"
#include "media/MediaButton.h"
#include "media/MediaStyle.h"
#include "media/SoundControl.h"
#include "media/SoundControlWin.h"
#include "media/TimeLabel.h"
#include "theme/TSSkinSetting.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QSlider>
#include <QStyle>

namespace {

constexpr float FullVolume = 100.0F;
constexpr int LabelHeight = 38;
constexpr int CurrentTimeWidth = 45;
constexpr int TotalTimeWidth = 40;
constexpr int ProgressHeight = 8;

} // namespace

VideoPlayerControlWidget::VideoPlayerControlWidget(QWidget *pParent)
    : QWidget(pParent)
    , m_pLayout(new QHBoxLayout(this))
    , m_pPlayBtn(new MediaButton(QSize(14, 14), this))
    , m_pVolumeBtn(new MediaButton(QSize(16, 13), this))
    , m_pCurrentTime(new TimeLabel(CurrentTimeWidth, this))
    , m_pTotalTime(new TimeLabel(TotalTimeWidth, this))
    , m_pProgress(new QSlider(Qt::Horizontal, this))
    , m_pLoopBtn(new MediaButton(QSize(14, 14), this))
{
    layOut();
    setObjectName(QStringLiteral("VideoPlayerControlWidget"));
    setAttribute(Qt::WA_StyledBackground);
    m_pSound = new SoundControl(m_pVolumeBtn, this);
    connectButtons();
    m_pProgress->installEventFilter(this);
    // What is shown plays by itself.
    setPlayLook(true);
    m_pLoopBtn->showIcon(QStringLiteral("preview_loop_normal.svg"));
    applyStyle();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this,
            &VideoPlayerControlWidget::applyStyle);
}

void VideoPlayerControlWidget::layOut()
{
    for (TimeLabel *pLabel : {m_pCurrentTime, m_pTotalTime}) {
        pLabel->setFixedHeight(LabelHeight);
        pLabel->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    }
    m_pProgress->setFixedHeight(ProgressHeight);
    m_pProgress->setRange(0, 0);
    m_pProgress->setFocusPolicy(Qt::NoFocus);
    m_pProgress->setAccessibleName(tr("Position"));

    m_pLayout->setContentsMargins(0, 0, 0, 0);
    m_pLayout->setSpacing(0);
    m_pLayout->addSpacing(18);
    m_pLayout->addWidget(m_pPlayBtn);
    m_pLayout->addSpacing(20);
    m_pLayout->addWidget(m_pVolumeBtn);
    m_pLayout->addSpacing(15);
    m_pLayout->addWidget(m_pCurrentTime);
    m_pLayout->addWidget(m_pTotalTime);
    m_pLayout->addSpacing(15);
    m_pLayout->addWidget(m_pProgress);
    m_pLayout->addSpacing(20);
    m_pLayout->addWidget(m_pLoopBtn);
    m_pLayout->addSpacing(20);
}

void VideoPlayerControlWidget::connectButtons()
{
    m_pPlayBtn->setToolTip(tr("Play or pause"));
    m_pPlayBtn->setAccessibleName(m_pPlayBtn->toolTip());
    m_pLoopBtn->setToolTip(tr("Loop"));
    m_pLoopBtn->setAccessibleName(m_pLoopBtn->toolTip());
    connect(m_pPlayBtn, &QPushButton::clicked, this, &VideoPlayerControlWidget::slot_playOrpauseBtnClicked);
    connect(m_pVolumeBtn, &QPushButton::clicked, this, &VideoPlayerControlWidget::SlotVolumClick);
    connect(m_pLoopBtn, &QPushButton::clicked, this, &VideoPlayerControlWidget::slot_recycleBtnClicked);
    connect(m_pSound->window(), &SoundControlWin::SoundChange, this, &VideoPlayerControlWidget::SlotSoundChange);
}

void VideoPlayerControlWidget::applyStyle()
{
    setStyleSheet(MediaStyle::bar(objectName()));
    m_pCurrentTime->setStyleSheet(MediaStyle::label(0));
    m_pTotalTime->setStyleSheet(MediaStyle::label(1));
    m_pProgress->setStyleSheet(MediaStyle::progressSlider());
}

void VideoPlayerControlWidget::setPlayLook(bool bPlaying)
{
    m_pPlayBtn->showIcon(bPlaying ? QStringLiteral("preview_video_stop.svg")
                                  : QStringLiteral("preview_video_play.svg"));
}

void VideoPlayerControlWidget::requestPlayStatus(int nStatus)
{
    Q_EMIT signal_setPlayStatus(nStatus);
}

void VideoPlayerControlWidget::requestStop()
{
    Q_EMIT signal_stopPlay();
}

int VideoPlayerControlWidget::volume() const
{
    return m_pSound->volume();
}

void VideoPlayerControlWidget::showVolume(int nPercent)
{
    m_pSound->showVolume(nPercent);
}

void VideoPlayerControlWidget::slot_setVideoTotalTime(int nMsec)
{
    m_nTotalMsec = qMax(nMsec, 0);
    m_pProgress->setRange(0, m_nTotalMsec);
    m_totalText = TimeText::minutesAndSeconds(nMsec);
    m_pCurrentTime->showTime(QStringLiteral("0:0 / "));
    m_pTotalTime->showTime(m_totalText);
}

void VideoPlayerControlWidget::slot_updatePlayPos(int nCurMsec)
{
    m_pProgress->setValue(nCurMsec);
    m_pCurrentTime->showTime(TimeText::minutesAndSeconds(nCurMsec) + QStringLiteral(" / "));
    m_pTotalTime->showTime(m_totalText);
}

void VideoPlayerControlWidget::slot_stopPlay()
{
    setPlayLook(false);
    m_pProgress->setValue(m_nTotalMsec);
}

void VideoPlayerControlWidget::SlotSoundChange(int value)
{
    Q_EMIT signal_setVolume(float(value) / FullVolume);
    m_pSound->showAudible(value != 0);
}

void VideoPlayerControlWidget::SlotShowSoundWin()
{
    m_pSound->showOver(QPoint(m_pVolumeBtn->x(), 0));
}

void VideoPlayerControlWidget::slot_recycleBtnClicked()
{
    m_bLoop = !m_bLoop;
    Q_EMIT signal_setReplay(m_bLoop);
    m_pLoopBtn->showIcon(m_bLoop ? QStringLiteral("preview_loop_select.svg")
                                 : QStringLiteral("preview_loop_normal.svg"));
}

void VideoPlayerControlWidget::slot_playOrpauseBtnClicked()
{
    Q_EMIT signal_PlayPause();
}

void VideoPlayerControlWidget::slot_sliderPressed()
{
    Q_EMIT signal_VideoSliderPressed();
}

void VideoPlayerControlWidget::slot_sliderReleased()
{
    Q_EMIT signal_VideoSliderReleased();
}

void VideoPlayerControlWidget::SlotVolumClick()
{
    m_pSound->toggleMute();
}

bool VideoPlayerControlWidget::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    if (pWatched == m_pProgress && pEvent->type() == QEvent::MouseButtonPress) {
        const auto *pMouse = static_cast<const QMouseEvent *>(pEvent);
        if (pMouse->button() == Qt::LeftButton) {
            const int nMsec = QStyle::sliderValueFromPosition(m_pProgress->minimum(), m_pProgress->maximum(),
                                                              pMouse->pos().x(), m_pProgress->width(), false);
            m_pProgress->setValue(nMsec);
            Q_EMIT signal_seekPlay(nMsec);
        }
    }
    if (m_pSound->filterEvent(pWatched, pEvent))
        return true;
    return QWidget::eventFilter(pWatched, pEvent);
}
