#include "app/NoteCountBadge.h"

#include "theme/TSSkinSetting.h"

#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int k_nHeight = 20;
constexpr int k_nMargin = 4;
constexpr int k_nPadding = 6;
constexpr int k_nMarkWidth = 10;
constexpr int k_nMarkHeight = 8;
constexpr int k_nGap = 4;
constexpr int k_nMost = 999;
constexpr int k_nOpacity = 225;

} // namespace

void NoteCountBadge::paint(QPainter *pPainter, const QRect &area, int nNotes)
{
    if (nNotes < 1)
        return;
    const TSSkinSetting *pTheme = TSSkinSetting::GetInstance();
    pPainter->save();
    QFont font = pPainter->font();
    font.setPixelSize(12);
    font.setBold(false);
    pPainter->setFont(font);
    const QString text = nNotes > k_nMost ? QString::number(k_nMost) + QLatin1Char('+') : QString::number(nNotes);
    const int nWidth = 2 * k_nPadding + k_nMarkWidth + k_nGap + QFontMetrics(font).horizontalAdvance(text);
    const QRectF pill(area.right() + 1 - k_nMargin - nWidth, area.bottom() + 1 - k_nMargin - k_nHeight, nWidth,
                      k_nHeight);
    QColor background = pTheme->GetPopupWinBackgroundColor();
    background.setAlpha(k_nOpacity);
    pPainter->setPen(QPen(pTheme->GetPopupWinBorderColor(), 1.0));
    pPainter->setBrush(background);
    pPainter->drawRoundedRect(pill.adjusted(0.5, 0.5, -0.5, -0.5), k_nHeight / 2.0, k_nHeight / 2.0);

    // A speech bubble, small.
    const QRectF bubble(pill.left() + k_nPadding, pill.center().y() - k_nMarkHeight / 2.0 - 1.0, k_nMarkWidth,
                        k_nMarkHeight);
    QPainterPath mark;
    mark.addRoundedRect(bubble, 2.5, 2.5);
    QPainterPath tail;
    tail.addPolygon(QPolygonF({bubble.bottomLeft() + QPointF(2.0, -1.0), bubble.bottomLeft() + QPointF(2.0, 3.0),
                               bubble.bottomLeft() + QPointF(6.0, -1.0)}));
    pPainter->setPen(Qt::NoPen);
    pPainter->setBrush(pTheme->GetMainColor());
    pPainter->drawPath(mark.united(tail));
    pPainter->setPen(pTheme->GetTextColor(0));
    pPainter->drawText(pill.adjusted(k_nPadding + k_nMarkWidth + k_nGap, 0, -k_nPadding, 0),
                       int(Qt::AlignVCenter | Qt::AlignLeft) | int(Qt::TextSingleLine), text);
    pPainter->restore();
}
