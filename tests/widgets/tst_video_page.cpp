#include "PluginTest.h"
#include "common/CNotificationFloatingWidget.h"
#include "common/CircleBtn.h"
#include "common/TSCustomMenu.h"
#include "media/AudioPreviewWidget.h"
#include "media/SoundControlWin.h"
#include "media/TSembedVideoWidget.h"
#include "media/VideoPlayerControlWidget.h"
#include "media/VideoPlayerWidget.h"
#include "media/VideoPreviewWidget.h"
#include "preview/MiddleResourcePreviewWidget.h"

#include <QContextMenuEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>

using Hub = MiddleResourcePreviewWidget;
using Player = ITsMediaPlayerPlugin;

namespace {

constexpr qint64 PictureType = 10;
constexpr qint64 AudioType = 210;
constexpr qint64 VideoType = 220;

} // namespace

/** The page of videos, and how the hub starts, stops and releases what plays, audio files too. */
class tst_video_page : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void tools();
    void volumeFromFileToFile();
    void sizesOfTheVideo();
    void frameAsCover_data();
    void frameAsCover();
    void failureIsToldOnce();
    void withoutAPlayer();
    void methodOrder();
    void steppingStartsTheFileThatStays_data();
    void steppingStartsTheFileThatStays();
    void releasedWhenLeft_data();
    void releasedWhenLeft();
    void releasedBeforeRemoval_data();
    void releasedBeforeRemoval();
    void menuPauses_data();
    void menuPauses();
    void newCoverIsAnnounced_data();
    void newCoverIsAnnounced();

protected:
    void init() override
    {
        PluginTest::init();
        host().addFile(1, VideoType, QStringLiteral("/1.mp4"));
        host().addFile(2, AudioType, QStringLiteral("/2.mp3"));
        host().addPicture(3, PictureType, QStringLiteral("/3.png"));
        for (int i = 10; i < 30; ++i)
            host().addFile(i, i % 2 == 0 ? VideoType : AudioType, QStringLiteral("/%1.x").arg(i));
        openFiles({1, 2, 3}, 1);
    }
    void cleanup() override
    {
        m_hub.reset();
        m_page.reset();
        data()->setVideoVolume(50);
        data()->setAudioVolume(50);
        PluginTest::cleanup();
    }

private:
    FakePlayer &player() { return *host().player; }
    void makePage()
    {
        m_page.reset(new VideoPreviewWidget(nullptr));
        m_page->resize(1000, 700);
        m_page->show();
    }
    void makeHub(int nMode = Hub::SpaceDialogMode)
    {
        m_hub.reset(new Hub(nullptr, nMode));
        m_hub->resize(900, 700);
        m_hub->show();
        QVERIFY(QTest::qWaitForWindowActive(m_hub.data()));
    }
    /** Shows a file in a hub and waits until it plays. */
    void playInHub(qint64 nFileId)
    {
        makeHub();
        data()->setCurrentFile(nFileId);
        m_hub->slot_previewResource();
        QTRY_COMPARE(player().openPath, data()->currentFilePath());
    }
    QWidget *page(qint64 nFileId) const
    {
        if (nFileId == 1)
            return m_hub->findChild<VideoPreviewWidget *>();
        return m_hub->findChild<AudioPreviewWidget *>();
    }
    SoundControlWin *sound() const { return m_page->findChild<SoundControlWin *>(); }
    static void kinds()
    {
        QTest::addColumn<qint64>("file");
        QTest::newRow("video") << qint64(1);
        QTest::newRow("audio") << qint64(2);
    }

    QScopedPointer<VideoPreviewWidget> m_page;
    QScopedPointer<Hub> m_hub;
};

