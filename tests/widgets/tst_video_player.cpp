#include "PluginTest.h"
#include "media/MediaButton.h"
#include "media/TSembedVideoWidget.h"
#include "media/VideoPlayerControlWidget.h"
#include "media/VideoPlayerWidget.h"

#include <QMetaMethod>
#include <QSignalSpy>
#include <QSlider>

#include <thread>

using Player = ITsMediaPlayerPlugin;

/** The surface on which videos play, and the room it stands in. */
class tst_video_player : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void startsLate();
    void delayedStart_data();
    void delayedStart();
    void onlyTheLastStartCounts();
    void stopTakesTheStartBack_data();
    void stopTakesTheStartBack();
    void pauseOrPlay_data();
    void pauseOrPlay();
    void status_data();
    void status();
    void endAndLoop_data();
    void endAndLoop();
    void volumes_data();
    void volumes();
    void timesReachTheBar();
    void emptyPathChangesNothing();
    void fits_data();
    void fits();
    void thumbnail_data();
    void thumbnail();
    void frameSizes_data();
    void frameSizes();
    void ownControls();
    void faultyHosts_data();
    void faultyHosts();
    void playerDiesFirst();
    void emitsFromAnotherThread();
    void capture();
    void methodOrder();

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
        m_pSurface = m_pRoom->findChild<VideoPlayerWidget *>();
    }
    FakePlayer &player() { return *host().player; }
    /** Opens a file at once, without the delay. */
    void play(const QString &path = QStringLiteral("/a.mp4"), int nStartPos = 0)
    {
        m_pSurface->setFilePath(path, nStartPos);
        m_pSurface->slot_delayStartPlayer();
        player().takeCalls();
    }
    QString look() const { return m_pBar->findChild<MediaButton *>()->iconName().section(QLatin1Char('_'), -1); }
    QTimer *poll() const
    {
        for (QTimer *pTimer : m_pSurface->findChildren<QTimer *>()) {
            if (!pTimer->isSingleShot())
                return pTimer;
        }
        return nullptr;
    }

    QScopedPointer<VideoPlayerControlWidget> m_pBar;
    QScopedPointer<TSembedVideoWidget> m_pRoom;
    VideoPlayerWidget *m_pSurface = nullptr;
};

namespace {

QString lookOf(bool bPlaying)
{
    return bPlaying ? QStringLiteral("stop.svg") : QStringLiteral("play.svg");
}

} // namespace

void tst_video_player::startsLate()
{
    data()->setVideoVolume(30);
    m_pRoom->setFilePath(QStringLiteral("/a.mp4"), 1500);
    player().takeCalls();
    QElapsedTimer clock;
    clock.start();
    m_pRoom->startWithSharedVolume();
    QVERIFY(player().calls.isEmpty());
    QTRY_VERIFY(!player().openPath.isEmpty());
    QVERIFY(clock.elapsed() >= 290);
    QCOMPARE(player().takeCalls(), (QStringList{QStringLiteral("open /a.mp4 1500"), QStringLiteral("volume 0.30")}));
    QCOMPARE(poll()->interval(), 400);
    data()->setVideoVolume(50);
}

void tst_video_player::delayedStart_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("calls");
    const QString volume = QStringLiteral("volume 0.50");
    const QString path = QStringLiteral("/a.mp4");
    QTest::newRow("stopped") << int(Player::Stopped) << path << QStringList{QStringLiteral("open /a.mp4 0"), volume};
    QTest::newRow("no file") << int(Player::Stopped) << QString() << QStringList{volume};
    QTest::newRow("paused") << int(Player::Paused) << path << QStringList{QStringLiteral("play"), volume};
    QTest::newRow("playing") << int(Player::Playing) << path << QStringList{volume};
    QTest::newRow("unheard of") << 7 << path << QStringList{volume};
}

void tst_video_player::delayedStart()
{
    QFETCH(int, state);
    QFETCH(QString, path);
    m_pSurface->setFilePath(path, 0);
    player().now = state;
    player().takeCalls();
    m_pSurface->slot_delayStartPlayer();
    QTEST(player().calls, "calls");
    QCOMPARE(poll() != nullptr && poll()->isActive(), player().calls.size() == 2 && state == Player::Stopped);
}

