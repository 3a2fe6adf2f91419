#include "PluginTest.h"
#include "common/PictureLevels.h"
#include "common/PictureMemory.h"
#include "image/AnimationFileTask.h"
#include "image/PictureDecoder.h"
#include "image/PreviewResourceThread.h"

#include <atomic>
#include <thread>

namespace {

const QString Source = QStringLiteral("/pictures/ä source.png");
const QString Large = QStringLiteral("/cache/large.webp");
const QString Thumb = QStringLiteral("/cache/thumb.webp");

FakePicture broken(int nHow)
{
    FakePicture picture;
    picture.opens = nHow != 0;
    picture.hasDocument = nHow != 1;
    picture.kind = nHow == 2 ? int(IDecodedDocument::Vector) : int(IDecodedDocument::Raster);
    picture.hasImageData = nHow != 3;
    picture.hasBitmap = nHow != 4;
    picture.layout = nHow == 5 ? 5 : int(IDecodedBitmap::Bgra32);
    return picture;
}

/** A picture of this size and layout, each pixel of a colour of its own. */
FakePicture patterned(const QSize &size, int nLayout, int nSpare, QImage *pExpected)
{
    const bool bSmall = nLayout <= 2;
    const bool bRedFirst = nLayout == 1 || nLayout == 4;
    *pExpected = QImage(size, QImage::Format_ARGB32);
    FakePicture picture;
    picture.layout = nLayout;
    picture.rowLength = size.width() * (bSmall ? 3 : 4) + nSpare;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const QRgb c = qRgba(10 + x, 60 + y, 200 - x - y, bSmall ? 255 : 90 + x);
            pExpected->setPixel(x, y, c);
            picture.pixels.append(char(bRedFirst ? qRed(c) : qBlue(c)));
            picture.pixels.append(char(qGreen(c)));
            picture.pixels.append(char(bRedFirst ? qBlue(c) : qRed(c)));
            if (!bSmall)
                picture.pixels.append(char(qAlpha(c)));
        }
        picture.pixels.append(QByteArray(nSpare, '\xEE'));
    }
    return picture;
}

/** Frames of one pixel: the smallest animation. */
QByteArray gif(int nFrames)
{
    QByteArray file = QByteArray::fromHex("47494638396101000100800000ff0000ffffff");
    file += QByteArray::fromHex("21ff0b4e45545343415045322e300301000000");
    for (int i = 0; i < nFrames; ++i) {
        file += QByteArray::fromHex("21f9040402000000");
        file += QByteArray::fromHex("2c00000000010001000002024401") + '\0';
    }
    return file + ';';
}

} // namespace

