#include "services/basemodule/decode/FontReader.h"

#include <QFontDatabase>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QPainter>
#include <QRawFont>

namespace basemodule {

namespace {

constexpr QSize kSpecimen(1600, 1000);
constexpr double kMargin = 80.0;
constexpr int kMostGlyphs = 120;

struct Line {
    QString text;
    double fPixels = 0.0;
};

/** What a font of another writing system is shown by. */
QString sampleOf(const QRawFont &font)
{
    const QString latin = QStringLiteral("The quick brown fox jumps over the lazy dog");
    if (font.supportsCharacter(QLatin1Char('e')))
        return latin;
    const QList<QFontDatabase::WritingSystem> systems = font.supportedWritingSystems();
    for (const QFontDatabase::WritingSystem system : systems) {
        const QString sample = QFontDatabase::writingSystemSample(system);
        if (system != QFontDatabase::Symbol && !sample.isEmpty())
            return sample;
    }
    return {};
}

void drawGlyphs(QPainter *pPainter, const QRawFont &font, const QVector<quint32> &glyphs, double *pY)
{
    // Wider than the sheet: what is too much goes into the next line.
    const double fRight = kSpecimen.width() - kMargin;
    const QVector<QPointF> advances = font.advancesForGlyphIndexes(glyphs, QRawFont::KernedAdvances);
    QVector<quint32> line;
    QVector<QPointF> positions;
    double fX = kMargin;
    const auto flush = [&] {
        QGlyphRun run;
        run.setRawFont(font);
        run.setGlyphIndexes(line);
        run.setPositions(positions);
        *pY += font.ascent();
        pPainter->drawGlyphRun(QPointF(0.0, *pY), run);
        *pY += font.descent() + font.pixelSize() * 0.25;
        line.clear();
        positions.clear();
        fX = kMargin;
    };
    for (int i = 0; i < glyphs.size() && i < advances.size(); ++i) {
        if (fX + advances.at(i).x() > fRight && !line.isEmpty())
            flush();
        line.append(glyphs.at(i));
        positions.append(QPointF(fX, 0.0));
        fX += advances.at(i).x();
    }
    if (!line.isEmpty())
        flush();
}

void drawSpecimen(QPainter *pPainter, QRawFont font)
{
    const QString sample = sampleOf(font);
    double fY = kMargin;
    const bool bLatin = font.supportsCharacter(QLatin1Char('e'));
    QVector<Line> lines;
    if (bLatin) {
        lines << Line{QString(font.familyName() + QLatin1Char(' ') + font.styleName()), 84.0}
              << Line{QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ"), 56.0}
              << Line{QStringLiteral("abcdefghijklmnopqrstuvwxyz"), 56.0}
              << Line{QStringLiteral("0123456789 (.,;:!?) & % @ # $"), 56.0};
    }
    for (const double fPixels : {24.0, 36.0, 48.0, 72.0})
        lines << Line{sample, fPixels};
    for (const Line &line : qAsConst(lines)) {
        font.setPixelSize(line.fPixels);
        drawGlyphs(pPainter, font, font.glyphIndexesForString(line.text), &fY);
    }
    if (!sample.isEmpty())
        return;
    // Symbols that no text calls for: the first of them, as they come.
    QVector<quint32> glyphs;
    for (quint32 nGlyph = 1; nGlyph <= quint32(kMostGlyphs); ++nGlyph)
        glyphs.append(nGlyph);
    font.setPixelSize(64.0);
    drawGlyphs(pPainter, font, glyphs, &fY);
}

} // namespace

DecodeResult readFont(const QByteArray &bytes, const DecodeRequest &request)
{
    DecodeResult result;
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()) == nullptr)
        return result;
    const QRawFont font(bytes, 56.0, QFont::PreferNoHinting);
    if (!font.isValid())
        return result;
    result.fullSize = kSpecimen;
    const QSize target = request.targetSize(kSpecimen);
    if (request.headerOnly || target.isEmpty() || !request.accept(qint64(target.width()) * target.height() * 3))
        return result;
    QImage sheet(target, QImage::Format_RGB32);
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(double(target.width()) / kSpecimen.width(), double(target.height()) / kSpecimen.height());
    painter.setPen(Qt::black);
    drawSpecimen(&painter, font);
    painter.end();
    result.picture = DecodedPicture::fromImage(sheet);
    return result;
}

} // namespace basemodule