void tst_video_player::onlyTheLastStartCounts()
{
    for (int i = 0; i < 20; ++i) {
        m_pSurface->setFilePath(QStringLiteral("/%1.mp4").arg(i), 0);
        m_pSurface->startPlay();
        m_pSurface->stopPlay();
        QTest::qWait(5);
    }
    m_pSurface->startPlay();
    QTRY_VERIFY(!player().openPath.isEmpty());
    QCOMPARE(player().callsOf({QStringLiteral("open")}), QStringList{QStringLiteral("open /19.mp4 0")});
}

void tst_video_player::stopTakesTheStartBack_data()
{
    QTest::addColumn<int>("status"); // -1: stopped by the bar
    QTest::newRow("bar") << -1;
    QTest::newRow("status stopped") << int(Player::Stopped);
    QTest::newRow("status paused") << int(Player::Paused);
}

void tst_video_player::stopTakesTheStartBack()
{
    QFETCH(int, status);
    m_pSurface->setFilePath(QStringLiteral("/a.mp4"), 0);
    m_pSurface->startPlay();
    if (status < 0)
        m_pBar->requestStop();
    else
        m_pBar->requestPlayStatus(status);
    for (const QTimer *pTimer : m_pSurface->findChildren<QTimer *>())
        QVERIFY(!pTimer->isActive());
}

void tst_video_player::pauseOrPlay_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<bool>("look");
    QTest::newRow("stopped") << int(Player::Stopped) << QStringList() << true;
    QTest::newRow("paused") << int(Player::Paused) << QStringList{QStringLiteral("play")} << true;
    QTest::newRow("playing") << int(Player::Playing) << QStringList{QStringLiteral("pause")} << false;
}

void tst_video_player::pauseOrPlay()
{
    QFETCH(int, state);
    QFETCH(bool, look);
    m_pSurface->setFilePath(QStringLiteral("/a.mp4"), 0);
    player().now = state;
    player().takeCalls();
    m_pBar->setPlayLook(!look);
    QTest::mouseClick(m_pBar->findChild<MediaButton *>(), Qt::LeftButton);
    QTEST(player().calls, "calls");
    QCOMPARE(this->look(), lookOf(look));
    if (state == Player::Stopped)
        QTRY_VERIFY(!player().openPath.isEmpty()); // with the delay
}

void tst_video_player::status_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<bool>("look");
    QTest::newRow("stop") << 0 << QStringList{QStringLiteral("stop")} << false;
    QTest::newRow("pause") << 1 << QStringList{QStringLiteral("pause")} << false;
    QTest::newRow("play") << 2 << QStringList{QStringLiteral("play")} << true;
    QTest::newRow("too large") << 3 << QStringList() << true;
    QTest::newRow("negative") << -1 << QStringList() << true;
}

void tst_video_player::status()
{
    QFETCH(int, status);
    QFETCH(bool, look);
    play();
    m_pBar->requestPlayStatus(status);
    QTEST(player().calls, "calls");
    QCOMPARE(this->look(), lookOf(look));
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
    play(QStringLiteral("/a.mp4"), 700);
    Q_EMIT player().times.signal_TotalTimeChanged(9000);
    if (loop)
        Q_EMIT m_pBar->signal_setReplay(true);
    player().now = Player::Stopped; // by itself
    m_pSurface->slot_timerout();
    QCOMPARE(look(), lookOf(false));
    QCOMPARE(m_pBar->findChild<QSlider *>(QString(), Qt::FindDirectChildrenOnly)->value(), 9000);
    QVERIFY(!poll()->isActive());
    if (loop) {
        QTRY_COMPARE(player().callsOf({QStringLiteral("open")}), QStringList{QStringLiteral("open /a.mp4 700")});
        QVERIFY(poll()->isActive());
        QCOMPARE(look(), lookOf(true));
    }
}

void tst_video_player::volumes_data()
{
    QTest::addColumn<float>("value");
    QTest::addColumn<QString>("restart");
    QTest::newRow("half") << 0.5F << QStringLiteral("volume 0.50");
    QTest::newRow("rounded") << 0.257F << QStringLiteral("volume 0.26");
    QTest::newRow("silence") << 0.0F << QStringLiteral("volume 0.00");
}

