#include "PluginTest.h"
#include "image/AnimationFileTask.h"
#include "image/PictureDecoder.h"
#include "image/PreviewResourceThread.h"

#include <QSemaphore>
#include <QSignalSpy>
#include <QTemporaryDir>

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

} // namespace

class tst_loader : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void fallbacks_data();
    void fallbacks();
    void brokenPictureIsReleased_data();
    void brokenPictureIsReleased();
    void otherModes();
    void layouts_data();
    void layouts();
    void turnedUpright_data();
    void turnedUpright();
    void oneDecodeAtATime();
    void clearWaitsForTheDecode();
    void levelsComeWithThePicture();
    void abandonedLoads_data();
    void abandonedLoads();
    void resultOfADeadReceiver();
    void animations_data();
    void animations();
};

void tst_loader::fallbacks_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QStringList>("readable");
    QTest::addColumn<QStringList>("tried");
    QTest::addColumn<QString>("loadPath");
    QTest::addColumn<bool>("isSource");
    const QString nef = QStringLiteral("/raw/x.NEF");
    const QString orf = QStringLiteral("/raw/x.orf");
    QTest::newRow("source") << Source << QStringList{Source, Large, Thumb} << QStringList{Source} << Source << true;
    QTest::newRow("large") << Source << QStringList{Large, Thumb} << QStringList{Source, Large} << Large << false;
    QTest::newRow("thumb") << Source << QStringList{Thumb} << QStringList{Source, Large, Thumb} << Thumb << false;
    QTest::newRow("none") << Source << QStringList{} << QStringList{Source, Large, Thumb} << QString() << false;
    QTest::newRow("raw") << nef << QStringList{nef, Large, Thumb} << QStringList{Large} << Large << true;
    QTest::newRow("raw without large") << nef << QStringList{nef, Thumb} << QStringList{Large, Large, Thumb} << Thumb
                                       << false;
    QTest::newRow("no raw suffix") << orf << QStringList{orf} << QStringList{orf} << orf << true;
    for (const char *pSuffix : {"rw2", "nef", "dng", "dcr", "cr3", "cr2", "crw", "arw"}) {
        const QString path = QStringLiteral("/raw/a.b.") + QLatin1String(pSuffix);
        QTest::newRow(pSuffix) << path << QStringList{path, Large} << QStringList{Large} << Large << true;
    }
}

void tst_loader::fallbacks()
{
    QFETCH(QString, source);
    QFETCH(QStringList, readable);
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
    QTEST(ends.at(0).at(2).toString(), "loadPath");
    QTEST(ends.at(0).at(3).toBool(), "isSource");
    QTEST(host().decoder.counts().paths, "tried");
    QFETCH(QString, loadPath);
    QCOMPARE(ends.at(0).at(1).value<QImage>().isNull(), loadPath.isEmpty());
    QFETCH(QStringList, tried);
    QStringList lines;
    for (const char *pLine : {"load src file failed ", "load file hd img failed ", "load file thumb img failed "})
        lines.append(QLatin1String(pLine));
    QCOMPARE(log().lines(QtInfoMsg), lines.mid(0, loadPath.isEmpty() ? 3 : tried.size() - 1));
    delete pTask;
}

void tst_loader::brokenPictureIsReleased_data()
{
    QTest::addColumn<int>("how");
    const char *const names[] = {"not opened", "no document", "vector", "no data", "no bitmap", "unknown layout"};
    for (int i = 0; i < 6; ++i)
        QTest::newRow(names[i]) << i;
}

void tst_loader::brokenPictureIsReleased()
{
    QFETCH(int, how);
    host().decoder.setPicture(Source, broken(how));
    QVERIFY(PictureDecoder::decode(Source).image.isNull());
    QCOMPARE(host().decoder.counts().opened, 1);
    QVERIFY(host().decoder.counts().isBalanced());
    QVERIFY(data()->decodeLock()->tryLock());
    data()->decodeLock()->unlock();
}

