#include "MediaStage.h"
#include "TestMain.h"
#include "services/mediaplayer/playback/MpvPlayer.h"
#include "services/mediaplayer/video/TrackMenu.h"

#include <QContextMenuEvent>
#include <QMenu>

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

constexpr int kStopped = ITsMediaPlayerPlugin::Stopped;
constexpr int kPaused = ITsMediaPlayerPlugin::Paused;
constexpr int kPlaying = ITsMediaPlayerPlugin::Playing;

/** Shades of the sample whose seconds differ: what second a grey belongs to. */
int secondOf(const QColor &color)
{
    // Studio range: 40, 80… of 16 to 235.
    return qRound(((color.red() * 219.0 / 255.0 + 16.0) - 40.0) / 40.0);
}

} // namespace

class TestMediaPlayer : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void playsToTheEnd_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("plain.mp4") << QSize(320, 240);
        QTest::newRow("vp9.webm") << QSize(320, 240);
        QTest::newRow("silent.mkv") << QSize(320, 240);
        QTest::newRow("film.ogg") << QSize(320, 240);
        QTest::newRow("turned.mp4") << QSize(240, 320);
        QTest::newRow("anamorphic.mp4") << QSize(426, 240);
        QTest::newRow("interlaced.mpg") << QSize(320, 240);
        QTest::newRow("highrange.mkv") << QSize(320, 240);
        QTest::newRow("sound.ogg") << QSize(0, 0);
    }

    void playsToTheEnd()
    {
        QFETCH(QSize, size);
        MediaStage stage;
        QWidget *pArea = stage.showVideo(QSize(320, 240));
        stage.service->openAndPlay(&stage.owner, mediaSample(QTest::currentDataTag()), 0);
        QCOMPARE(stage.service->state(), kPlaying);
        QTRY_VERIFY(!stage.opened->isEmpty());
        QVERIFY2(qAbs(stage.duration() - 2000) < 150, qPrintable(QString::number(stage.duration())));
        // Reported together with the duration: the surface is sized by it then.
        QCOMPARE(QSize(stage.service->videoWidth(), stage.service->videoHeight()), size);
        if (!size.isEmpty())
            QTRY_VERIFY(middleOf(pArea) != QColor(22, 22, 22));
        QTRY_VERIFY(stage.lastPosition() > 300);
        QTRY_COMPARE_WITH_TIMEOUT(stage.service->state(), kStopped, 6000);
        QVERIFY2(stage.lastPosition() > 1700, qPrintable(QString::number(stage.lastPosition())));
        QVERIFY(stage.problems.isEmpty());
    }

    void startsAndSeeksExactly()
    {
        MediaStage stage;
        QWidget *pArea = stage.showVideo(QSize(160, 120));
        stage.service->openAndPlay(&stage.owner, mediaSample("shades.mp4"), 2300);
        QTRY_VERIFY(!stage.positions->isEmpty());
        QVERIFY(stage.positions->constFirst().constFirst().toLongLong() >= 2300);
        stage.service->pause();
        QTRY_COMPARE(secondOf(middleOf(pArea)), 2);
        // Between key frames, forwards and back.
        for (const int nSecond : {4, 1, 3, 0}) {
            stage.service->seek(nSecond * 1000 + 500);
            QTRY_COMPARE(secondOf(middleOf(pArea)), nSecond);
            QTRY_COMPARE(stage.lastPosition(), qint64(nSecond * 1000 + 500));
        }
        QCOMPARE(stage.service->state(), kPaused);
    }

    void currentFrameIsTheOneOnScreen_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("plain.mp4") << QSize(320, 240);
        QTest::newRow("turned.mp4") << QSize(240, 320);
        QTest::newRow("anamorphic.mp4") << QSize(426, 240);
        QTest::newRow("highrange.mkv") << QSize(320, 240);
    }

    void currentFrameIsTheOneOnScreen()
    {
        QFETCH(QSize, size);
        MediaStage stage;
        QWidget *pArea = stage.showVideo(size);
        QVERIFY(stage.service->currentFrame(&stage.owner).isEmpty());
        stage.service->openAndPlay(&stage.owner, mediaSample(QTest::currentDataTag()), 0);
        QTRY_VERIFY(stage.lastPosition() > 400);
        stage.service->pause();
        const QString path = stage.service->currentFrame(&stage.owner);
        const QImage frame(path);
        QCOMPARE(frame.size(), size);
        // A frame of the same moment, as the core draws it for the screen.
        QTRY_VERIFY([&] {
            const QImage seen = pArea->grab().toImage().scaled(80, 80, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            const QImage kept = frame.scaled(80, 80, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            int nFar = 0;
            for (int i = 0; i < 80 * 80; ++i) {
                const QRgb a = seen.pixel(i % 80, i / 80);
                const QRgb b = kept.pixel(i % 80, i / 80);
                nFar += qAbs(qRed(a) - qRed(b)) + qAbs(qGreen(a) - qGreen(b)) + qAbs(qBlue(a) - qBlue(b)) > 60 ? 1 : 0;
            }
            return nFar < 80;
        }());
        stage.service->stop(&stage.owner);
        QVERIFY(stage.service->currentFrame(&stage.owner).isEmpty());
        QTRY_COMPARE(middleOf(pArea), QColor(22, 22, 22));
    }

    void pausesAndStops()
    {
        MediaStage stage;
        QWidget *pArea = stage.showVideo(QSize(160, 120));
        // While the file is still being opened.
        stage.service->openAndPlay(&stage.owner, mediaSample("plain.mp4"), 0);
        stage.service->pause();
        stage.service->setMute(true);
        stage.service->setVolume(-3.0F);
        QCOMPARE(stage.service->state(), kPaused);
        QTRY_VERIFY(!stage.opened->isEmpty());
        QTRY_VERIFY(middleOf(pArea) != QColor(22, 22, 22));
        const qint64 nStill = stage.lastPosition();
        QVERIFY(nStill < 200);
        stage.service->play();
        QTRY_VERIFY(stage.lastPosition() > 300);
        stage.service->stop(&stage.owner);
        QCOMPARE(stage.service->state(), kStopped);
        stage.positions->clear();
        QTRY_COMPARE(middleOf(pArea), QColor(22, 22, 22));
        QTRY_VERIFY(stage.positions->isEmpty());
        stage.service->seek(1000);
        stage.service->play();
        QCOMPARE(stage.service->state(), kStopped);
    }

    void repeatsAndSeeksAfterTheEnd()
    {
        MediaStage stage;
        QWidget *pArea = stage.showVideo(QSize(160, 120));
        const QString path = mediaSample("shades.mp4");
        stage.service->openAndPlay(&stage.owner, path, 4700);
        QTRY_COMPARE(stage.service->state(), kPlaying);
        QTRY_COMPARE(stage.service->state(), kStopped);
        // The last frame stays until something else is wanted.
        QCOMPARE(secondOf(middleOf(pArea)), 4);
        stage.service->seek(1500);
        QCOMPARE(stage.service->state(), kPaused);
        QTRY_COMPARE(secondOf(middleOf(pArea)), 1);
        stage.service->seek(4800);
        stage.service->play();
        QTRY_COMPARE(stage.service->state(), kStopped);
        stage.opened->clear();
        stage.positions->clear();
        stage.service->openAndPlay(&stage.owner, path, 3200);
        QCOMPARE(stage.opened->size(), 1);
        QCOMPARE(stage.service->state(), kPlaying);
        QTRY_VERIFY(stage.lastPosition() >= 3200);
        QTRY_COMPARE(secondOf(middleOf(pArea)), 3);
    }

    void onlyTheLastOpenedPlays()
    {
        MediaStage stage;
        QWidget *pArea = stage.showVideo(QSize(160, 120));
        QWidget sound;
        stage.service->attachAudioOwner(&sound, false);
        stage.service->openAudio(mediaSample("tone.wav"));
        for (const char *pName : {"plain.mp4", "vp9.webm", "silent.mkv", "film.ogg", "plain.mp4", "shades.mp4"})
            stage.service->openAndPlay(&stage.owner, mediaSample(pName), 0);
        QTRY_VERIFY(!stage.opened->isEmpty());
        QTRY_VERIFY(stage.lastPosition() > 0);
        QCOMPARE(stage.duration(), qint64(5000));
        QCOMPARE(stage.service->videoWidth(), 160);
        QTRY_COMPARE(secondOf(middleOf(pArea)), 0);
        // From the middle of one file into another: nothing of the first is reported or seen.
        stage.service->openAndPlay(&stage.owner, mediaSample("plain.mp4"), 0);
        stage.opened->clear();
        QTRY_VERIFY(!stage.opened->isEmpty());
        QCOMPARE(stage.opened->constFirst().constFirst().toLongLong(), qint64(2000));
        QCOMPARE(stage.service->videoWidth(), 320);
        QVERIFY(stage.problems.isEmpty());
    }

    void badFiles_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("text") << QByteArray("This is no video.\n").repeated(500);
        QTest::newRow("list of files") << QByteArray("#EXTM3U\n" MEDIA_DIR "/plain.mp4\n");
        QTest::newRow("stream list") << QByteArray("#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\n" MEDIA_DIR
                                                   "/plain.mp4\n#EXT-X-ENDLIST\n");
        QTest::newRow("joined files") << QByteArray("ffconcat version 1.0\nfile " MEDIA_DIR "/plain.mp4\n");
        QTest::newRow("cut list") << QByteArray("# mpv EDL v0\n" MEDIA_DIR "/plain.mp4\n");
        QTest::newRow("cut off before its index") << readFile(mediaSample("anamorphic.mp4")).left(20000);
    }

    void badFiles()
    {
        QFETCH(QByteArray, content);
        MediaStage stage;
        QWidget *pArea = stage.showVideo(QSize(160, 120));
        const QString path = stage.folder.filePath(QStringLiteral("bad.mp4"));
        QVERIFY(writeFile(path, content));
        stage.service->openAndPlay(&stage.owner, path, 0);
        QTRY_COMPARE(stage.service->state(), kStopped);
        QCOMPARE(stage.problems, QStringList{QStringLiteral("bad.mp4 cannot be played.")});
        QVERIFY(stage.opened->isEmpty());
        QCOMPARE(middleOf(pArea), QColor(22, 22, 22));
        // What is not there, or would be waited for for ever.
        const QString pipe = stage.folder.filePath(QStringLiteral("pipe.mp4"));
        QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        for (const QString &none : {pipe, stage.folder.path(), stage.folder.filePath(QStringLiteral("gone.mp4"))}) {
            stage.service->openAndPlay(&stage.owner, none, 0);
            QTRY_COMPARE(stage.service->state(), kStopped);
        }
        QCOMPARE(stage.problems.size(), 4);
        stage.service->openAndPlay(&stage.owner, mediaSample("plain.mp4"), 0);
        QTRY_VERIFY(stage.lastPosition() > 0);
    }

    void damagedInTheMiddle()
    {
        MediaStage stage;
        stage.showVideo(QSize(160, 120));
        const QString path = stage.copyOf("vp9.webm", "wrong-suffix.avi");
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        file.seek(file.size() / 2);
        file.write(QByteArray(6000, '\x5a'));
        file.resize(file.size() - 5000);
        file.close();
        stage.service->openAndPlay(&stage.owner, path, 0);
        QTRY_VERIFY(stage.lastPosition() > 0);
        QTRY_COMPARE_WITH_TIMEOUT(stage.service->state(), kStopped, 8000);
        // A video whose size changes tells its new one.
        stage.opened->clear();
        stage.service->openAndPlay(&stage.owner, mediaSample("resized.ts"), 0);
        QTRY_COMPARE(stage.service->videoWidth(), 320);
        QTRY_COMPARE_WITH_TIMEOUT(stage.service->videoWidth(), 640, 8000);
        QVERIFY(stage.opened->size() >= 2);
    }

    void hourWithoutIndex_data() { namedRows({"hour.ts", "hour.mkv"}); }

    void hourWithoutIndex()
    {
        MediaStage stage;
        QWidget *pArea = stage.showVideo(QSize(160, 120));
        stage.service->openAndPlay(&stage.owner, mediaSample(QTest::currentDataTag()), 0);
        QTRY_VERIFY(stage.lastPosition() >= 0);
        if (rowName() == QLatin1String("hour.ts")) // the other one does not tell how long it lasts
            QTRY_VERIFY2(qAbs(stage.duration() - 3600000) < 5000, qPrintable(QString::number(stage.duration())));
        stage.service->pause();
        for (const int nMsec : {3000000, 600000}) {
            stage.service->seek(nMsec);
            QTRY_VERIFY(qAbs(stage.lastPosition() - nMsec) <= 500);
        }
        QVERIFY(middleOf(pArea) != QColor(22, 22, 22));
        // What was read of it tells the least that it lasts.
        QTRY_VERIFY(stage.duration() >= 3000000);
    }

    void slowToOpen()
    {
        MediaStage stage;
        stage.showVideo(QSize(160, 120));
        const QString path = stage.copyOf("plain.mp4", "slow.mp4");
        // As long as we hold the lease, whoever opens the file waits.
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        const auto pIgnored = ::signal(SIGIO, SIG_IGN);
        QCOMPARE(::fcntl(file.handle(), F_SETLEASE, F_WRLCK), 0);
        stage.service->openAndPlay(&stage.owner, path, 0);
        stage.service->seek(500);
        QVERIFY(stage.service->currentFrame(&stage.owner).isEmpty());
        QCOMPARE(stage.service->state(), kPlaying);
        // More often than there are processors: others are opened all the same.
        for (int i = 0; i < 4; ++i) {
            stage.service->stop(&stage.owner);
            stage.service->openAndPlay(&stage.owner, path, 0);
        }
        stage.service->openAndPlay(&stage.owner, mediaSample("shades.mp4"), 0);
        QTRY_COMPARE(stage.duration(), qint64(5000));
        // Come back to while it still waits: it plays as soon as it can be read.
        stage.service->openAndPlay(&stage.owner, path, 0);
        QCOMPARE(::fcntl(file.handle(), F_SETLEASE, F_UNLCK), 0);
        ::signal(SIGIO, pIgnored);
        QTRY_COMPARE(stage.duration(), qint64(2000));
        QVERIFY(stage.problems.isEmpty());
    }

    void fileRemovedWhilePlaying()
    {
        MediaStage stage;
        QWidget *pArea = stage.showVideo(QSize(160, 120));
        const QString path = stage.copyOf("plain.mp4", "soon-gone & 100% ünïcode.mp4");
        stage.service->openAndPlay(&stage.owner, path, 0);
        QTRY_VERIFY(stage.lastPosition() > 0);
        QVERIFY(QFile::remove(path));
        QTRY_COMPARE_WITH_TIMEOUT(stage.service->state(), kStopped, 6000);
        stage.service->stop(&stage.owner);
        QTRY_COMPARE(middleOf(pArea), QColor(22, 22, 22));
        stage.service->openAndPlay(&stage.owner, path, 0);
        QTRY_COMPARE(stage.service->state(), kStopped);
        QCOMPARE(stage.problems.size(), 1);
    }

    void saysOnceThatThereIsNoSound()
    {
        MediaStage stage("none-of-this-name");
        stage.showVideo(QSize(160, 120));
        for (int i = 0; i < 2; ++i) {
            stage.positions->clear();
            stage.service->openAndPlay(&stage.owner, mediaSample("plain.mp4"), 0);
            QTRY_VERIFY(stage.lastPosition() > 500);
            stage.service->stop(&stage.owner);
        }
        QCOMPARE(stage.problems.size(), 1);
        QVERIFY(stage.problems.constFirst().contains(QStringLiteral("silently")));
    }

    void tracksInTheMenu()
    {
        PlayerThreads threads;
        PlayerSetup setup;
        setup.rendering = Rendering::Software;
        setup.soundOutput = QByteArrayLiteral("null");
        MpvPlayer player(&threads, setup, nullptr);
        QSignalSpy opened(&player, &MpvPlayer::signalOpened);
        player.open(mediaSample("plain.mp4"), 0);
        QTRY_VERIFY(!opened.isEmpty());
        QVERIFY(TrackMenu::create(&player, nullptr) == nullptr);
        player.stop();
        opened.clear();
        player.open(mediaSample("tracks.mkv"), 0);
        QTRY_VERIFY(!opened.isEmpty());
        const auto choices = [&player](int nMenu) {
            const std::unique_ptr<QMenu> pMenu(TrackMenu::create(&player, nullptr));
            QStringList texts;
            const QList<QAction *> entries = pMenu->actions().at(nMenu)->menu()->actions();
            for (const QAction *pAction : entries)
                texts.append((pAction->isChecked() ? QStringLiteral("*") : QString()) + pAction->text());
            return texts;
        };
        QTRY_COMPARE(choices(0), (QStringList{QStringLiteral("None"), QStringLiteral("*français")}));
        QCOMPARE(choices(1).size(), 2);
        player.selectTrack(QStringLiteral("sub"), 0);
        player.selectTrack(QStringLiteral("audio"), 2);
        QTRY_COMPARE(choices(0).constFirst(), QStringLiteral("*None"));
        QTRY_COMPARE(choices(1).constLast(), QStringLiteral("*Deutsch"));
    }

    void subtitlesBesideTheFile()
    {
        MediaStage stage;
        QWidget *pArea = stage.showVideo(QSize(320, 240));
        const QString path = stage.copyOf("shades.mp4", "film.mp4");
        for (const char *pName : {"film.srt", "film.de.srt", "other.srt"}) {
            const QString subtitles = stage.folder.filePath(QString::fromUtf8(pName));
            QVERIFY(writeFile(subtitles, "1\n00:00:00,000 --> 00:00:09,000\nMMMMMMMMMM\n"));
        }
        stage.service->openAndPlay(&stage.owner, path, 0);
        stage.service->pause();
        const auto brightest = [pArea] {
            const QImage image = pArea->grab().toImage();
            int nBrightest = 0;
            for (int x = 0; x < image.width(); ++x) {
                for (int y = image.height() / 2; y < image.height(); ++y)
                    nBrightest = qMax(nBrightest, qGray(image.pixel(x, y)));
            }
            return nBrightest;
        };
        QTRY_VERIFY(brightest() > 200);
        // The list of tracks is told by another way than the frames are, and may come after them.
        const auto menu = [pArea] {
            QContextMenuEvent asked(QContextMenuEvent::Mouse, QPoint(5, 5), pArea->mapToGlobal(QPoint(5, 5)));
            QCoreApplication::sendEvent(pArea, &asked);
            return qobject_cast<QMenu *>(QApplication::activePopupWidget());
        };
        QTRY_VERIFY(menu() != nullptr);
        auto *pMenu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        const QList<QAction *> choices = pMenu->actions().constFirst()->menu()->actions();
        QCOMPARE(choices.size(), 3);
        QVERIFY(!choices.constFirst()->isChecked());
        choices.constFirst()->trigger();
        pMenu->close();
        QTRY_VERIFY(brightest() < 100);
    }

    void ownersComeAndGo()
    {
        MediaStage stage;
        QWidget stranger;
        QVERIFY(stage.service->videoWidget(&stranger) == nullptr);
        QVERIFY(stage.service->currentFrame(&stranger).isEmpty());
        stage.service->openAndPlay(&stranger, mediaSample("plain.mp4"), 0);
        stage.service->openAudio(mediaSample("tone.wav"));
        QCOMPARE(stage.service->state(), kStopped);
        {
            QWidget first;
            stage.service->attachOwner(&first);
            QWidget *pArea = stage.service->videoWidget(&first);
            QCOMPARE(stage.service->videoWidget(&first), pArea);
            pArea->setParent(&first);
            stage.service->openAndPlay(&first, mediaSample("plain.mp4"), 0);
            QTRY_VERIFY(stage.lastPosition() > 0);
            // Without a word of farewell.
        }
        QCOMPARE(stage.service->state(), kStopped);
        stage.service->attachOwner(&stage.owner);
        {
            // A later owner has the word while it is there, for sounds as well.
            QWidget later;
            stage.service->openAndPlay(&stage.owner, mediaSample("plain.mp4"), 0);
            stage.service->attachAudioOwner(&later, false);
            QCOMPARE(stage.service->state(), kStopped);
        }
        QCOMPARE(stage.service->state(), kPlaying);
        stage.service->pause();
        QCOMPARE(stage.service->state(), int(ITsMediaPlayerPlugin::Paused));
        stage.service->openAndPlay(&stage.owner, mediaSample("plain.mp4"), 0);
        stage.service->detachOwner(&stage.owner);
        stage.service->stop(&stage.owner);
        stage.service->attachOwner(&stage.owner);
        QVERIFY(stage.player->aboutToShutdown());
        stage.service->attachOwner(&stage.owner);
        stage.service->openAndPlay(&stage.owner, mediaSample("plain.mp4"), 0);
        QCOMPARE(stage.service->state(), kStopped);
    }

    void nothingGrows()
    {
        MediaStage stage;
        const auto cycle = [&stage](bool bWait) {
            QWidget owner;
            stage.service->attachOwner(&owner);
            QWidget *pArea = stage.service->videoWidget(&owner);
            pArea->setParent(&owner);
            stage.positions->clear();
            stage.service->openAndPlay(&owner, mediaSample("plain.mp4"), 0);
            if (bWait)
                QTRY_VERIFY(!stage.positions->isEmpty());
            stage.service->detachOwner(&owner);
        };
        // The libraries keep something for later after the first time.
        cycle(true);
        QTRY_VERIFY(stage.threads() < 40);
        QThread::yieldCurrentThread();
        int nHandles = 0;
        int nThreads = 0;
        QTRY_VERIFY((nHandles = stage.handles(), nThreads = stage.threads(), nThreads < 12));
        for (int i = 0; i < 20; ++i)
            cycle(i % 4 == 0);
        // Pools keep a few threads for a while.
        QTRY_VERIFY(stage.threads() <= nThreads + 8);
        QTRY_VERIFY(stage.handles() <= nHandles + 2);
    }
};

BIGIMGPREVIEW_TEST_MAIN(TestMediaPlayer)
#include "tst_media_player.moc"
