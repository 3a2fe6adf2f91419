#include "PluginTest.h"
#include "common/ElidedLabel.h"
#include "image/TSLargePreviewView.h"
#include "media/AudioCoverTask.h"
#include "media/AudioPlayerControlWidget.h"
#include "media/AudioPreviewWidget.h"
#include "media/MediaButton.h"
#include "media/SoundControlWin.h"
#include "media/TimeLabel.h"
#include "theme/TSSkinSetting.h"

#include <QContextMenuEvent>
#include <QMetaMethod>
#include <QPainter>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>

#include <thread>

using Player = ITsMediaPlayerPlugin;
using Control = AudioPlayerControlWidget;

namespace {

QStringList slotNames(const QMetaObject &meta)
{
    QStringList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Slot)
            names.append(QString::fromLatin1(meta.method(i).methodSignature()));
    }
    return names;
}

/** Red on the left, green in the middle square, blue on the right. */
QImage stripes(const QSize &size)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::red);
    const int nSide = qMin(size.width(), size.height());
    QPainter painter(&picture);
    painter.fillRect(QRect((size.width() - nSide) / 2, (size.height() - nSide) / 2, size.width(), size.height()),
                     Qt::blue);
    painter.fillRect(QRect((size.width() - nSide) / 2, (size.height() - nSide) / 2, nSide, nSide), Qt::green);
    return picture;
}

} // namespace

/** The page of audio files and what plays them. */
class tst_audio_player : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void geometry();
    void startsLate();
    void delayedStart_data();
    void delayedStart();
    void pauseOrPlay_data();
    void pauseOrPlay();
    void status_data();
    void status();
    void endAndLoop();
    void timesAndWave();
    void volumes();
    void animation();
    void layoutOfThePage();
    void covers_data();
    void covers();
    void coverOfTheFile_data();
    void coverOfTheFile();
    void onlyTheLastCoverIsShown();
    void coverIsNotDragged();
    void faultyHosts_data();
    void faultyHosts();
    void playerDiesFirst();
    void emitsFromAnotherThread();
    void methodOrder();

protected:
    void init() override
    {
        PluginTest::init();
        make();
    }
    void cleanup() override
    {
        m_page.reset();
        data()->setAudioVolume(50);
        PluginTest::cleanup();
    }

private:
    void make()
    {
        m_page.reset(new AudioPreviewWidget(nullptr));
        m_page->resize(900, 700);
        m_pControl = m_page->findChild<Control *>();
    }
    FakePlayer &player() { return *host().player; }
    MediaButton *button(const char *pIcon) const
    {
        for (MediaButton *pButton : m_pControl->findChildren<MediaButton *>()) {
            if (pButton->iconName().startsWith(QLatin1String(pIcon)))
                return pButton;
        }
        return nullptr;
    }
    QStringList times() const
    {
        QList<TimeLabel *> labels = m_pControl->findChildren<TimeLabel *>();
        return {labels.at(0)->text(), labels.at(1)->text()};
    }
    QPixmap itemCover() { return player().pItem->data(Player::CoverPicture).value<QPixmap>(); }

    QScopedPointer<AudioPreviewWidget> m_page;
    Control *m_pControl = nullptr;
};

void tst_audio_player::geometry()
{
    m_page->show();
    const auto place = [this](const QWidget *pWidget) {
        return QRect(pWidget->mapTo(m_pControl, QPoint(0, 0)), pWidget->size());
    };
    QCOMPARE(m_pControl->height(), 44 + 60 + place(m_pControl->findChild<ElidedLabel *>()).height() + 3 +
                                       m_pControl->findChild<TimeLabel *>()->height() + 40);
    QCOMPARE(place(button("preview_audio_stop")), QRect(428 + 1, 0, 44, 44));
    QCOMPARE(place(button("preview_voice")), QRect(368 + 1, 14, 20, 16));
    QCOMPARE(place(button("preview_loop_normal")), QRect(512 + 1, 13, 18, 18));
    QCOMPARE(place(m_pControl->findChild<ElidedLabel *>()).x(), 40 + 34 + 5);
    QCOMPARE(place(player().wave).x(), 40 + 34 + 5 + 84 + 5);
    QCOMPARE(place(player().wave).right(), 899);
    QCOMPARE(m_pControl->findChild<ElidedLabel *>()->text(), QStringLiteral("File Name"));
}

