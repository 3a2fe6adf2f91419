#include "HostTestSupport.h"
#include "Scenes.h"
#include "TestTable.h"

namespace {

constexpr double kAnyColors = 254.0;

} // namespace

class TestDecoder : public QObject {
    Q_OBJECT

private:
    TestModule m_host;

private Q_SLOTS:
    void formats_data()
    {
        // hue: of the landscape; below 0: not a landscape
        const auto add = columns<QString, int, QSize, double, double>("name", "layout", "size", "hue", "tolerance");
        const QSize full(960, 640);
        const QSize half(480, 320);
        const auto row = [&add](const char *pName, int nLayout, const QSize &size, double fHue, double fTolerance) {
            add(pName, pName, nLayout, size, fHue, fTolerance);
        };
        row("landscape.jpg", 3, full, 0.0, 2);
        row("progressive.jpg", 3, full, 0.15, 2.5);
        row("cmyk.jpg", 3, full, 0.45, 20); // Inks cannot print every colour of the scene.
        row("large_24mp.jpg", 3, QSize(6000, 4000), 0.55, 2);
        row("landscape.png", 1, full, 0.6, 0);
        row("interlaced.png", 1, full, 0.7, 0);
        row("palette.png", 1, full, 0.8, 4);
        row("deep_16bit.png", 1, full, 0.9, 1);
        row("transparent.png", 4, QSize(640, 640), -1, kAnyColors);
        row("anim.gif", 4, QSize(320, 240), -1, kAnyColors);
        row("anim.webp", 4, QSize(320, 240), -1, kAnyColors);
        row("picture.webp", 4, QSize(640, 640), -1, kAnyColors);
        row("picture.heic", 1, full, 0.33, 4);
        row("picture.avif", 1, full, 0.66, 5);
        row("picture.jxl", 1, full, 0.85, 3);
        row("picture.jp2", 1, full, 0.12, 3);
        row("tiled.tif", 1, full, 0.22, 0);
        row("lzw.tif", 1, full, 0.42, 0);
        row("deep_16bit.tif", 1, full, 0.52, 1);
        row("pages.tif", 1, half, 0.0, 0);
        row("light.exr", 4, half, 0.05, kAnyColors);
        row("light.hdr", 1, full, 0.95, 3);
        row("picture.ppm", 1, half, 0.72, 0);
        row("picture.bmp", 2, full, 0.28, 0);
        row("picture.tga", 2, half, 0.38, 0);
        row("picture.pcx", 2, half, 0.48, 0);
        row("layers.psd", 6, half, 0.58, 0);
        row("texture.dds", 4, QSize(512, 512), -1, kAnyColors);
        row("icon.ico", 4, QSize(256, 256), -1, kAnyColors);
        row("camera.dng", 3, QSize(1200, 800), 0.5, 3);
        row("drawing.svg", 4, QSize(2048, 1365), -1, kAnyColors);
        row("page.pdf", 1, QSize(933, 1322), -1, kAnyColors);
    }

    void formats()
    {
        const auto [name, layout, size, hue, tolerance] = currentRow<QString, int, QSize, double, double>();
        const Delivered delivered = deliver(m_host.decoder(), sample(qPrintable(name)));
        QCOMPARE(delivered.image.size(), size);
        QCOMPARE(delivered.layout, layout);
        QCOMPARE(delivered.rotation, 0);
        if (hue >= 0.0) {
            const double fDifference = difference(delivered.image, scenes::landscape(size, hue));
            QVERIFY2(fDifference <= tolerance, qPrintable(QString::number(fDifference)));
        } else if (delivered.image.hasAlphaChannel() && size.width() == size.height()) {
            const double fDifference = difference(delivered.image, scenes::discs(size));
            QVERIFY2(fDifference <= 6.0, qPrintable(QString::number(fDifference)));
            QCOMPARE(qAlpha(delivered.image.pixel(0, 0)), 0);
        }
    }

