#include "preview/StripBadges.h"

#include "theme/TSSkinSetting.h"

#include <QFileInfo>
#include <QFontMetrics>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace {

constexpr double MissingRadius = 4.0;
const char *const MissingColor = "#6A748B";
constexpr int CardWidth = 320;
constexpr double CardRadius = 10.0;
const char *const CardColor = "#FFE6E6E6";
const char *const CardTextColor = "#0FB1B9";
constexpr int CardFontPixels = 50;
constexpr int TextBoxMargin = 10;
constexpr double SmallRadius = 10.0;
constexpr int SmallFontPixels = 20;
constexpr int TextOnMain = 3;

QFont boldFont(int nPixels)
{
    QFont font;
    font.setPixelSize(nPixels);
    font.setWeight(QFont::Bold);
    return font;
}

QString elidedSuffix(const QString &path, const QFont &font, int nWidth)
{
    return QFontMetrics(font).elidedText(QFileInfo(path).suffix(), Qt::ElideRight, nWidth);
}

/** Draws a picture into the middle of a rectangle at its own size in device-independent pixels. */
void drawCentred(QPainter *pPainter, const QRect &rect, const QPixmap &pixmap)
{
    const QSizeF size = QSizeF(pixmap.size()) / pixmap.devicePixelRatioF();
    const QPointF centre = QRectF(rect).center();
    pPainter->drawPixmap(QPointF(centre.x() - size.width() / 2.0, centre.y() - size.height() / 2.0), pixmap);
}

QPixmap missingMark()
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    const double fDpi = pSkin->GetDpi();
    const QString path = pSkin->GetResourceAbsolutePath(QStringLiteral("file_index_lose.svg"));
    const QString key = QStringLiteral("strip-missing:%1:%2").arg(path).arg(fDpi);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    QSvgRenderer renderer(path);
    pixmap = QPixmap((QSizeF(renderer.defaultSize()) * fDpi).toSize().expandedTo(QSize(1, 1)));
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    painter.end();
    pixmap.setDevicePixelRatio(fDpi);
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

QImage cardImage(const QString &text, const QSize &size)
{
    QImage card(size, QImage::Format_ARGB32_Premultiplied);
    card.fill(QColor(QLatin1String(CardColor)));
    const QFont font = boldFont(CardFontPixels);
    const QFontMetrics metrics(font);
    QRect textBox(0, 0, metrics.horizontalAdvance(text), metrics.lineSpacing() + TextBoxMargin);
    textBox.moveCenter(card.rect().center());
    QPainter painter(&card);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.setFont(font);
    painter.setPen(QColor(QLatin1String(CardTextColor)));
    painter.drawText(textBox, Qt::AlignCenter, text);
    painter.end();

    QImage rounded(size, QImage::Format_ARGB32_Premultiplied);
    rounded.fill(Qt::transparent);
    QPainter corners(&rounded);
    corners.setRenderHint(QPainter::Antialiasing);
    corners.setPen(Qt::NoPen);
    corners.setBrush(card);
    corners.drawRoundedRect(rounded.rect(), CardRadius, CardRadius);
    return rounded;
}

/** The card in the pixels of the screen; kept, because drawing and shrinking it takes longer than a frame has. */
QPixmap cardPixmap(const QString &text, const QSize &boxSize, double fPixelRatio)
{
    const QSize pixelSize = (QSizeF(boxSize) * fPixelRatio).toSize();
    const QString key = QStringLiteral("strip-card:%1x%2:%3").arg(pixelSize.width()).arg(pixelSize.height()).arg(text);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    const QImage card = cardImage(text, QSize(CardWidth, CardWidth * boxSize.height() / boxSize.width()));
    pixmap = QPixmap::fromImage(card.scaled(pixelSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

} // namespace

void StripBadges::paintMissing(QPainter *pPainter, const QRect &itemRect, const QRect &box)
{
    pPainter->setBrush(QColor(QLatin1String(MissingColor)));
    pPainter->drawRoundedRect(box, MissingRadius, MissingRadius);
    drawCentred(pPainter, itemRect, missingMark());
}

void StripBadges::paintLarge(QPainter *pPainter, const QRect &box, const QString &path)
{
    const QString text = elidedSuffix(path, boldFont(CardFontPixels), CardWidth);
    pPainter->drawPixmap(box, cardPixmap(text, box.size(), pPainter->device()->devicePixelRatioF()));
}

void StripBadges::paintSmall(QPainter *pPainter, const QRect &box, const QString &path)
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    const QFont font = boldFont(SmallFontPixels);
    pPainter->setBrush(pSkin->GetMainColor());
    pPainter->drawRoundedRect(box, SmallRadius, SmallRadius);
    pPainter->setFont(font);
    pPainter->setPen(pSkin->GetTextColor(TextOnMain));
    pPainter->drawText(box, Qt::AlignCenter, elidedSuffix(path, font, box.width()));
}
