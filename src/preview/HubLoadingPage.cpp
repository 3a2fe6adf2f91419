#include "preview/HubLoadingPage.h"

#include "common/TsLargerModeLoadingWidget.h"
#include "common/WaitNotice.h"
#include "theme/TSSkinSetting.h"

#include <QPainter>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int RingSize = 76;
constexpr int LogoWidth = 36;
constexpr int LogoHeight = 43;
constexpr int IndicatorWidth = 140;
constexpr int IndicatorHeight = 224;
constexpr int PanelTop = 56;
constexpr int PanelRadius = 12;
constexpr int IndicatorDelay = 250;

} // namespace

HubLoadingPage::HubLoadingPage(QWidget *pParent)
    : QWidget(pParent)
    , m_pIndicator(new TsLargerModeLoadingWidget(RingSize, LogoWidth, LogoHeight, this))
    , m_pDelay(new QTimer(this))
{
    auto *pLayout = new QVBoxLayout(this);
    pLayout->setMargin(0);
    // Just as large as it needs to be: each turn of the ring repaints all of it.
    m_pIndicator->setFixedSize(IndicatorWidth, IndicatorHeight);
    // The veil's colour, which reaches the labels of the quick preview, would cover the panel behind them.
    m_pIndicator->setStyleSheet(QStringLiteral("background:transparent;"));
    pLayout->addWidget(m_pIndicator, 0, Qt::AlignCenter);
    m_pIndicator->hide();
    m_pDelay->setSingleShot(true);
    m_pDelay->setInterval(IndicatorDelay);
    connect(m_pDelay, &QTimer::timeout, this, [this] {
        m_pIndicator->show();
        update();
    });
}

void HubLoadingPage::setBackdrop(QWidget *pWidget)
{
    m_backdrop = QPixmap(pWidget->size() * devicePixelRatioF());
    m_backdrop.setDevicePixelRatio(devicePixelRatioF());
    m_backdrop.fill(Qt::transparent);
    pWidget->render(&m_backdrop, QPoint(), QRegion(), QWidget::DrawChildren);
    m_backdropPosition = pWidget->pos();
}

void HubLoadingPage::showEvent(QShowEvent *pEvent)
{
    QWidget::showEvent(pEvent);
    m_pDelay->start();
}

void HubLoadingPage::hideEvent(QHideEvent *pEvent)
{
    m_pDelay->stop();
    m_pIndicator->hide();
    m_backdrop = QPixmap();
    QWidget::hideEvent(pEvent);
}

void HubLoadingPage::paintEvent(QPaintEvent *pEvent)
{
    Q_UNUSED(pEvent)
    QPainter painter(this);
    if (!m_backdrop.isNull())
        painter.drawPixmap(m_backdropPosition, m_backdrop);
    if (m_pIndicator->isHidden())
        return;
    // The indicator is in the theme's colours, the ground may be the dark veil: a panel joins the two.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(TSSkinSetting::GetInstance()->GetPopupWinBackgroundColor());
    painter.drawRoundedRect(m_pIndicator->geometry().adjusted(0, PanelTop, 0, 0), PanelRadius, PanelRadius);
}

void HubLoadingPage::mouseDoubleClickEvent(QMouseEvent *pEvent)
{
    Q_UNUSED(pEvent)
    WaitNotice::show(parentWidget() != nullptr ? parentWidget() : this);
}
