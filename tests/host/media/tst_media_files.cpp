#include "MediaStage.h"
#include "TestMain.h"
#include "interfaces/services/IImageDecoder.h"
#include "metadata/FileMetadata.h"
#include "services/basemodule/BaseModule.h"

namespace {

/** A base module with cache folders of its own. */
struct PictureStage {
    QTemporaryDir folder;
    basemodule::BaseModule module;
    const std::atomic_bool running{false};

    PictureStage()
        : module({folder.filePath(QStringLiteral("r")), folder.filePath(QStringLiteral("t"))}, nullptr)
    {
    }

    QImage picture(const QString &path, int nSide = 512) { return module.readPicture(path, nSide, running); }
};

/** Of two pictures of any size, over all colours. */
int meanDifference(const QImage &first, const QImage &second)
{
    if (first.isNull() || second.isNull())
        return 255;
    const QSize size(64, 48);
    const QImage a = first.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QImage b = second.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    int nSum = 0;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const QColor c = a.pixelColor(x, y);
            const QColor d = b.pixelColor(x, y);
            nSum += qAbs(c.red() - d.red()) + qAbs(c.green() - d.green()) + qAbs(c.blue() - d.blue());
        }
    }
    return nSum / (size.width() * size.height() * 3);
}

} // namespace

