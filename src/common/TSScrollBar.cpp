#include "common/TSScrollBar.h"

#include "theme/TSSkinSetting.h"

#include <QAbstractScrollArea>
#include <QCursor>
#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QParallelAnimationGroup>
#include <QPropertyAnimation>

namespace {

constexpr int AnimationMsec = 150;
constexpr int BarWidth = 5;
constexpr int WideBarWidth = 8;
constexpr int RightDistance = 9;
constexpr double RestingOpacity = 0.6;
constexpr double FullOpacity = 1.0;
constexpr double PageShare = 0.75;

} // namespace

TSScrollBar::TSScrollBar(Qt::Orientation orientation, QWidget *pParent)
    : QScrollBar(pParent)
    , m_pEnterGeometry(new QPropertyAnimation(this, "geometry", this))
    , m_pOpacity(new QGraphicsOpacityEffect(this))
    , m_pBrighten(fade(RestingOpacity, FullOpacity))
    , m_pBrightenGroup(new QParallelAnimationGroup(this))
    , m_pLeaveGeometry(new QPropertyAnimation(this, "geometry", this))
    , m_pDim(fade(FullOpacity, RestingOpacity))
    , m_pDimGroup(new QParallelAnimationGroup(this))
    , m_pFadeIn(fade(0.0, RestingOpacity))
    , m_pFadeOut(fade(RestingOpacity, 0.0))
{
    applyTheme();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &TSScrollBar::applyTheme);
    m_pOpacity->setOpacity(RestingOpacity);
    setGraphicsEffect(m_pOpacity);
    // The groups hold the opacity alone: the bar keeps its width under the mouse.
    m_pBrightenGroup->addAnimation(m_pBrighten);
    m_pDimGroup->addAnimation(m_pDim);
    connect(m_pFadeOut, &QPropertyAnimation::finished, this, &QWidget::hide);
    setOrientation(orientation);
    setRange(0, 0);
    hide();
    setContextMenuPolicy(Qt::NoContextMenu);
}

QPropertyAnimation *TSScrollBar::fade(double fFrom, double fTo)
{
    auto *pAnimation = new QPropertyAnimation(m_pOpacity, "opacity", this);
    pAnimation->setDuration(AnimationMsec);
    pAnimation->setStartValue(fFrom);
    pAnimation->setEndValue(fTo);
    return pAnimation;
}

void TSScrollBar::applyTheme()
{
    const QString handleColor = TSSkinSetting::GetInstance()->GetTreeScrollHandleColor().name(QColor::HexArgb);
    setStyleSheet(
        QStringLiteral(
            "QScrollBar:vertical {border:none;background-color:rgba(100,0,0,0); width: "
            "4px;border-radius:2px;}"
            "QScrollBar::handle:vertical {margin:0px;border-radius: 2px;min-height:30px ;background-color:") +
        handleColor +
        QStringLiteral(";}"
                       "QScrollBar::add-page:vertical{background-color:rgba(0,0,0,0);}"
                       "QScrollBar::sub-page:vertical{background-color:rgba(0,0,0,0);}"
                       "QScrollBar::up-arrow:vertical, QScrollBar::down-arrow:vertical {border: 0px solid grey;width: "
                       "0px;height:0px;background-color:rgba(0,0,0,0);}"
                       "QScrollBar::add-line:vertical{subcontrol-origin:margin;border:0px;width:0px;height:0px;}"
                       "QScrollBar::sub-line:vertical{subcontrol-origin:margin;border:0px;width:0px;height:0px;}"));
}

void TSScrollBar::attach(QAbstractScrollArea *pArea, int xOffset, int yOffset)
{
    if (pArea == nullptr)
        return;
    if (m_pArea != nullptr) {
        m_pArea->removeEventFilter(this);
        m_pArea->verticalScrollBar()->disconnect(this);
        disconnect(this, &QScrollBar::valueChanged, this, &TSScrollBar::setAreaValue);
    }
    m_pArea = pArea;
    m_nXOffset = xOffset;
    m_nYOffset = yOffset;
    m_pArea->installEventFilter(this);
    m_pArea->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    hide();
    const QScrollBar *pAreaBar = m_pArea->verticalScrollBar();
    connect(pAreaBar, &QScrollBar::valueChanged, this, &TSScrollBar::slot_valueChange_scrollBar);
    connect(this, &QScrollBar::valueChanged, this, &TSScrollBar::setAreaValue);
    connect(pAreaBar, &QScrollBar::rangeChanged, this, &TSScrollBar::slot_rangeChanged);
    update();
}

void TSScrollBar::setAreaValue(int nValue)
{
    if (m_pArea != nullptr)
        m_pArea->verticalScrollBar()->setValue(nValue);
}

void TSScrollBar::slot_valueChange_scrollBar(int value)
{
    setValue(value);
}

void TSScrollBar::slot_rangeChanged(int nMinimum, int nMaximum)
{
    // The area's bar may begin elsewhere; this one always begins at 0.
    setMinimum(nMinimum);
    setRange(0, nMaximum);
    setPageStep(m_pArea != nullptr ? m_pArea->verticalScrollBar()->pageStep() : int((height() + nMaximum) * PageShare));
    if (nMaximum < 1)
        hide();
    else if (geometry().contains(mapFromGlobal(QCursor::pos())))
        show();
}

bool TSScrollBar::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    if (pWatched != m_pArea)
        return QScrollBar::eventFilter(pWatched, pEvent);
    const auto isRunning = [](const QAbstractAnimation *pAnimation) {
        return pAnimation->state() == QAbstractAnimation::Running;
    };
    switch (pEvent->type()) {
    case QEvent::Resize:
        place();
        break;
    case QEvent::Enter:
        if (maximum() > 0 && !isRunning(m_pFadeIn)) {
            setPageStep(m_pArea->verticalScrollBar()->pageStep());
            // A mouse that comes back at once must not find the bar hidden by the end of the last fading.
            m_pFadeOut->stop();
            show();
            m_pFadeIn->start();
        }
        break;
    case QEvent::Leave:
        if (!isRunning(m_pFadeOut)) {
            m_pFadeIn->stop();
            m_pFadeOut->start();
        }
        place();
        break;
    default:
        break;
    }
    return false;
}

void TSScrollBar::place()
{
    setGeometry(m_pArea->width() + m_nXOffset - RightDistance, m_nYOffset + 1, BarWidth, m_pArea->height() - 2);
}

void TSScrollBar::enterEvent(QEvent *pEvent)
{
    QScrollBar::enterEvent(pEvent);
    m_pEnterGeometry->setDuration(AnimationMsec);
    m_pEnterGeometry->setStartValue(geometry());
    m_pEnterGeometry->setEndValue(QRect(x() - (WideBarWidth - BarWidth), y(), WideBarWidth, height()));
    if (m_pBrightenGroup->state() != QAbstractAnimation::Running)
        m_pBrightenGroup->start();
}

void TSScrollBar::leaveEvent(QEvent *pEvent)
{
    QScrollBar::leaveEvent(pEvent);
    m_pLeaveGeometry->setDuration(AnimationMsec);
    m_pLeaveGeometry->setStartValue(geometry());
    m_pLeaveGeometry->setEndValue(QRect(x() + (WideBarWidth - BarWidth), y(), BarWidth, height()));
    if (m_pDimGroup->state() != QAbstractAnimation::Running)
        m_pDimGroup->start();
}