void tst_video_page::tools()
{
    makePage();
    const auto buttons = m_page->findChildren<CircleBtn *>();
    QCOMPARE(buttons.size(), 2);
    QCOMPARE(buttons.at(0)->geometry(), QRect(918, 20, 26, 26));
    QCOMPARE(buttons.at(1)->geometry(), QRect(954, 20, 26, 26));
    QCOMPARE(buttons.at(0)->toolTip(), QStringLiteral("Self-Adaption"));
    QCOMPARE(buttons.at(1)->toolTip(), QStringLiteral("Actual Size"));
    auto *pBar = m_page->findChild<VideoPlayerControlWidget *>();
    QCOMPARE(pBar->geometry(), QRect(0, 640, 1000, 40));
    QCOMPARE(m_page->findChild<TSembedVideoWidget *>()->geometry(), QRect(0, 0, 1000, 640));
    for (const bool bVisible : {true, false}) {
        m_page->setToolsVisible(bVisible);
        QCOMPARE(buttons.at(0)->isVisible(), bVisible);
        QCOMPARE(buttons.at(1)->isVisible(), bVisible);
        QCOMPARE(pBar->isVisible(), bVisible);
    }
}

void tst_video_page::volumeFromFileToFile()
{
    makePage();
    m_page->setFilePath(QStringLiteral("/1.mp4"), 0);
    sound()->setSoundValue(30);
    m_page->stopPreview();
    QCOMPARE(data()->videoVolume(), 30);
    player().takeCalls();
    m_page->setFilePath(QStringLiteral("/4.mp4"), 0);
    QTRY_COMPARE(player().callsOf({QStringLiteral("open"), QStringLiteral("volume")}),
                 (QStringList{QStringLiteral("open /4.mp4 0"), QStringLiteral("volume 0.30")}));
    m_page->stopPreview();
    // The next surface takes it over, and one that changed nothing leaves it alone.
    VideoPreviewWidget next(nullptr);
    QCOMPARE(next.findChild<SoundControlWin *>()->soundValue(), 30);
    data()->setVideoVolume(80);
    next.stopPreview();
    QCOMPARE(data()->videoVolume(), 80);
    QCOMPARE(data()->audioVolume(), 50);
}

void tst_video_page::sizesOfTheVideo()
{
    makePage();
    auto *pSurface = m_page->findChild<VideoPlayerWidget *>();
    const auto buttons = m_page->findChildren<CircleBtn *>();
    // Idle in the middle, also of a room that has another size meanwhile.
    QCOMPARE(pSurface->geometry(), QRect(400, 220, 200, 200));
    m_page->setToolsVisible(true);
    player().frame = QSize(1280, 720);
    m_page->setFilePath(QStringLiteral("/1.mp4"), 0);
    pSurface->slot_delayStartPlayer();
    Q_EMIT player().times.signal_TotalTimeChanged(1000);
    QCOMPARE(pSurface->geometry(), QRect(0, 39, 1000, 562));
    QTest::mouseClick(buttons.at(0), Qt::LeftButton);
    QCOMPARE(pSurface->geometry(), QRect(322, 220, 356, 200));
    QTest::mouseClick(buttons.at(1), Qt::LeftButton);
    QCOMPARE(pSurface->geometry(), QRect(0, 39, 1000, 562));
    m_page->resize(500, 700);
    QCOMPARE(pSurface->geometry(), QRect(0, 179, 500, 281));
    m_page->stopPreview();
    m_page->resetPreview();
    QCOMPARE(pSurface->geometry(), QRect(150, 220, 200, 200));
}

void tst_video_page::frameAsCover_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("sent");
    QTest::newRow("frame") << QStringLiteral("frame.png") << true;
    QTest::newRow("no frame") << QString() << false;
    QTest::newRow("frame that is gone") << QStringLiteral("gone.png") << false;
}

void tst_video_page::frameAsCover()
{
    QFETCH(QString, name);
    QFETCH(bool, sent);
    QTemporaryDir folder;
    QImage picture(160, 90, QImage::Format_RGB32);
    picture.fill(Qt::darkCyan);
    picture.save(folder.filePath(QStringLiteral("frame.png")));
    makePage();
    player().now = Player::Playing;
    player().framePicture = name.isEmpty() ? name : folder.filePath(name);
    host().desk.reply = Reply::RefuseZero;
    m_page->slot_setCurFramToCover();
    QVERIFY(player().calls.endsWith(QStringLiteral("frame")) && player().now == Player::Paused);
    finishWorkers();
    QCOMPARE(host().desk.of(ActionKind::File).size(), sent ? 1 : 0);
    QCOMPARE(log().count(QStringLiteral("preview video set cover action id <= 0")), sent ? 1 : 0);
    if (sent) {
        const ActionRequest request = host().desk.requests.first();
        QVERIFY(request.fileIds == QVector<qint64>{1} && request.path.endsWith(QStringLiteral(".webp")));
        QCOMPARE(QImage(request.path).size(), QSize(160, 90));
    }
}

