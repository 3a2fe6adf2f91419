#include "PluginTest.h"
#include "common/CResourceItem.h"
#include "common/PictureLevels.h"
#include "common/PictureMemory.h"
#include "common/PictureTurn.h"
#include "common/PlaceholderPainter.h"
#include "common/ZoomModel.h"

#include <QGraphicsScene>
#include <QGraphicsSceneWheelEvent>
#include <QPainter>
#include <QRandomGenerator>

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
    QImage image(rect.size().toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::black);
    QPainter painter(&image);
    scene.render(&painter, QRectF(image.rect()), rect);
    return image;
}

} // namespace

class tst_zoom : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void steps_data();
    void steps();
    void fits_data();
    void fits();
    void wheelNeverPassesItsBounds();
    void screenFormats_data();
    void screenFormats();
    void levels_data();
    void levels();
    void pixelsAreCopiedPastTheCache();
    void levelsAverageEveryPixel();
    void picturesAreTurned();
    void boundingRects_data();
    void boundingRects();
    void turnsAndFlips_data();
    void turnsAndFlips();
    void levelIsAsSharpAsThePicture_data();
    void levelIsAsSharpAsThePicture();
    void circle_data();
    void circle();
    void itemWheel();
    void placeholder();
};

void tst_zoom::steps_data()
{
    QTest::addColumn<double>("scale");
    QTest::addColumn<double>("in");
    QTest::addColumn<double>("out");
    QTest::newRow("0") << 0.0 << 0.05 << Nothing;
    QTest::newRow("4") << 0.04 << 0.05 << 0.0;
    QTest::newRow("5") << 0.05 << 0.25 << 0.0;
    QTest::newRow("5 from above") << 0.0549 << 0.25 << 0.0;
    QTest::newRow("6") << 0.055 << 0.25 << 0.05;
    QTest::newRow("90") << 0.9 << 1.0 << 0.75;
    QTest::newRow("just below 100") << 0.996 << 1.25 << 0.75; // counts as 100
    QTest::newRow("100") << 1.0 << 1.25 << 0.75;
    QTest::newRow("tenths that do not add up") << 0.1 * 3 + 0.7 - 1e-16 << 1.25 << 0.75;
    QTest::newRow("799") << 7.99 << 8.0 << 7.0;
    QTest::newRow("800") << 8.0 << Nothing << 7.0;
    QTest::newRow("801") << 8.01 << Nothing << Nothing;
    QTest::newRow("below nothing") << -0.02 << Nothing << Nothing;
}

void tst_zoom::steps()
{
    QFETCH(double, scale);
    const ZoomModel model = modelAt(scale);
    QTEST(model.zoomInTarget().value_or(Nothing), "in");
    QTEST(model.zoomOutTarget().value_or(Nothing), "out");
}

void tst_zoom::fits_data()
{
    QTest::addColumn<QSizeF>("view");
    QTest::addColumn<QSizeF>("picture");
    QTest::addColumn<double>("window");
    QTest::addColumn<double>("width");
    QTest::newRow("fits") << QSizeF(800, 600) << QSizeF(800, 600) << Nothing << Nothing;
    QTest::newRow("wide") << QSizeF(800, 600) << QSizeF(1600, 300) << 0.5 << 0.5;
    QTest::newRow("tall") << QSizeF(800, 600) << QSizeF(400, 1200) << 0.5 << 2.0;
    QTest::newRow("both") << QSizeF(800, 600) << QSizeF(3200, 1200) << 0.25 << 0.25;
    QTest::newRow("one pixel too tall") << QSizeF(800, 600) << QSizeF(800, 601) << 600.0 / 601 << 1.0;
    QTest::newRow("thin") << QSizeF(800, 600) << QSizeF(1, 60000) << 0.01 << 800.0;
    QTest::newRow("no picture") << QSizeF(800, 600) << QSizeF(0, 0) << Nothing << Nothing;
}

void tst_zoom::fits()
{
    QFETCH(QSizeF, view);
    QFETCH(QSizeF, picture);
    QTEST(ZoomModel::fitToWindowTarget(view, picture).value_or(Nothing), "window");
    QTEST(ZoomModel::fitToWidthTarget(view, picture).value_or(Nothing), "width");
}

