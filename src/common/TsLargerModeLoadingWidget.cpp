#include "common/TsLargerModeLoadingWidget.h"

#include "theme/TSSkinSetting.h"

#include <QDir>
#include <QImageReader>
#include <QLabel>
#include <QPainter>
#include <QTimer>

namespace {

constexpr int TextWidth = 98;
constexpr int TextHeight = 14;
constexpr int TextDistance = 16;
constexpr int TurnInterval = 10;
constexpr int TurnDegrees = 4;

/** A theme picture fitted into a size in physical pixels, drawn by its own renderer where it is a vector picture. */
QPixmap themePixmap(const QString &name, const QSize &size, double fDpi)
{
    const QString path = QDir::toNativeSeparators(TSSkinSetting::GetInstance()->GetResourceAbsolutePath(name));
    QImageReader reader(path);
    reader.setScaledSize(reader.size().scaled(size, Qt::KeepAspectRatio));
    QPixmap pixmap = QPixmap::fromImage(reader.read());
    if (!pixmap.isNull() && pixmap.size() != pixmap.size().scaled(size, Qt::KeepAspectRatio))
        pixmap = pixmap.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    pixmap.setDevicePixelRatio(fDpi);
    return pixmap;
}

} // namespace

TsLargerModeLoadingWidget::TsLargerModeLoadingWidget(int nRingSize, int nLogoWidth, int nLogoHeight, QWidget *pParent)
    : QWidget(nullptr)
    , m_pRingLabel(new QLabel(this))
    , m_pLogoLabel(new QLabel(this))
    , m_pTextLabel(new QLabel(this))
    , m_pTurnTimer(new QTimer(this))
    , m_nRingSize(nRingSize)
    , m_nLogoWidth(nLogoWidth)
    , m_nLogoHeight(nLogoHeight)
{
    Q_UNUSED(pParent)
    m_pRingLabel->setFixedSize(m_nRingSize, m_nRingSize);
    m_pLogoLabel->setFixedSize(m_nLogoWidth, m_nLogoHeight);
    m_pLogoLabel->setAlignment(Qt::AlignCenter);
    m_pTextLabel->setFixedSize(TextWidth, TextHeight);
    m_pTextLabel->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    m_pTextLabel->setText(tr("Loading..."));
    applyTheme();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this,
            &TsLargerModeLoadingWidget::applyTheme);
    m_pTurnTimer->setInterval(TurnInterval);
    connect(m_pTurnTimer, &QTimer::timeout, this, &TsLargerModeLoadingWidget::updatePixmap);
}

void TsLargerModeLoadingWidget::applyTheme()
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    const double d = pSkin->GetDpi();
    m_pLogoLabel->setPixmap(
        themePixmap(QStringLiteral("loading_logo.svg"), QSize(int(m_nLogoWidth * d), int(m_nLogoHeight * d)), d));
    m_ringPixmap =
        themePixmap(QStringLiteral("loading_border.svg"), QSize(int(m_nRingSize * d), int(m_nRingSize * d)), d);
    m_pTextLabel->setStyleSheet(
        QStringLiteral("border:0px;color:%1;font-size:12px;").arg(pSkin->GetColorList().first().name()));
    m_nPaintedAngle = -1;
    update();
}

void TsLargerModeLoadingWidget::updatePixmap()
{
    m_nAngle = (m_nAngle + TurnDegrees) % 360;
    update();
}

void TsLargerModeLoadingWidget::paintEvent(QPaintEvent *pEvent)
{
    Q_UNUSED(pEvent)
    m_pRingLabel->move((width() - m_nRingSize) / 2, (height() - m_nRingSize) / 2);
    m_pTextLabel->move((width() - TextWidth) / 2, (height() - TextHeight) / 2 + m_nRingSize + TextDistance);
    m_pLogoLabel->move((width() - m_nLogoWidth) / 2, (height() - m_nLogoHeight) / 2);
    // A new pixmap makes the label ask for a repaint, which comes back here: once for each angle is enough.
    if (m_nPaintedAngle == m_nAngle || m_ringPixmap.isNull())
        return;
    m_nPaintedAngle = m_nAngle;
    m_pRingLabel->setPixmap(turnedRing());
}

QPixmap TsLargerModeLoadingWidget::turnedRing() const
{
    QPixmap turned(m_ringPixmap.size());
    turned.setDevicePixelRatio(m_ringPixmap.devicePixelRatio());
    turned.fill(Qt::transparent);
    QPainter painter(&turned);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(m_nRingSize / 2, m_nRingSize / 2);
    painter.rotate(m_nAngle);
    painter.translate(-m_nRingSize / 2, -m_nRingSize / 2);
    painter.drawPixmap(0, 0, m_ringPixmap);
    return turned;
}

void TsLargerModeLoadingWidget::showEvent(QShowEvent *pEvent)
{
    QWidget::showEvent(pEvent);
    m_pTurnTimer->start();
}

void TsLargerModeLoadingWidget::hideEvent(QHideEvent *pEvent)
{
    // A ring that nobody sees need not turn: the hub keeps this widget for its whole life.
    m_pTurnTimer->stop();
    QWidget::hideEvent(pEvent);
}
