#include "common/PlaceholderPainter.h"

#include "theme/TSSkinSetting.h"

#include <QFileInfo>
#include <QFontMetrics>
#include <QPainter>

namespace {

constexpr int SuffixPictureSide = 500;
constexpr int SuffixTextWidth = 400;
constexpr int SuffixFontPixels = 50;
constexpr int TextBoxMargin = 10;

QFont boldFont(int nPixels)
{
    QFont font;
    font.setPixelSize(nPixels);
    font.setWeight(QFont::Bold);
    return font;
}

} // namespace

QImage PlaceholderPainter::paint(const QSize &size, const QColor &background, const QColor &textColor,
                                 const QString &text, int nBoxWidth, int nFontPixels, double fDevicePixelRatio)
{
    QImage image(size * fDevicePixelRatio, QImage::Format_ARGB32);
    image.setDevicePixelRatio(fDevicePixelRatio); // for the painter
    image.fill(background);
    if (image.isNull())
        return image;

    const QFont font = boldFont(nFontPixels);
    const int nBoxHeight = QFontMetrics(font).height() + TextBoxMargin;
    const QRect box((size.width() - nBoxWidth) / 2, (size.height() - nBoxHeight) / 2, nBoxWidth, nBoxHeight);

    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(font);
    painter.setPen(textColor);
    painter.drawText(box, Qt::AlignHCenter | Qt::AlignVCenter, text);
    painter.end();
    return image;
}

QImage PlaceholderPainter::paintSuffix(const QString &path, double fDevicePixelRatio)
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    const QString suffix =
        QFontMetrics(boldFont(SuffixFontPixels)).elidedText(QFileInfo(path).suffix(), Qt::ElideRight, SuffixTextWidth);
    return paint(QSize(SuffixPictureSide, SuffixPictureSide), pSkin->GetPlaceholderBackgroundColor(),
                 pSkin->GetPlaceholderTextColor(), suffix, SuffixTextWidth, SuffixFontPixels, fDevicePixelRatio);
}
