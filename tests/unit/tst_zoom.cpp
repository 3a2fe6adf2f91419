#include "PluginTest.h"
#include "common/CResourceItem.h"
#include "common/PictureLevels.h"
#include "common/PictureMemory.h"
#include "common/PictureTurn.h"
#include "common/ZoomModel.h"

#include <QGraphicsScene>
#include <QPainter>

namespace {

constexpr double Nothing = -1.0;

ZoomModel modelAt(double fScale)
{
    ZoomModel model({0, 5, 25, 50, 75, 100, 125, 150, 175, 200, 250, 300, 400, 500, 600, 700, 800});
    model.setScale(fScale);
    return model;
}

/** Red, green, blue and yellow quarters, clockwise from the top left. */
QPixmap quarters(const QSize &size)
{
    QPixmap pixmap(size);
    QPainter painter(&pixmap);
    const QPoint c(size.width() / 2, size.height() / 2);
    painter.fillRect(pixmap.rect(), Qt::red);
    painter.fillRect(QRect(c.x(), 0, size.width(), c.y()), Qt::green);
    painter.fillRect(QRect(c, size), Qt::blue);
    painter.fillRect(QRect(0, c.y(), c.x(), size.height()), Qt::yellow);
    return pixmap;
}

QImage render(QGraphicsScene &scene, const QRectF &rect)
{
    QImage image = plainImage(rect.size().toSize(), Qt::black, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    scene.render(&painter, QRectF(image.rect()), rect);
    return image;
}

} // namespace

class tst_zoom : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void steps()
    {
        const std::tuple<double, double, double> rows[] = {
            {0.0, 0.05, Nothing},     {0.04, 0.05, 0.0},
            {0.05, 0.25, 0.0},        {0.0549, 0.25, 0.0},
            {0.055, 0.25, 0.05},      {0.9, 1.0, 0.75},
            {0.996, 1.25, 0.75}, // counts as 100 %
            {1.0, 1.25, 0.75},        {0.1 * 3 + 0.7 - 1e-16, 1.25, 0.75},
            {7.99, 8.0, 7.0},         {8.0, Nothing, 7.0},
            {8.01, Nothing, Nothing}, {-0.02, Nothing, Nothing}};
        for (const auto &[fScale, fIn, fOut] : rows) {
            const ZoomModel model = modelAt(fScale);
            QCOMPARE(model.zoomInTarget().value_or(Nothing), fIn);
            QCOMPARE(model.zoomOutTarget().value_or(Nothing), fOut);
        }
        // Where there is nothing to fit.
        QVERIFY(!ZoomModel::fitToWindowTarget(QSizeF(800, 600), QSizeF(0, 0)).has_value());
        QVERIFY(!ZoomModel::fitToWidthTarget(QSizeF(800, 600), QSizeF(0, 0)).has_value());
    }

    void wheelNeverPassesItsBounds()
    {
        ZoomModel model = modelAt(1.0);
        int nNotches = 0;
        while (const auto target = model.wheelTarget(true)) {
            QVERIFY(model.percent() <= 795);
            QVERIFY(qAbs(*target - model.scale() - 0.03) < 1e-9);
            model.setScale(*target);
            QVERIFY(++nNotches < 1000);
        }
        QCOMPARE(model.percent(), 796);
        while (const auto target = model.wheelTarget(false)) {
            QVERIFY(model.percent() >= 6);
            model.setScale(*target);
        }
        QCOMPARE(model.percent(), 4);
        QVERIFY(modelAt(0.05).wheelTarget(true).has_value());
        QVERIFY(!modelAt(0.05).wheelTarget(false).has_value());
        QVERIFY(!modelAt(7.96).wheelTarget(true).has_value());
    }

    void screenFormats()
    {
        constexpr auto Opaque = QImage::Format_RGB32;
        constexpr auto Blended = QImage::Format_ARGB32_Premultiplied;
        const std::tuple<QImage::Format, int, QImage::Format> rows[] = {
            {QImage::Format_RGB888, 255, Opaque},   {QImage::Format_BGR888, 255, Opaque},
            {QImage::Format_ARGB32, 255, Opaque},   {QImage::Format_ARGB32, 254, Blended},
            {QImage::Format_RGBA8888, 255, Opaque}, {QImage::Format_RGBA8888, 0, Blended},
            {QImage::Format_RGB32, 255, Opaque}};
        for (const auto &[format, nAlpha, expected] : rows) {
            QImage image(7, 5, format);
            image.fill(QColor(200, 100, 50));
            image.setPixelColor(6, 4, QColor(200, 100, 50, nAlpha)); // the last one
            const QImage screen = PictureLevels::toScreenFormat(image);
            QCOMPARE(screen.format(), expected);
            QCOMPARE(screen.pixelColor(0, 0), QColor(200, 100, 50));
            QCOMPARE(screen.pixelColor(6, 4).alpha(), nAlpha);
        }
        QVERIFY(PictureLevels::toScreenFormat(QImage()).isNull());
    }

