#include "FakeRecords.h"
#include "HostTestSupport.h"
#include "Scenes.h"
#include "TestFiles.h"
#include "services/basemodule/cache/ThumbnailCache.h"
#include "services/basemodule/cache/ThumbnailFiles.h"

#include <QtTest>

#include <csignal>
#include <sys/resource.h>

using basemodule::ThumbnailFiles;

namespace {

/** A record of the file with what the base module reads of it. */
FileInfoPtr infoOf(TestModule &host, const QString &path)
{
    const QFileInfo file(path);
    const RenditionPaths paths =
        host.module->renditionPaths(path, file.size(), file.lastModified().toMSecsSinceEpoch());
    const auto pInfo = QSharedPointer<FakeFileInfo>::create(1, 0, path);
    pInfo->largePreview = paths.largePreview;
    pInfo->thumbnail = paths.thumbnail;
    return pInfo;
}

/** Asks for a thumbnail and waits for the answer. */
bool request(ITSCacheManager &cache, const FileInfoPtr &pInfo, const QSize &size, double fDpi = 1.0)
{
    QSignalSpy spy(&cache, &ITSCacheManager::signalLoadPixmapFinished);
    cache.submitRequest(cache.createRequest(pInfo, size, fDpi));
    return spy.wait(20000) && spy.constFirst().constLast().toBool();
}

} // namespace