void tst_video_page::failureIsToldOnce()
{
    makePage();
    player().opensFiles = false;
    auto *pSurface = m_page->findChild<VideoPlayerWidget *>();
    m_page->setFilePath(QStringLiteral("/1.mp4"), 0);
    for (int i = 0; i < 3; ++i) {
        pSurface->slot_delayStartPlayer();
        pSurface->slot_timerout();
    }
    QCOMPARE(m_page->findChildren<CNotificationFloatingWidget *>().size(), 1);
    // One that has played to its end is no failure.
    player().opensFiles = true;
    m_page->setFilePath(QStringLiteral("/4.mp4"), 0);
    pSurface->slot_delayStartPlayer();
    Q_EMIT player().times.signal_currentTime(20);
    player().now = Player::Stopped;
    pSurface->slot_timerout();
    QCOMPARE(m_page->findChildren<CNotificationFloatingWidget *>().size(), 1);
}

void tst_video_page::withoutAPlayer()
{
    host().removePlayer();
    makeHub(Hub::DoubleClickMode);
    m_hub->slot_previewResource();
    QCOMPARE(m_hub->currentIndex(), int(Hub::VideoPage));
    QVERIFY(!m_hub->findChild<VideoPlayerControlWidget *>()->isVisible());
    QVERIFY(!m_hub->findChild<VideoPlayerWidget *>()->isVisible());
    const QImage picture = m_hub->grab().toImage();
    QVERIFY(picture.pixel(450, 200) != picture.pixel(10, 400)); // the suffix stands in the middle
    m_hub->slot_exitCurPreview_Key();
}

void tst_video_page::methodOrder()
{
    QStringList names;
    const QMetaObject &meta = VideoPreviewWidget::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Slot)
            names.append(QString::fromLatin1(meta.method(i).name()));
    }
    QCOMPARE(names.join(QLatin1Char(' ')),
             QStringLiteral("slot_AdaptBtnClicked slot_NormalBtnClicked slot_defaultOpen slot_checkFilePath "
                            "slot_exportToPackage slot_exportToComputer slot_copyFile slot_copyFilePath slot_copyTag "
                            "slot_pasteTag slot_setCurFramToCover slot_deleteComplete slot_removeToRecycle"));
}

void tst_video_page::steppingStartsTheFileThatStays_data()
{
    QTest::addColumn<int>("last");
    QTest::addColumn<QString>("opened");
    QTest::newRow("video") << 28 << QStringLiteral("open /28.x 0");
    QTest::newRow("audio") << 29 << QStringLiteral("open /29.x");
    QTest::newRow("picture") << 3 << QString();
}

void tst_video_page::steppingStartsTheFileThatStays()
{
    QFETCH(int, last);
    makeHub();
    for (int i = 10; i < 28; ++i) {
        data()->setCurrentFile(i);
        m_hub->slot_previewResource();
        QTest::qWait(15);
    }
    data()->setCurrentFile(last);
    m_hub->slot_previewResource();
    QTest::qWait(450);
    QTEST(player().callsOf({QStringLiteral("open")}).join(QLatin1Char(',')), "opened");
    QVERIFY(player().callsOf({QStringLiteral("wave")}).filter(QStringLiteral("source")).size() <= 1);
}

void tst_video_page::releasedWhenLeft_data()
{
    QTest::addColumn<qint64>("file");
    QTest::addColumn<int>("way");
    for (const qint64 nFile : {1, 2}) {
        QTest::addRow("%lld stepped", nFile) << nFile << 0;
        QTest::addRow("%lld escaped", nFile) << nFile << 1;
        QTest::addRow("%lld double click", nFile) << nFile << 2;
        QTest::addRow("%lld destroyed", nFile) << nFile << 3;
    }
}