void tst_video_player::volumes()
{
    QFETCH(float, value);
    Q_EMIT m_pBar->signal_setVolume(value);
    play();
    player().now = Player::Stopped;
    m_pSurface->slot_delayStartPlayer();
    QTEST(player().calls.last(), "restart");
}

void tst_video_player::timesReachTheBar()
{
    play();
    player().frame = QSize(640, 360);
    for (int i = 0; i < 2; ++i) { // some say it twice
        Q_EMIT player().times.signal_TotalTimeChanged(60000);
        QCOMPARE(m_pSurface->geometry(), QRect(80, 120, 640, 360));
    }
    Q_EMIT player().times.signal_currentTime(15000);
    const auto *pProgress = m_pBar->findChild<QSlider *>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(pProgress->maximum() == 60000 && pProgress->value() == 15000);
    QCOMPARE(player().calls, QStringList{QStringLiteral("shown")});
    player().takeCalls();
    Q_EMIT m_pBar->signal_seekPlay(20000);
    Q_EMIT m_pBar->signal_VideoSliderPressed();
    Q_EMIT m_pBar->signal_VideoSliderReleased();
    QCOMPARE(player().calls, (QStringList{QStringLiteral("seek 20000"), QStringLiteral("pause")}));
}

void tst_video_player::emptyPathChangesNothing()
{
    m_pRoom->setFilePath(QStringLiteral("/a.mp4"), 700);
    m_pRoom->setFilePath(QString(), 5000);
    m_pSurface->slot_delayStartPlayer();
    QVERIFY(player().calls.contains(QStringLiteral("open /a.mp4 700")));
    m_pSurface->stopPlay();
    m_pRoom->resetToIdle(); // begins at the start from now on
    m_pSurface->slot_delayStartPlayer();
    QVERIFY(player().calls.contains(QStringLiteral("open /a.mp4 0")));
}

void tst_video_player::fits_data()
{
    QTest::addColumn<QSize>("room");
    QTest::addColumn<QSize>("frame");
    QTest::addColumn<QRect>("expected");
    const QSize room(800, 600);
    const QRect kept(0, 0, 200, 200);
    QTest::newRow("wide") << room << QSize(1920, 1080) << QRect(0, 75, 800, 450);
    QTest::newRow("tall") << room << QSize(1080, 1920) << QRect(231, 0, 337, 600);
    QTest::newRow("small") << room << QSize(320, 240) << QRect(240, 180, 320, 240);
    QTest::newRow("same") << room << QSize(800, 600) << QRect(0, 0, 800, 600);
    QTest::newRow("too wide only") << room << QSize(1000, 100) << QRect(0, 260, 800, 80);
    QTest::newRow("too high only") << room << QSize(100, 1000) << QRect(370, 0, 60, 600);
    QTest::newRow("a line") << room << QSize(10000, 1) << kept;
    QTest::newRow("a column") << room << QSize(1, 10000) << kept;
    QTest::newRow("no width") << room << QSize(0, 100) << kept;
    QTest::newRow("no height") << room << QSize(100, 0) << kept;
    QTest::newRow("negative") << room << QSize(-100, -100) << kept;
    QTest::newRow("no room") << QSize(0, 0) << QSize(320, 240) << kept;
}

void tst_video_player::fits()
{
    QFETCH(QSize, room);
    QFETCH(QSize, frame);
    QFETCH(QRect, expected);
    player().frame = frame;
    play();
    m_pRoom->resize(room);
    Q_EMIT player().times.signal_TotalTimeChanged(1000);
    m_pSurface->setGeometry(0, 0, 200, 200);
    m_pRoom->fitToContainer();
    QCOMPARE(m_pSurface->geometry(), expected);
}

void tst_video_player::thumbnail_data()
{
    QTest::addColumn<QSize>("room");
    QTest::addColumn<QSize>("frame");
    QTest::addColumn<QRect>("expected");
    const QSize room(800, 600);
    QTest::newRow("wide") << room << QSize(1600, 900) << QRect(222, 200, 356, 200);
    QTest::newRow("small already") << room << QSize(160, 120) << QRect(320, 240, 160, 120);
    // Compared with the computed width of 800.
    QTest::newRow("too wide") << room << QSize(800, 200) << QRect(0, 200, 200, 200);
}