void tst_loader::otherModes()
{
    host().renderer.setDocument(5, {QSize(40, 30), QSize(20, 10)});
    PreviewResourceThread task(5);
    QSignalSpy opened(&task, &PreviewResourceThread::signal_pptLoadEnd);
    QSignalSpy rendered(&task, &PreviewResourceThread::signal_pptFrameLoadEnd);
    QSignalSpy cancelled(&task, &PreviewResourceThread::signal_pptCancelEnd);
    QSignalSpy read(&task, &PreviewResourceThread::signal_imageReadEnd);
    task.setPaths(QStringLiteral("/a.pptx"), QString(), QString());
    task.setAutoDelete(false);
    task.run(); // as constructed: nothing
    task.setMode(17);
    task.run();
    QCOMPARE(opened.count() + rendered.count() + cancelled.count() + read.count(), 0);
    task.setMode(OpenPresentationMode);
    task.run();
    QCOMPARE(opened.value(0), (QVariantList{5LL, QStringLiteral("/a.pptx"), true}));
    QCOMPARE(data()->presentationPageCount(5), 2);
    task.setMode(RenderPresentationPageMode);
    task.setFrameIndex(1);
    task.run();
    QCOMPARE(rendered.value(0).value(0).toLongLong(), 5LL);
    QVERIFY(!rendered.value(0).value(1).value<QPixmap>().isNull());
    task.setMode(CancelPresentationsMode);
    task.run();
    QCOMPARE(cancelled.count(), 1);
    QVERIFY(host().renderer.openDocuments().isEmpty());
    QCOMPARE(opened.count() + rendered.count() + read.count(), 2);
}

void tst_loader::layouts_data()
{
    QTest::addColumn<int>("layout");
    QTest::addColumn<int>("columns");
    QTest::addColumn<int>("spare"); // bytes at the end of each row
    for (const int nLayout : {1, 2, 3, 4, 6}) {
        for (const int nColumns : {1, 2, 3, 5, 8})
            QTest::addRow("layout %d, %d columns", nLayout, nColumns) << nLayout << nColumns << 0;
        QTest::addRow("layout %d, spare bytes", nLayout) << nLayout << 5 << 2;
    }
}

void tst_loader::layouts()
{
    QFETCH(int, layout);
    QFETCH(int, columns);
    QFETCH(int, spare);
    constexpr int Rows = 3;
    const bool bSmall = layout <= 2;
    const bool bRedFirst = layout == 1 || layout == 4;
    const auto colour = [bSmall](int x, int y) {
        return qRgba(10 + x, 60 + y, 200 - x - y, bSmall ? 255 : 90 + x);
    };
    FakePicture picture;
    picture.layout = layout;
    picture.rowLength = columns * (bSmall ? 3 : 4) + spare;
    for (int y = 0; y < Rows; ++y) {
        for (int x = 0; x < columns; ++x) {
            const QRgb c = colour(x, y);
            picture.pixels.append(char(bRedFirst ? qRed(c) : qBlue(c)));
            picture.pixels.append(char(qGreen(c)));
            picture.pixels.append(char(bRedFirst ? qBlue(c) : qRed(c)));
            if (!bSmall)
                picture.pixels.append(char(qAlpha(c)));
        }
        picture.pixels.append(QByteArray(spare, '\xEE'));
    }
    host().decoder.setPicture(Source, picture);
    const QImage image = PictureDecoder::decode(Source).image;
    QCOMPARE(image.size(), QSize(columns, Rows));
    for (int y = 0; y < Rows; ++y) {
        for (int x = 0; x < columns; ++x)
            QCOMPARE(QColor::fromRgba(image.pixel(x, y)), QColor::fromRgba(colour(x, y)));
    }
}

void tst_loader::turnedUpright_data()
{
    QTest::addColumn<int>("rotation");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("corner"); // where the stored picture's top left pixel stands upright
    QTest::newRow("0") << 0 << QSize(3, 2) << QPoint(0, 0);
    QTest::newRow("90") << 90 << QSize(2, 3) << QPoint(1, 0);
    QTest::newRow("180") << 180 << QSize(3, 2) << QPoint(2, 1);
    QTest::newRow("270") << 270 << QSize(2, 3) << QPoint(0, 2);
}

void tst_loader::turnedUpright()
{
    FakePicture picture;
    QFETCH(int, rotation);
    picture.rotation = rotation;
    picture.rowLength = 12;
    picture.pixels = QByteArray("\x00\x00\xFF\xFF", 4) + QByteArray(20, '\xFF'); // one red pixel, five white ones
    host().decoder.setPicture(Source, picture);
    const QImage image = PictureDecoder::decode(Source).image;
    QTEST(image.size(), "size");
    QFETCH(QPoint, corner);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            QCOMPARE(image.pixelColor(x, y), QColor(QPoint(x, y) == corner ? Qt::red : Qt::white));
    }
}

void tst_loader::oneDecodeAtATime()
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

void tst_loader::clearWaitsForTheDecode()
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

