// Makes the sample pictures: make_samples FOLDER
#include "Documents.h"
#include "Encoders.h"
#include "NastyFiles.h"
#include "RawFormats.h"
#include "Scenes.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>

#include <cstdio>

namespace {

using encoders::Options;
using Kind = encoders::Options::Kind;

constexpr QSize kScene(960, 640);

/** Writes samples into one folder and remembers whether all of them came out. */
class Writer {
public:
    explicit Writer(const QString &folder)
        : m_folder(folder)
    {
    }

    QString path(const char *pName) const { return m_folder + QLatin1Char('/') + QString::fromLatin1(pName); }
    void vips(const char *pName, const QImage &image, const Options &options = Options())
    {
        report(pName, encoders::withVips(image, path(pName), options));
    }
    void frames(const char *pName, const QVector<QImage> &images, const QByteArray &suffixOptions)
    {
        report(pName, encoders::framesWithVips(images, path(pName), suffixOptions));
    }
    void magick(const char *pName, const QImage &image, const char *pCoder)
    {
        report(pName, encoders::withMagick(image, path(pName), pCoder));
    }
    void bytes(const char *pName, const QByteArray &bytes)
    {
        QFile file(path(pName));
        report(pName, file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    void report(const char *pName, bool bMade)
    {
        if (!bMade)
            std::fprintf(stderr, "make_samples: cannot make %s\n", pName);
        m_bOk &= bMade;
    }
    bool isOk() const { return m_bOk; }

private:
    const QString m_folder;
    bool m_bOk = true;
};

Options with(const QByteArray &suffixOptions, Kind kind = Kind::Rgb8)
{
    Options options;
    options.suffixOptions = suffixOptions;
    options.kind = kind;
    return options;
}

QByteArray encoded(const QImage &image, const char *pFormat)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, pFormat, 90);
    return buffer.data();
}

void makeJpegs(Writer &writer)
{
    writer.vips("landscape.jpg", scenes::landscape(kScene, 0.0), with("[Q=90,strip]"));
    writer.vips("progressive.jpg", scenes::landscape(kScene, 0.15), with("[Q=88,interlace,strip]"));
    writer.vips("grey.jpg", scenes::landscape(kScene, 0.3), with("[Q=90,strip]", Kind::Gray8));
    writer.vips("cmyk.jpg", scenes::landscape(kScene, 0.45), with("[Q=92,strip]", Kind::Cmyk8));
    writer.vips("large_24mp.jpg", scenes::landscape(QSize(6000, 4000), 0.55), with("[Q=88,strip]"));
    Options wide = with("[Q=92]");
    wide.icc = encoders::wideGamutProfile();
    writer.vips("wide_gamut.jpg", encoders::inWideGamut(scenes::quarters(kScene)), wide);
    for (int i = 1; i <= 8; ++i) {
        Options options = with("[Q=90]");
        options.orientation = i;
        // What the camera would have recorded for a picture that is upright after turning.
        static const QTransform mirror(-1, 0, 0, 1, 0, 0);
        const QImage upright = scenes::lighthouse(QSize(480, 640));
        QImage stored = upright;
        if (i == 3 || i == 4)
            stored = upright.transformed(QTransform().rotate(180));
        else if (i == 6 || i == 7)
            stored = upright.transformed(QTransform().rotate(270));
        else if (i == 5 || i == 8)
            stored = upright.transformed(QTransform().rotate(90));
        if (i == 2 || i == 4 || i == 5 || i == 7)
            stored = stored.mirrored(true, false);
        writer.vips(qPrintable(QStringLiteral("orientation_%1.jpg").arg(i)), stored, options);
    }
}

void makePngsAndGifs(Writer &writer)
{
    writer.vips("landscape.png", scenes::landscape(kScene, 0.6), with("[compression=6]"));
    writer.vips("interlaced.png", scenes::landscape(kScene, 0.7), with("[interlace]"));
    writer.vips("palette.png", scenes::landscape(kScene, 0.8), with("[palette]"));
    writer.vips("grey.png", scenes::landscape(kScene, 0.2), with("", Kind::Gray8));
    writer.vips("deep_16bit.png", scenes::landscape(kScene, 0.9), with("", Kind::Rgb16));
    writer.vips("transparent.png", scenes::discs(QSize(640, 640)));
    QVector<QImage> frames;
    for (int i = 0; i < 12; ++i)
        frames.append(scenes::ball(QSize(320, 240), i / 12.0));
    writer.frames("anim.gif", frames, "");
    writer.frames("anim.webp", frames, "[Q=80]");
}

void makeModern(Writer &writer)
{
    writer.vips("picture.webp", scenes::discs(QSize(640, 640)), with("[Q=85]"));
    writer.vips("picture.heic", scenes::landscape(kScene, 0.33), with("[Q=70,compression=hevc]"));
    writer.vips("picture.avif", scenes::landscape(kScene, 0.66), with("[Q=60,compression=av1,effort=0]"));
    writer.vips("picture.jxl", scenes::landscape(kScene, 0.85), with("[Q=90,effort=3]"));
    writer.vips("picture.jp2", scenes::landscape(kScene, 0.12), with("[Q=45]"));
}

void makeTiffs(Writer &writer)
{
    writer.vips("tiled.tif", scenes::landscape(kScene, 0.22),
                with("[compression=deflate,tile,tile-width=128,tile-height=128]"));
    writer.vips("lzw.tif", scenes::landscape(kScene, 0.42), with("[compression=lzw,predictor=horizontal]"));
    writer.vips("deep_16bit.tif", scenes::landscape(kScene, 0.52), with("[compression=lzw]", Kind::Rgb16));
    QVector<QImage> pages;
    for (int i = 0; i < 3; ++i)
        pages.append(scenes::landscape(QSize(480, 320), i * 0.3));
    writer.frames("pages.tif", pages, "[compression=deflate]");
    // A short light range would be the same picture again: this one is six times brighter than white.
    writer.bytes("light.exr", rawformats::exr(scenes::landscape(QSize(480, 320), 0.05), 6.0));
    writer.vips("light.hdr", scenes::landscape(kScene, 0.95), with("", Kind::Float));
}

void makeOthers(Writer &writer)
{
    writer.vips("picture.ppm", scenes::landscape(QSize(480, 320), 0.72));
    writer.vips("picture.pgm", scenes::landscape(QSize(480, 320), 0.72), with("", Kind::Gray8));
    writer.bytes("picture.bmp", encoded(scenes::landscape(kScene, 0.28), "bmp"));
    writer.magick("picture.tga", scenes::landscape(QSize(480, 320), 0.38), "TGA");
    writer.magick("picture.pcx", scenes::landscape(QSize(480, 320), 0.48), "PCX");
    writer.magick("layers.psd", scenes::landscape(QSize(480, 320), 0.58), "PSD");
    writer.magick("texture.dds", scenes::discs(QSize(512, 512)), "DDS");
    writer.bytes("icon.ico", rawformats::icon({scenes::discs(QSize(16, 16)), scenes::discs(QSize(64, 64)),
                                               scenes::discs(QSize(256, 256))}));
    writer.bytes("camera.dng",
                 rawformats::dng(scenes::landscape(QSize(240, 160), 0.5),
                                 encoded(scenes::landscape(QSize(1200, 800), 0.5), "jpg"), QSize(1200, 800), 1));
    writer.bytes("drawing.svg",
                 QByteArrayLiteral(
                     "<svg xmlns='http://www.w3.org/2000/svg' width='240' height='160' viewBox='0 0 240 160'>"
                     "<rect width='240' height='160' fill='#16324f'/><circle cx='170' cy='60' r='28' fill='#ffd27d'/>"
                     "<path d='M0 130 L60 70 L110 120 L150 85 L240 150 V160 H0Z' fill='#2a9d8f'/>"
                     "<path d='M0 150 Q60 110 120 140 T240 135 V160 H0Z' fill='#264653'/></svg>\n"));
    writer.bytes("damaged.jpg", encoded(scenes::landscape(kScene, 0.2), "jpg").left(400));
    QPdfWriter pdf(writer.path("page.pdf"));
    pdf.setPageSize(QPageSize(QPageSize::A5));
    QPainter painter(&pdf);
    painter.drawImage(QRect(0, 0, pdf.width(), pdf.width() * 2 / 3), scenes::landscape(kScene, 0.64));
    painter.fillRect(QRect(0, pdf.width() * 3 / 4, pdf.width() / 2, pdf.width() / 40), QColor(60, 60, 80));
    writer.report("page.pdf", painter.end());
}

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_samples FOLDER\n");
        return 2;
    }
    // What is worth looking at, apart from what is only there to be survived.
    const QString folder = QFile::decodeName(argv[1]) + QStringLiteral("/pictures");
    if (!QDir().mkpath(folder) || !encoders::start(argv[0]))
        return 1;
    Writer writer(folder);
    makeJpegs(writer);
    makePngsAndGifs(writer);
    makeModern(writer);
    makeTiffs(writer);
    makeOthers(writer);
    writer.report("documents", makeDocuments(QFile::decodeName(argv[1]) + QStringLiteral("/documents"),
                                             QFile::decodeName(argv[1]) + QStringLiteral("/nasty-documents")));
    writer.report("nasty", makeNastyFiles(folder, QFile::decodeName(argv[1]) + QStringLiteral("/nasty")));
    return writer.isOk() ? 0 : 1;
}