class TestMediaFiles : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void pictures_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("plain.mp4") << QSize(320, 240);
        QTest::newRow("vp9.webm") << QSize(320, 240);
        QTest::newRow("turned.mp4") << QSize(240, 320);
        QTest::newRow("anamorphic.mp4") << QSize(427, 240);
        QTest::newRow("interlaced.mpg") << QSize(320, 240);
        QTest::newRow("highrange.mkv") << QSize(320, 240);
        QTest::newRow("film.ogg") << QSize(320, 240);
        QTest::newRow("resized.ts") << QSize(320, 240);
        QTest::newRow("covered.mp3") << QSize(300, 200);
        QTest::newRow("sound.ogg") << QSize(0, 0);
        QTest::newRow("tone.wav") << QSize(0, 0);
    }

    void pictures()
    {
        QFETCH(QSize, size);
        PictureStage stage;
        const QImage image = stage.picture(mediaSample(QTest::currentDataTag()));
        QCOMPARE(image.size(), size);
        if (size.isEmpty())
            return;
        const QImage small = stage.picture(mediaSample(QTest::currentDataTag()), 100);
        QCOMPARE(qMax(small.width(), small.height()), 100);
    }

    void frameIsNotBlack()
    {
        PictureStage stage;
        const QImage image = stage.picture(mediaSample("dark-start.mp4"));
        QVERIFY(image.pixelColor(100, 100).lightness() > 200);
        QVERIFY(image.pixelColor(300, 20).lightness() < 40);
    }

    void highRangeLooksAsItPlays_data()
    {
        QTest::addColumn<int>("most");
        QTest::newRow("highrange.mkv") << 6;
        QTest::newRow("hybridlog.mkv") << 10;
    }

    void highRangeLooksAsItPlays()
    {
        QFETCH(int, most);
        PictureStage stage;
        MediaStage playing;
        playing.showVideo(QSize(320, 240));
        playing.service->openAndPlay(&playing.owner, mediaSample(QTest::currentDataTag()), 0);
        playing.service->pause();
        QTRY_VERIFY(!playing.service->currentFrame(&playing.owner).isEmpty());
        // Its only key frame is the first one; on a busy machine the player has gone past it.
        playing.service->seek(0);
        const QImage still = stage.picture(mediaSample(QTest::currentDataTag()));
        int nMean = 255;
        const auto isAlike = [&] {
            nMean = meanDifference(QImage(playing.service->currentFrame(&playing.owner)), still);
            return nMean <= most;
        };
        QVERIFY2(QTest::qWaitFor(isAlike), qPrintable(QString::number(nMean)));
    }

    void analysisAndRendition()
    {
        PictureStage stage;
        const QString path = mediaSample("plain.mp4");
        const QFileInfo info(path);
        QCOMPARE(stage.module.analyse(path, stage.running), AnalysisOutcome::Done);
        QCOMPARE(stage.module.analyse(mediaSample("tone.wav"), stage.running), AnalysisOutcome::Impossible);
        const RenditionPaths kept =
            stage.module.renditionPaths(path, info.size(), info.lastModified().toMSecsSinceEpoch());
        IImageDecoder *pDecoder = stage.module.imageDecoder();
        QVERIFY(pDecoder->openFile(kept.largePreview.toUtf8()));
        IDecodedDocument *pDocument = pDecoder->takeDocument();
        QVERIFY(pDocument != nullptr);
        pDocument->release();
        pDecoder->closeFile();
        QCOMPARE(QImage(kept.largePreview).size(), QSize(320, 240));
    }

    void badFilesGiveNothing_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("zeros") << QByteArray(100000, '\0');
        QTest::newRow("text") << QByteArray("This is no video.\n").repeated(500);
        QTest::newRow("list of files") << QByteArray("#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\n" MEDIA_DIR
                                                     "/plain.mp4\n#EXT-X-ENDLIST\n");
        QTest::newRow("cut off before its index") << readFile(mediaSample("anamorphic.mp4")).left(20000);
    }

    void badFilesGiveNothing()
    {
        QFETCH(QByteArray, content);
        PictureStage stage;
        for (const char *pName : {"bad.mp4", "bad.ts", "bad.mp3"}) {
            const QString path = stage.folder.filePath(QString::fromUtf8(pName));
            QVERIFY(writeFile(path, content));
            QVERIFY(stage.picture(path).isNull());
            QCOMPARE(readFileMetadata(path).nDurationMsec, qint64(0));
        }
    }

    void hugeCover()
    {
        PictureStage stage;
        const QString picture = stage.folder.filePath(QStringLiteral("huge.jpg"));
        const QString song = stage.folder.filePath(QStringLiteral("song.mp3"));
        QVERIFY(plainImage(QSize(10000, 10000), Qt::green).save(picture, "jpg", 60));
        QProcess process;
        process.start(QStringLiteral(FFMPEG_PROGRAM),
                      {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-i"), mediaSample("tone.wav"),
                       QStringLiteral("-i"), picture, QStringLiteral("-map"), QStringLiteral("0"),
                       QStringLiteral("-map"), QStringLiteral("1"), QStringLiteral("-c:v"), QStringLiteral("copy"),
                       QStringLiteral("-disposition:v"), QStringLiteral("attached_pic"), song});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
        const QImage cover = stage.picture(song, 360);
        QCOMPARE(cover.size(), QSize(360, 360));
        QVERIFY(cover.pixelColor(180, 180).green() > 230);
    }

    void cancelledSoon()
    {
        PictureStage stage;
        const std::atomic_bool cancelled{true};
        QVERIFY(stage.module.readPicture(mediaSample("plain.mp4"), 512, cancelled).isNull());
        QCOMPARE(stage.module.analyse(mediaSample("plain.mp4"), cancelled), AnalysisOutcome::Cancelled);
    }

    void metadata_data()
    {
        const auto row = columns<QSize, int, QString, double, QString, QString>("size", "duration", "codec", "frames",
                                                                                "channels", "title");
        row("plain.mp4", QSize(320, 240), 2000, "h264 · aac", 25.0, "mono", "");
        row("turned.mp4", QSize(240, 320), 2000, "h264 · aac", 25.0, "mono", "");
        row("anamorphic.mp4", QSize(427, 240), 2000, "h264", 25.0, "", "");
        row("tone.flac", QSize(), 2000, "flac", 0.0, "mono", "Tone");
        row("covered.mp3", QSize(), 2000, "mp3", 0.0, "mono", "Covered");
        row("eight.wav", QSize(), 1000, "pcm_s16le", 0.0, "7.1", "");
    }

    void metadata()
    {
        const auto [size, duration, codec, frames, channels, title] =
            currentRow<QSize, int, QString, double, QString, QString>();
        const FileMetadata metadata = readFileMetadata(mediaSample(QTest::currentDataTag()));
        QCOMPARE(metadata.dimensions, size);
        QVERIFY(qAbs(metadata.nDurationMsec - duration) < 120);
        QCOMPARE(metadata.codec, codec);
        QCOMPARE(metadata.fFramesPerSecond, frames);
        QCOMPARE(metadata.channels, channels);
        QCOMPARE(metadata.title, title);
        QVERIFY(metadata.nBitsPerSecond > 0);
    }
};

BIGIMGPREVIEW_TEST_MAIN(TestMediaFiles)
#include "tst_media_files.moc"
