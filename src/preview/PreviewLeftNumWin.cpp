#include "preview/PreviewLeftNumWin.h"

#include "theme/TSSkinSetting.h"

#include <QPainter>

namespace {

constexpr int FixedHeight = 82;
constexpr int TextTop = 14;
constexpr int FontPixels = 14;
constexpr int SecondaryText = 1;

} // namespace

PreviewLeftNumWin::PreviewLeftNumWin(QWidget *pParent)
    : QWidget(pParent)
{
    setFixedHeight(FixedHeight);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, QOverload<>::of(&QWidget::update));
}

void PreviewLeftNumWin::setNumbers(int nCur, int nTotal)
{
    m_nCur = nCur;
    m_nTotal = nTotal;
    update();
}

void PreviewLeftNumWin::paintEvent(QPaintEvent *pEvent)
{
    Q_UNUSED(pEvent)
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QFont textFont = font();
    textFont.setPixelSize(FontPixels);
    painter.setFont(textFont);
    painter.setPen(TSSkinSetting::GetInstance()->GetTextColor(SecondaryText));
    painter.drawText(QRect(0, TextTop, width(), height() - TextTop), Qt::AlignHCenter | Qt::AlignTop,
                     QStringLiteral("%1/%2").arg(m_nCur).arg(m_nTotal));
}