void tst_video_player::thumbnail()
{
    QFETCH(QSize, room);
    QFETCH(QSize, frame);
    player().frame = frame;
    play();
    m_pRoom->resize(room);
    Q_EMIT player().times.signal_TotalTimeChanged(1000);
    m_pRoom->shrinkToThumbnail();
    QTEST(m_pSurface->geometry(), "expected");
    // Positions that go by leave it as it is.
    const QRect before = m_pSurface->geometry();
    Q_EMIT player().times.signal_currentTime(500);
    QCOMPARE(m_pSurface->geometry(), before);
}

void tst_video_player::frameSizes_data()
{
    QTest::addColumn<bool>("duration");
    QTest::addColumn<QVector<QSize>>("frames");
    QTest::addColumn<QRect>("expected");
    const QRect small(240, 180, 320, 240);
    QTest::newRow("no duration") << false << QVector<QSize>{{320, 240}} << small;
    QTest::newRow("known late") << true << QVector<QSize>{{0, 0}, {0, 0}, {320, 240}} << small;
    QTest::newRow("changes") << true << QVector<QSize>{{640, 480}, {640, 480}, {320, 240}} << small;
    QTest::newRow("never") << true << QVector<QSize>{{0, 0}, {0, 0}} << QRect(300, 200, 200, 200);
}

void tst_video_player::frameSizes()
{
    QFETCH(bool, duration);
    QFETCH(QVector<QSize>, frames);
    m_pRoom->resetToIdle();
    m_pSurface->setFilePath(QStringLiteral("/a.mp4"), 0);
    m_pSurface->startPlay();
    m_pSurface->slot_delayStartPlayer();
    for (const QSize &frame : frames) {
        player().frame = frame;
        if (duration && frame == frames.first())
            Q_EMIT player().times.signal_TotalTimeChanged(1000);
        Q_EMIT player().times.signal_currentTime(100);
    }
    QTEST(m_pSurface->geometry(), "expected");
    m_pSurface->stopPlay();
    QVERIFY(m_pSurface->videoFrameSize().isNull());
}

void tst_video_player::ownControls()
{
    VideoPlayerWidget surface(QString(), QStringLiteral("/a.mp4"), 0, false, nullptr);
    surface.setViewRect(QRectF(10, 20, 400.9, 308.9));
    QCOMPARE(surface.size(), QSize(400, 308));
    surface.show();
    auto *pSlider = surface.findChild<QSlider *>();
    auto *pMute = surface.findChild<MediaButton *>();
    QVERIFY(pSlider->isVisible() && pMute->isVisible());
    QCOMPARE(pSlider->geometry(), QRect(0, 300, 400, 8));
    QCOMPARE(pMute->geometry(), QRect(30, 30, 15, 15));
    player().takeCalls();
    surface.slot_delayStartPlayer();
    QCOMPARE(player().takeCalls(), (QStringList{QStringLiteral("open /a.mp4 0"), QStringLiteral("mute 1")}));
    QCOMPARE(pMute->iconName(), QStringLiteral("playnav_mute.svg"));
    QVERIFY(surface.isPlaying());
    Q_EMIT player().times.signal_TotalTimeChanged(4000);
    surface.viewMousePress(QPointF(10 + 31, 20 + 31));
    surface.viewMousePress(QPointF(10 + 30, 20 + 31)); // on its edge
    surface.viewMousePress(QPointF(10 + 200, 20 + 304));
    QCOMPARE(player().takeCalls(), (QStringList{QStringLiteral("mute 0"), QStringLiteral("seek 1995")}));
    // It loses the slider's height at every word of the duration.
    player().frame = QSize(200, 100);
    VideoPlayerControlWidget bar;
    surface.setControlWidget(&bar);
    Q_EMIT player().times.signal_TotalTimeChanged(4000);
    QCOMPARE(surface.size(), QSize(600, 300));
    Q_EMIT player().times.signal_TotalTimeChanged(4000);
    QCOMPARE(surface.size(), QSize(584, 292));
}

