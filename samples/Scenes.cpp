#include "Scenes.h"

#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QRandomGenerator>

#include <cmath>

namespace scenes {

namespace {

QColor tint(double fHue, int nSaturation, int nValue)
{
    return QColor::fromHsv(int(std::fmod(fHue + 1.0, 1.0) * 359.0), nSaturation, nValue);
}

QPainterPath ridge(const QSizeF &size, double fBase, double fRoughness, QRandomGenerator &random)
{
    QPainterPath path(QPointF(0, size.height()));
    constexpr int kPoints = 48;
    const double fPhase = random.bounded(6.28);
    for (int i = 0; i <= kPoints; ++i) {
        const double x = double(i) / kPoints;
        const double fWave = 0.55 * std::sin(x * 7.0 + fPhase) + 0.3 * std::sin(x * 17.0 + 2 * fPhase);
        const double fJitter = random.bounded(0.3) - 0.15;
        path.lineTo(x * size.width(), size.height() * (fBase - fRoughness * (fWave + fJitter)));
    }
    path.lineTo(size.width(), size.height());
    path.closeSubpath();
    return path;
}

void drawSky(QPainter &painter, const QSizeF &size, double fHue)
{
    QLinearGradient sky(0, 0, 0, size.height());
    sky.setColorAt(0.0, tint(fHue + 0.62, 180, 70));
    sky.setColorAt(0.45, tint(fHue + 0.9, 120, 190));
    sky.setColorAt(0.7, tint(fHue + 0.08, 150, 250));
    painter.fillRect(QRectF(QPointF(), size), sky);
    const QPointF sun(size.width() * 0.68, size.height() * 0.5);
    QRadialGradient glow(sun, size.height() * 0.45);
    glow.setColorAt(0.0, QColor(255, 244, 214, 255));
    glow.setColorAt(0.12, QColor(255, 236, 190, 235));
    glow.setColorAt(0.16, QColor(255, 220, 160, 110));
    glow.setColorAt(1.0, QColor(255, 220, 160, 0));
    painter.fillRect(QRectF(QPointF(), size), glow);
}

} // namespace

QImage landscape(const QSize &size, double fPalette)
{
    // From morning to dusk: only part of the colour circle looks like a sky.
    const double fHue = fPalette * 0.3 - 0.12;
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    drawSky(painter, size, fHue);
    QRandomGenerator random(quint32(fPalette * 1000) + 7);
    constexpr int kRidges = 5;
    for (int i = 0; i < kRidges; ++i) {
        const double fNear = double(i) / (kRidges - 1);
        painter.setBrush(tint(fHue + 0.62 - 0.06 * fNear, 90 + int(110 * fNear), 150 - int(115 * fNear)));
        painter.drawPath(ridge(size, 0.62 + 0.32 * fNear, 0.10 - 0.04 * fNear, random));
    }
    return image;
}

QImage lighthouse(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size.width() / 300.0, size.height() / 400.0);
    QLinearGradient sky(0, 0, 0, 400);
    sky.setColorAt(0.0, QColor(13, 18, 48));
    sky.setColorAt(1.0, QColor(64, 70, 130));
    painter.fillRect(0, 0, 300, 400, sky);
    painter.setPen(Qt::NoPen);
    QRandomGenerator random(11);
    painter.setBrush(QColor(255, 255, 255, 190));
    for (int i = 0; i < 60; ++i)
        painter.drawEllipse(QPointF(random.bounded(300.0), random.bounded(230.0)), 0.8, 0.8);
    QLinearGradient beam(165, 0, 300, 0);
    beam.setColorAt(0.0, QColor(255, 240, 180, 220));
    beam.setColorAt(1.0, QColor(255, 240, 180, 0));
    painter.setBrush(beam);
    painter.drawPolygon(QPolygonF({QPointF(150, 112), QPointF(300, 60), QPointF(300, 170)}));
    painter.setBrush(QColor(20, 26, 44));
    painter.drawEllipse(QPointF(150, 410), 190, 70);
    painter.setBrush(QColor(238, 236, 228));
    painter.drawPolygon(QPolygonF({QPointF(132, 125), QPointF(168, 125), QPointF(182, 350), QPointF(118, 350)}));
    painter.setBrush(QColor(204, 60, 52));
    painter.drawPolygon(QPolygonF({QPointF(128, 180), QPointF(172, 180), QPointF(175, 225), QPointF(125, 225)}));
    painter.drawPolygon(QPolygonF({QPointF(122, 275), QPointF(178, 275), QPointF(180, 320), QPointF(120, 320)}));
    painter.drawPolygon(QPolygonF({QPointF(130, 100), QPointF(150, 78), QPointF(170, 100)}));
    painter.setBrush(QColor(255, 240, 180));
    painter.drawRect(QRectF(136, 100, 28, 25));
    return image;
}

QImage discs(const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double fRadius = 0.28 * std::min(size.width(), size.height());
    for (int i = 0; i < 6; ++i) {
        const double fAngle = i * 3.14159265 / 3.0;
        const QPointF centre(size.width() / 2.0 + fRadius * 0.7 * std::cos(fAngle),
                             size.height() / 2.0 + fRadius * 0.7 * std::sin(fAngle));
        QColor color = tint(i / 6.0, 200, 245);
        color.setAlpha(150);
        painter.setBrush(color);
        painter.drawEllipse(centre, fRadius, fRadius);
    }
    return image;
}

QImage quarters(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    const int nX = size.width() / 2;
    const int nY = size.height() / 2;
    QPainter painter(&image);
    painter.fillRect(0, 0, nX, nY, QColor(220, 30, 30));
    painter.fillRect(nX, 0, size.width() - nX, nY, QColor(30, 200, 30));
    painter.fillRect(0, nY, nX, size.height() - nY, QColor(30, 30, 220));
    painter.fillRect(nX, nY, size.width() - nX, size.height() - nY, QColor(245, 245, 245));
    return image;
}

QImage ball(const QSize &size, double fPhase)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawSky(painter, size, -0.05);
    const double fRadius = size.height() * 0.14;
    const double fHeight = std::abs(std::sin(fPhase * 3.14159265));
    const QPointF centre(size.width() * (0.15 + 0.7 * fPhase),
                         size.height() - fRadius - fHeight * (size.height() - 2.4 * fRadius));
    QRadialGradient shade(centre - QPointF(fRadius, fRadius) * 0.35, fRadius * 1.5);
    shade.setColorAt(0.0, QColor(255, 214, 120));
    shade.setColorAt(1.0, QColor(196, 62, 30));
    painter.setPen(Qt::NoPen);
    painter.setBrush(shade);
    painter.drawEllipse(centre, fRadius, fRadius);
    return image;
}

} // namespace scenes
