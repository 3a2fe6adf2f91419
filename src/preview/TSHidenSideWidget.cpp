#include "preview/TSHidenSideWidget.h"

#include "theme/TSSkinSetting.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

namespace {

constexpr int TimerMsec = 200;
constexpr int ShowDelayMsec = 10;
constexpr int ShownMsec = 1500;
constexpr int HandleWidth = 10;
constexpr int HiddenRightWidth = 1;
constexpr int TabHeight = 70;
constexpr int ArrowMargin = 2;
constexpr int ArrowHalfHeight = 6;

/** The tab's place in a handle, which may be taller. */
QRect tabRect(int nLeft, int nHandleHeight)
{
    return {nLeft, nHandleHeight / 2 - TabHeight / 2, HandleWidth, TabHeight};
}

QPainterPath triangle(const QPointF &tip, const QPointF &below, const QPointF &above)
{
    QPainterPath path(tip);
    path.lineTo(below);
    path.lineTo(above);
    path.lineTo(tip);
    return path;
}

} // namespace

TSHidenSideWidget::TSHidenSideWidget(QWidget *pParent)
    : QWidget(pParent)
    , m_pWatched(pParent)
    , m_pShowTimer(new QTimer(this))
    , m_pHideTimer(new QTimer(this))
{
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    m_pShowTimer->setInterval(TimerMsec);
    m_pHideTimer->setInterval(TimerMsec);
    connect(m_pShowTimer, &QTimer::timeout, this, &TSHidenSideWidget::slotShowTimerTimeout);
    connect(m_pHideTimer, &QTimer::timeout, this, &TSHidenSideWidget::slotHideTimerTimeout);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, QOverload<>::of(&QWidget::update));
    setMouseTracking(true);
    m_pWatched->setMouseTracking(true);
    m_pWatched->installEventFilter(this);
}

void TSHidenSideWidget::slotStartTimer()
{
    m_pShowTimer->start(ShowDelayMsec);
    m_pHideTimer->stop();
}

void TSHidenSideWidget::slotStopTimer()
{
    m_pShowTimer->stop();
    // A tab that is shown already lost its end when the start was asked for.
    if (m_bTabShown && !m_pHideTimer->isActive())
        m_pHideTimer->start(ShownMsec);
}

void TSHidenSideWidget::slotShowTimerTimeout()
{
    m_bTabShown = true;
    m_pHideTimer->start(ShownMsec);
    m_pShowTimer->stop();
    setFixedWidth(HandleWidth);
    relayout();
    update();
}

void TSHidenSideWidget::slotHideTimerTimeout()
{
    m_bTabShown = false;
    m_pHideTimer->stop();
    setFixedWidth(HiddenRightWidth);
    relayout();
    update();
}

void TSHidenSideWidget::rebuildArrows()
{
    const int nMiddle = height() / 2;
    const int nLeft = ArrowMargin;
    const int nRight = width() - ArrowMargin;
    m_leftArrow = triangle(QPointF(nLeft, nMiddle), QPointF(nRight, nMiddle + ArrowHalfHeight),
                           QPointF(nRight, nMiddle - ArrowHalfHeight));
    m_rightArrow = triangle(QPointF(nRight, nMiddle), QPointF(nLeft, nMiddle + ArrowHalfHeight),
                            QPointF(nLeft, nMiddle - ArrowHalfHeight));
    m_currentArrow = m_bArrowLeft ? m_leftArrow : m_rightArrow;
}

bool TSHidenSideWidget::isOnTab(const QPoint &position)
{
    return m_bTabShown && tabPath().contains(QPointF(position));
}

void TSHidenSideWidget::paintTab(QPainter *pPainter)
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    pPainter->fillPath(tabPath(), pSkin->GetSideMainColor());
    pPainter->fillPath(m_currentArrow, pSkin->GetSideArrowColor());
}

void TSHidenSideWidget::paintEvent(QPaintEvent *pEvent)
{
    Q_UNUSED(pEvent)
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
    if (m_bTabShown)
        paintTab(&painter);
    else
        painter.fillRect(rect(), QColor(0, 0, 0, 0));
}