void tst_audio_player::startsLate()
{
    data()->setAudioVolume(30);
    m_page->show();
    player().takeCalls();
    QElapsedTimer clock;
    clock.start();
    for (const char *pName : {"/x/a.mp3", "/x/b.mp3", "/x/<b>c & d.mp3"}) {
        m_page->playAudio(QString::fromLatin1(pName));
        QTest::qWait(10);
    }
    QTRY_VERIFY(!player().openPath.isEmpty());
    QVERIFY(clock.elapsed() >= 115);
    QCOMPARE(player().callsOf({QStringLiteral("open"), QStringLiteral("wave"), QStringLiteral("volume")}),
             (QStringList{QStringLiteral("wave source /x/<b>c & d.mp3 wide"), QStringLiteral("open /x/<b>c & d.mp3"),
                          QStringLiteral("volume 0.30")}));
    QCOMPARE(m_pControl->findChild<ElidedLabel *>()->text(), QStringLiteral("<b>c & d.mp3"));
    QCOMPARE(m_pControl->volume(), 30);
    m_page->stopPreview();
    QVERIFY(player().openPath.isEmpty());
    for (const QTimer *pTimer : m_page->findChildren<QTimer *>())
        QVERIFY(!pTimer->isActive());
}

void tst_audio_player::delayedStart_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("calls");
    const QString path = QStringLiteral("/a.mp3");
    QTest::newRow("stopped") << int(Player::Stopped) << path
                             << QStringList{QStringLiteral("open /a.mp3"), QStringLiteral("volume 0.50")};
    QTest::newRow("no file") << int(Player::Stopped) << QString() << QStringList();
    QTest::newRow("paused") << int(Player::Paused) << path << QStringList{QStringLiteral("play")};
    QTest::newRow("playing") << int(Player::Playing) << path << QStringList();
}

void tst_audio_player::delayedStart()
{
    QFETCH(int, state);
    QFETCH(QString, path);
    m_pControl->setFilePath(path);
    m_pControl->setPlayLook(false);
    player().now = state;
    m_pControl->slot_delayStartPlayer();
    QTEST(player().callsOf({QStringLiteral("open"), QStringLiteral("volume"), QStringLiteral("play")}), "calls");
    QVERIFY(button("preview_audio_stop") != nullptr);
}

void tst_audio_player::pauseOrPlay_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("call");
    QTest::addColumn<bool>("playing");
    QTest::newRow("stopped") << int(Player::Stopped) << QStringLiteral("open /a.mp3") << true;
    QTest::newRow("paused") << int(Player::Paused) << QStringLiteral("play") << true;
    QTest::newRow("playing") << int(Player::Playing) << QStringLiteral("pause") << false;
}

void tst_audio_player::pauseOrPlay()
{
    QFETCH(int, state);
    QFETCH(QString, call);
    QFETCH(bool, playing);
    m_pControl->setFilePath(QStringLiteral("/a.mp3"));
    player().now = state;
    QTest::mouseClick(button("preview_audio"), Qt::LeftButton);
    QCOMPARE(player().callsOf({QStringLiteral("open"), QStringLiteral("play"), QStringLiteral("pause")}),
             QStringList{call});
    QVERIFY(button(playing ? "preview_audio_stop" : "preview_audio_play") != nullptr);
}

