#include "PluginTest.h"
#include "common/CNotificationFloatingWidget.h"
#include "common/CircleBtn.h"
#include "common/TSCustomMenu.h"
#include "media/AudioPreviewWidget.h"
#include "media/SoundControlWin.h"
#include "media/VideoPlayerControlWidget.h"
#include "media/VideoPlayerWidget.h"
#include "media/VideoPreviewWidget.h"
#include "preview/MiddleResourcePreviewWidget.h"

#include <QContextMenuEvent>

using Hub = MiddleResourcePreviewWidget;
using Player = ITsMediaPlayerPlugin;
using Deed = std::function<void(Hub *, QWidget *)>;
Q_DECLARE_METATYPE(Deed)

/** The page of videos, and how the hub starts, stops and releases what plays, audio files too. */
class tst_video_page : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void volumeFromFileToFile()
    {
        m_page->setFilePath(QStringLiteral("/1"), 0);
        sound()->setSoundValue(30);
        m_page->stopPreview();
        QVERIFY(data()->videoVolume() == 30 && data()->audioVolume() == 50);
        player().takeCalls();
        m_page->setFilePath(QStringLiteral("/5"), 0);
        m_pSurface->slot_delayStartPlayer();
        QCOMPARE(player().takeCalls(), QStringLiteral("open /5 0,volume 0.30"));
        // Silence that was chosen in another surface ends with a click here.
        data()->setVideoVolume(0);
        m_page->setFilePath(QStringLiteral("/1"), 0);
        QCOMPARE(sound()->soundValue(), 0);
        m_page->findChild<VideoPlayerControlWidget *>()->SlotVolumClick();
        QVERIFY(sound()->soundValue() > 0);
    }

    void sizesOfTheVideo()
    {
        m_page->show();
        m_page->setToolsVisible(true);
        const auto buttons = m_page->findChildren<CircleBtn *>();
        QCOMPARE(m_pSurface->geometry(), QRect(400, 220, 200, 200));
        m_page->setFilePath(QStringLiteral("/1"), 0);
        player().frame = QSize(1280, 720);
        Q_EMIT player().times.signal_TotalTimeChanged(1000);
        QCOMPARE(m_pSurface->geometry(), QRect(0, 39, 1000, 562));
        QTest::mouseClick(buttons.at(0), Qt::LeftButton);
        QCOMPARE(m_pSurface->geometry(), QRect(322, 220, 356, 200));
        QTest::mouseClick(buttons.at(1), Qt::LeftButton);
        m_page->resize(500, 700);
        QCOMPARE(m_pSurface->geometry(), QRect(0, 179, 500, 281));
        m_page->stopPreview();
        m_page->resetPreview();
        QCOMPARE(m_pSurface->geometry(), QRect(150, 220, 200, 200));
    }

    void frameAsCover()
    {
        QTemporaryDir folder;
        plainImage(QSize(160, 90), Qt::darkCyan).save(folder.filePath(QStringLiteral("frame.png")));
        host().desk.reply = Reply::RefuseZero;
        for (const char *pName : {"", "gone.png", "frame.png"}) {
            player().now = Player::Playing;
            player().framePicture = *pName == 0 ? QString() : folder.filePath(QString::fromLatin1(pName));
            m_page->slot_setCurFramToCover();
            QCOMPARE(player().now, int(Player::Paused));
            finishWorkers();
        }
        QCOMPARE(log().count(QStringLiteral("preview video set cover action id <= 0")), 1);
        QCOMPARE(host().desk.requests.size(), 1);
        QCOMPARE(QImage(host().desk.requests.first().path).size(), QSize(160, 90));
    }

    void failureIsToldOnce()
    {
        const auto playToTheEnd = [this](bool bPlays) {
            player().opensFiles = bPlays;
            m_pSurface->slot_delayStartPlayer();
            if (bPlays)
                Q_EMIT player().times.signal_currentTime(20);
            player().now = Player::Stopped;
            m_pSurface->slot_timerout();
            return m_page->findChildren<CNotificationFloatingWidget *>().size();
        };
        m_page->setFilePath(QStringLiteral("/1"), 0);
        QCOMPARE(playToTheEnd(true), 0);
        QCOMPARE(playToTheEnd(false), 1);
        QCOMPARE(playToTheEnd(false), 1); // in a loop
    }

    void steppingStartsTheFileThatStays()
    {
        for (const auto &[nLast, pOpened] : {std::pair(17, "open /17 0"), {16, "open /16 0"}, {3, ""}}) {
            for (int i = 10; i < 16; ++i) {
                showInHub(i);
                QTest::qWait(30); // a key that is held down
            }
            showInHub(nLast);
            QTest::qWait(450);
            QCOMPARE(player().takeCalls(QStringLiteral("open")), QLatin1String(pOpened));
        }
    }

    void released_data()
    {
        const auto row = columns<qint64, Deed, bool>("file", "leave", "volumeKept");
        const auto add = [&row](const char *pName, const Deed &leave, bool bKept) {
            row(QStringLiteral("%1, video").arg(QLatin1String(pName)), 1, leave, bKept);
            row(QStringLiteral("%1, audio").arg(QLatin1String(pName)), 2, leave, bKept);
        };
        const auto press = [](Qt::Key key) {
            return [key](Hub *pHub, QWidget *) {
                QTest::keyClick(pHub, key);
            };
        };
        const auto step = [](Hub *pHub, QWidget *) {
            data()->setCurrentFile(3);
            pHub->slot_previewResource();
        };
        const auto doubleClick = [](Hub *, QWidget *pPage) {
            QTest::mouseDClick(pPage, Qt::LeftButton, {}, QPoint(5, 300));
        };
        add("step", step, true);
        add("escape", press(Qt::Key_Escape), true);
        add("double click", doubleClick, true);
        add(
            "end", [](Hub *pHub, QWidget *) { delete pHub; }, false);
        add("recycle", press(Qt::Key_Delete), false);
        add(
            "delete", [](Hub *, QWidget *pPage) { QMetaObject::invokeMethod(pPage, "slot_deleteComplete"); }, false);
    }

    void released()
    {
        const auto [file, leave, volumeKept] = currentRow<qint64, Deed, bool>();
        QWidget *pPage = playInHub(file);
        pPage->findChild<SoundControlWin *>()->setSoundValue(70);
        leave(m_hub, pPage);
        QVERIFY(player().openPath.isEmpty() && player().now == Player::Stopped);
        QCOMPARE(file == 1 ? data()->videoVolume() : data()->audioVolume(), volumeKept ? 70 : 50);
    }

    void blockedDeletionPlaysOn()
    {
        host().source->deletingBlocked = true;
        playInHub(1);
        QTest::keyClick(m_hub, Qt::Key_Delete);
        QVERIFY(!player().openPath.isEmpty() && host().desk.requests.isEmpty());
    }

    void menuPauses()
    {
        for (const qint64 nFile : {1, 2}) {
            QWidget *pPage = playInHub(nFile);
            QTimer::singleShot(
                0, qApp, [] { QVERIFY(qobject_cast<TSCustomMenu *>(QApplication::activePopupWidget())->close()); });
            QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 300), pPage->mapToGlobal(QPoint(5, 300)));
            QApplication::sendEvent(pPage, &event);
            QCOMPARE(player().now, int(Player::Paused));
        }
    }

