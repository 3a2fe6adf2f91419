#include "services/mediaplayer/audio/CoverItem.h"

#include "interfaces/services/ITsMediaPlayerPlugin.h"
#include "theme/TSSkinSetting.h"

#include <QFont>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {

constexpr double kDegreesPerMsec = 360.0 / 20000.0;
// The time in which it comes up to speed.
constexpr double kSpeedUpMsec = 400.0;
// A longer pause between two steps is not made up for.
constexpr qint64 kLongestStepMsec = 120;
constexpr double kShareOfView = 0.72;
constexpr double kLargestScale = 1.5;
constexpr double kSmallestScale = 0.2;
// Sharp also where the item is shown larger or on a fine screen.
constexpr double kLeastPixelRatio = 1.5;

double pixelRatio()
{
    return qMax(kLeastPixelRatio, TSSkinSetting::GetInstance()->GetDpi());
}

/** Two notes on a beam, in a square of side 1. */
QPainterPath notePath()
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addEllipse(QPointF(0.36, 0.66), 0.085, 0.068);
    path.addEllipse(QPointF(0.64, 0.60), 0.085, 0.068);
    path.addRect(QRectF(0.415, 0.34, 0.03, 0.32));
    path.addRect(QRectF(0.695, 0.28, 0.03, 0.32));
    path.addPolygon(QPolygonF({{0.415, 0.34}, {0.725, 0.28}, {0.725, 0.36}, {0.415, 0.42}, {0.415, 0.34}}));
    return path;
}

} // namespace

CoverItem::CoverItem()
{
    setDefaultPicture(QString());
}

QImage CoverItem::squareOf(const QImage &picture, int nSide)
{
    const int nShort = qMin(picture.width(), picture.height());
    if (nShort <= 0)
        return {};
    const QRect square((picture.width() - nShort) / 2, (picture.height() - nShort) / 2, nShort, nShort);
    const QImage cut = picture.rect() == square ? picture : picture.copy(square);
    return cut.width() == nSide ? cut : cut.scaled(nSide, nSide, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

void CoverItem::setPicture(const QImage &picture)
{
    setSquare(squareOf(picture, int(std::lround(kSide * pixelRatio()))));
}

void CoverItem::setDefaultPicture(const QString &suffix)
{
    const int nPixels = int(std::lround(kSide * pixelRatio()));
    QImage square(nPixels, nPixels, QImage::Format_ARGB32_Premultiplied);
    // Each type has a shade of its own, the same every time.
    uint nSum = 0;
    for (const QChar letter : suffix.toLower())
        nSum = nSum * 31 + letter.unicode();
    const QColor base = QColor::fromHsv(int(nSum % 360), 110, 150);
    QPainter painter(&square);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient gradient(0, 0, nPixels, nPixels);
    gradient.setColorAt(0, base.lighter(125));
    gradient.setColorAt(1, base.darker(180));
    painter.fillRect(square.rect(), gradient);
    painter.scale(nPixels, nPixels);
    painter.fillPath(notePath(), QColor(255, 255, 255, 220));
    painter.resetTransform();
    QFont font;
    font.setPixelSize(nPixels / 14);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(QColor(255, 255, 255, 200));
    painter.drawText(QRect(0, nPixels * 3 / 4, nPixels, nPixels / 8), Qt::AlignCenter, suffix.toUpper());
    painter.end();
    setSquare(square);
}

void CoverItem::setSquare(const QImage &square)
{
    m_disc = discOf(square);
    update();
}

QPixmap CoverItem::discOf(const QImage &square)
{
    const int nPixels = square.width();
    QImage disc(nPixels, nPixels, QImage::Format_ARGB32_Premultiplied);
    disc.fill(Qt::transparent);
    QPainter painter(&disc);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRectF circle = QRectF(disc.rect()).adjusted(1, 1, -1, -1);
    QPainterPath path;
    path.addEllipse(circle);
    painter.fillPath(path, QBrush(square));
    // A quiet edge keeps dark covers apart from a dark view.
    painter.setPen(QPen(QColor(255, 255, 255, 60), nPixels / 90.0));
    painter.drawEllipse(circle.adjusted(1, 1, -1, -1));
    painter.end();
    return QPixmap::fromImage(disc);
}

void CoverItem::step(bool bPlaying)
{
    const qint64 nPassed = m_sinceStep.isValid() ? qMin(m_sinceStep.elapsed(), kLongestStepMsec) : 0;
    m_sinceStep.start();
    const double fChange = double(nPassed) / kSpeedUpMsec;
    m_fSpeed = bPlaying ? qMin(1.0, m_fSpeed + fChange) : qMax(0.0, m_fSpeed - fChange);
    if (m_fSpeed > 0.0)
        setRotation(std::fmod(rotation() + m_fSpeed * double(nPassed) * kDegreesPerMsec, 360.0));
}

void CoverItem::fitInto(const QRectF &rect)
{
    const double fRoom = qMin(rect.width(), rect.height()) * kShareOfView;
    setScale(qBound(kSmallestScale, fRoom / kSide, kLargestScale));
    setPos(rect.center());
}

QRectF CoverItem::boundingRect() const
{
    return {-kSide / 2.0, -kSide / 2.0, kSide, kSide};
}

void CoverItem::paint(QPainter *pPainter, const QStyleOptionGraphicsItem *, QWidget *)
{
    const QPixmap &disc = discFromOutside();
    pPainter->setRenderHint(QPainter::SmoothPixmapTransform);
    pPainter->drawPixmap(boundingRect(), disc, QRectF(disc.rect()));
}

const QPixmap &CoverItem::discFromOutside()
{
    const QPixmap picture = data(ITsMediaPlayerPlugin::CoverPicture).value<QPixmap>();
    if (picture.isNull())
        return m_disc;
    // Cut out once for each picture, not for each step of its turning.
    if (picture.cacheKey() != m_nOutsideKey) {
        m_nOutsideKey = picture.cacheKey();
        m_outsideDisc = discOf(squareOf(picture.toImage(), qMin(picture.width(), picture.height())));
    }
    return m_outsideDisc;
}
