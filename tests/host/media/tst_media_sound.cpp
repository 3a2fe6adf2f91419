#include "MediaStage.h"
#include "TestMain.h"
#include "interfaces/plugin/IPluginManager.h"
#include "services/basemodule/BaseModule.h"
#include "services/mediaplayer/audio/CoverItem.h"
#include "services/mediaplayer/audio/WaveWidget.h"

#include <QGraphicsScene>
#include <QGraphicsView>

namespace {

/** Hands out one plug-in. */
class OnePlugin final : public IPluginManager {
public:
    explicit OnePlugin(IPlugin *pPlugin)
        : m_pPlugin(pPlugin)
    {
    }
    QList<IPlugin *> getPlugins(const QString &className) override
    {
        return className == QLatin1String("IBaseModulePlugin") ? QList<IPlugin *>{m_pPlugin} : QList<IPlugin *>();
    }

private:
    IPlugin *m_pPlugin;
};

/** A player with a waveform of this size. */
struct SoundStage : MediaStage {
    WaveWidget *wave = nullptr;

    SoundStage()
    {
        service->attachAudioOwner(&owner, true);
        wave = qobject_cast<WaveWidget *>(service->waveWidget(&owner));
        wave->setParent(&owner);
        owner.resize(310, 60);
        wave->setGeometry(5, 5, 300, 50);
        owner.show();
        // What previews do with the duration.
        QObject::connect(player.get()->getSignalObject(), SIGNAL(signal_TotalTimeChanged(qint64)), wave,
                         SLOT(update()));
    }

    /** How many pixels of a column are painted. */
    int heightAt(int nX) const
    {
        const QImage image = wave->grab().toImage();
        const QRgb back = image.pixel(nX, 0);
        int nHeight = 0;
        for (int y = 0; y < image.height(); ++y)
            nHeight += image.pixel(nX, y) != back ? 1 : 0;
        return nHeight;
    }
};

QImage shot(QGraphicsScene *pScene)
{
    QImage image = plainImage(QSize(400, 400), Qt::black);
    QPainter painter(&image);
    pScene->render(&painter);
    return image;
}

} // namespace

