#include "PluginTest.h"
#include "media/MediaButton.h"
#include "media/TSembedVideoWidget.h"
#include "media/VideoPlayerControlWidget.h"
#include "media/VideoPlayerWidget.h"

#include <QSlider>

#include <thread>

using Player = ITsMediaPlayerPlugin;
using Surface = VideoPlayerWidget;
using Deed = std::function<void(Surface &, VideoPlayerControlWidget &)>;
Q_DECLARE_METATYPE(Deed)

/** The surface on which videos play, and the room it stands in. */
class tst_video_player : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void startsLate()
    {
        Q_EMIT m_pBar->signal_setVolume(0.257F); // for the next file as well
        player().takeCalls();
        QElapsedTimer clock;
        clock.start();
        m_pSurface->startPlay();
        m_pSurface->setFilePath(QString(), 5000); // changes nothing
        QTRY_VERIFY(!player().openPath.isEmpty());
        QVERIFY(clock.elapsed() >= 290);
        QCOMPARE(player().takeCalls(), QStringLiteral("open /a.mp4 700,volume 0.26"));
    }

    void transitions_data()
    {
        const auto add = columns<Deed, int, QString, bool>("act", "state", "calls", "looksPlaying");
        const auto row = [&add](const QString &name, const Deed &act, int nState, const char *pCalls, bool bPlaying) {
            add(QStringLiteral("%1 %2").arg(name).arg(nState), act, nState, pCalls, bPlaying);
        };
        const Deed delayed = [](Surface &surface, VideoPlayerControlWidget &) {
            surface.slot_delayStartPlayer();
        };
        row(QStringLiteral("start"), delayed, Player::Stopped, "open /a.mp4 700,volume 0.50", true);
        row(QStringLiteral("start"), delayed, Player::Paused, "play,volume 0.50", false);
        row(QStringLiteral("start"), delayed, Player::Playing, "volume 0.50", false);
        const Deed button = [](Surface &, VideoPlayerControlWidget &bar) {
            bar.slot_playOrpauseBtnClicked();
        };
        row(QStringLiteral("button"), button, Player::Stopped, "", true); // opens after the delay
        row(QStringLiteral("button"), button, Player::Paused, "play", true);
        row(QStringLiteral("button"), button, Player::Playing, "pause", false);
        const char *const statusCalls[] = {"", "stop", "pause", "play", ""};
        for (int nStatus = -1; nStatus <= 3; ++nStatus) {
            const Deed status = [nStatus](Surface &, VideoPlayerControlWidget &bar) {
                bar.requestPlayStatus(nStatus);
            };
            row(QStringLiteral("status %1,").arg(nStatus), status, Player::Playing, statusCalls[nStatus + 1],
                nStatus == 2);
        }
        const Deed slider = [](Surface &, VideoPlayerControlWidget &bar) {
            bar.slot_sliderPressed();
            bar.slot_sliderReleased();
            Q_EMIT bar.signal_seekPlay(2000);
        };
        row(QStringLiteral("slider"), slider, Player::Playing, "pause,seek 2000", false);
    }

    void transitions()
    {
        const auto [act, state, calls, bPlaying] = currentRow<Deed, int, QString, bool>();
        m_pBar->setPlayLook(false);
        player().now = state;
        act(*m_pSurface, *m_pBar);
        QCOMPARE(player().takeCalls(), calls);
        QCOMPARE(looksPlaying(), bPlaying);
    }

    void stopTakesTheStartBack()
    {
        for (const bool bStop : {true, false}) {
            m_pSurface->startPlay();
            bStop ? m_pBar->requestStop() : m_pBar->requestPlayStatus(Player::Stopped);
            for (const QTimer *pTimer : m_pSurface->findChildren<QTimer *>())
                QVERIFY(!pTimer->isActive());
        }
    }

    void endAndLoop()
    {
        for (const bool bLoop : {false, true}) {
            play(QSize(64, 36));
            Q_EMIT m_pBar->signal_setReplay(bLoop);
            player().takeCalls();
            player().now = Player::Stopped; // by itself
            QTRY_VERIFY(!looksPlaying());   // found out by looking
            QCOMPARE(m_pBar->findChild<QSlider *>(QString(), Qt::FindDirectChildrenOnly)->value(), 9000);
            if (bLoop)
                QTRY_COMPARE(player().now, int(Player::Playing));
            QCOMPARE(player().takeCalls(), bLoop ? QStringLiteral("open /a.mp4 700,volume 0.50") : QString());
        }
    }

    void fits()
    {
        struct Row {
            QSize frame;
            QRect fitted;
            QRect thumbnail; ///< Invalid: not of interest.
        };
        const QRect kept(0, 0, 200, 200), none;
        for (const Row &row :
             {Row{{1920, 1080}, {0, 75, 800, 450}, {222, 200, 356, 200}}, Row{{1080, 1920}, {231, 0, 337, 600}, none},
              Row{{320, 240}, {240, 180, 320, 240}, none}, Row{{160, 120}, {320, 240, 160, 120}, {320, 240, 160, 120}},
              // The room's height is compared with the computed width of 800.
              Row{{800, 200}, {0, 200, 800, 200}, {0, 200, 200, 200}},
              Row{{1000, 100}, {0, 260, 800, 80}, none}, // too wide only
              Row{{100, 1000}, {370, 0, 60, 600}, none}, // too high only
              Row{{10000, 1}, kept, none}, Row{{1, 10000}, kept, none}, Row{{0, 100}, kept, none},
              Row{{-100, -100}, kept, none}}) {
            make();
            play(row.frame);
            m_pSurface->setGeometry(kept);
            m_pRoom->fitToContainer();
            QCOMPARE(m_pSurface->geometry(), row.fitted);
            if (!row.thumbnail.isValid())
                continue;
            m_pRoom->shrinkToThumbnail();
            Q_EMIT player().times.signal_currentTime(500); // leaves it as it is
            QCOMPARE(m_pSurface->geometry(), row.thumbnail);
        }
    }

    void frameSizes_data()
    {
        const auto row = columns<int, QVector<QSize>, QRect>("durations", "frames", "expected");
        const QRect small(240, 180, 320, 240);
        row("no duration", 0, QVector<QSize>{{320, 240}}, small);
        row("told twice", 2, QVector<QSize>{{320, 240}}, small);
        row("known late", 1, QVector<QSize>{{0, 0}, {320, 240}}, small);
        row("changes", 1, QVector<QSize>{{640, 480}, {320, 240}}, small);
        row("never known", 1, QVector<QSize>{{0, 0}, {0, 0}}, QRect(300, 200, 200, 200));
    }

    void frameSizes()
    {
        const auto [durations, frames, expected] = currentRow<int, QVector<QSize>, QRect>();
        m_pRoom->resetToIdle();
        m_pSurface->startPlay();
        player().frame = frames.first();
        for (int i = 0; i < durations; ++i)
            Q_EMIT player().times.signal_TotalTimeChanged(1000);
        for (const QSize &frame : frames) {
            player().frame = frame;
            Q_EMIT player().times.signal_currentTime(100);
        }
        QCOMPARE(m_pSurface->geometry(), expected);
    }

    void ownControls()
    {
        Surface surface(QString(), QStringLiteral("/a.mp4"), 0, false, nullptr);
        surface.setViewRect(QRectF(10, 20, 400.9, 308.9));
        surface.show();
        surface.slot_delayStartPlayer();
        QCOMPARE(player().takeCalls(), QStringLiteral("open /a.mp4 0,mute 1")); // silent at first
        Q_EMIT player().times.signal_TotalTimeChanged(4000);
        surface.viewMousePress(QPointF(10 + 31, 20 + 31));
        surface.viewMousePress(QPointF(10 + 30, 20 + 31)); // on the button's edge
        surface.viewMousePress(QPointF(10 + 200, 20 + 304));
        QCOMPARE(player().takeCalls(), QStringLiteral("mute 0,seek 1995"));
        // It loses the slider's height at every word of the duration.
        player().frame = QSize(200, 100);
        surface.setControlWidget(m_pBar.data());
        for (const QSize &size : {QSize(600, 300), QSize(584, 292)}) {
            Q_EMIT player().times.signal_TotalTimeChanged(4000);
            QCOMPARE(surface.size(), size);
        }
    }

    void faultyHosts_data()
    {
        const auto row = columns<HostChange, HostChange>("before", "after");
        const HostChange none = [](FakeHost &) {
        };
        row(
            "no manager", [](FakeHost &) { data()->setPluginManager(nullptr); }, none);
        row(
            "no player", [](FakeHost &host) { host.removePlayer(); }, none);
        row(
            "no object", [](FakeHost &host) { host.player->hasObject = false; }, none);
        row(
            "other object", [](FakeHost &host) { host.player->answersInterface = false; }, none);
        row(
            "no signals", [](FakeHost &host) { host.player->hasSignals = false; }, none);
        row(
            "no widget", [](FakeHost &host) { host.player->hasWidgets = false; }, none);
        row(
            "opens nothing", [](FakeHost &host) { host.player->opensFiles = false; }, none);
        row("dies first", none, [](FakeHost &host) { host.removePlayer(); });
    }

    void faultyHosts()
    {
        const auto [before, after] = currentRow<HostChange, HostChange>();
        before(host());
        make();
        m_pSurface->slot_delayStartPlayer();
        after(host());
        m_pSurface->slot_pauseOrPlay();
        m_pSurface->slot_setPlayerToTheStatus(2);
        m_pSurface->slot_delayStartPlayer();
        m_pSurface->slot_timerout();
        m_pSurface->slot_seekPlayPos(100);
        m_pSurface->slot_setVolume(0.1F);
        m_pSurface->slot_TotalTimeChanged(100);
        m_pSurface->slot_currentTimeChanged(50);
        m_pSurface->viewMousePress(QPointF(1, 1));
        QVERIFY(m_pRoom->captureCurrentFrame().isEmpty());
        m_pRoom->shrinkToThumbnail();
        m_pRoom->fitToContainer();
        m_pRoom->resetToIdle();
        m_pSurface->stopPlay();
        QVERIFY(!m_pSurface->isPlaying());
    }

    void emitsFromAnotherThread()
    {
        play(QSize(320, 240));
        player().takeCalls();
        const auto emitOutside = [this] {
            std::thread([this] { Q_EMIT player().times.signal_currentTime(1000); }).join();
        };
        emitOutside();
        QVERIFY(player().calls.isEmpty());
        QTRY_COMPARE(player().calls, QStringList{QStringLiteral("shown")});
        emitOutside();
        m_pRoom.reset(); // what comes too late finds nobody
        QCoreApplication::sendPostedEvents();
        QVERIFY(player().owners.isEmpty() && player().openPath.isEmpty());
    }

