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
    void startsLate();
    void transitions_data();
    void transitions();
    void stopTakesTheStartBack_data();
    void stopTakesTheStartBack();
    void endAndLoop_data();
    void endAndLoop();
    void fits_data();
    void fits();
    void thumbnail_data();
    void thumbnail();
    void frameSizes_data();
    void frameSizes();
    void ownControls();
    void faultyHosts_data();
    void faultyHosts();
    void emitsFromAnotherThread();

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

void tst_video_player::startsLate()
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

void tst_video_player::transitions_data()
{
    QTest::addColumn<Deed>("act");
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("calls");
    QTest::addColumn<bool>("looksPlaying");
    const auto row = [](const char *pName, const Deed &act, int nState, const char *pCalls, bool bPlaying) {
        QTest::addRow("%s %d", pName, nState) << act << nState << QString::fromLatin1(pCalls) << bPlaying;
    };
    const Deed delayed = [](Surface &surface, VideoPlayerControlWidget &) {
        surface.slot_delayStartPlayer();
    };
    row("start", delayed, Player::Stopped, "open /a.mp4 700,volume 0.50", true);
    row("start", delayed, Player::Paused, "play,volume 0.50", false);
    row("start", delayed, Player::Playing, "volume 0.50", false);
    const Deed button = [](Surface &, VideoPlayerControlWidget &bar) {
        bar.slot_playOrpauseBtnClicked();
    };
    row("button", button, Player::Stopped, "", true); // opens after the delay
    row("button", button, Player::Paused, "play", true);
    row("button", button, Player::Playing, "pause", false);
    const char *const statusCalls[] = {"", "stop", "pause", "play", ""};
    for (int nStatus = -1; nStatus <= 3; ++nStatus) {
        const Deed status = [nStatus](Surface &, VideoPlayerControlWidget &bar) {
            bar.requestPlayStatus(nStatus);
        };
        row(qPrintable(QStringLiteral("status %1").arg(nStatus)), status, Player::Playing, statusCalls[nStatus + 1],
            nStatus == 2);
    }
    const Deed slider = [](Surface &, VideoPlayerControlWidget &bar) {
        bar.slot_sliderPressed();
        bar.slot_sliderReleased();
        Q_EMIT bar.signal_seekPlay(2000);
    };
    row("slider", slider, Player::Playing, "pause,seek 2000", false);
}

void tst_video_player::transitions()
{
    QFETCH(Deed, act);
    QFETCH(int, state);
    m_pBar->setPlayLook(false);
    player().now = state;
    act(*m_pSurface, *m_pBar);
    QTEST(player().takeCalls(), "calls");
    QTEST(looksPlaying(), "looksPlaying");
}

void tst_video_player::stopTakesTheStartBack_data()
{
    QTest::addColumn<Deed>("act");
    QTest::newRow("stop") << Deed([](Surface &, VideoPlayerControlWidget &bar) { bar.requestStop(); });
    QTest::newRow("status") << Deed(
        [](Surface &, VideoPlayerControlWidget &bar) { bar.requestPlayStatus(Player::Stopped); });
}

void tst_video_player::stopTakesTheStartBack()
{
    QFETCH(Deed, act);
    m_pSurface->startPlay();
    act(*m_pSurface, *m_pBar);
    for (const QTimer *pTimer : m_pSurface->findChildren<QTimer *>())
        QVERIFY(!pTimer->isActive());
}

void tst_video_player::endAndLoop_data()
{
    QTest::addColumn<bool>("loop");
    QTest::newRow("once") << false;
    QTest::newRow("loop") << true;
}

void tst_video_player::endAndLoop()
{
    QFETCH(bool, loop);
    play(QSize(64, 36));
    Q_EMIT m_pBar->signal_setReplay(loop);
    player().takeCalls();
    player().now = Player::Stopped; // by itself
    QTRY_VERIFY(!looksPlaying());   // found out by looking
    QCOMPARE(m_pBar->findChild<QSlider *>(QString(), Qt::FindDirectChildrenOnly)->value(), 9000);
    if (loop)
        QTRY_COMPARE(player().now, int(Player::Playing));
    QCOMPARE(player().takeCalls(), loop ? QStringLiteral("open /a.mp4 700,volume 0.50") : QString());
}