void tst_loader::levelsComeWithThePicture()
{
    FakePicture large;
    large.size = QSize(2100, 1100);
    host().decoder.setPicture(Source, large);
    const auto pLoad = QSharedPointer<PictureLoad>::create();
    PreviewResourceThread task(1);
    int nLevels = -1;
    connect(
        &task, &PreviewResourceThread::signal_imageReadEnd, this, [&nLevels, pLoad] { nLevels = pLoad->levels.size(); },
        Qt::DirectConnection);
    task.setAutoDelete(false);
    task.setMode(LoadImageMode);
    task.setPaths(Source, Large, Thumb);
    task.setLoad(pLoad);
    task.run();
    QCOMPARE(nLevels, 2); // there before the picture is announced
    QCOMPARE(pLoad->levels.at(1).size(), QSize(525, 275));
    task.setLoad({});
    task.run();
    QCOMPARE(nLevels, 2);
}

void tst_loader::abandonedLoads_data()
{
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("wantedAgain");
    QTest::addColumn<int>("opened");
    QTest::addColumn<bool>("picture");
    QTest::newRow("before it began") << true << false << 0 << false;
    QTest::newRow("while it decodes") << false << false << 1 << false;
    QTest::newRow("before it began, and wanted again") << true << true << 1 << true;
    QTest::newRow("while it decodes, and wanted again") << false << true << 1 << true;
}

/** A load that nobody waits for ends early, and says so; it tries no second file and complains of none. */
void tst_loader::abandonedLoads()
{
    QFETCH(bool, before);
    QFETCH(bool, wantedAgain);
    const auto pGate = host().addSlowPicture(1, 10, Source);
    const auto pLoad = QSharedPointer<PictureLoad>::create();
    const auto change = [&] {
        pLoad->setUnwanted();
        if (wantedAgain)
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
    QFETCH(bool, picture);
    QCOMPARE(ended.count(), 1);
    QCOMPARE(ended.at(0).at(1).value<QImage>().isNull(), !picture);
    QCOMPARE(ended.at(0).at(2).toString(), picture ? QString(Source) : QString());
    QCOMPARE(ended.at(0).at(3).toBool(), picture);
    QCOMPARE(pLoad->isGivenUp(), !picture);
    pLoad->setWanted();
    QCOMPARE(pLoad->isGivenUp(), !picture); // for good
    QTEST(host().decoder.counts().opened, "opened");
    QVERIFY(!log().hasLine(QStringLiteral("load ")));
}

void tst_loader::resultOfADeadReceiver()
{
    const auto pGate = host().addSlowPicture(1, 10, Source);
    auto pReceiver = std::make_unique<QObject>();
    int nCalls = 0;
    auto *pTask = new PreviewResourceThread(1);
    connect(pTask, &PreviewResourceThread::signal_imageReadEnd, pReceiver.get(), [&nCalls] { ++nCalls; });
    pTask->setMode(LoadImageMode);
    pTask->setPaths(Source, Large, Thumb);
    QThreadPool::globalInstance()->start(pTask);
    QTRY_COMPARE(pGate->waiting(), 1);
    pReceiver.reset();
    pGate->open();
    finishWorkers();
    QCOMPARE(nCalls, 0);
}

/** Two frames of one pixel: the smallest animation. */
static QByteArray gif(int nFrames)
{
    QByteArray file = QByteArray::fromHex("47494638396101000100800000ff0000ffffff");
    file += QByteArray::fromHex("21ff0b4e45545343415045322e300301000000");
    for (int i = 0; i < nFrames; ++i) {
        file += QByteArray::fromHex("21f9040402000000");
        file += QByteArray::fromHex("2c00000000010001000002024401") + '\0';
    }
    return file + ';';
}

void tst_loader::animations_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("plays");
    QTest::newRow("two frames") << gif(2) << true;
    QTest::newRow("one frame") << gif(1) << false;
    QTest::newRow("no picture") << QByteArray("text") << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("cut off in the first frame") << gif(2).left(58) << false;
    QTest::newRow("still") << QByteArray::fromBase64(
                                  "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwAD"
                                  "hgGAWjR9awAAAABJRU5ErkJggg==")
                           << false;
}

void tst_loader::animations()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("x.gif"));
    QFETCH(QByteArray, content);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();
    const auto pCancel = QSharedPointer<QAtomicInt>::create(0);
    AnimationFileTask task(3, path, pCancel);
    task.setAutoDelete(false);
    QSignalSpy read(&task, &AnimationFileTask::signal_animationRead);
    task.run();
    QFETCH(bool, plays);
    QCOMPARE(read.count(), plays ? 1 : 0);
    if (plays)
        QCOMPARE(read.at(0), (QVariantList{3LL, path, content}));
    AnimationFileTask missing(3, path + QStringLiteral(".gone"), pCancel);
    missing.setAutoDelete(false);
    missing.run();
    pCancel->storeRelaxed(1);
    task.run(); // nobody waits for it any more
    QCOMPARE(read.count(), plays ? 1 : 0);
}

BIGIMGPREVIEW_TEST_MAIN(tst_loader)
#include "tst_loader.moc"
