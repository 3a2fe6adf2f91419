#pragma once

#include "interfaces/services/IImageDecoder.h"
#include "services/basemodule/BaseModule.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTransform>

#include <cstdlib>
#include <memory>

/** A picture as a preview takes it from the decoder. */
struct Delivered {
    QImage image; ///< Not turned.
    int layout = 0;
    int rotation = 0;
    const uchar *pixels = nullptr; ///< Where the pixels stood; only to be compared.

    QImage upright() const { return image.transformed(QTransform().rotate(rotation)); }
};

/** "nasty/…" are the files that are only there to be survived. */
inline QString sample(const char *pName)
{
    const QString name = QString::fromUtf8(pName);
    return QStringLiteral(SAMPLES_DIR) + QLatin1String(name.startsWith(QLatin1String("nasty")) ? "/" : "/pictures/") +
           name;
}

/** Goes through the decoder's operations in the order that previews use. */
inline Delivered deliver(IImageDecoder &decoder, const QString &path, double fScale = 1.0)
{
    Delivered result;
    IDecodedDocument *pDocument = decoder.openFile(path.toUtf8()) ? decoder.takeDocument() : nullptr;
    IDecodedBitmap *pBitmap = pDocument ? pDocument->createBitmap(fScale, fScale) : nullptr;
    if (pBitmap) {
        result.layout = pBitmap->pixelLayout();
        result.rotation = pDocument->rotation();
        result.pixels = pBitmap->pixels();
        const bool bThree = result.layout == 1 || result.layout == 2;
        static const QImage::Format formats[] = {
            QImage::Format_Invalid,  QImage::Format_RGB888,  QImage::Format_BGR888, QImage::Format_ARGB32,
            QImage::Format_RGBA8888, QImage::Format_Invalid, QImage::Format_ARGB32};
        result.image = QImage(pBitmap->pixels(), pBitmap->rowLength() / (bThree ? 3 : 4), pBitmap->height(),
                              pBitmap->rowLength(), formats[result.layout])
                           .copy();
        pBitmap->release();
    }
    if (pDocument)
        pDocument->release();
    decoder.closeFile();
    return result;
}

/** Mean difference of the colour channels, 0 to 255; 255 for other sizes. Transparent pixels are laid over white. */
inline double difference(const QImage &first, const QImage &second)
{
    if (first.size() != second.size() || first.isNull())
        return 255.0;
    const QImage a = first.convertToFormat(QImage::Format_ARGB32);
    const QImage b = second.convertToFormat(QImage::Format_ARGB32);
    const auto flat = [](const QImage &image, int x, int y) {
        const QRgb p = image.pixel(x, y);
        const auto over = [&](int c) {
            return (c * qAlpha(p) + 255 * (255 - qAlpha(p))) / 255;
        };
        return qRgb(over(qRed(p)), over(qGreen(p)), over(qBlue(p)));
    };
    qint64 nSum = 0;
    qint64 nCount = 0;
    const int nStep = qMax(1, qMin(a.width(), a.height()) / 100);
    for (int y = 0; y < a.height(); y += nStep) {
        for (int x = 0; x < a.width(); x += nStep, nCount += 3) {
            const QRgb p = flat(a, x, y);
            const QRgb q = flat(b, x, y);
            nSum += std::abs(qRed(p) - qRed(q)) + std::abs(qGreen(p) - qGreen(q)) + std::abs(qBlue(p) - qBlue(q));
        }
    }
    return double(nSum) / double(nCount);
}

/** A base module with cache folders of its own. */
struct TestModule {
    QTemporaryDir folder;
    std::unique_ptr<basemodule::BaseModule> module;

    TestModule()
        : module(std::make_unique<basemodule::BaseModule>(
              basemodule::CacheFolders{folder.filePath(QStringLiteral("renditions")),
                                       folder.filePath(QStringLiteral("thumbnails"))},
              nullptr))
    {
    }
    IImageDecoder &decoder() const { return *module->imageDecoder(); }

    /** A copy of a sample that a test may change. */
    QString copyOf(const char *pName, const char *pAs = nullptr) const
    {
        const QString path = folder.filePath(QString::fromUtf8(pAs ? pAs : pName));
        QFile::remove(path);
        return QFile::copy(sample(pName), path) ? path : QString();
    }
};