void tst_video_player::fits_data()
{
    QTest::addColumn<QSize>("frame");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("wide") << QSize(1920, 1080) << QRect(0, 75, 800, 450);
    QTest::newRow("tall") << QSize(1080, 1920) << QRect(231, 0, 337, 600);
    QTest::newRow("small") << QSize(320, 240) << QRect(240, 180, 320, 240);
    QTest::newRow("too wide only") << QSize(1000, 100) << QRect(0, 260, 800, 80);
    QTest::newRow("too high only") << QSize(100, 1000) << QRect(370, 0, 60, 600);
    const QRect kept(0, 0, 200, 200);
    QTest::newRow("a line") << QSize(10000, 1) << kept;
    QTest::newRow("a column") << QSize(1, 10000) << kept;
    QTest::newRow("no width") << QSize(0, 100) << kept;
    QTest::newRow("negative") << QSize(-100, -100) << kept;
}

void tst_video_player::fits()
{
    QFETCH(QSize, frame);
    play(frame);
    m_pSurface->setGeometry(0, 0, 200, 200);
    m_pRoom->fitToContainer();
    QTEST(m_pSurface->geometry(), "expected");
}

void tst_video_player::thumbnail_data()
{
    QTest::addColumn<QSize>("frame");
    QTest::addColumn<QRect>("expected");
    QTest::newRow("wide") << QSize(1600, 900) << QRect(222, 200, 356, 200);
    QTest::newRow("small already") << QSize(160, 120) << QRect(320, 240, 160, 120);
    // The room's height is compared with the computed width of 800.
    QTest::newRow("too wide") << QSize(800, 200) << QRect(0, 200, 200, 200);
}

void tst_video_player::thumbnail()
{
    QFETCH(QSize, frame);
    play(frame);
    m_pRoom->shrinkToThumbnail();
    Q_EMIT player().times.signal_currentTime(500); // leaves it as it is
    QTEST(m_pSurface->geometry(), "expected");
}

void tst_video_player::frameSizes_data()
{
    QTest::addColumn<int>("durations");
    QTest::addColumn<QVector<QSize>>("frames");
    QTest::addColumn<QRect>("expected");
    const QRect small(240, 180, 320, 240);
    QTest::newRow("no duration") << 0 << QVector<QSize>{{320, 240}} << small;
    QTest::newRow("told twice") << 2 << QVector<QSize>{{320, 240}} << small;
    QTest::newRow("known late") << 1 << QVector<QSize>{{0, 0}, {320, 240}} << small;
    QTest::newRow("changes") << 1 << QVector<QSize>{{640, 480}, {320, 240}} << small;
    QTest::newRow("never known") << 1 << QVector<QSize>{{0, 0}, {0, 0}} << QRect(300, 200, 200, 200);
}

void tst_video_player::frameSizes()
{
    QFETCH(int, durations);
    QFETCH(QVector<QSize>, frames);
    m_pRoom->resetToIdle();
    m_pSurface->startPlay();
    player().frame = frames.first();
    for (int i = 0; i < durations; ++i)
        Q_EMIT player().times.signal_TotalTimeChanged(1000);
    for (const QSize &frame : frames) {
        player().frame = frame;
        Q_EMIT player().times.signal_currentTime(100);
    }
    QTEST(m_pSurface->geometry(), "expected");
}

void tst_video_player::ownControls()
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

void tst_video_player::faultyHosts_data()
{
    QTest::addColumn<HostChange>("before");
    QTest::addColumn<HostChange>("after");
    const HostChange none = [](FakeHost &) {
    };
    QTest::newRow("no manager") << HostChange([](FakeHost &) { data()->setPluginManager(nullptr); }) << none;
    QTest::newRow("no player") << HostChange([](FakeHost &host) { host.removePlayer(); }) << none;
    QTest::newRow("no object") << HostChange([](FakeHost &host) { host.player->hasObject = false; }) << none;
    QTest::newRow("other object") << HostChange([](FakeHost &host) { host.player->answersInterface = false; }) << none;
    QTest::newRow("no signals") << HostChange([](FakeHost &host) { host.player->hasSignals = false; }) << none;
    QTest::newRow("no widget") << HostChange([](FakeHost &host) { host.player->hasWidgets = false; }) << none;
    QTest::newRow("opens nothing") << HostChange([](FakeHost &host) { host.player->opensFiles = false; }) << none;
    QTest::newRow("dies first") << none << HostChange([](FakeHost &host) { host.removePlayer(); });
}

void tst_video_player::faultyHosts()
{
    QFETCH(HostChange, before);
    QFETCH(HostChange, after);
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

void tst_video_player::emitsFromAnotherThread()
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

BIGIMGPREVIEW_TEST_MAIN(tst_video_player)
#include "tst_video_player.moc"