    void levels()
    {
        PictureMemory memory;
        const QVector<std::pair<QSize, QList<QSize>>> rows = {
            {QSize(1024, 1024), {}},
            {QSize(1025, 777), {{513, 389}}},
            {QSize(4099, 2001), {{2050, 1001}, {1025, 501}, {513, 251}}},
            {QSize(3000, 1), {{1500, 1}, {750, 1}}},
            {QSize(1, 2100), {{1, 1050}, {1, 525}}}};
        for (const auto &row : rows) {
            const QImage image = plainImage(row.first, QColor(90, 60, 30), QImage::Format_ARGB32_Premultiplied);
            QList<QSize> sizes;
            for (const QImage &level : PictureLevels::build(image, memory)) {
                sizes.append(level.size());
                QCOMPARE(level.pixelColor(level.width() - 1, level.height() - 1), QColor(90, 60, 30));
            }
            QCOMPARE(sizes, row.second);
            QVERIFY(PictureLevels::build(image.convertToFormat(QImage::Format_RGB888), memory).isEmpty());
        }
    }

    /** Every pixel arrives and the one transparent pixel is seen, wherever the target begins. */
    void pixelsAreCopiedPastTheCache()
    {
        constexpr int Length = 75;
        for (int nOffset = 0; nOffset < 5; ++nOffset) {
            for (int nTransparent = -1; nTransparent < Length; ++nTransparent) {
                QVector<quint32> source(Length);
                for (int i = 0; i < Length; ++i)
                    source[i] = quint32(i) | (i == nTransparent ? 0xFE000000U : 0xFF000000U);
                QVector<quint32> target(Length + 8, 0x12345678U);
                QCOMPARE(PictureLevels::copyPixels(source.constData(), target.data() + nOffset, Length),
                         nTransparent < 0);
                QCOMPARE(target.mid(nOffset, Length), source);
                QCOMPARE(target.at(nOffset + Length), 0x12345678U);
            }
        }
    }