void tst_audio_player::status_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("call");
    QTest::newRow("stop") << int(Player::Playing) << 0 << QStringLiteral("stop");
    QTest::newRow("pause") << int(Player::Playing) << 1 << QStringLiteral("pause");
    QTest::newRow("pause what is paused") << int(Player::Paused) << 1 << QString();
    QTest::newRow("pause what is stopped") << int(Player::Stopped) << 1 << QString();
    QTest::newRow("play") << int(Player::Paused) << 2 << QStringLiteral("play");
    QTest::newRow("play what plays") << int(Player::Playing) << 2 << QString();
    QTest::newRow("play what is stopped") << int(Player::Stopped) << 2 << QStringLiteral("open /a.mp3");
    QTest::newRow("unheard of") << int(Player::Playing) << 3 << QString();
}

void tst_audio_player::status()
{
    QFETCH(int, state);
    QFETCH(int, status);
    QFETCH(QString, call);
    m_pControl->setFilePath(QStringLiteral("/a.mp3"));
    m_pControl->start();
    player().now = state;
    player().takeCalls();
    m_pControl->setPlayStatus(status);
    const QStringList calls = player().callsOf(
        {QStringLiteral("open"), QStringLiteral("play"), QStringLiteral("pause"), QStringLiteral("stop")});
    QCOMPARE(calls.join(QLatin1Char(',')), call);
}

void tst_audio_player::endAndLoop()
{
    m_pControl->setFilePath(QStringLiteral("/a.mp3"));
    m_pControl->slot_delayStartPlayer();
    Q_EMIT player().times.signal_TotalTimeChanged(5000);
    player().now = Player::Stopped;
    player().takeCalls();
    m_pControl->slot_timerout();
    QCOMPARE(player().takeCalls(), QStringList{QStringLiteral("wave position -1")});
    QVERIFY(button("preview_audio_play") != nullptr);
    QTest::mouseClick(button("preview_loop_normal"), Qt::LeftButton);
    QVERIFY(button("preview_loop_select") != nullptr);
    m_pControl->slot_timerout();
    m_pControl->slot_timerout();
    QTRY_COMPARE(player().callsOf({QStringLiteral("open")}), QStringList{QStringLiteral("open /a.mp3")});
    // The waveform is there already.
    QVERIFY(!player().calls.join(QLatin1Char(',')).contains(QStringLiteral("wave source")));
}

void tst_audio_player::timesAndWave()
{
    Q_EMIT player().times.signal_TotalTimeChanged(65000);
    QCOMPARE(times(), (QStringList{QStringLiteral("0:0/"), QStringLiteral("01:05")}));
    Q_EMIT player().times.signal_currentTime(30000); // nothing plays
    QCOMPARE(times().first(), QStringLiteral("0:0/"));
    player().now = Player::Playing;
    player().takeCalls();
    Q_EMIT player().times.signal_currentTime(30000);
    QCOMPARE(times(), (QStringList{QStringLiteral("00:30  /  "), QStringLiteral("01:05")}));
    Q_EMIT player().wave->signal_seekPlay(40000);
    Q_EMIT player().wave->signal_seekPlay(Q_INT64_C(9000000000));
    QCOMPARE(player().calls, (QStringList{QStringLiteral("wave position 30000"), QStringLiteral("seek 40000"),
                                          QStringLiteral("seek 2147483647")}));
    m_pControl->setFilePath(QString());
    QCOMPARE(times().last(), QStringLiteral("01:05"));
    m_pControl->setFilePath(QStringLiteral("/next.mp3"));
    QCOMPARE(times(), (QStringList{QStringLiteral("0:0/"), QStringLiteral("00:00")}));
}

