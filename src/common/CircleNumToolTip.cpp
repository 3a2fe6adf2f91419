#include "common/CircleNumToolTip.h"

#include "theme/TSSkinSetting.h"

#include <QLabel>

namespace {

constexpr int BadgeSide = 16;

} // namespace

CircleNumToolTip::CircleNumToolTip(QWidget *pParent)
    : QWidget(pParent)
    , m_pLabel(new QLabel(this))
{
    setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_TranslucentBackground);
    setFixedSize(BadgeSide, BadgeSide);
    m_pLabel->setFixedSize(BadgeSide, BadgeSide);
    m_pLabel->move(0, 0);
    m_pLabel->setAlignment(Qt::AlignCenter);
    m_pLabel->setText(QStringLiteral("0"));
    applyStyle();
    raise();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &CircleNumToolTip::applyStyle);
}

void CircleNumToolTip::setText(const QString &text)
{
    m_pLabel->setText(text);
}

void CircleNumToolTip::applyStyle()
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    m_pLabel->setStyleSheet(QStringLiteral("border:0px;border-radius:8px;background:%1;color:%2;font-size:12px;")
                                .arg(pSkin->GetBadgeColor().name(), pSkin->GetColorList().first().name()));
}
