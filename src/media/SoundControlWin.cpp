#include "media/SoundControlWin.h"

#include "media/MediaStyle.h"
#include "theme/TSSkinSetting.h"

#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QSlider>

namespace {

constexpr int WindowWidth = 28;
constexpr int WindowHeight = 80;
constexpr int SliderWidth = 10;
constexpr int SliderHeight = 70;
constexpr int FullVolume = 100;
constexpr int FirstVolume = 50;

} // namespace

SoundControlWin::SoundControlWin(QWidget *pParent)
    : QWidget(pParent, Qt::Tool | Qt::FramelessWindowHint)
    , m_pGround(new QWidget(this))
    , m_pSlider(new QSlider(Qt::Vertical, m_pGround))
{
    setAttribute(Qt::WA_TranslucentBackground);
    // It comes and goes under the mouse: the preview's keys are to stay where they are.
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFixedSize(WindowWidth, WindowHeight);
    m_pGround->setGeometry(0, 0, WindowWidth, WindowHeight);
    auto *pLayout = new QHBoxLayout(m_pGround);
    pLayout->setSpacing(0);
    pLayout->setMargin(0);
    m_pSlider->setFixedSize(SliderWidth, SliderHeight);
    m_pSlider->setFocusPolicy(Qt::NoFocus);
    m_pSlider->setAccessibleName(tr("Volume"));
    pLayout->addWidget(m_pSlider, 0, Qt::AlignCenter);
    m_pSlider->setRange(0, FullVolume);
    m_pSlider->setValue(FirstVolume);
    connect(m_pSlider, &QSlider::valueChanged, this, &SoundControlWin::SoundChange);
    applyStyle();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &SoundControlWin::applyStyle);
}

int SoundControlWin::soundValue() const
{
    return m_pSlider->value();
}

void SoundControlWin::setSoundValue(int nValue)
{
    m_pSlider->setValue(nValue);
}

void SoundControlWin::showSoundValue(int nValue)
{
    const QSignalBlocker blocker(this);
    m_pSlider->setValue(nValue);
}

void SoundControlWin::applyStyle()
{
    m_pGround->setStyleSheet(MediaStyle::soundWindow());
    m_pSlider->setStyleSheet(MediaStyle::soundSlider());
}