void tst_audio_player::volumes()
{
    auto *pSound = m_pControl->findChild<SoundControlWin *>();
    m_page->playAudio(QStringLiteral("/a.mp3"));
    pSound->setSoundValue(20);
    QCOMPARE(player().callsOf({QStringLiteral("volume")}), QStringList{QStringLiteral("volume 0.20")});
    QTest::mouseClick(button("preview_voice"), Qt::LeftButton);
    QVERIFY(button("preview_mute") != nullptr && m_pControl->volume() == 0);
    QTest::mouseClick(button("preview_mute"), Qt::LeftButton);
    QCOMPARE(m_pControl->volume(), 20);
    m_page->stopPreview();
    QCOMPARE(data()->audioVolume(), 20);
    QCOMPARE(data()->videoVolume(), 50);
    // A page on which nothing was changed keeps what another one has set meanwhile.
    data()->setAudioVolume(0);
    m_page->stopPreview();
    QCOMPARE(data()->audioVolume(), 0);
    player().takeCalls();
    m_page->playAudio(QStringLiteral("/b.mp3"));
    m_pControl->slot_delayStartPlayer();
    QCOMPARE(player().callsOf({QStringLiteral("volume")}), QStringList{QStringLiteral("volume 0.00")});
    QVERIFY(button("preview_mute") != nullptr);
}

void tst_audio_player::animation()
{
    m_pControl->setFilePath(QStringLiteral("/a.mp3"));
    m_pControl->slot_delayStartPlayer();
    player().takeCalls();
    m_pControl->slot_animationTimerout();
    QCOMPARE(player().takeCalls(), (QStringList{QStringLiteral("animate 2"), QStringLiteral("lay out item")}));
    player().itemScale = 3.1;
    player().now = Player::Paused;
    m_pControl->slot_animationTimerout();
    QCOMPARE(player().takeCalls(), QStringList{QStringLiteral("animate 1")});
    Control still(false);
    still.setFilePath(QStringLiteral("/a.mp3"));
    QSignalSpy steps(&still, &Control::signal_animationUpdate);
    player().now = Player::Stopped;
    still.slot_delayStartPlayer();
    m_pControl->stopAudio();
    QTest::qWait(60);
    QVERIFY(steps.isEmpty() && !player().calls.contains(QStringLiteral("animate 0")));
}

void tst_audio_player::layoutOfThePage()
{
    m_page->show();
    auto *pView = m_page->findChild<TSLargePreviewView *>();
    for (const QSize &size : {QSize(901, 701), QSize(640, 480)}) {
        m_page->resize(size);
        const QSize view(size.width(), size.height() - m_pControl->height());
        QCOMPARE(pView->geometry(), QRect(QPoint(0, 0), view));
        QCOMPARE(pView->sceneRect(), QRectF(-(view.width() / 2), -(view.height() / 2), view.width(), view.height()));
    }
    m_page->playAudio(QStringLiteral("/a.mp3"));
    QCOMPARE(pView->scene()->sceneRect(), QRectF(-320, -320, 640, 640));
}

void tst_audio_player::covers_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("wide") << QSize(200, 100);
    QTest::newRow("tall") << QSize(100, 801);
    QTest::newRow("square") << QSize(50, 50);
    QTest::newRow("one pixel") << QSize(1, 1);
    QTest::newRow("a line") << QSize(4000, 1);
    QTest::newRow("as it is to be") << QSize(360, 360);
}

void tst_audio_player::covers()
{
    QFETCH(QSize, size);
    const QImage picture = stripes(size);
    const QImage cover = AudioCoverTask::coverOf(picture);
    QCOMPARE(cover.size(), QSize(360, 360));
    QCOMPARE(cover.pixelColor(180, 180), QColor(Qt::green));
    QCOMPARE(cover.pixelColor(1, 1), QColor(Qt::green));
    QCOMPARE(cover.pixelColor(358, 358), QColor(Qt::green));
    QCOMPARE(cover.cacheKey() == picture.cacheKey(), size == QSize(360, 360));
    QVERIFY(AudioCoverTask::coverOf(QImage()).isNull());
}

void tst_audio_player::coverOfTheFile_data()
{
    QTest::addColumn<QString>("large");
    QTest::addColumn<QString>("thumbnail");
    QTest::addColumn<bool>("cached");
    QTest::addColumn<bool>("found");
    const QString good = QStringLiteral("good.png");
    const QString bad = QStringLiteral("bad.png");
    QTest::newRow("large preview") << good << bad << false << true;
    QTest::newRow("thumbnail") << bad << good << false << true;
    QTest::newRow("host's memory") << bad << QStringLiteral("gone.png") << true << true;
    QTest::newRow("broken") << bad << bad << false << false;
    QTest::newRow("none") << QString() << QString() << false << false;
}

