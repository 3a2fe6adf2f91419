#include "app/panel/LabelChip.h"

#include "app/LabelColors.h"
#include "theme/TSSkinSetting.h"

#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyle>

namespace {

constexpr int k_nHeight = 24;
constexpr int k_nEnd = 8;
constexpr int k_nSpot = 8;
constexpr int k_nGap = 6;
constexpr int k_nCross = 16;
constexpr int k_nLeastName = 24;

} // namespace

LabelChip::LabelChip(const LabelRecord &label, QWidget *pParent)
    : QAbstractButton(pParent)
    , m_label(label)
{
    setObjectName(QStringLiteral("hostLabelChip"));
    setText(label.name);
    setAccessibleName(tr("Label %1").arg(label.name));
    setToolTip(tr("%1 – Delete takes it away, the spot changes its colour").arg(label.name));
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

QFont LabelChip::chipFont() const
{
    QFont own = font();
    own.setPixelSize(12);
    return own;
}

QSize LabelChip::sizeHint() const
{
    const int nName = QFontMetrics(chipFont()).horizontalAdvance(m_label.name);
    return {k_nEnd + k_nSpot + k_nGap + nName + 4 + k_nCross + 4, k_nHeight};
}

QSize LabelChip::minimumSizeHint() const
{
    return {k_nEnd + k_nSpot + k_nGap + k_nLeastName + k_nCross + 4, k_nHeight};
}

QRect LabelChip::crossRect() const
{
    const QRect place(width() - 4 - k_nCross, (height() - k_nCross) / 2, k_nCross, k_nCross);
    return QStyle::visualRect(layoutDirection(), rect(), place);
}

QRect LabelChip::spotRect() const
{
    const QRect place(k_nEnd, (height() - k_nSpot) / 2, k_nSpot, k_nSpot);
    return QStyle::visualRect(layoutDirection(), rect(), place);
}

void LabelChip::paintEvent(QPaintEvent * /*pEvent*/)
{
    const TSSkinSetting *pTheme = TSSkinSetting::GetInstance();
    const QColor color = LabelColors::colorOf(m_label);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor fill = color;
    fill.setAlphaF(underMouse() ? 0.32 : 0.22);
    painter.setPen(hasFocus() ? QPen(pTheme->GetMainColor(), 1.5) : QPen(Qt::NoPen));
    painter.setBrush(fill);
    const double fInset = hasFocus() ? 0.75 : 0.0;
    painter.drawRoundedRect(QRectF(rect()).adjusted(fInset, fInset, -fInset, -fInset), k_nHeight / 2.0,
                            k_nHeight / 2.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(spotRect());

    painter.setFont(chipFont());
    painter.setPen(pTheme->GetTextColor(0));
    const QRect nameArea = QStyle::visualRect(
        layoutDirection(), rect(),
        QRect(k_nEnd + k_nSpot + k_nGap, 0, width() - k_nEnd - k_nSpot - k_nGap - k_nCross - 6, height()));
    const QString name = QFontMetrics(chipFont()).elidedText(m_label.name, Qt::ElideRight, nameArea.width());
    painter.drawText(nameArea, int(Qt::AlignVCenter | Qt::AlignLeading) | int(Qt::TextSingleLine), name);

    painter.setPen(
        QPen(m_bOverCross ? pTheme->GetTextColor(0) : pTheme->GetTextColor(1), 1.5, Qt::SolidLine, Qt::RoundCap));
    const QRectF cross = QRectF(crossRect()).adjusted(5, 5, -5, -5);
    painter.drawLine(cross.topLeft(), cross.bottomRight());
    painter.drawLine(cross.topRight(), cross.bottomLeft());
}

void LabelChip::mouseReleaseEvent(QMouseEvent *pEvent)
{
    QAbstractButton::mouseReleaseEvent(pEvent);
    if (pEvent->button() != Qt::LeftButton)
        return;
    if (crossRect().contains(pEvent->pos()))
        Q_EMIT signalRemove(m_label.id);
    else if (spotRect().adjusted(-8, -8, 4, 8).contains(pEvent->pos()))
        offerColors();
}

void LabelChip::mouseMoveEvent(QMouseEvent *pEvent)
{
    QAbstractButton::mouseMoveEvent(pEvent);
    const bool bOver = crossRect().contains(pEvent->pos());
    if (bOver != m_bOverCross)
        update();
    m_bOverCross = bOver;
}

void LabelChip::leaveEvent(QEvent *pEvent)
{
    QAbstractButton::leaveEvent(pEvent);
    m_bOverCross = false;
    update();
}

void LabelChip::keyPressEvent(QKeyEvent *pEvent)
{
    switch (pEvent->key()) {
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        Q_EMIT signalRemove(m_label.id);
        return;
    case Qt::Key_Space:
    case Qt::Key_Return:
        offerColors();
        return;
    default:
        QAbstractButton::keyPressEvent(pEvent);
    }
}

void LabelChip::offerColors()
{
    QMenu *pMenu = LabelColors::makeMenu(this);
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    connect(pMenu, &QMenu::triggered, this,
            [this](const QAction *pAction) { Q_EMIT signalColor(m_label.id, pAction->data().toUInt()); });
    pMenu->popup(mapToGlobal(rect().bottomLeft()));
}