protected:
    void init() override
    {
        PluginTest::init();
        host().addPicture(3, 10, QStringLiteral("/3.png"));
        for (int i : {1, 2, 10, 11, 12, 13, 14, 15, 16, 17})
            host().addFile(i, i % 2 == 0 ? 210 : 220, QStringLiteral("/%1").arg(i));
        openFiles({1, 2, 3}, 1);
        host().desk.reply = Reply::OnDemand;
        m_page.reset(new VideoPreviewWidget(nullptr));
        m_page->resize(1000, 700);
        m_pSurface = m_page->findChild<VideoPlayerWidget *>();
        m_hub = new Hub(nullptr, Hub::SpaceDialogMode);
        m_hub->resize(900, 700);
        m_hub->show();
        QVERIFY(QTest::qWaitForWindowActive(m_hub));
    }
    void cleanup() override
    {
        delete m_hub;
        m_page.reset();
        data()->setVideoVolume(50);
        data()->setAudioVolume(50);
        PluginTest::cleanup();
    }

private:
    FakePlayer &player() { return *host().player; }
    SoundControlWin *sound() const { return m_page->findChild<SoundControlWin *>(); }
    void showInHub(qint64 nFileId)
    {
        data()->setCurrentFile(nFileId);
        m_hub->slot_previewResource();
    }
    /** Shows a file in the hub and waits until it plays. */
    QWidget *playInHub(qint64 nFileId)
    {
        showInHub(nFileId);
        [this] {
            QTRY_COMPARE(player().openPath, data()->currentFilePath());
        }();
        return nFileId == 1 ? static_cast<QWidget *>(m_hub->findChild<VideoPreviewWidget *>())
                            : m_hub->findChild<AudioPreviewWidget *>();
    }

    QScopedPointer<VideoPreviewWidget> m_page;
    VideoPlayerWidget *m_pSurface = nullptr;
    QPointer<Hub> m_hub;
};

BIGIMGPREVIEW_TEST_MAIN(tst_video_page)
#include "tst_video_page.moc"
