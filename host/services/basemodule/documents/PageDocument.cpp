#include "services/basemodule/documents/PageDocument.h"

#include "services/basemodule/decode/DecodedPicture.h"

#include <QVariant>

#include <algorithm>
#include <cmath>
#include <mutex>
#include <poppler-qt5.h>
#include <utility>

namespace basemodule {

namespace {

constexpr double kPointsPerInch = 72.0;
// What a page's own size means on a screen.
constexpr double kScreenDpi = 96.0;
constexpr int kLargestOwnSide = 8192;
// A page at 800 % of a large screen is within it.
constexpr double kMostPixels = 160e6;
// More than a page needs that is seen whole: seconds of work.
constexpr double kZoomedPixels = 16e6;

QSize ownSize(const QSizeF &points)
{
    const QSizeF pixels = points * (kScreenDpi / kPointsPerInch);
    const double fReduction = std::min(1.0, kLargestOwnSide / std::max(pixels.width(), pixels.height()));
    return (pixels * fReduction).toSize().expandedTo(QSize(1, 1));
}

QSize targetSize(const QSizeF &points, const QSize &asked)
{
    QSize size = asked.isEmpty() ? ownSize(points)
                                 : points.scaled(QSizeF(asked), Qt::KeepAspectRatio).toSize().expandedTo(QSize(1, 1));
    const double fPixels = double(size.width()) * size.height();
    if (fPixels > kMostPixels)
        size = (QSizeF(size) * std::sqrt(kMostPixels / fPixels)).toSize().expandedTo(QSize(1, 1));
    constexpr qint64 kBytesPerPixel = 4;
    while (size.width() > 1 && !PixelMemory::isAffordable(kBytesPerPixel * size.width() * size.height()))
        size = (size / 2).expandedTo(QSize(1, 1));
    return size;
}

bool shallAbort(const QVariant &abort)
{
    return (*static_cast<const PageDocument::Abort *>(abort.value<void *>()))();
}

void ignoreError(const QString & /*message*/, const QVariant & /*closure*/)
{
}

} // namespace

PageDocument::PageDocument(std::unique_ptr<Poppler::Document> document, int nPageCount)
    : m_document(std::move(document))
    , m_nPageCount(nPageCount)
{
}

PageDocument::~PageDocument() = default;

std::shared_ptr<PageDocument> PageDocument::open(const QString &pdfPath)
{
    static std::once_flag quiet;
    std::call_once(quiet, [] { Poppler::setDebugErrorFunction(ignoreError, QVariant()); });
    std::unique_ptr<Poppler::Document> document(Poppler::Document::load(pdfPath));
    if (!document || document->isLocked() || document->numPages() < 1)
        return {};
    document->setRenderHint(Poppler::Document::Antialiasing);
    document->setRenderHint(Poppler::Document::TextAntialiasing);
    document->setPaperColor(Qt::white);
    const int nPages = document->numPages();
    return std::shared_ptr<PageDocument>(new PageDocument(std::move(document), nPages));
}

QImage PageDocument::render(int nPage, const QSize &pixelSize, const Abort &wish)
{
    bool bZoomed = false;
    const Abort abort = [&] {
        return m_bAbandoned || (wish && wish()) || (bZoomed && !isExpected(nPage));
    };
    const QMutexLocker lock(&m_mutex);
    if (nPage < 0 || nPage >= m_nPageCount || abort())
        return {};
    const std::unique_ptr<Poppler::Page> page(m_document->page(nPage));
    const QSizeF points = page ? page->pageSizeF() : QSizeF();
    if (points.isEmpty())
        return {};
    const QSize size = targetSize(points, pixelSize);
    bZoomed = !pixelSize.isEmpty() && double(size.width()) * size.height() > kZoomedPixels;
    if (abort()) // before the memory is taken
        return {};
    QImage image = page->renderToImage(kPointsPerInch * size.width() / points.width(),
                                       kPointsPerInch * size.height() / points.height(), 0, 0, size.width(),
                                       size.height(), Poppler::Page::Rotate0, nullptr, nullptr, shallAbort,
                                       QVariant::fromValue<void *>(const_cast<Abort *>(&abort)));
    if (image.isNull() || abort())
        return {};
    // The paper is white and leaves nothing to see through: the same bytes, without a conversion.
    if (!image.reinterpretAsFormat(QImage::Format_RGB32))
        image = image.convertToFormat(QImage::Format_RGB32);
    return image;
}

} // namespace basemodule