class tst_loader : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void fallbacks_data()
    {
        const auto row = columns<QString, QStringList, QStringList, QString, bool>("source", "readable", "tried",
                                                                                   "loadPath", "isSource");
        const QString nef = QStringLiteral("/raw/x.NEF");
        const QString orf = QStringLiteral("/raw/x.orf");
        row("source", Source, QStringList{Source, Large, Thumb}, QStringList{Source}, Source, true);
        row("large", Source, QStringList{Large, Thumb}, QStringList{Source, Large}, Large, false);
        row("thumb", Source, QStringList{Thumb}, QStringList{Source, Large, Thumb}, Thumb, false);
        row("none", Source, QStringList{}, QStringList{Source, Large, Thumb}, "", false);
        row("raw", nef, QStringList{nef, Large, Thumb}, QStringList{Large}, Large, true);
        row("raw without large", nef, QStringList{nef, Thumb}, QStringList{Large, Large, Thumb}, Thumb, false);
        row("no raw suffix", orf, QStringList{orf}, QStringList{orf}, orf, true);
        for (const char *pSuffix : {"rw2", "nef", "dng", "dcr", "cr3", "cr2", "crw", "arw"}) {
            const QString path = QStringLiteral("/raw/a.b.") + QLatin1String(pSuffix);
            row(pSuffix, path, QStringList{path, Large}, QStringList{Large}, Large, true);
        }
    }

    void fallbacks()
    {
        const auto [source, readable, tried, loadPath, isSource] =
            currentRow<QString, QStringList, QStringList, QString, bool>();
        for (const QString &path : readable)
            host().decoder.setPicture(path, {});
        auto *pTask = new PreviewResourceThread(42);
        QSignalSpy ends(pTask, &PreviewResourceThread::signal_imageReadEnd);
        pTask->setMode(LoadImageMode);
        pTask->setPaths(source, Large, Thumb);
        pTask->setAutoDelete(false);
        pTask->run();
        QCOMPARE(ends.count(), 1);
        QCOMPARE(ends.at(0).at(0).toLongLong(), 42LL);
        QCOMPARE(ends.at(0).at(2).toString(), loadPath);
        QCOMPARE(ends.at(0).at(3).toBool(), isSource);
        QCOMPARE(host().decoder.counts().paths, tried);
        QCOMPARE(ends.at(0).at(1).value<QImage>().isNull(), loadPath.isEmpty());
        QStringList lines;
        for (const char *pLine : {"load src file failed ", "load file hd img failed ", "load file thumb img failed "})
            lines.append(QLatin1String(pLine));
        QCOMPARE(log().lines(QtInfoMsg), lines.mid(0, loadPath.isEmpty() ? 3 : tried.size() - 1));
        delete pTask;
    }

    /** Not opened, without document, vector, without data or bitmap, of an unknown layout. */
    void brokenPictureIsReleased()
    {
        for (int nHow = 0; nHow < 6; ++nHow) {
            host().decoder.setPicture(Source, broken(nHow));
            QVERIFY2(PictureDecoder::decode(Source).image.isNull(), qPrintable(QString::number(nHow)));
            QCOMPARE(host().decoder.counts().opened, nHow + 1);
            QVERIFY(host().decoder.counts().isBalanced());
            QVERIFY(data()->decodeLock()->tryLock());
            data()->decodeLock()->unlock();
        }
    }

    /** Every layout in every width, and with bytes to spare at the end of each row. */
    void layouts()
    {
        for (const int nLayout : {1, 2, 3, 4, 6}) {
            for (const auto &[nColumns, nSpare] : {std::pair(1, 0), {2, 0}, {3, 0}, {5, 0}, {8, 0}, {5, 2}}) {
                QImage expected;
                host().decoder.setPicture(Source, patterned(QSize(nColumns, 3), nLayout, nSpare, &expected));
                const QImage image = PictureDecoder::decode(Source).image;
                QVERIFY2(image.convertToFormat(QImage::Format_ARGB32) == expected,
                         qPrintable(QStringLiteral("layout %1, %2 columns").arg(nLayout).arg(nColumns)));
            }
        }
    }

    void levelsComeWithThePicture()
    {
        FakePicture large;
        large.size = QSize(2100, 1100);
        host().decoder.setPicture(Source, large);
        const auto pLoad = QSharedPointer<PictureLoad>::create();
        PreviewResourceThread task(1);
        int nLevels = -1;
        const auto count = [&nLevels, pLoad] {
            nLevels = pLoad->levels.size();
        };
        connect(&task, &PreviewResourceThread::signal_imageReadEnd, this, count, Qt::DirectConnection);
        task.setAutoDelete(false);
        task.setMode(LoadImageMode);
        task.setPaths(Source, Large, Thumb);
        task.setLoad(pLoad);
        task.run();
        QCOMPARE(nLevels, 2); // there before the picture is announced
        QCOMPARE(pLoad->levels.at(1).size(), QSize(525, 275));
    }

    /** Halved on the way to the same level as afterwards, odd sides included; not where a pixel is transparent. */
    void firstLevelIsMadeWhileCopying()
    {
        const QSize size(1031, 517);
        for (const bool bOpaque : {true, false}) {
            FakePicture picture;
            picture.rowLength = size.width() * 4;
            for (int i = 0; i < size.width() * size.height(); ++i) {
                const quint32 nPixel = 0xFF000000U | (quint32(i) * 2654435761U >> 8);
                picture.pixels.append(reinterpret_cast<const char *>(&nPixel), sizeof nPixel);
            }
            picture.pixels[picture.pixels.size() - 1] = bOpaque ? '\xFF' : '\xFE'; // the last alpha
            host().decoder.setPicture(Source, picture);
            const PictureDecoder::Picture decoded = PictureDecoder::decode(Source);
            QCOMPARE(decoded.bOpaque, bOpaque);
            QCOMPARE(decoded.firstLevel.isNull(), !bOpaque);
            PictureMemory memory;
            const QImage screen = PictureLevels::toScreenFormat(decoded.image, bOpaque);
            if (bOpaque)
                QCOMPARE(decoded.firstLevel, PictureLevels::build(screen, memory).value(0));
        }
    }

    void turnedUpright()
    {
        // Where the stored picture's top left pixel stands upright.
        const QMap<int, QPoint> corners{{0, {0, 0}}, {90, {1, 0}}, {180, {2, 1}}, {270, {0, 2}}};
        for (auto corner = corners.cbegin(); corner != corners.cend(); ++corner) {
            FakePicture picture;
            picture.rotation = corner.key();
            picture.rowLength = 12;
            picture.pixels =
                QByteArray("\x00\x00\xFF\xFF", 4) + QByteArray(20, '\xFF'); // one red pixel, five white ones
            host().decoder.setPicture(Source, picture);
            const QImage image = PictureDecoder::decode(Source).image;
            QCOMPARE(image.size(), corner.key() % 180 == 0 ? QSize(3, 2) : QSize(2, 3));
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    QCOMPARE(image.pixelColor(x, y), QColor(QPoint(x, y) == corner.value() ? Qt::red : Qt::white));
            }
        }
    }

    void oneDecodeAtATime()
    {
        for (int i = 0; i < 20; ++i) {
            const QString path = QStringLiteral("/%1.png").arg(i);
            host().decoder.setPicture(path, {});
            auto *pTask = new PreviewResourceThread(i);
            pTask->setMode(LoadImageMode);
            pTask->setPaths(path, Large, Thumb);
            QThreadPool::globalInstance()->start(pTask);
        }
        finishWorkers();
        QCOMPARE(host().decoder.counts().opened, 20);
        QCOMPARE(host().decoder.counts().mostAtOnce, 1);
        QCOMPARE(host().decoder.counts().inGuiThread, 0);
        QVERIFY(host().decoder.counts().isBalanced());
    }

    void clearWaitsForTheDecode()
    {
        const auto pGate = host().addSlowPicture(1, 10, Source);
        std::thread decode([] { PictureDecoder::decode(Source); });
        QTRY_COMPARE(pGate->waiting(), 1);
        QVERIFY(!data()->decodeLock()->tryLock());
        std::atomic<bool> bCleared{false};
        QSemaphore started;
        std::thread clear([&bCleared, &started] {
            started.release();
            data()->clearPreviewData();
            bCleared = true;
        });
        started.acquire();
        QVERIFY(!bCleared && !QTest::qWaitFor([&bCleared] { return bCleared.load(); }, 30));
        pGate->open();
        clear.join();
        decode.join();
        QVERIFY(host().decoder.counts().isBalanced());
        QVERIFY(data()->dataSource() == nullptr);
    }

    void abandonedLoads_data()
    {
        // before: it began, or while it decodes
        columns<bool, bool>("before", "wantedAgain");
        for (const bool bBefore : {true, false}) {
            for (const bool bAgain : {true, false})
                QTest::addRow("%s%s", bBefore ? "before" : "during", bAgain ? ", again" : "") << bBefore << bAgain;
        }
    }

    /** A load that nobody waits for ends early, and says so; it tries no second file and complains of none. */
    void abandonedLoads()
    {
        const auto [before, wantedAgain] = currentRow<bool, bool>();
        const auto pGate = host().addSlowPicture(1, 10, Source);
        const auto pLoad = QSharedPointer<PictureLoad>::create();
        const auto change = [pLoad, bAgain = wantedAgain] {
            pLoad->setUnwanted();
            if (bAgain)
                pLoad->setWanted();
        };
        auto *pTask = new PreviewResourceThread(1);
        QSignalSpy ended(pTask, &PreviewResourceThread::signal_imageReadEnd);
        pTask->setMode(LoadImageMode);
        pTask->setPaths(Source, Large, Thumb);
        pTask->setLoad(pLoad);
        pTask->setAutoDelete(false);
        if (before) {
            change();
            pGate->open();
        }
        QThreadPool::globalInstance()->start(pTask);
        if (!before) {
            QTRY_COMPARE(pGate->waiting(), 1);
            change();
            pGate->open();
        }
        finishWorkers();
        const std::unique_ptr<PreviewResourceThread> pOwner(pTask);
        QCOMPARE(ended.count(), 1);
        QCOMPARE(ended.at(0).at(1).value<QImage>().isNull(), !wantedAgain);
        QCOMPARE(ended.at(0).at(2).toString(), wantedAgain ? QString(Source) : QString());
        QCOMPARE(ended.at(0).at(3).toBool(), wantedAgain);
        QCOMPARE(pLoad->isGivenUp(), !wantedAgain);
        pLoad->setWanted();
        QCOMPARE(pLoad->isGivenUp(), !wantedAgain); // for good
        QCOMPARE(host().decoder.counts().opened, before && !wantedAgain ? 0 : 1);
        QVERIFY(!log().hasLine(QStringLiteral("load ")));
    }

    /** Those that play are handed over as they are; one frame, no picture, nothing and half a frame are none. */
    void animations()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("x.gif"));
        for (const QByteArray &content : {gif(2), gif(1), QByteArray("text"), QByteArray(), gif(2).left(58)}) {
            QVERIFY(writeFile(path, content));
            const auto pCancel = QSharedPointer<QAtomicInt>::create(0);
            AnimationFileTask task(3, path, pCancel);
            task.setAutoDelete(false);
            QSignalSpy read(&task, &AnimationFileTask::signal_animationRead);
            task.run();
            const bool bPlays = content == gif(2);
            QCOMPARE(read.count(), bPlays ? 1 : 0);
            if (bPlays)
                QCOMPARE(read.at(0), (QVariantList{3LL, path, content}));
            pCancel->storeRelaxed(1);
            task.run(); // nobody waits for it any more
            QCOMPARE(read.count(), bPlays ? 1 : 0);
        }
        AnimationFileTask missing(3, path + QStringLiteral(".gone"), QSharedPointer<QAtomicInt>::create(0));
        missing.setAutoDelete(false);
        missing.run();
    }
};

BIGIMGPREVIEW_TEST_MAIN(tst_loader)
#include "tst_loader.moc"
