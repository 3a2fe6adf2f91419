#include "common/CircleNumToolTip.h"

#include "theme/TSSkinSetting.h"

#include <QLabel>

namespace {

constexpr int BadgeSide = 16;
constexpr int FontPixels = 12;
constexpr int TextRoom = 8;

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
    QFont font = m_pLabel->font();
    font.setPixelSize(FontPixels);
    const int nWidth = text.size() > 2 ? QFontMetrics(font).horizontalAdvance(text) + TextRoom : BadgeSide;
    setFixedSize(nWidth, BadgeSide);
    m_pLabel->setFixedSize(nWidth, BadgeSide);
}

void CircleNumToolTip::setColors(const QColor &background, const QColor &text)
{
    if (background == m_background && text == m_textColor)
        return;
    m_background = background;
    m_textColor = text;
    applyStyle();
}

void CircleNumToolTip::applyStyle()
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    m_pLabel->setStyleSheet(QStringLiteral("border:0px;border-radius:8px;background:%1;color:%2;font-size:12px;")
                                .arg((m_background.isValid() ? m_background : pSkin->GetBadgeColor()).name(),
                                     (m_textColor.isValid() ? m_textColor : pSkin->GetColorList().first()).name()));
}
