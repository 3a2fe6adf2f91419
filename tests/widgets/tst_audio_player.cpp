#include "PluginTest.h"
#include "WidgetEvents.h"
#include "common/ElidedLabel.h"
#include "image/TSLargePreviewView.h"
#include "media/AudioCoverTask.h"
#include "media/AudioPlayerControlWidget.h"
#include "media/AudioPreviewWidget.h"
#include "media/MediaButton.h"
#include "media/SoundControlWin.h"
#include "media/TimeLabel.h"
#include "theme/TSSkinSetting.h"

#include <QPainter>

#include <thread>

using Player = ITsMediaPlayerPlugin;
using Control = AudioPlayerControlWidget;
using Deed = std::function<void(Control &)>;
Q_DECLARE_METATYPE(Deed)

namespace {

/** Green in the middle square, red beside it. */
QImage picture(const QSize &size)
{
    QImage image = plainImage(size, Qt::red);
    const int nSide = qMin(size.width(), size.height());
    QPainter(&image).fillRect((size.width() - nSide) / 2, (size.height() - nSide) / 2, nSide, nSide, Qt::green);
    return image;
}

} // namespace

/** The page of audio files and what plays them. */
class tst_audio_player : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void startsLate()
    {
        player().takeCalls();
        QElapsedTimer clock;
        clock.start();
        for (const char *pName : {"/x/a.mp3", "/x/<b>c & d.mp3"})
            m_page->playAudio(QString::fromLatin1(pName));
        QTRY_VERIFY(!player().openPath.isEmpty());
        QVERIFY(clock.elapsed() >= 95);
        QVERIFY(
            player().takeCalls().contains(QStringLiteral("wave /x/<b>c & d.mp3,open /x/<b>c & d.mp3 0,volume 0.50")));
        QCOMPARE(m_pControl->findChild<ElidedLabel *>()->text(), QStringLiteral("<b>c & d.mp3"));
        m_page->stopPreview();
        for (const QTimer *pTimer : m_page->findChildren<QTimer *>())
            QVERIFY(!pTimer->isActive());
    }

    void transitions_data()
    {
        const auto add = columns<Deed, int, QString, bool>("act", "state", "calls", "looksPlaying");
        const auto row = [&add](const char *pName, const Deed &act, int nState, const char *pCalls, bool bPlaying) {
            add(QStringLiteral("%1 %2").arg(QLatin1String(pName)).arg(nState), act, nState, pCalls, bPlaying);
        };
        const char *const opening = "wave /a.mp3,open /a.mp3 0,volume 0.50";
        row("start", &Control::slot_delayStartPlayer, Player::Stopped, opening, true);
        row("start", &Control::slot_delayStartPlayer, Player::Paused, "play", true);
        row("start", &Control::slot_delayStartPlayer, Player::Playing, "", true);
        row("button", &Control::slot_pauseOrPlay, Player::Stopped, opening, true);
        row("button", &Control::slot_pauseOrPlay, Player::Paused, "play", true);
        row("button", &Control::slot_pauseOrPlay, Player::Playing, "pause", false);
        const auto status = [](int nStatus) {
            return [nStatus](Control &control) {
                control.setPlayStatus(nStatus);
            };
        };
        row("be stopped", status(0), Player::Playing, "stop", false);
        row("be paused", status(1), Player::Playing, "pause", false);
        row("be paused", status(1), Player::Stopped, "", false);
        row("play", status(2), Player::Paused, "play", true);
        row("play", status(2), Player::Playing, "", false);
        row("be 3", status(3), Player::Playing, "", false);
    }

    void transitions()
    {
        const auto [act, state, calls, looksPlaying] = currentRow<Deed, int, QString, bool>();
        player().now = state;
        player().takeCalls();
        m_pControl->setPlayLook(false);
        act(*m_pControl);
        QCOMPARE(player().takeCalls(), calls);
        QCOMPARE(looks("preview_audio_stop"), looksPlaying);
    }

    void endAndLoop()
    {
        m_pControl->slot_delayStartPlayer();
        player().takeCalls();
        player().now = Player::Stopped;
        QTRY_VERIFY(looks("preview_audio_play")); // found out by looking
        QVERIFY(player().takeCalls().contains(QStringLiteral("wave position -1")));
        m_pControl->slot_cycleBtnClicked();
        QTRY_COMPARE(player().now, int(Player::Playing));
        QVERIFY(!player().takeCalls().contains(QStringLiteral("wave /a.mp3"))); // which is there already
    }

    void timesAndWave()
    {
        std::thread([this] { Q_EMIT player().times.signal_TotalTimeChanged(65000); }).join();
        QTRY_COMPARE(times(), QStringLiteral("0:0/01:05"));
        player().takeCalls();
        Q_EMIT player().times.signal_currentTime(30000); // nothing plays
        player().now = Player::Playing;
        Q_EMIT player().times.signal_currentTime(30000);
        QCOMPARE(times(), QStringLiteral("00:30  /  01:05"));
        Q_EMIT player().wave->signal_seekPlay(Q_INT64_C(9000000000));
        QCOMPARE(player().takeCalls(), QStringLiteral("wave position 30000,seek 2147483647"));
        m_pControl->setFilePath(QStringLiteral("/next.mp3"));
        QCOMPARE(times(), QStringLiteral("0:0/00:00"));
    }

    void volumes()
    {
        auto *pSound = m_pControl->findChild<SoundControlWin *>();
        player().takeCalls();
        pSound->setSoundValue(20);
        m_pControl->SlotVolumClick();
        m_pControl->SlotVolumClick();
        QCOMPARE(player().takeCalls(), QStringLiteral("volume 0.20,volume 0.00,volume 0.20"));
        m_page->stopPreview();
        QVERIFY(data()->audioVolume() == 20 && data()->videoVolume() == 50);
        data()->setAudioVolume(0); // in another surface
        m_page->playAudio(QStringLiteral("/b.mp3"));
        m_pControl->slot_delayStartPlayer();
        QCOMPARE(player().takeCalls(QStringLiteral("volume")), QStringLiteral("volume 0.00"));
        QVERIFY(looks("preview_mute") && data()->audioVolume() == 0);
    }

    void animation()
    {
        player().takeCalls();
        m_pControl->slot_animationTimerout();
        player().itemScale = 3.1;
        player().now = Player::Paused;
        m_pControl->slot_animationTimerout();
        QCOMPARE(player().takeCalls(), QStringLiteral("animate 0,lay out item,animate 1"));
        const auto *pView = m_page->findChild<TSLargePreviewView *>();
        QCOMPARE(pView->height(), 400 - m_pControl->height());
        QCOMPARE(pView->sceneRect().toRect(), QRect(QPoint(-150, -(pView->height() / 2)), pView->size()));
    }

    void covers()
    {
        for (const QSize &size : {QSize(200, 100), QSize(100, 801), QSize(360, 360), QSize(4000, 1)}) {
            const QImage cover = AudioCoverTask::coverOf(picture(size));
            QCOMPARE(cover.size(), QSize(360, 360));
            for (const QPoint &point : {QPoint(1, 1), QPoint(358, 358)})
                QCOMPARE(cover.pixelColor(point), QColor(Qt::green));
        }
    }

    void coverOfTheFile_data()
    {
        const auto row = columns<QString, QString, bool, bool>("large", "thumbnail", "cached", "found");
        const QString good = QStringLiteral("good.png");
        const QString gone = QStringLiteral("gone.png");
        row("large preview", good, gone, false, true);
        row("thumbnail", gone, good, false, true);
        row("host's memory", gone, gone, true, true);
        row("none", "", "", false, false);
    }

    void coverOfTheFile()
    {
        const auto [large, thumbnail, cached, found] = currentRow<QString, QString, bool, bool>();
        QTemporaryDir folder;
        picture({1600, 800}).save(folder.filePath(QStringLiteral("good.png")));
        const auto pFile = host().addFile(1, 210, QStringLiteral("/1.mp3"));
        pFile->largePreview = folder.filePath(large);
        pFile->thumbnail = folder.filePath(thumbnail);
        if (cached)
            host().cache->largePictures.insert(1, picture({80, 40}));
        openFiles({1}, 1);
        m_page->playAudio(pFile->path);
        const auto labelIsGreen = [this] {
            const QPixmap *pLabel = m_pControl->findChild<QLabel *>()->pixmap();
            return pLabel != nullptr && pLabel->toImage().pixelColor(17, 17) == QColor(Qt::green);
        };
        const auto cover = [this] {
            return player().item->data(Player::CoverPicture).value<QPixmap>();
        };
        QTRY_VERIFY(!player().openPath.isEmpty());
        QTest::qWait(20);
        finishWorkers();
        QCOMPARE(cover().size(), found ? QSize(360, 360) : QSize(0, 0));
        QCOMPARE(labelIsGreen(), found);
        m_page->playAudio(QStringLiteral("/2.mp3")); // shows nothing of the last file
        finishWorkers();
        QVERIFY(cover().isNull() && !labelIsGreen());
    }

    void coverIsNotDragged()
    {
        QWidget *pViewport = m_page->findChild<TSLargePreviewView *>()->viewport();
        const QPoint middle = pViewport->rect().center();
        drag(pViewport, middle, middle + QPoint(60, 60));
        QCOMPARE(player().item->pos(), QPointF(0, 0));
        QSignalSpy doubleClicks(m_page.data(), &BasePreviewWidget::signal_PreviewWidgetDoubleClicked);
        QTest::mouseDClick(pViewport, Qt::LeftButton, {}, middle);
        QCOMPARE(doubleClicks.count(), 1);
    }

    void faultyHosts_data()
    {
        const auto row = columns<HostChange, HostChange>("before", "after");
        const HostChange none = [](FakeHost &) {
        };
        const HostChange die = [](FakeHost &host) {
            delete host.player->item; // it goes with its maker
            host.removePlayer();
        };
        row(
            "no player", [](FakeHost &host) { host.removePlayer(); }, none);
        row(
            "no signals", [](FakeHost &host) { host.player->hasSignals = false; }, none);
        row(
            "no widgets", [](FakeHost &host) { host.player->hasWidgets = false; }, none);
        row(
            "opens nothing", [](FakeHost &host) { host.player->opensFiles = false; }, none);
        row("dies first", none, die);
    }

    void faultyHosts()
    {
        const auto [before, after] = currentRow<HostChange, HostChange>();
        m_page.reset();
        before(host());
        make();
        m_page->playAudio(QStringLiteral("/b.mp3"));
        m_pControl->slot_delayStartPlayer();
        after(host());
        m_pControl->slot_pauseOrPlay();
        m_pControl->slot_timerout();
        m_pControl->slot_setAudioTotalTime(1000);
        m_pControl->slot_updateWave(500);
        m_pControl->slot_seekPlay(100);
        m_pControl->SlotSoundChange(10);
        m_pControl->slot_animationTimerout();
        m_page->playAudio(QStringLiteral("/c.mp3"));
        m_page->resize(300, 200);
        // Without a player the file's suffix is shown instead, also from the moment it goes.
        const bool bPlayer = host().player != nullptr;
        QCOMPARE(m_pControl->isVisible(), bPlayer);
        const QColor ground = TSSkinSetting::GetInstance()->GetPlaceholderBackgroundColor();
        QCOMPARE(m_page->grab().toImage().pixelColor(60, 60) == ground, !bPlayer);
        m_page->stopPreview();
        m_page.reset();
        finishWorkers();
    }

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
        m_page->resize(300, 400);
        m_page->show();
        m_pControl = m_page->findChild<Control *>();
        m_pControl->setFilePath(QStringLiteral("/a.mp3"));
    }
    FakePlayer &player() { return *host().player; }
    QString times() const
    {
        const auto labels = m_pControl->findChildren<TimeLabel *>();
        return labels.at(0)->text() + labels.at(1)->text();
    }
    bool looks(const char *pIcon) const
    {
        const auto buttons = m_pControl->findChildren<MediaButton *>();
        return std::any_of(buttons.begin(), buttons.end(), [pIcon](const MediaButton *pButton) {
            return pButton->iconName().startsWith(QLatin1String(pIcon));
        });
    }

    QScopedPointer<AudioPreviewWidget> m_page;
    Control *m_pControl = nullptr;
};

BIGIMGPREVIEW_TEST_MAIN(tst_audio_player)
#include "tst_audio_player.moc"
