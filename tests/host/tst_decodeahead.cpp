#include "HostTestSupport.h"
#include "services/basemodule/cache/DecodeAhead.h"
#include "services/basemodule/decode/PictureReader.h"

#include <QtTest>

#include <thread>

using basemodule::fileKey;

namespace {

constexpr qint64 kLandscapeBytes = 960 * 640 * 4;
constexpr qint64 kLargeBytes = 6000LL * 4000 * 4;

} // namespace

class TestDecodeAhead : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readyPictureIsHandedOutWithoutCopy()
    {
        TestModule host;
        const QString path = sample("landscape.jpg");
        host.module->setFilesAhead({path});
        QTRY_VERIFY(host.module->decodeAhead().holds(fileKey(path)));
        const Delivered first = deliver(host.decoder(), path);
        const Delivered second = deliver(host.decoder(), path);
        QCOMPARE(first.image.size(), QSize(960, 640));
        QCOMPARE(first.pixels, second.pixels);
    }

    void shownPictureStaysForTheStepBack()
    {
        TestModule host;
        const auto &ahead = host.module->decodeAhead();
        const QString first = sample("landscape.jpg");
        deliver(host.decoder(), first);
        QVERIFY(ahead.holds(fileKey(first)));
        deliver(host.decoder(), sample("progressive.jpg"));
        host.module->setFilesAhead({sample("grey.jpg")});
        QVERIFY(!ahead.holds(fileKey(first)));
    }

    void changedFileIsDecodedAnew()
    {
        TestModule host;
        const QString path = host.copyOf("landscape.jpg", "changing.jpg");
        host.module->setFilesAhead({path});
        QTRY_VERIFY(host.module->decodeAhead().holds(fileKey(path)));
        host.copyOf("orientation_6.jpg", "changing.jpg");
        QCOMPARE(deliver(host.decoder(), path).rotation, 90);
    }

    void budgetHolds()
    {
        TestModule host;
        const auto &ahead = host.module->decodeAhead();
        host.module->setAheadBudget(2 * kLandscapeBytes + 1000);
        host.module->setFilesAhead(
            {sample("large_24mp.jpg"), sample("landscape.jpg"), sample("progressive.jpg"), sample("cmyk.jpg")});
        QTRY_VERIFY(ahead.holds(fileKey(sample("progressive.jpg"))));
        QVERIFY(ahead.holds(fileKey(sample("landscape.jpg"))));
        QVERIFY(!ahead.holds(fileKey(sample("large_24mp.jpg"))));
        // What is more probable now takes the place of what is less.
        host.module->setFilesAhead({sample("cmyk.jpg"), sample("landscape.jpg"), sample("progressive.jpg")});
        QTRY_VERIFY(ahead.holds(fileKey(sample("cmyk.jpg"))));
        QTRY_VERIFY(!ahead.holds(fileKey(sample("progressive.jpg"))));
        QVERIFY(ahead.heldBytes() <= 2 * kLandscapeBytes);
        host.module->setAheadBudget(0);
        QCOMPARE(ahead.heldBytes(), 0);
    }

    void foregroundJoinsDecodeUnderWay()
    {
        TestModule host;
        const QString path = sample("large_24mp.jpg");
        host.module->setFilesAhead({path});
        QTest::qWait(20); // Whether the decode has begun by now or not, the answer must be the same.
        const Delivered delivered = deliver(host.decoder(), path);
        QCOMPARE(delivered.image.size(), QSize(6000, 4000));
        QTRY_COMPARE(host.module->decodeAhead().heldBytes(), kLargeBytes);
    }

    void turningRoundCancels()
    {
        TestModule host;
        for (int i = 0; i < 20; ++i) {
            host.module->setFilesAhead({sample("large_24mp.jpg")});
            QTest::qWait(i);
            host.module->setFilesAhead({sample("landscape.jpg")});
        }
        QTRY_COMPARE(host.module->decodeAhead().heldBytes(), kLandscapeBytes);
    }

    void rawIsReadyThroughItsRendition()
    {
        TestModule host;
        const QString path = host.copyOf("camera.dng");
        const QFileInfo info(path);
        const RenditionPaths paths =
            host.module->renditionPaths(path, info.size(), info.lastModified().toMSecsSinceEpoch());
        host.module->setFilesAhead({path});
        QTRY_VERIFY(host.module->decodeAhead().holds(fileKey(paths.largePreview)));
        QCOMPARE(deliver(host.decoder(), paths.largePreview).image.size(), QSize(1200, 800));
        QVERIFY(host.module->decodeAhead().holds(fileKey(paths.largePreview)));
    }

    void manyThreadsAtOnce()
    {
        TestModule host;
        std::atomic_int nGood{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&, i] {
                for (int j = 0; j < 6; ++j) {
                    const char *pName = (i + j) % 2 == 0 ? "landscape.jpg" : "landscape.png";
                    const int nLayout = (i + j) % 2 == 0 ? 3 : 1;
                    nGood += deliver(host.decoder(), sample(pName)).layout == nLayout ? 1 : 0;
                }
            });
        }
        for (int i = 0; i < 10; ++i) {
            host.module->setFilesAhead({sample(i % 2 == 0 ? "landscape.jpg" : "large_24mp.jpg")});
            QTest::qWait(5);
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(nGood.load(), 24);
    }

    void endInTheMiddle()
    {
        for (const int nDelay : {0, 3, 15, 60}) {
            TestModule host;
            host.module->setFilesAhead({sample("large_24mp.jpg"), sample("picture.jxl"), sample("tiled.tif")});
            QVERIFY(host.decoder().openFile(sample("landscape.jpg").toUtf8()));
            IDecodedDocument *pDocument = host.decoder().takeDocument();
            IDecodedBitmap *pBitmap = pDocument->createBitmap(1.0, 1.0);
            QVERIFY(pBitmap);
            QTest::qWait(nDelay);
            host.module.reset();
            // What was handed out lives on; what is asked afterwards is refused.
            QVERIFY(pBitmap->pixels()[pBitmap->rowLength() * (pBitmap->height() - 1) + 3] == 255);
            QVERIFY(!pDocument->createBitmap(1.0, 1.0));
            pBitmap->release();
            pDocument->release();
        }
    }
};

QTEST_MAIN(TestDecodeAhead)
#include "tst_decodeahead.moc"