protected:
    void init() override
    {
        PluginTest::init();
        make();
    }
    void cleanup() override
    {
        m_pRoom.reset();
        m_pBar.reset();
        PluginTest::cleanup();
    }

private:
    void make()
    {
        m_pRoom.reset();
        m_pBar.reset(new VideoPlayerControlWidget);
        m_pRoom.reset(new TSembedVideoWidget(nullptr));
        m_pRoom->setControlWidget(m_pBar.data());
        m_pRoom->resize(800, 600);
        m_pSurface = m_pRoom->findChild<Surface *>();
        m_pSurface->setFilePath(QStringLiteral("/a.mp4"), 700);
    }
    FakePlayer &player() { return *host().player; }
    bool looksPlaying() const
    {
        return m_pBar->findChild<MediaButton *>()->iconName() == QStringLiteral("preview_video_stop.svg");
    }
    /** Opens the file at once and tells its duration. */
    void play(const QSize &frame)
    {
        m_pSurface->slot_delayStartPlayer();
        player().frame = frame;
        Q_EMIT player().times.signal_TotalTimeChanged(9000);
    }

    QScopedPointer<VideoPlayerControlWidget> m_pBar;
    QScopedPointer<TSembedVideoWidget> m_pRoom;
    Surface *m_pSurface = nullptr;
};

BIGIMGPREVIEW_TEST_MAIN(tst_video_player)
#include "tst_video_player.moc"