void tst_zoom::wheelNeverPassesItsBounds()
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

void tst_zoom::screenFormats_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<int>("alpha");
    QTest::addColumn<QImage::Format>("expected");
    constexpr auto Opaque = QImage::Format_RGB32;
    constexpr auto Blended = QImage::Format_ARGB32_Premultiplied;
    QTest::newRow("rgb") << QImage::Format_RGB888 << 255 << Opaque;
    QTest::newRow("bgr") << QImage::Format_BGR888 << 255 << Opaque;
    QTest::newRow("argb, opaque") << QImage::Format_ARGB32 << 255 << Opaque;
    QTest::newRow("argb, one clear pixel") << QImage::Format_ARGB32 << 254 << Blended;
    QTest::newRow("rgba, opaque") << QImage::Format_RGBA8888 << 255 << Opaque;
    QTest::newRow("rgba, one clear pixel") << QImage::Format_RGBA8888 << 0 << Blended;
    QTest::newRow("screen") << QImage::Format_RGB32 << 255 << Opaque;
}

void tst_zoom::screenFormats()
{
    QFETCH(QImage::Format, format);
    QFETCH(int, alpha);
    QImage image(7, 5, format);
    image.fill(QColor(200, 100, 50));
    image.setPixelColor(6, 4, QColor(200, 100, 50, alpha));
    const QImage screen = PictureLevels::toScreenFormat(image);
    QTEST(screen.format(), "expected");
    QCOMPARE(screen.pixelColor(0, 0), QColor(200, 100, 50));
    QCOMPARE(screen.pixelColor(6, 4).alpha(), alpha);
    QVERIFY(PictureLevels::toScreenFormat(QImage()).isNull());
}

void tst_zoom::levels_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QList<QSize>>("expected");
    QTest::newRow("small") << QSize(1024, 1024) << QList<QSize>{};
    QTest::newRow("odd") << QSize(1025, 777) << QList<QSize>{{513, 389}};
    QTest::newRow("large") << QSize(4099, 2001) << QList<QSize>{{2050, 1001}, {1025, 501}, {513, 251}};
    QTest::newRow("one row") << QSize(3000, 1) << QList<QSize>{{1500, 1}, {750, 1}};
    QTest::newRow("one column") << QSize(1, 2100) << QList<QSize>{{1, 1050}, {1, 525}};
}

void tst_zoom::levels()
{
    PictureMemory memory;
    QFETCH(QSize, size);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(QColor(90, 60, 30, 255));
    QList<QSize> sizes;
    for (const QImage &level : PictureLevels::build(image, memory)) {
        sizes.append(level.size());
        QCOMPARE(level.pixelColor(level.width() - 1, level.height() - 1), QColor(90, 60, 30));
    }
    QTEST(sizes, "expected");
    QVERIFY(PictureLevels::build(image.convertToFormat(QImage::Format_RGB888), memory).isEmpty());
}

/** Every pixel arrives and the one transparent pixel is seen, wherever the target begins. */
void tst_zoom::pixelsAreCopiedPastTheCache()
{
    constexpr int Length = 75;
    for (int nOffset = 0; nOffset < 5; ++nOffset) {
        for (int nTransparent = -1; nTransparent < Length; ++nTransparent) {
            QVector<quint32> source(Length);
            for (int i = 0; i < Length; ++i)
                source[i] = quint32(i) | (i == nTransparent ? 0xFE000000U : 0xFF000000U);
            QVector<quint32> target(Length + 8, 0x12345678U);
            QCOMPARE(PictureLevels::copyPixels(source.constData(), target.data() + nOffset, Length), nTransparent < 0);
            QCOMPARE(target.mid(nOffset, Length), source);
            QCOMPARE(target.at(nOffset + Length), 0x12345678U);
        }
    }
}

/** As Qt turns and mirrors, pixel by pixel, also where sides are no multiples of what is turned at once. */
void tst_zoom::picturesAreTurned()
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

/** Each pixel is the mean of four, wherever it stands in a row. */
void tst_zoom::levelsAverageEveryPixel()
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

