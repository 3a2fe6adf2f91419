#include "HostTestSupport.h"
#include "Scenes.h"
#include "services/basemodule/cache/ThumbnailCache.h"
#include "services/basemodule/cache/ThumbnailFiles.h"

#include <QFileInfo>
#include <QSignalSpy>
#include <QtTest>

using basemodule::ThumbnailFiles;

namespace {

FileInfoPtr infoOf(TestModule &host, const QString &path)
{
    const QFileInfo file(path);
    return FileInfoPtr(
        new FileInfo(path, host.module->renditionPaths(path, file.size(), file.lastModified().toMSecsSinceEpoch())));
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
    void uprightAndFitted();
    void keptInTheDesktopsFolder();
    void desktopsThumbnailIsHonoured();
    void changedFileGetsNewThumbnail();
    void failureIsRemembered();
    void everyRequestIsAnswered();
    void memoryBudgetHolds();
    void largePictureFromMemory();
    void endInTheMiddle();
};

void TestThumbnails::uprightAndFitted()
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

void TestThumbnails::keptInTheDesktopsFolder()
{
    TestModule host;
    const QString path = host.copyOf("landscape.jpg", "with space & ümlaut.jpg");
    QVERIFY(request(*host.module->cacheManager(), infoOf(host, path), QSize(250, 250)));
    const ThumbnailFiles files(host.folder.filePath(QStringLiteral("thumbnails")));
    const QString kept = files.pathFor(path, ThumbnailFiles::kLarge);
    const QImage image(kept);
    QCOMPARE(image.size(), QSize(256, 171));
    QVERIFY(image.text(QStringLiteral("Thumb::URI")).endsWith(QLatin1String("/with%20space%20&%20%C3%BCmlaut.jpg")));
    QCOMPARE(image.text(QStringLiteral("Thumb::MTime")),
             QString::number(QFileInfo(path).lastModified().toSecsSinceEpoch()));
    QCOMPARE(QFile::permissions(kept) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
}

void TestThumbnails::desktopsThumbnailIsHonoured()
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

void TestThumbnails::changedFileGetsNewThumbnail()
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

void TestThumbnails::failureIsRemembered()
{
    TestModule host;
    const auto pCache = host.module->cacheManager();
    const FileInfoPtr pInfo = infoOf(host, sample("nasty/text_named.jpg"));
    QVERIFY(!request(*pCache, pInfo, QSize(64, 64)));
    QCOMPARE(pCache->lookup(pCache->cacheKey(pInfo, QSize(64, 64)), nullptr), int(ITSCacheManager::Unavailable));
    // Asked again all the same: answered, not tried.
    QVERIFY(!request(*pCache, pInfo, QSize(64, 64)));
    QCOMPARE(pCache->cacheKey(FileInfoPtr(), QSize(64, 64)), QString());
}

void TestThumbnails::everyRequestIsAnswered()
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

void TestThumbnails::memoryBudgetHolds()
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

void TestThumbnails::largePictureFromMemory()
{
    TestModule host;
    const auto pCache = host.module->cacheManager();
    const FileInfoPtr pInfo = infoOf(host, sample("landscape.jpg"));
    QVERIFY(pCache->largePicture(pInfo).isNull());
    QVERIFY(request(*pCache, pInfo, QSize(400, 400)));
    QVERIFY(request(*pCache, pInfo, QSize(50, 50)));
    QCOMPARE(pCache->largePicture(pInfo).width(), 400);
}

void TestThumbnails::endInTheMiddle()
{
    for (int i = 0; i < 8; ++i) {
        TestModule host;
        const auto pCache = host.module->cacheManager();
        for (const char *pName : {"large_24mp.jpg", "picture.jxl", "light.exr", "layers.psd", "drawing.svg"})
            pCache->submitRequest(pCache->createRequest(infoOf(host, sample(pName)), QSize(100, 100), 1.0));
        QTest::qWait(i * 7);
        // The cache outlives its module where somebody still holds it.
        host.module.reset();
        const FileInfoPtr pInfo(new FileInfo(sample("landscape.jpg"), RenditionPaths()));
        pCache->submitRequest(pCache->createRequest(pInfo, QSize(100, 100), 1.0));
    }
}

QTEST_MAIN(TestThumbnails)
#include "tst_thumbnails.moc"