    /** Each pixel is the mean of four, wherever it stands in a row. */
    void levelsAverageEveryPixel()
    {
        PictureMemory memory;
        QImage image(1031, 4, QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, QRandomGenerator::global()->generate() | 0xFF000000U);
        }
        const QImage half = PictureLevels::build(image, memory).value(0);
        QCOMPARE(half.size(), QSize(516, 2));
        using Part = int (*)(QRgb);
        const auto mean = [&image](int x, int y, Part pPart) {
            const int nRight = qMin(2 * x + 1, image.width() - 1); // an odd last column stands for two
            return (pPart(image.pixel(2 * x, 2 * y)) + pPart(image.pixel(nRight, 2 * y)) +
                    pPart(image.pixel(2 * x, 2 * y + 1)) + pPart(image.pixel(nRight, 2 * y + 1))) /
                   4;
        };
        for (int y = 0; y < half.height(); ++y) {
            for (int x = 0; x < half.width(); ++x) {
                for (const Part pPart : {Part(&qRed), Part(&qGreen), Part(&qBlue)})
                    QVERIFY(qAbs(pPart(half.pixel(x, y)) - mean(x, y, pPart)) <= 1);
            }
        }
    }

    /** As Qt turns and mirrors, pixel by pixel, also where sides are no multiples of what is turned at once. */
    void picturesAreTurned()
    {
        for (const QSize &size : {QSize(1, 1), QSize(4, 4), QSize(3, 50), QSize(37, 33), QSize(70, 101)}) {
            QImage upright(size, QImage::Format_RGB32);
            for (int y = 0; y < size.height(); ++y) {
                for (int x = 0; x < size.width(); ++x)
                    upright.setPixel(x, y, QRandomGenerator::global()->generate() | 0xFF000000U);
            }
            for (const bool bClockwise : {false, true}) {
                for (const bool bMirrored : {false, true}) {
                    QImage turned(size.transposed(), QImage::Format_RGB32);
                    PictureTurn::turnInto(upright, bClockwise, bMirrored, &turned);
                    const QImage expected = upright.transformed(QTransform().rotate(bClockwise ? 90.0 : -90.0));
                    QCOMPARE(turned, expected.mirrored(bMirrored, false));
                }
            }
        }
    }

    void turnsAndFlips_data()
    {
        // commands: l: quarter to the left, r: to the right, f: flip, n: new picture
        // expected: corners clockwise from the top left
        const auto row = columns<QString, QString>("commands", "expected");
        const std::pair<const char *, const char *> rows[] = {
            {"", "RGBY"},   {"l", "GBYR"},  {"r", "YRGB"},  {"ll", "BYRG"},   {"llll", "RGBY"}, {"f", "GRYB"},
            {"ff", "RGBY"}, {"lf", "BGRY"}, {"fl", "RYBG"}, {"lflf", "RGBY"}, {"llf", "YBGR"},  {"lfn", "RGBY"}};
        for (const auto &[pCommands, pExpected] : rows)
            row(*pCommands == 0 ? "none" : pCommands, pCommands, pExpected);
    }

    void turnsAndFlips()
    {
        const auto [commands, expected] = currentRow<QString, QString>();
        QGraphicsScene scene;
        auto *pItem = new CResourceItem(nullptr, QSize());
        scene.addItem(pItem);
        const QPixmap picture = quarters(QSize(40, 20));
        pItem->setPicture(picture, {}, 1.0, QSize(100, 100), QString(), 1);
        for (const QChar command : commands) {
            for (int i = 0; i < 10 && (command == QLatin1Char('l') || command == QLatin1Char('r')); ++i)
                pItem->turnBy(command == QLatin1Char('l') ? -9.0 : 9.0);
            if (command == QLatin1Char('f'))
                pItem->flipHorizontally();
            else if (command == QLatin1Char('n'))
                pItem->setPicture(picture, {}, 1.0, QSize(100, 100), QString(), 1);
        }
        const QSizeF shown = pItem->shownSize();
        const bool bUpright = commands.count(QLatin1Char('l')) + commands.count(QLatin1Char('r')) == 2 ||
                              !pItem->isTurned() || commands.contains(QLatin1Char('n'));
        QVERIFY(qAbs(shown.width() - (bUpright ? 40 : 20)) < 1e-6 &&
                qAbs(shown.height() - (bUpright ? 20 : 40)) < 1e-6);
        const QImage image = render(scene, QRectF(-32, -32, 64, 64));
        const int nX = int(shown.width()) / 2 - 4;
        const int nY = int(shown.height()) / 2 - 4;
        QString corners;
        for (const QPoint &corner : {QPoint(-nX, -nY), QPoint(nX, -nY), QPoint(nX, nY), QPoint(-nX, nY)}) {
            const QColor colour = image.pixelColor(corner + QPoint(32, 32));
            corners += QLatin1Char(colour == QColor(Qt::red)     ? 'R'
                                   : colour == QColor(Qt::green) ? 'G'
                                   : colour == QColor(Qt::blue)  ? 'B'
                                                                 : 'Y');
        }
        QCOMPARE(corners, expected);
    }

    /** A fine line must stay where it is and keep its weight, whichever level it is painted from. */
    void levelIsAsSharpAsThePicture()
    {
        PictureMemory memory;
        const std::pair<QSize, double> rows[] = {
            {{2400, 1600}, 0.25}, {{2400, 1600}, 0.33}, {{2403, 1601}, 0.2}, {{2400, 1600}, 2.0}};
        for (const auto &[size, fScale] : rows) {
            QImage image = plainImage(size, Qt::white);
            const int nLine = size.width() / 2 + 200; // 16 columns of black, so that any way of scaling shows it
            QPainter(&image).fillRect(nLine, 0, 16, size.height(), Qt::black);
            QGraphicsScene scene;
            auto *pItem = new CResourceItem(nullptr, QSize());
            scene.addItem(pItem);
            pItem->setPicture(QPixmap::fromImage(image), PictureLevels::build(image, memory), 1.0, QSize(600, 400),
                              QString(), 1);
            pItem->setScale(fScale);
            const QImage shown = render(scene, QRectF(0, 0, 600, 10));
            double fWeight = 0.0;
            double fCentre = 0.0;
            for (int x = 0; x < 600 && x < size.width() / 2 * fScale - 2; ++x) {
                const double fDark = (255 - qGray(shown.pixel(x, 5))) / 255.0;
                fWeight += fDark;
                fCentre += fDark * (x + 0.5);
            }
            QVERIFY2(qAbs(fWeight - 16 * fScale) < 0.1 * 16 * fScale, qPrintable(QString::number(fWeight)));
            fCentre /= fWeight;
            QVERIFY2(qAbs(fCentre - 208 * fScale) < 0.5 + fScale, qPrintable(QString::number(fCentre)));
        }
    }
};

BIGIMGPREVIEW_TEST_MAIN(tst_zoom)
#include "tst_zoom.moc"
