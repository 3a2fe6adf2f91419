#include "image/CColorPntBtn.h"

#include "theme/TSSkinSetting.h"

#include <QPainter>

namespace {

constexpr int RingRoom = 4;
constexpr double RingWidth = 1.5;
constexpr int HoverGrowth = 1;

} // namespace

CColorPntBtn::CColorPntBtn(int nSize, const QColor &color, QWidget *pParent)
    : QPushButton(pParent)
    , m_nSize(nSize)
    , m_color(color)
{
    setCheckable(true);
    setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setFixedSize(2 * (nSize + RingRoom), 2 * (nSize + RingRoom));
    connect(this, &QPushButton::clicked, this, &CColorPntBtn::slot_Clicked);
}

void CColorPntBtn::slot_Clicked()
{
    setChecked(true);
    Q_EMIT signal_ColorBtnClicked(m_color);
}

void CColorPntBtn::paintEvent(QPaintEvent *pEvent)
{
    Q_UNUSED(pEvent)
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF centre = QRectF(rect()).center();
    const double fRadius = m_nSize + (underMouse() && !isChecked() ? HoverGrowth : 0) - (isDown() ? 1 : 0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_color);
    painter.drawEllipse(centre, fRadius, fRadius);
    if (!isChecked() && !hasFocus())
        return;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(hasFocus() ? pSkin->GetMainColor() : pSkin->GetTextColor(0), RingWidth,
                        isChecked() ? Qt::SolidLine : Qt::DotLine));
    painter.drawEllipse(centre, m_nSize + RingRoom - RingWidth, m_nSize + RingRoom - RingWidth);
}