void tst_video_page::releasedWhenLeft()
{
    QFETCH(qint64, file);
    QFETCH(int, way);
    playInHub(file);
    QWidget *pPage = page(file);
    pPage->findChild<SoundControlWin *>()->setSoundValue(70);
    QSignalSpy exits(m_hub.data(), &Hub::signal_exitCurWidget);
    if (way == 0) {
        data()->setCurrentFile(3);
        m_hub->slot_previewResource();
    } else if (way == 1) {
        QTest::keyClick(m_hub.data(), Qt::Key_Escape);
    } else if (way == 2) {
        QTest::mouseDClick(pPage, Qt::LeftButton, {}, QPoint(5, 300));
    } else {
        m_hub.reset();
    }
    QVERIFY(player().openPath.isEmpty() && player().now == Player::Stopped);
    QCOMPARE(exits.count(), way == 1 || way == 2 ? 1 : 0);
    if (way != 3)
        QCOMPARE(file == 1 ? data()->videoVolume() : data()->audioVolume(), 70);
    else
        QVERIFY(player().owners.isEmpty());
}

void tst_video_page::releasedBeforeRemoval_data()
{
    QTest::addColumn<qint64>("file");
    QTest::addColumn<int>("key"); // 0: deleted for good
    QTest::addColumn<bool>("blocked");
    for (const qint64 nFile : {1, 2}) {
        QTest::addRow("%lld recycled", nFile) << nFile << int(Qt::Key_Delete) << false;
        QTest::addRow("%lld deleted", nFile) << nFile << 0 << false;
        QTest::addRow("%lld refused", nFile) << nFile << 0 << true;
    }
}

void tst_video_page::releasedBeforeRemoval()
{
    QFETCH(qint64, file);
    QFETCH(int, key);
    QFETCH(bool, blocked);
    host().source->deletingBlocked = blocked;
    host().desk.reply = Reply::OnDemand;
    playInHub(file);
    if (key != 0)
        QTest::keyClick(m_hub.data(), Qt::Key(key));
    else
        QVERIFY(QMetaObject::invokeMethod(page(file), "slot_deleteComplete"));
    QCOMPARE(player().openPath.isEmpty(), !blocked);
    QCOMPARE(host().desk.requests.size(), blocked ? 0 : 1);
    if (!blocked)
        QCOMPARE(host().desk.requests.first().fileIds, QVector<qint64>{file});
}

void tst_video_page::menuPauses_data()
{
    kinds();
}

void tst_video_page::menuPauses()
{
    QFETCH(qint64, file);
    playInHub(file);
    QStringList entries;
    QTimer::singleShot(0, qApp, [&entries] {
        auto *pMenu = qobject_cast<TSCustomMenu *>(QApplication::activePopupWidget());
        QVERIFY(pMenu);
        for (const QAction *pAction : pMenu->actions())
            entries.append(pAction->text());
        pMenu->close();
    });
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 300), m_hub->mapToGlobal(QPoint(5, 300)));
    QApplication::sendEvent(page(file), &event);
    QVERIFY(entries.contains(QStringLiteral("File Settings")));
    QCOMPARE(player().now, int(Player::Paused));
}

void tst_video_page::newCoverIsAnnounced_data()
{
    kinds();
}

void tst_video_page::newCoverIsAnnounced()
{
    QFETCH(qint64, file);
    QTemporaryDir folder;
    player().framePicture = folder.filePath(QStringLiteral("frame.png"));
    QImage picture(50, 50, QImage::Format_RGB32);
    picture.fill(Qt::green);
    picture.save(player().framePicture);
    playInHub(file);
    QSignalSpy updates(m_hub.data(), &Hub::siganl_updateLeftList);
    if (file == 1) {
        m_hub->findChild<VideoPreviewWidget *>()->slot_setCurFramToCover();
    } else {
        QTimer::singleShot(0, qApp, [this] {
            auto *pDialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            QVERIFY(pDialog);
            pDialog->findChild<QLineEdit *>()->setText(player().framePicture);
            QMetaObject::invokeMethod(pDialog, "accept");
        });
        m_hub->findChild<AudioPreviewWidget *>()->slot_setCover();
    }
    QTRY_COMPARE(updates.count(), 1);
    QCOMPARE(host().desk.of(ActionKind::File).size(), 1);
    finishWorkers();
}

BIGIMGPREVIEW_TEST_MAIN(tst_video_page)
#include "tst_video_page.moc"