void tst_audio_player::coverOfTheFile()
{
    QFETCH(QString, large);
    QFETCH(QString, thumbnail);
    QFETCH(bool, cached);
    QFETCH(bool, found);
    QTemporaryDir folder;
    stripes({1600, 800}).save(folder.filePath(QStringLiteral("good.png")));
    QFile bad(folder.filePath(QStringLiteral("bad.png")));
    QVERIFY(bad.open(QIODevice::WriteOnly) && bad.write("no picture") > 0);
    bad.close();
    const auto pFile = host().addFile(1, 210, QStringLiteral("/1.mp3"));
    pFile->largePreview = large.isEmpty() ? large : folder.filePath(large);
    pFile->thumbnail = thumbnail.isEmpty() ? thumbnail : folder.filePath(thumbnail);
    if (cached)
        host().cache->largePictures.insert(1, stripes({80, 40}));
    openFiles({1}, 1);
    m_page->playAudio(pFile->path);
    QTRY_VERIFY(!player().openPath.isEmpty());
    QTest::qWait(20);
    finishWorkers();
    QCOMPARE(!itemCover().isNull(), found);
    // Without a picture a drawn one stands beside the waveform.
    const QPixmap *pLabel = m_pControl->findChild<QLabel *>()->pixmap();
    QVERIFY(pLabel != nullptr && pLabel->size() == QSize(34, 34));
    QCOMPARE(pLabel->toImage().pixelColor(17, 17) == QColor(Qt::green), found);
    if (found)
        QCOMPARE(itemCover().toImage().pixelColor(180, 180), QColor(Qt::green));
    m_page->playAudio(QStringLiteral("/2.mp3"));
    QVERIFY(itemCover().isNull());
}

void tst_audio_player::onlyTheLastCoverIsShown()
{
    QTemporaryDir folder;
    QImage red(50, 50, QImage::Format_RGB32);
    red.fill(Qt::red);
    red.save(folder.filePath(QStringLiteral("red.png")));
    stripes({50, 50}).save(folder.filePath(QStringLiteral("green.png")));
    for (int i = 0; i < 5; ++i) {
        m_pControl->setCoverImage(folder.filePath(QStringLiteral("red.png")));
        m_pControl->setCoverImage(folder.filePath(QStringLiteral("green.png")));
    }
    finishWorkers();
    QCOMPARE(m_pControl->findChild<QLabel *>()->pixmap()->toImage().pixelColor(17, 17), QColor(Qt::green));
    m_pControl->setCoverImage(folder.filePath(QStringLiteral("red.png")));
    m_page.reset();
    finishWorkers();
}