class TestMediaSound : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void playsAndTells()
    {
        SoundStage stage;
        for (const char *pName : {"tone.wav", "tone.flac", "covered.mp3", "sound.ogg", "eight.wav"}) {
            stage.opened->clear();
            stage.positions->clear();
            stage.service->openAudio(mediaSample(pName));
            stage.service->setVolume(0.3F);
            QCOMPARE(stage.service->state(), int(ITsMediaPlayerPlugin::Playing));
            QTRY_VERIFY2(stage.lastPosition() > 200, pName);
            QVERIFY2(qAbs(stage.duration() - (qstrcmp(pName, "eight.wav") == 0 ? 1000 : 2000)) < 100, pName);
            stage.service->stop(&stage.owner);
        }
        stage.service->openAudio(mediaSample("tone.wav"));
        stage.service->seek(1700);
        QTRY_VERIFY(stage.lastPosition() >= 1700);
        QTRY_COMPARE(stage.service->state(), int(ITsMediaPlayerPlugin::Stopped));
        // To the last moment, not to where the last samples were handed over.
        QVERIFY(stage.lastPosition() > 1900);
        QVERIFY(stage.problems.isEmpty());
    }

    void brokenRates_data() { namedRows({"0", "1", "0x80000000", "0x7fffffff"}); }

    void brokenRates()
    {
        const quint32 rate = rowName().toUInt(nullptr, 0);
        SoundStage stage;
        const QString path = stage.copyOf("steps.wav", "rate.wav");
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(24));
        file.write(reinterpret_cast<const char *>(&rate), sizeof rate);
        file.close();
        stage.service->openAudio(path);
        // Whatever the player makes of it, it neither hangs nor keeps the next one from playing.
        QTest::qWait(300);
        stage.wave->grab();
        stage.service->openAudio(mediaSample("tone.wav"));
        QTRY_COMPARE(stage.duration(), qint64(2000));
        QTRY_VERIFY(stage.lastPosition() > 0);
        QTRY_VERIFY(stage.heightAt(150) > 3);
    }

    void decodedDurationCounts()
    {
        SoundStage stage;
        stage.service->openAudio(mediaSample("variable.mp3"));
        QTRY_VERIFY(qAbs(stage.duration() - 20000) < 200);
        stage.service->seek(19000);
        QTRY_VERIFY(stage.lastPosition() >= 19000);
        QTRY_COMPARE(stage.service->state(), int(ITsMediaPlayerPlugin::Stopped));
        QVERIFY(qAbs(stage.lastPosition() - 20000) < 300);
    }

    void waveShowsTheSound()
    {
        SoundStage stage;
        stage.service->setWaveSource(&stage.owner, mediaSample("steps.wav"), 300);
        QTRY_VERIFY(stage.heightAt(51) > 30);
        QVERIFY(stage.heightAt(150) <= 2);
        QVERIFY(stage.heightAt(249) > 30);
        stage.service->setWaveDuration(&stage.owner, 6000);
        QVERIFY(stage.heightAt(249) <= 2);
        // What was played has another colour; -1 clears it.
        const QRgb before = stage.wave->grab().toImage().pixel(21, 25);
        stage.service->setWavePosition(&stage.owner, 1000);
        const QImage played = stage.wave->grab().toImage();
        QVERIFY(played.pixel(21, 25) != before);
        QCOMPARE(played.pixel(90, 25), before);
        stage.service->setWavePosition(&stage.owner, -1);
        QCOMPARE(stage.wave->grab().toImage().pixel(21, 25), before);
        // No sound in it, no file, nothing at all.
        for (const QString &none :
             {mediaSample("silent.mkv"), stage.folder.filePath(QStringLiteral("gone")), QString()}) {
            stage.service->setWaveSource(&stage.owner, none, 300);
            QTRY_VERIFY(stage.heightAt(51) <= 2);
        }
    }

    void waveIsKeptByContent()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("a.wav"));
        const QString renamed = folder.filePath(QStringLiteral("b.wav"));
        QVERIFY(QFile::copy(mediaSample("steps.wav"), path));
        WaveStore store(folder.filePath(QStringLiteral("waves")));
        const QByteArray key = WaveStore::contentKey(QFile::encodeName(path));
        QVERIFY(store.find(key).isNull());
        const media::Cancelled running = [] {
            return false;
        };
        const media::Peaks peaks = media::readPeaks(QFile::encodeName(path), running, [](const media::Peaks &) {});
        QCOMPARE(peaks.nDurationMsec, qint64(3000));
        store.keep(key, peaks);
        QVERIFY(QFile::rename(path, renamed));
        // Another start of the program reads it from disk.
        WaveStore later(folder.filePath(QStringLiteral("waves")));
        const media::Peaks kept = later.find(WaveStore::contentKey(QFile::encodeName(renamed)));
        QCOMPARE(kept.levels, peaks.levels);
        QCOMPARE(kept.nDurationMsec, peaks.nDurationMsec);
        QVERIFY(kept.bComplete);
        QVERIFY(writeFile(renamed, readFile(renamed) + "more"));
        QVERIFY(later.find(WaveStore::contentKey(QFile::encodeName(renamed))).isNull());
        // A file of ours that was damaged is read again, not believed.
        const QString file =
            folder.filePath(QStringLiteral("waves/") + QString::fromLatin1(key) + QStringLiteral(".wave"));
        QVERIFY(QFile::resize(file, QFileInfo(file).size() / 2));
        QVERIFY(WaveStore(folder.filePath(QStringLiteral("waves"))).find(key).isNull());
    }

    void waveSeeks()
    {
        SoundStage stage;
        QSignalSpy seeks(stage.wave, SIGNAL(signal_seekPlay(qint64)));
        QTest::mouseClick(stage.wave, Qt::LeftButton, {}, QPoint(150, 20));
        QVERIFY(seeks.isEmpty());
        stage.service->setWaveDuration(&stage.owner, 60000);
        QTest::mouseClick(stage.wave, Qt::LeftButton, {}, QPoint(150, 20));
        QCOMPARE(seeks.size(), 1);
        QCOMPARE(seeks.takeFirst().constFirst().toLongLong(), qint64(30000));
        QTest::mouseClick(stage.wave, Qt::RightButton, {}, QPoint(10, 20));
        QVERIFY(seeks.isEmpty());
        // A drag follows the mouse, and what is reported meanwhile does not move the mark away; its end counts.
        QTest::mousePress(stage.wave, Qt::LeftButton, {}, QPoint(30, 20));
        for (int x = 40; x <= 400; x += 5) {
            QMouseEvent move(QEvent::MouseMove, QPointF(x, 20), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(stage.wave, &move);
            stage.service->setWavePosition(&stage.owner, 100);
        }
        QTest::mouseRelease(stage.wave, Qt::LeftButton, {}, QPoint(400, 20));
        QVERIFY(seeks.size() >= 2 && seeks.size() < 20);
        QCOMPARE(seeks.last().constFirst().toLongLong(), qint64(60000));
    }

    void coverTurnsWhilePlaying()
    {
        SoundStage stage;
        QVERIFY(stage.service->audioItem() == nullptr);
        QCOMPARE(stage.service->audioItemScale(), 1.0);
        stage.service->initAudioView();
        {
            QGraphicsScene scene;
            scene.addItem(stage.service->audioItem());
            scene.setSceneRect(-250, -250, 500, 500);
            stage.service->layoutAudioItem();
            QCOMPARE(stage.service->audioItemScale(), 1.0);
            scene.setSceneRect(-100, -50, 200, 100);
            stage.service->layoutAudioItem();
            QCOMPARE(stage.service->audioItemScale(), 0.2);
            const auto turn = [&stage](int nState) {
                const double fBefore = stage.service->audioItem()->rotation();
                QTest::qWait(40);
                stage.service->animateAudioItem(nState);
                return stage.service->audioItem()->rotation() - fBefore;
            };
            turn(ITsMediaPlayerPlugin::Playing);
            QTRY_VERIFY(turn(ITsMediaPlayerPlugin::Playing) > 0.3);
            // It comes to rest, and then nothing is painted.
            QTRY_COMPARE(turn(ITsMediaPlayerPlugin::Paused), 0.0);
            QCOMPARE(turn(ITsMediaPlayerPlugin::Stopped), 0.0);
        }
        // Gone with its scene; the next view gets another one.
        QVERIFY(stage.service->audioItem() == nullptr);
        stage.service->animateAudioItem(2);
        stage.service->layoutAudioItem();
        stage.service->initAudioView();
        QVERIFY(stage.service->audioItem() != nullptr);
    }

    void coverIsTheFilesOwn()
    {
        QTemporaryDir caches;
        basemodule::BaseModule pictures({caches.filePath(QStringLiteral("r")), caches.filePath(QStringLiteral("t"))},
                                        nullptr);
        OnePlugin manager(&pictures);
        SoundStage stage;
        QVERIFY(stage.player->setPluginManager(&manager));
        stage.service->initAudioView();
        QGraphicsScene scene(-200, -200, 400, 400);
        scene.addItem(stage.service->audioItem());
        stage.service->layoutAudioItem();
        stage.service->openAudio(mediaSample("tone.wav"));
        const QRgb drawn = shot(&scene).pixel(150, 120);
        stage.service->openAudio(mediaSample("covered.mp3"));
        const auto isRed = [&scene] {
            const QColor color = shot(&scene).pixelColor(150, 120);
            return color.red() > 220 && color.green() < 40 && color.blue() < 40;
        };
        QTRY_VERIFY(isRed());
        // What a preview leaves there is shown instead, as long as it is there.
        QPixmap left(360, 360);
        left.fill(Qt::blue);
        stage.service->audioItem()->setData(ITsMediaPlayerPlugin::CoverPicture, left);
        QCOMPARE(shot(&scene).pixelColor(150, 120), QColor(Qt::blue));
        stage.service->audioItem()->setData(ITsMediaPlayerPlugin::CoverPicture, QVariant());
        QVERIFY(isRed());
        // One without a cover does not keep the last one's.
        stage.service->openAudio(mediaSample("tone.wav"));
        QCOMPARE(shot(&scene).pixel(150, 120), drawn);
        stage.player->aboutToShutdown();
    }

    void coversAreSquare()
    {
        for (const QSize &size : {QSize(200, 100), QSize(100, 300), QSize(360, 360), QSize(1, 1)}) {
            QImage picture = plainImage(size, Qt::black);
            // The centred square is white.
            const int nSide = qMin(size.width(), size.height());
            QPainter(&picture).fillRect((size.width() - nSide) / 2, (size.height() - nSide) / 2, nSide, nSide,
                                        Qt::white);
            QCOMPARE(CoverItem::squareOf(picture, 360), plainImage(QSize(360, 360), Qt::white));
        }
        QVERIFY(CoverItem::squareOf(QImage(), 360).isNull());
    }
};

BIGIMGPREVIEW_TEST_MAIN(TestMediaSound)
#include "tst_media_sound.moc"