    void orientations()
    {
        const int rotations[] = {0, 0, 180, 180, 270, 90, 90, 270};
        for (int i = 1; i <= 8; ++i) {
            const QString path = sample(qPrintable(QStringLiteral("orientation_%1.jpg").arg(i)));
            const Delivered delivered = deliver(m_host.decoder(), path);
            QCOMPARE(delivered.rotation, rotations[i - 1]);
            QVERIFY2(difference(delivered.upright(), scenes::lighthouse(QSize(480, 640))) < 4.0, qPrintable(path));
        }
    }

    void brightLightIsTonedDown()
    {
        const Delivered delivered = deliver(m_host.decoder(), sample("light.exr"));
        const QSize size = delivered.image.size();
        int nBurnt = 0;
        for (int x = 0; x < size.width(); ++x)
            nBurnt += qGray(delivered.image.pixel(x, size.height() / 3)) >= 255 ? 1 : 0;
        QVERIFY(nBurnt < size.width() / 10);
        // Light stays lighter than dark.
        QVERIFY(qGray(delivered.image.pixel(size.width() / 2, size.height() / 2)) >
                qGray(delivered.image.pixel(size.width() / 2, size.height() - 2)));
    }

    void smallerScale()
    {
        for (const char *pName :
             {"landscape.jpg", "landscape.png", "interlaced.png", "tiled.tif", "picture.webp", "picture.jp2",
              "picture.heic", "picture.bmp", "layers.psd", "drawing.svg", "page.pdf"}) {
            const Delivered full = deliver(m_host.decoder(), sample(pName));
            const Delivered small = deliver(m_host.decoder(), sample(pName), 0.3);
            QVERIFY2(qAbs(small.image.width() - qRound(full.image.width() * 0.3)) <= 1, pName);
            QVERIFY2(qAbs(small.image.height() - qRound(full.image.height() * 0.3)) <= 1, pName);
            const QImage expected =
                full.image.scaled(small.image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            QVERIFY2(difference(small.image, expected) < 6.0, pName);
        }
    }

    void badFilesEndCleanly_data()
    {
        QTest::addColumn<QString>("path");
        const QDir nasty(sample("nasty"));
        for (const QString &name : nasty.entryList(QDir::Files)) {
            if (name.startsWith(QLatin1String("zero_")) || name.startsWith(QLatin1String("stub_")) ||
                name.startsWith(QLatin1String("truncated_")) || name.startsWith(QLatin1String("flipped")) ||
                name.startsWith(QLatin1String("text_")) || name.startsWith(QLatin1String("script_")))
                QTest::newRow(qPrintable(name)) << nasty.filePath(name);
        }
        QTest::newRow("folder") << sample("nasty");
        QTest::newRow("missing") << sample("nasty/there is none.jpg");
        QTest::newRow("link to itself") << sample("nasty/itself.jpg");
        QTest::newRow("device") << QStringLiteral("/dev/zero");
    }

    void badFilesEndCleanly()
    {
        QFETCH(QString, path);
        QElapsedTimer timer;
        timer.start();
        const Delivered delivered = deliver(m_host.decoder(), path);
        deliver(m_host.decoder(), path, 0.2);
        QVERIFY2(timer.elapsed() < 15000, qPrintable(QString::number(timer.elapsed())));
        const QString name = QFileInfo(path).fileName();
        const bool bNothing = !name.startsWith(QLatin1String("truncated_")) &&
                              !name.startsWith(QLatin1String("flipped")) && !name.startsWith(QLatin1String("stub_"));
        if (bNothing)
            QVERIFY(delivered.image.isNull());
    }

    void truncatedJpegShowsItsTop()
    {
        const Delivered delivered = deliver(m_host.decoder(), sample("nasty/truncated_landscape.jpg"));
        const QRect top(0, 0, 960, 200);
        const double fDifference =
            difference(delivered.image.copy(top), scenes::landscape(QSize(960, 640), 0.0).copy(top));
        QVERIFY2(fDifference < 3.0, qPrintable(QString::number(fDifference)));
    }

    void contentDecidesNotSuffix()
    {
        QCOMPARE(deliver(m_host.decoder(), sample("nasty/jpeg_named.png")).layout, 3);
        QCOMPARE(deliver(m_host.decoder(), sample("nasty/png_named.jpg")).layout, 1);
        QCOMPARE(deliver(m_host.decoder(), sample("nasty/jpeg_without_suffix")).layout, 3);
        QVERIFY(!m_host.decoder().openFile(sample("nasty/text_named.jpg").toUtf8()));
        m_host.decoder().closeFile();
    }

    void hugePictureIsRefusedSoon()
    {
        QElapsedTimer timer;
        timer.start();
        QVERIFY(deliver(m_host.decoder(), sample("nasty/huge.png")).image.isNull());
        QVERIFY(deliver(m_host.decoder(), sample("nasty/huge.png"), 0.01).image.isNull());
        QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
    }

    void oddNames()
    {
        int nSeen = 0;
        for (const QFileInfo &info : QDir(sample("nasty")).entryInfoList(QDir::Files | QDir::System)) {
            const QString name = info.fileName();
            const bool bOdd = name.startsWith(QChar(0x5c71)) || name.startsWith(QLatin1String("sunset")) ||
                              name.startsWith(QLatin1String("two"));
            if (!bOdd)
                continue;
            ++nSeen;
            QCOMPARE(deliver(m_host.decoder(), info.filePath()).rotation, 90);
        }
        QCOMPARE(nSeen, 3);
        // A name that is no valid text: listed with a replacement character where the odd byte stands.
        const QString unreadable = sample("nasty/caf") + QChar(QChar::ReplacementCharacter) + QStringLiteral(".jpg");
        QCOMPARE(deliver(m_host.decoder(), unreadable).rotation, 90);
    }

    void oddSizes()
    {
        const std::pair<const char *, QSize> rows[] = {{"nasty/1x1.png", {1, 1}},
                                                       {"nasty/1x1.jpg", {1, 1}},
                                                       {"nasty/1x20000.png", {1, 20000}},
                                                       {"nasty/20000x1.jpg", {20000, 1}}};
        for (const auto &[pName, size] : rows) {
            QCOMPARE(deliver(m_host.decoder(), sample(pName)).image.size(), size);
            QVERIFY2(!deliver(m_host.decoder(), sample(pName), 0.01).image.isNull(), pName);
        }
    }

    void rawThroughRendition()
    {
        const QString path = m_host.copyOf("camera.dng");
        const QFileInfo info(path);
        const RenditionPaths paths =
            m_host.module->renditionPaths(path, info.size(), info.lastModified().toMSecsSinceEpoch());
        QVERIFY(!QFile::exists(paths.largePreview));
        const Delivered delivered = deliver(m_host.decoder(), paths.largePreview);
        QVERIFY(QFile::exists(paths.largePreview));
        QVERIFY(difference(delivered.image, scenes::landscape(QSize(1200, 800), 0.5)) < 3.0);
    }

    void renditionOfChangedFileIsRefused()
    {
        const QString path = m_host.copyOf("picture.tga");
        const QFileInfo info(path);
        const qint64 nModified = info.lastModified().toMSecsSinceEpoch();
        const RenditionPaths before = m_host.module->renditionPaths(path, info.size() - 1, nModified);
        const RenditionPaths now = m_host.module->renditionPaths(path, info.size(), nModified);
        QVERIFY(before.largePreview != now.largePreview);
        QVERIFY(deliver(m_host.decoder(), before.largePreview).image.isNull());
        QCOMPARE(deliver(m_host.decoder(), now.largePreview).image.size(), QSize(480, 320));
    }
};

QTEST_MAIN(TestDecoder)
#include "tst_decoder.moc"