void tst_audio_player::coverIsNotDragged()
{
    m_page->show();
    QWidget *pViewport = m_page->findChild<TSLargePreviewView *>()->viewport();
    const QPoint middle = pViewport->rect().center();
    QTest::mousePress(pViewport, Qt::LeftButton, {}, middle);
    QTest::mouseMove(pViewport, middle + QPoint(60, 60));
    QMouseEvent move(QEvent::MouseMove, middle + QPoint(60, 60), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(pViewport, &move);
    QTest::mouseRelease(pViewport, Qt::LeftButton, {}, middle + QPoint(60, 60));
    QCOMPARE(player().pItem->pos(), QPointF(0, 0));
    QSignalSpy doubleClicks(m_page.data(), &BasePreviewWidget::signal_PreviewWidgetDoubleClicked);
    QTest::mouseDClick(pViewport, Qt::LeftButton, {}, middle);
    QCOMPARE(doubleClicks.count(), 1);
}

void tst_audio_player::faultyHosts_data()
{
    QTest::addColumn<HostChange>("change");
    QTest::addColumn<bool>("placeholder");
    const QString name = QStringLiteral("ITsMediaPlayerPlugin");
    QTest::newRow("no manager") << HostChange([](FakeHost &) { data()->setPluginManager(nullptr); }) << true;
    QTest::newRow("no player") << HostChange([name](FakeHost &host) { host.registry.remove(name); }) << true;
    QTest::newRow("no signals") << HostChange([](FakeHost &host) { host.player->hasSignals = false; }) << false;
    QTest::newRow("no widgets") << HostChange([](FakeHost &host) { host.player->hasWidgets = false; }) << false;
    QTest::newRow("opens nothing") << HostChange([](FakeHost &host) { host.player->opensFiles = false; }) << false;
}

void tst_audio_player::faultyHosts()
{
    QFETCH(HostChange, change);
    QFETCH(bool, placeholder);
    change(host());
    make();
    m_page->show();
    m_page->playAudio(QStringLiteral("/a.mp3"));
    m_pControl->slot_delayStartPlayer();
    m_pControl->slot_pauseOrPlay();
    m_pControl->slot_timerout();
    m_pControl->slot_setAudioTotalTime(1000);
    m_pControl->slot_updateWave(500);
    m_pControl->slot_seekPlay(100);
    m_pControl->SlotSoundChange(10);
    m_page->slot_animationRotate(2);
    m_page->resize(300, 200);
    QCOMPARE(m_pControl->isVisible(), !placeholder);
    const QColor suffixGround = TSSkinSetting::GetInstance()->GetPlaceholderBackgroundColor();
    QCOMPARE(m_page->grab().toImage().pixelColor(60, 30) == suffixGround, placeholder);
    m_page->stopPreview();
    finishWorkers();
}

void tst_audio_player::playerDiesFirst()
{
    m_page->playAudio(QStringLiteral("/a.mp3"));
    m_pControl->slot_delayStartPlayer();
    delete player().pItem; // it goes with its maker
    host().removePlayer();
    m_pControl->slot_timerout();
    m_pControl->slot_animationTimerout();
    m_pControl->slot_pauseOrPlay();
    m_page->playAudio(QStringLiteral("/b.mp3"));
    m_page->stopPreview();
    m_page.reset();
    finishWorkers();
}

void tst_audio_player::emitsFromAnotherThread()
{
    player().now = Player::Playing;
    player().takeCalls();
    std::thread([this] {
        Q_EMIT player().times.signal_TotalTimeChanged(65000);
        Q_EMIT player().times.signal_currentTime(1000);
    }).join();
    QVERIFY(player().calls.isEmpty());
    QTRY_COMPARE(player().calls,
                 (QStringList{QStringLiteral("wave duration 65000"), QStringLiteral("wave position 1000")}));
    m_page.reset();
    QVERIFY(player().owners.isEmpty() && player().now == Player::Stopped);
}

void tst_audio_player::methodOrder()
{
    QCOMPARE(slotNames(Control::staticMetaObject).join(QLatin1Char(' ')),
             QStringLiteral("slot_setAudioTotalTime(qlonglong) slot_seekPlay(qlonglong) SlotSoundChange(int) "
                            "slot_delayStartPlayer() slot_updateWave(qlonglong) slot_pauseOrPlay() SlotVolumClick() "
                            "slot_cycleBtnClicked() slot_timerout() slot_animationTimerout()"));
    QCOMPARE(slotNames(AudioPreviewWidget::staticMetaObject).join(QLatin1Char(' ')),
             QStringLiteral("slot_animationRotate(int) slot_defaultOpen() slot_checkFilePath() slot_exportToPackage() "
                            "slot_exportToComputer() slot_copyFile() slot_copyFilePath() slot_copyTag() "
                            "slot_pasteTag() slot_setCover() slot_deleteComplete() slot_removeToRecycle()"));
}

BIGIMGPREVIEW_TEST_MAIN(tst_audio_player)
#include "tst_audio_player.moc"