void tst_zoom::boundingRects_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("even") << QSize(4, 2) << QRectF(-2, -1, 4, 2);
    QTest::newRow("odd") << QSize(5, 3) << QRectF(-2, -1, 5, 3);
    QTest::newRow("one") << QSize(1, 1) << QRectF(0, 0, 1, 1);
    QTest::newRow("none") << QSize() << QRectF(0, 0, 0, 0);
}

void tst_zoom::boundingRects()
{
    QFETCH(QSize, size);
    QPixmap pixmap(size);
    if (!pixmap.isNull())
        pixmap.fill(Qt::red);
    QGraphicsScene scene;
    auto *pItem = new CResourceItem(&pixmap, QSize());
    scene.addItem(pItem);
    QTEST(pItem->boundingRect(), "expected");
    const QImage image = render(scene, QRectF(-8, -8, 16, 16));
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            const bool bInside = pItem->boundingRect().contains(QPointF(x - 7.5, y - 7.5));
            QCOMPARE(image.pixelColor(x, y), QColor(bInside ? Qt::red : Qt::black));
        }
    }
}

void tst_zoom::turnsAndFlips_data()
{
    QTest::addColumn<QString>("commands"); // l: quarter to the left, r: to the right, f: flip, n: new picture
    QTest::addColumn<QString>("expected"); // corners clockwise from the top left
    QTest::newRow("none") << QString() << QStringLiteral("RGBY");
    QTest::newRow("left") << QStringLiteral("l") << QStringLiteral("GBYR");
    QTest::newRow("right") << QStringLiteral("r") << QStringLiteral("YRGB");
    QTest::newRow("half") << QStringLiteral("ll") << QStringLiteral("BYRG");
    QTest::newRow("full") << QStringLiteral("llll") << QStringLiteral("RGBY");
    QTest::newRow("flip") << QStringLiteral("f") << QStringLiteral("GRYB");
    QTest::newRow("flip twice") << QStringLiteral("ff") << QStringLiteral("RGBY");
    QTest::newRow("left, flip") << QStringLiteral("lf") << QStringLiteral("BGRY");
    QTest::newRow("flip, left") << QStringLiteral("fl") << QStringLiteral("RYBG");
    QTest::newRow("left, flip, left, flip") << QStringLiteral("lflf") << QStringLiteral("RGBY");
    QTest::newRow("left, left, flip") << QStringLiteral("llf") << QStringLiteral("YBGR");
    QTest::newRow("new picture") << QStringLiteral("lfn") << QStringLiteral("RGBY");
}

void tst_zoom::turnsAndFlips()
{
    QGraphicsScene scene;
    auto *pItem = new CResourceItem(nullptr, QSize());
    scene.addItem(pItem);
    const QPixmap picture = quarters(QSize(40, 20));
    pItem->setPicture(picture, {}, 1.0, QSize(100, 100), QString(), 1);
    QFETCH(QString, commands);
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
    QVERIFY(qAbs(shown.width() - (bUpright ? 40 : 20)) < 1e-6 && qAbs(shown.height() - (bUpright ? 20 : 40)) < 1e-6);
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
    QTEST(corners, "expected");
}

void tst_zoom::levelIsAsSharpAsThePicture_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("scale");
    QTest::newRow("quarter") << QSize(2400, 1600) << 0.25;
    QTest::newRow("third") << QSize(2400, 1600) << 0.33;
    QTest::newRow("odd") << QSize(2403, 1601) << 0.2;
    QTest::newRow("enlarged") << QSize(2400, 1600) << 2.0;
}

