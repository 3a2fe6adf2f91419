#include "image/OriginalSize.h"

#include <QImageReader>

#include <cmath>

namespace {

constexpr double LargestDifference = 0.03;
constexpr int TellingSide = 8;

/** The size, turned on its side where only that has the shape shown; empty for another shape. */
QSize inShapeOf(const QSize &size, const QSize &shown)
{
    const auto hasShape = [&shown](const QSize &candidate) {
        const double fRatio = double(candidate.width()) * shown.height() / candidate.height() / shown.width();
        // Short sides are rounded to whole pixels.
        return std::abs(fRatio - 1.0) <= LargestDifference + 1.0 / qMin(shown.width(), shown.height());
    };
    if (size.isEmpty() || shown.isEmpty())
        return {};
    if (hasShape(size))
        return size;
    return hasShape(size.transposed()) ? size.transposed() : QSize();
}

QSize tellingSize(const QString &width, const QString &height)
{
    return {width.toInt(), height.toInt()};
}

QString widthKey()
{
    return QStringLiteral("Thumb::Image::Width");
}

QString heightKey()
{
    return QStringLiteral("Thumb::Image::Height");
}

} // namespace

QSize OriginalSize::toldBy(const QImage &picture)
{
    return inShapeOf(tellingSize(picture.text(widthKey()), picture.text(heightKey())), picture.size());
}

QSize OriginalSize::find(const QString &sourcePath, const QString &shownPath, const QSize &shownSize)
{
    if (!sourcePath.isEmpty()) {
        const QImageReader source(sourcePath);
        const QSize size = source.size();
        const bool bLies = source.transformation() & QImageIOHandler::TransformationRotate90;
        const QSize fitting = inShapeOf(bLies ? size.transposed() : size, shownSize);
        if (!fitting.isEmpty())
            return fitting;
    }
    // A reader by itself cannot tell texts whose key holds colons; the picture can, and a tiny one is quick to read.
    QImageReader shown(shownPath);
    shown.setScaledSize(QSize(TellingSide, TellingSide));
    const QImage picture = shown.read();
    return inShapeOf(tellingSize(picture.text(widthKey()), picture.text(heightKey())), shownSize);
}