void tst_video_player::faultyHosts_data()
{
    QTest::addColumn<HostChange>("change");
    const QString name = QStringLiteral("ITsMediaPlayerPlugin");
    QTest::newRow("no manager") << HostChange([](FakeHost &) { data()->setPluginManager(nullptr); });
    QTest::newRow("no player") << HostChange([name](FakeHost &host) { host.registry.remove(name); });
    QTest::newRow("null plug-in") << HostChange([name](FakeHost &host) { host.registry[name] = {nullptr}; });
    QTest::newRow("no object") << HostChange([](FakeHost &host) { host.player->hasObject = false; });
    QTest::newRow("other interface") << HostChange([](FakeHost &host) { host.player->answersInterface = false; });
    QTest::newRow("no signals") << HostChange([](FakeHost &host) { host.player->hasSignals = false; });
    QTest::newRow("no widget") << HostChange([](FakeHost &host) { host.player->hasWidgets = false; });
    QTest::newRow("opens nothing") << HostChange([](FakeHost &host) { host.player->opensFiles = false; });
}

void tst_video_player::faultyHosts()
{
    QFETCH(HostChange, change);
    change(host());
    make();
    m_pRoom->setFilePath(QStringLiteral("/a.mp4"), 0);
    m_pRoom->startWithSharedVolume();
    m_pSurface->slot_delayStartPlayer();
    m_pSurface->slot_pauseOrPlay();
    m_pSurface->slot_setPlayerToTheStatus(2);
    m_pSurface->slot_timerout();
    m_pSurface->slot_seekPlayPos(100);
    m_pSurface->slot_setVolume(0.1F);
    m_pSurface->slot_TotalTimeChanged(100);
    m_pSurface->slot_currentTimeChanged(50);
    QVERIFY(m_pRoom->captureCurrentFrame().isEmpty());
    m_pRoom->shrinkToThumbnail();
    m_pRoom->fitToContainer();
    m_pRoom->resetToIdle();
    m_pSurface->stopPlay();
    QVERIFY(!m_pSurface->isPlaying());
}

void tst_video_player::playerDiesFirst()
{
    play();
    QVERIFY(m_pSurface->isPlaying());
    host().removePlayer();
    QVERIFY(!m_pSurface->isPlaying());
    m_pSurface->slot_timerout();
    m_pSurface->slot_pauseOrPlay();
    m_pSurface->slot_delayStartPlayer();
    m_pSurface->stopPlay();
    m_pRoom.reset();
}

void tst_video_player::emitsFromAnotherThread()
{
    play();
    player().frame = QSize(320, 240);
    std::thread([this] {
        Q_EMIT player().times.signal_TotalTimeChanged(60000);
        Q_EMIT player().times.signal_currentTime(1000);
    }).join();
    QVERIFY(player().calls.isEmpty());
    QTRY_COMPARE(player().calls, QStringList{QStringLiteral("shown")});
    QCOMPARE(m_pSurface->size(), QSize(320, 240));
    // What comes too late finds nobody.
    std::thread([this] { Q_EMIT player().times.signal_currentTime(1000); }).join();
    m_pRoom.reset();
    QCoreApplication::sendPostedEvents();
    QVERIFY(player().owners.isEmpty() && player().openPath.isEmpty());
}

void tst_video_player::capture()
{
    play();
    player().framePicture = QStringLiteral("/tmp/frame.png");
    QCOMPARE(m_pRoom->captureCurrentFrame(), QStringLiteral("/tmp/frame.png"));
    QCOMPARE(player().calls, (QStringList{QStringLiteral("pause"), QStringLiteral("frame")}));
}

void tst_video_player::methodOrder()
{
    QStringList names;
    const QMetaObject &meta = VideoPlayerWidget::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Slot)
            names.append(QString::fromLatin1(meta.method(i).methodSignature()));
    }
    QCOMPARE(
        names.join(QLatin1Char(' ')),
        QStringLiteral("slot_TotalTimeChanged(qlonglong) slot_currentTimeChanged(qlonglong) slot_delayStartPlayer() "
                       "slot_seekPlayPos(int) slot_pauseOrPlay() slot_setPlayerToTheStatus(int) "
                       "slot_receivedStopSignal() slot_setVolume(float) slot_setPlayRecycle(bool) "
                       "slot_timerout() slot_muteBtnClicked() slot_VideoSliderPressed() "
                       "slot_VideoSliderReleased()"));
}

BIGIMGPREVIEW_TEST_MAIN(tst_video_player)
#include "tst_video_player.moc"