/** A fine line must stay where it is and keep its weight, whichever level it is painted from. */
void tst_zoom::levelIsAsSharpAsThePicture()
{
    PictureMemory memory;
    QFETCH(QSize, size);
    QFETCH(double, scale);
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    const int nLine = size.width() / 2 + 200; // 16 columns of black, so that any way of scaling shows it
    QPainter(&image).fillRect(nLine, 0, 16, size.height(), Qt::black);
    QGraphicsScene scene;
    auto *pItem = new CResourceItem(nullptr, QSize());
    scene.addItem(pItem);
    pItem->setPicture(QPixmap::fromImage(image), PictureLevels::build(image, memory), 1.0, QSize(600, 400), QString(),
                      1);
    pItem->setScale(scale);
    const QImage shown = render(scene, QRectF(0, 0, 600, 10));
    double fWeight = 0.0;
    double fCentre = 0.0;
    for (int x = 0; x < 600; ++x) {
        const double fDark = (255 - qGray(shown.pixel(x, 5))) / 255.0;
        const bool bInPicture = x < size.width() / 2 * scale - 2;
        fWeight += bInPicture ? fDark : 0.0;
        fCentre += bInPicture ? fDark * (x + 0.5) : 0.0;
    }
    QVERIFY2(qAbs(fWeight - 16 * scale) < 0.1 * 16 * scale, qPrintable(QString::number(fWeight)));
    fCentre /= fWeight;
    QVERIFY2(qAbs(fCentre - 208 * scale) < 0.5 + scale, qPrintable(QString::number(fCentre)));
}

void tst_zoom::circle_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("drawn");
    QTest::newRow("360") << QSize(360, 360) << true;
    QTest::newRow("359") << QSize(359, 360) << false;
    QTest::newRow("361") << QSize(360, 361) << false;
}

void tst_zoom::circle()
{
    QFETCH(QSize, size);
    QFETCH(bool, drawn);
    QPixmap pixmap(size);
    pixmap.fill(Qt::red);
    QGraphicsScene scene;
    auto *pItem = new CResourceItem(&pixmap, QSize());
    pItem->setDrawMode(CResourceItem::DrawCircle);
    scene.addItem(pItem);
    const QImage image = render(scene, QRectF(-200, -200, 400, 400));
    QCOMPARE(image.pixelColor(200, 200), QColor(drawn ? Qt::red : Qt::black));
    QCOMPARE(image.pixelColor(30, 30), QColor(Qt::black)); // a corner, outside the circle
    QCOMPARE(image.pixelColor(200, 25), QColor(drawn ? Qt::red : Qt::black));
    pItem->setDrawMode(99);
    QCOMPARE(render(scene, QRectF(-200, -200, 400, 400)).pixelColor(200, 200), QColor(Qt::black));
}

void tst_zoom::itemWheel()
{
    const QPixmap pixmap = quarters(QSize(100, 100));
    QGraphicsScene scene;
    auto *pItem = new CResourceItem(&pixmap, QSize());
    scene.addItem(pItem);
    const QPointF point(20, 30); // in the picture
    const auto turn = [&scene, pItem, point](int nDelta) {
        QGraphicsSceneWheelEvent event(QEvent::GraphicsSceneWheel);
        event.setPos(point);
        event.setDelta(nDelta);
        const QPointF before = pItem->mapToScene(point);
        scene.sendEvent(pItem, &event);
        return pItem->mapToScene(point) - before;
    };
    for (const int nDelta : {120, 120, -120, -120, -120}) {
        const QPointF moved = turn(nDelta);
        QVERIFY2(moved.manhattanLength() < 1e-6, qPrintable(QString::number(moved.manhattanLength())));
    }
    QVERIFY(qAbs(pItem->scale() - 1.1 * 1.1 * 0.9 * 0.9 * 0.9) < 1e-9);
}

void tst_zoom::placeholder()
{
    const QImage image =
        PlaceholderPainter::paint(QSize(300, 200), Qt::blue, Qt::white, QStringLiteral("WWW"), 120, 40);
    QCOMPARE(image.size(), QSize(300, 200));
    QRect text;
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 300; ++x) {
            if (image.pixelColor(x, y) != QColor(Qt::blue))
                text |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY(QRect(88, 60, 124, 80).contains(text));
    QVERIFY((text.center() - QPoint(150, 100)).manhattanLength() < 12);
    const QString longName = QStringLiteral("/a.") + QString(300, QLatin1Char('x'));
    for (const double fRatio : {1.0, 2.0})
        QCOMPARE(PlaceholderPainter::paintSuffix(longName, fRatio).size(), QSize(500, 500) * fRatio);
    QVERIFY(PlaceholderPainter::paint(QSize(), Qt::blue, Qt::white, QString(), 1, 1).isNull());
}

BIGIMGPREVIEW_TEST_MAIN(tst_zoom)
#include "tst_zoom.moc"