void TSHidenSideWidget::mouseMoveEvent(QMouseEvent *pEvent)
{
    if (isOnTab(pEvent->pos())) {
        m_pHideTimer->start(ShownMsec);
        Q_EMIT signalTriggered(this, true);
        setCursor(Qt::PointingHandCursor);
    } else {
        if (rect().contains(pEvent->pos()))
            Q_EMIT signalTriggered(this, false);
        setCursor(Qt::ArrowCursor);
    }
    QWidget::mouseMoveEvent(pEvent);
}

void TSHidenSideWidget::mousePressEvent(QMouseEvent *pEvent)
{
    if (isOnTab(pEvent->pos()))
        emitClicked();
    QWidget::mousePressEvent(pEvent);
}

bool TSHidenSideWidget::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    if (pWatched == m_pWatched && pEvent->type() == QEvent::Resize)
        relayout();
    return QWidget::eventFilter(pWatched, pEvent);
}

TSLeftHidenSideWidget::TSLeftHidenSideWidget(QWidget *pParent)
    : TSHidenSideWidget(pParent)
{
    TSLeftHidenSideWidget::relayout();
}

void TSLeftHidenSideWidget::setArrowLeft(bool bLeft)
{
    m_currentArrow = bLeft ? m_leftArrow : m_rightArrow;
    m_bArrowLeft = bLeft;
    update();
}

void TSLeftHidenSideWidget::slotShowTimerTimeout()
{
    TSHidenSideWidget::slotShowTimerTimeout();
}

void TSLeftHidenSideWidget::slotHideTimerTimeout()
{
    TSHidenSideWidget::slotHideTimerTimeout();
}

void TSLeftHidenSideWidget::emitClicked()
{
    Q_EMIT signalLeftClicked();
}

void TSLeftHidenSideWidget::relayout()
{
    // The strip stays as wide as the tab, so that the mouse is noticed before it reaches the very edge.
    setFixedSize(HandleWidth, m_bTabShown ? TabHeight : m_pWatched->height());
    move(0, m_bTabShown ? (m_pWatched->height() - TabHeight) / 2 : 0);
    rebuildArrows();
    m_handleRect = QRect(0, 0, HandleWidth, height());
    const QRect r = tabRect(0, height());
    const QPointF upper(r.right() - 2, r.top() + 2);
    const QPointF lower(r.right() - 2, r.bottom() - 2);
    QPainterPath path(r.topLeft());
    path.cubicTo(upper, upper, QPointF(r.width(), r.top() + r.height() / 10));
    path.lineTo(r.width(), r.top() + 9 * r.height() / 10);
    path.cubicTo(lower, lower, r.bottomLeft());
    path.lineTo(r.topLeft());
    m_tabPath = path;
}

TSRightHidenSideWidget::TSRightHidenSideWidget(QWidget *pParent)
    : TSHidenSideWidget(pParent)
{
    TSRightHidenSideWidget::relayout();
}

void TSRightHidenSideWidget::setArrowLeft(bool bLeft)
{
    // Mirrored: one value means the same state of the column for both handles.
    m_currentArrow = bLeft ? m_rightArrow : m_leftArrow;
    m_bArrowLeft = !bLeft;
    update();
}

void TSRightHidenSideWidget::slotShowTimerTimeout()
{
    TSHidenSideWidget::slotShowTimerTimeout();
}

void TSRightHidenSideWidget::slotHideTimerTimeout()
{
    TSHidenSideWidget::slotHideTimerTimeout();
}

void TSRightHidenSideWidget::emitClicked()
{
    Q_EMIT signalRightClicked();
}

void TSRightHidenSideWidget::relayout()
{
    const int nWidth = m_bTabShown ? HandleWidth : HiddenRightWidth;
    setFixedSize(nWidth, m_bTabShown ? TabHeight : m_pWatched->height());
    move(m_pWatched->width() - nWidth, m_bTabShown ? (m_pWatched->height() - TabHeight) / 2 : 0);
    rebuildArrows();
    m_handleRect = QRect(width() - HandleWidth, 0, HandleWidth, height());
    const QRect r = tabRect(width() - HandleWidth, height());
    const QPointF upper(r.left() + 2, r.top() + 2);
    const QPointF lower(r.left() + 2, r.bottom() - 2);
    QPainterPath path(r.topRight());
    path.cubicTo(upper, upper, QPointF(r.left(), r.top() + r.height() / 10));
    path.lineTo(r.left(), r.top() + 9 * r.height() / 10);
    path.cubicTo(lower, lower, r.bottomRight());
    path.lineTo(r.topRight());
    m_tabPath = path;
}