class TestThumbnails : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void uprightAndFitted()
    {
        TestModule host;
        const auto pCache = host.module->cacheManager();
        const FileInfoPtr pInfo = infoOf(host, sample("orientation_5.jpg"));
        const QString key = pCache->cacheKey(pInfo, QSize(96, 96));
        QPixmap pixmap;
        QCOMPARE(pCache->lookup(key, &pixmap), int(ITSCacheManager::NotYetThere));
        QVERIFY(request(*pCache, pInfo, QSize(96, 96), 2.0));
        QCOMPARE(pCache->lookup(key, &pixmap), int(ITSCacheManager::Found));
        QCOMPARE(pixmap.size(), QSize(144, 192));
        QCOMPARE(pixmap.devicePixelRatio(), 2.0);
        QImage drawn = pixmap.toImage();
        drawn.setDevicePixelRatio(1.0);
        QVERIFY(difference(drawn, scenes::lighthouse(QSize(144, 192))) < 12.0);
    }

    void keptInTheDesktopsFolder()
    {
        TestModule host;
        const QString path = host.copyOf("landscape.jpg", "with space & ümlaut.jpg");
        QVERIFY(request(*host.module->cacheManager(), infoOf(host, path), QSize(250, 250)));
        const ThumbnailFiles files(host.folder.filePath(QStringLiteral("thumbnails")));
        const QString kept = files.pathFor(path, ThumbnailFiles::kLarge);
        const QImage image(kept);
        QCOMPARE(image.size(), QSize(256, 171));
        QVERIFY(
            image.text(QStringLiteral("Thumb::URI")).endsWith(QLatin1String("/with%20space%20&%20%C3%BCmlaut.jpg")));
        QCOMPARE(image.text(QStringLiteral("Thumb::MTime")),
                 QString::number(QFileInfo(path).lastModified().toSecsSinceEpoch()));
        QCOMPARE(QFile::permissions(kept) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    }

    void desktopsThumbnailIsHonoured()
    {
        TestModule host;
        const QString path = host.copyOf("landscape.jpg");
        const FileInfoPtr pInfo = infoOf(host, path);
        QVERIFY(request(*host.module->cacheManager(), pInfo, QSize(250, 250)));
        const QString kept =
            ThumbnailFiles(host.folder.filePath(QStringLiteral("thumbnails"))).pathFor(path, ThumbnailFiles::kLarge);
        // Another program's thumbnail of the same state: recognised by its colour.
        QImage other(kept);
        other.fill(QColor(1, 2, 200));
        QVERIFY(other.save(kept, "png"));
        QVERIFY(request(*host.module->cacheManager(), pInfo, QSize(240, 240)));
        QPixmap pixmap;
        host.module->cacheManager()->lookup(host.module->cacheManager()->cacheKey(pInfo, QSize(240, 240)), &pixmap);
        QCOMPARE(pixmap.toImage().pixelColor(5, 5), QColor(1, 2, 200));
    }

    void changedFileGetsNewThumbnail()
    {
        TestModule host;
        const auto pCache = host.module->cacheManager();
        const QString path = host.copyOf("landscape.jpg", "changing.jpg");
        const FileInfoPtr pBefore = infoOf(host, path);
        QVERIFY(request(*pCache, pBefore, QSize(250, 250)));
        host.copyOf("orientation_1.jpg", "changing.jpg");
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        file.setFileTime(QDateTime::currentDateTime().addSecs(-500), QFileDevice::FileModificationTime);
        file.close();
        const FileInfoPtr pAfter = infoOf(host, path);
        QVERIFY(pCache->cacheKey(pBefore, QSize(250, 250)) != pCache->cacheKey(pAfter, QSize(250, 250)));
        QVERIFY(request(*pCache, pAfter, QSize(250, 250)));
        QPixmap pixmap;
        QCOMPARE(pCache->lookup(pCache->cacheKey(pAfter, QSize(250, 250)), &pixmap), int(ITSCacheManager::Found));
        QVERIFY(pixmap.height() > pixmap.width());
    }

    void failureIsRemembered()
    {
        TestModule host;
        const auto pCache = host.module->cacheManager();
        const FileInfoPtr pInfo = infoOf(host, sample("nasty/text_named.jpg"));
        QVERIFY(!request(*pCache, pInfo, QSize(64, 64)));
        QCOMPARE(pCache->lookup(pCache->cacheKey(pInfo, QSize(64, 64)), nullptr), int(ITSCacheManager::Unavailable));
        // Asked again all the same: answered, not tried.
        QVERIFY(!request(*pCache, pInfo, QSize(64, 64)));
        QCOMPARE(pCache->cacheKey(FileInfoPtr(), QSize(64, 64)), QString());

        // One that was away comes back as it was.
        const QString path = host.copyOf("landscape.jpg");
        const FileInfoPtr pAway = infoOf(host, path);
        const QString key = pCache->cacheKey(pAway, QSize(64, 64));
        QVERIFY(QFile::rename(path, path + QStringLiteral(".away")));
        QVERIFY(!request(*pCache, pAway, QSize(64, 64)));
        QCOMPARE(pCache->lookup(key, nullptr), int(ITSCacheManager::Unavailable));
        QVERIFY(QFile::rename(path + QStringLiteral(".away"), path));
        QTRY_COMPARE(pCache->lookup(key, nullptr), int(ITSCacheManager::NotYetThere));
        QVERIFY(request(*pCache, pAway, QSize(64, 64)));
    }

    void everyRequestIsAnswered()
    {
        TestModule host;
        const auto pCache = host.module->cacheManager();
        QSet<QString> answered;
        connect(pCache.data(), &ITSCacheManager::signalLoadPixmapFinished, this,
                [&answered](const QString &key, bool) { answered.insert(key); });
        const FileInfoPtr pInfo = infoOf(host, sample("picture.ppm"));
        constexpr int kRequests = 900; // More than the queue holds.
        for (int i = 0; i < kRequests; ++i)
            pCache->submitRequest(pCache->createRequest(pInfo, QSize(10 + i % 90, 10 + i / 90), 1.0));
        QTRY_COMPARE_WITH_TIMEOUT(answered.size(), kRequests, 60000);
    }

    void memoryBudgetHolds()
    {
        TestModule host;
        auto *pCache = static_cast<basemodule::ThumbnailCache *>(host.module->cacheManager().data());
        pCache->setMemoryBudget(300 * 200 * 4 + 1000);
        const FileInfoPtr pFirst = infoOf(host, sample("landscape.jpg"));
        const FileInfoPtr pSecond = infoOf(host, sample("progressive.jpg"));
        QVERIFY(request(*pCache, pFirst, QSize(300, 300)));
        QVERIFY(request(*pCache, pSecond, QSize(300, 300)));
        QCOMPARE(pCache->lookup(pCache->cacheKey(pFirst, QSize(300, 300)), nullptr), int(ITSCacheManager::NotYetThere));
        QCOMPARE(pCache->lookup(pCache->cacheKey(pSecond, QSize(300, 300)), nullptr), int(ITSCacheManager::Found));
    }

    void endInTheMiddle()
    {
        for (int i = 0; i < 8; ++i) {
            TestModule host;
            const auto pCache = host.module->cacheManager();
            for (const char *pName : {"large_24mp.jpg", "picture.jxl", "light.exr", "layers.psd", "drawing.svg"})
                pCache->submitRequest(pCache->createRequest(infoOf(host, sample(pName)), QSize(100, 100), 1.0));
            QTest::qWait(i * 7);
            // The cache outlives its module where somebody still holds it.
            host.module.reset();
            const auto pInfo = QSharedPointer<FakeFileInfo>::create(1, 0, sample("landscape.jpg"));
            pCache->submitRequest(pCache->createRequest(pInfo, QSize(100, 100), 1.0));
        }
    }

    void analysisKeepsPictures()
    {
        TestModule host;
        const std::atomic_bool running{false};
        const std::atomic_bool cancelled{true};
        const QString path = host.copyOf("landscape.jpg");
        const ThumbnailFiles files(host.folder.filePath(QStringLiteral("thumbnails")));
        const QString kept = files.pathFor(path, ThumbnailFiles::kXLarge);
        QCOMPARE(host.module->analyse(path, cancelled), AnalysisOutcome::Cancelled);
        QVERIFY(!QFile::exists(kept));
        QCOMPARE(host.module->analyse(path, running), AnalysisOutcome::Done);
        QVERIFY(QFile::exists(kept));
        // Once more costs no decode: what is there is not written again.
        const QDateTime written = QFileInfo(kept).lastModified();
        QCOMPARE(host.module->analyse(path, running), AnalysisOutcome::Done);
        QCOMPARE(QFileInfo(kept).lastModified(), written);
        // The grid's smaller size comes of it without the file itself.
        QImage mark = plainImage(QSize(300, 200), Qt::magenta);
        for (const QString &key : QImage(kept).textKeys())
            mark.setText(key, QImage(kept).text(key));
        QVERIFY(mark.save(kept));
        QCOMPARE(QColor(files.thumbnail(path, ThumbnailFiles::kLarge, nullptr).pixel(5, 5)), QColor(Qt::magenta));

        QCOMPARE(host.module->analyse(sample("nasty/zero_landscape.jpg"), running), AnalysisOutcome::Impossible);
        // One that vanished may come back.
        QCOMPARE(host.module->analyse(QStringLiteral("/no/such/file.jpg"), running), AnalysisOutcome::Cancelled);
        host.module->shutdown();
        QCOMPARE(host.module->analyse(path, running), AnalysisOutcome::Cancelled);
    }

    void diskBudgetSparesOthers()
    {
        TestModule host;
        const std::atomic_bool running{false};
        const ThumbnailFiles files(host.folder.filePath(QStringLiteral("thumbnails")));
        const QString ours = files.pathFor(host.copyOf("landscape.jpg"), ThumbnailFiles::kXLarge);
        QCOMPARE(host.module->analyse(host.copyOf("landscape.jpg"), running), AnalysisOutcome::Done);
        const QString foreign = QFileInfo(ours).path() + QStringLiteral("/foreign.png");
        QVERIFY(QImage(400, 400, QImage::Format_RGB32).save(foreign));
        files.prune(qint64(1) << 30, running);
        QVERIFY(QFile::exists(ours));
        files.prune(10, running);
        QVERIFY(!QFile::exists(ours));
        QVERIFY(QFile::exists(foreign));
    }

    void fullDiskLosesNothing()
    {
        TestModule host;
        const QString path = host.copyOf("landscape.jpg");
        const ThumbnailFiles files(host.folder.filePath(QStringLiteral("thumbnails")));
        const std::atomic_bool running{false};
        QStringList problems;
        host.module->setProblemHandler([&problems](const QString &problem) { problems.append(problem); });
        // No file may grow beyond this: as on a disk that is full, in the middle of writing.
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit before{};
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
        const rlimit tiny{4096, before.rlim_max};
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &tiny), 0);
        const QImage shown = files.thumbnail(path, ThumbnailFiles::kXLarge, nullptr);
        const AnalysisOutcome outcomes[] = {host.module->analyse(path, running), host.module->analyse(path, running)};
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &before), 0);
        // The picture is there for the screen, and no half of it on the disk.
        QVERIFY(!shown.isNull());
        QDirIterator left(host.folder.filePath(QStringLiteral("thumbnails")), QDir::Files | QDir::Hidden,
                          QDirIterator::Subdirectories);
        QVERIFY2(!left.hasNext(), qPrintable(left.next()));
        // Told once, and done again when there is room.
        QCOMPARE(outcomes[0], AnalysisOutcome::Cancelled);
        QCOMPARE(outcomes[1], AnalysisOutcome::Cancelled);
        QTRY_COMPARE(problems.size(), 1);
        QCOMPARE(host.module->analyse(path, running), AnalysisOutcome::Done);
        QVERIFY(QFile::exists(files.pathFor(path, ThumbnailFiles::kXLarge)));
        QCOMPARE(problems.size(), 1);
    }
};

QTEST_MAIN(TestThumbnails)
#include "tst_thumbnails.moc"
