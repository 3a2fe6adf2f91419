#include "PluginTest.h"
#include "common/CNotificationFloatingWidget.h"
#include "common/CPushButton.h"
#include "image/ImgPreviewToolBar.h"
#include "preview/MiddleResourcePreviewWidget.h"

#include <QLabel>

using Hub = MiddleResourcePreviewWidget;
namespace {

/** Signals of one object in the order they come, by name; a flag is written after the name. */
class SignalLog : public QObject {
public:
    explicit SignalLog(Hub *pHub)
    {
        const auto add = [this, pHub](auto pSignal, const char *pName) {
            connect(pHub, pSignal, this, [this, pName] { names.append(QLatin1String(pName)); });
        };
        add(&Hub::signal_exitCurWidget, "exit");
        add(&Hub::signal_SourcePreviewFullScreen, "columns");
        add(&Hub::signal_nextSource, "next");
        add(&Hub::signal_previousSource, "previous");
        add(&Hub::signal_up_Key_Pressed, "up");
        add(&Hub::signal_down_Key_Pressed, "down");
        add(&Hub::signal_left_Key_Pressed, "left");
        add(&Hub::signal_right_Key_Pressed, "right");
        add(&Hub::signal_close_space_dialog, "close");
        connect(pHub, &Hub::signal_forbidden_right, this,
                [this](bool bForbidden) { forbidden.append(bForbidden ? QLatin1Char('1') : QLatin1Char('0')); });
    }
    QStringList names;
    QString forbidden;
};

} // namespace

class tst_hub : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void dispatch_data();
    void dispatch();
    void keys_data();
    void keys();
    void zoomKeys();
    void exitWaitsForTheLoad();
    void exitWaitsForThePresentation();
    void stepsDuringTheFitDelay();
    void windowButtons();

protected:
    void cleanup() override
    {
        m_pLog.reset();
        m_pHub.reset();
        PluginTest::cleanup();
    }

private:
    void makeHub(int nMode)
    {
        m_pHub = std::make_unique<Hub>(nullptr, nMode);
        m_pLog = std::make_unique<SignalLog>(m_pHub.get());
        m_pHub->resize(800, 600);
        m_pHub->show();
        QApplication::setActiveWindow(m_pHub.get());
        m_pHub->setFocus();
        QVERIFY(QTest::qWaitForWindowActive(m_pHub.get()));
    }
    int notices() const { return m_pHub->findChildren<CNotificationFloatingWidget *>().size(); }
    QString percent() const
    {
        for (const QLabel *pLabel : m_pHub->findChild<ImgPreviewToolBar *>()->findChildren<QLabel *>()) {
            if (pLabel->text().endsWith(QLatin1Char('%')))
                return pLabel->text();
        }
        return {};
    }

    std::unique_ptr<Hub> m_pHub;
    std::unique_ptr<SignalLog> m_pLog;
};

void tst_hub::dispatch_data()
{
    QTest::addColumn<qint64>("type");
    QTest::addColumn<bool>("video");
    QTest::addColumn<int>("page");
    const auto row = [](qint64 nType, int nPage, bool bVideo = false) {
        QTest::addRow("%lld%s", nType, bVideo ? " with video" : "") << nType << bVideo << nPage;
    };
    for (const qint64 nImage : {1, 10, 30, 100, 120, 131, 190, 195, 200, 390, 430, 690, 940, 3000, 0, 777, -5})
        row(nImage, Hub::ImagePage);
    for (const qint64 nVideo : {220, 224, 231, 239, 640, 650})
        row(nVideo, Hub::VideoPage);
    for (const qint64 nAudio : {210, 620, 660, 754})
        row(nAudio, Hub::AudioPage);
    row(620, Hub::VideoPage, true);
    row(210, Hub::AudioPage, true);
    row(10, Hub::ImagePage, true);
    row(192, Hub::PresentationPage);
    row(193, Hub::PresentationPage);
}

void tst_hub::dispatch()
{
    QFETCH(qint64, type);
    QFETCH(bool, video);
    host().addPicture(1, type, QStringLiteral("/1.x"))->videoStream = video;
    host().renderer.setDocument(1, {QSize(40, 30)});
    openFiles({1}, 1);
    makeHub(Hub::DoubleClickMode);
    m_pHub->slot_previewResource();
    QFETCH(int, page);
    QTRY_COMPARE(m_pHub->currentIndex(), page);
    // The right panel is forbidden exactly while the loading page shows.
    QVERIFY2(m_pLog->forbidden.endsWith(QLatin1Char('0')), qPrintable(m_pLog->forbidden));
    QTRY_VERIFY(!data()->isLoading() && !data()->hasPendingPresentations());
    QVERIFY(m_pLog->names.isEmpty());
}

void tst_hub::keys_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("page");
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QStringList>("expected");
    const Qt::Key arrows[] = {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right};
    const char *const inWindow[] = {"previous", "next", "previous", "next"};
    const char *const inDialog[] = {"up", "down", "left", "right"};
    for (int nMode = 0; nMode <= 1; ++nMode) {
        for (int nPage = Hub::ImagePage; nPage <= Hub::ReservedPage; ++nPage) {
            for (int i = 0; i < 4; ++i) {
                const char *pName = nMode == 0 ? inWindow[i] : inDialog[i];
                QTest::addRow("mode %d, page %d, %s", nMode, nPage, inDialog[i])
                    << nMode << nPage << arrows[i]
                    << (nPage == Hub::LoadingPage ? QStringList() : QStringList{QLatin1String(pName)});
            }
            QTest::addRow("mode %d, page %d, escape", nMode, nPage)
                << nMode << nPage << Qt::Key_Escape << QStringList{QStringLiteral("exit")};
            QTest::addRow("mode %d, page %d, tab", nMode, nPage)
                << nMode << nPage << Qt::Key_Tab << QStringList{QStringLiteral("columns")};
            QTest::addRow("mode %d, page %d, space", nMode, nPage)
                << nMode << nPage << Qt::Key_Space
                << (nMode == 1 ? QStringList{QStringLiteral("exit")} : QStringList());
        }
    }
}

void tst_hub::keys()
{
    QFETCH(int, mode);
    QFETCH(int, page);
    QFETCH(Qt::Key, key);
    makeHub(mode);
    m_pHub->slot_switchPreviewWidget(page);
    QCOMPARE(m_pLog->forbidden, QString(page == Hub::LoadingPage ? QLatin1Char('1') : QLatin1Char('0')));
    QTest::keyClick(m_pHub.get(), key);
    QTEST(m_pLog->names, "expected");
}

void tst_hub::zoomKeys()
{
    struct Row {
        Qt::Key key;
        const char *pPercent;
    };
    for (const bool bEnabled : {true, false}) {
        host().shortcuts.enabled = bEnabled;
        FakePicture picture;
        picture.size = QSize(1600, 400);
        host().addPicture(1, 10, QStringLiteral("/1.png"), picture);
        openFiles({1}, 1);
        makeHub(Hub::SpaceDialogMode);
        m_pHub->slot_previewResource();
        QTRY_COMPARE(percent(), QStringLiteral("50%"));
        for (const Row &row : {Row{Qt::Key_1, "100%"}, Row{Qt::Key_Equal, "125%"}, Row{Qt::Key_Minus, "100%"},
                               Row{Qt::Key_0, "50%"}, Row{Qt::Key_2, "50%"}}) {
            QTest::keyClick(m_pHub.get(), row.key, Qt::ControlModifier);
            QTRY_COMPARE(percent(), bEnabled ? QString::fromLatin1(row.pPercent) : QStringLiteral("50%"));
            QTRY_VERIFY(m_pHub->findChild<ImgPreviewToolBar *>()->findChild<QPushButton *>()->isEnabled());
        }
        m_pHub->slot_switchPreviewWidget(Hub::AudioPage);
        QTest::keyClick(m_pHub.get(), Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(percent(), QStringLiteral("50%"));
    }
}

void tst_hub::exitWaitsForTheLoad()
{
    const auto pGate = host().addSlowPicture(1, 10, QStringLiteral("/1.png"));
    openFiles({1}, 1);
    makeHub(Hub::DoubleClickMode);
    m_pHub->slot_previewResource();
    QTRY_COMPARE(pGate->waiting(), 1);
    QTest::keyClick(m_pHub.get(), Qt::Key_Escape);
    m_pHub->slot_exitCurPreview_ByDBClicked();
    m_pHub->slot_returnBtnClicked();
    QCOMPARE(notices(), 3);
    QVERIFY(m_pLog->names.isEmpty());
    pGate->open();
    QTRY_COMPARE(m_pHub->currentIndex(), int(Hub::ImagePage));
    QTest::keyClick(m_pHub.get(), Qt::Key_Escape);
    QCOMPARE(m_pLog->names, QStringList{QStringLiteral("exit")});
    QCOMPARE(m_pLog->forbidden, QStringLiteral("10"));
}

void tst_hub::exitWaitsForThePresentation()
{
    for (const auto &[nMode, pExpected] : {std::pair(Hub::DoubleClickMode, "exit"), {Hub::SpaceDialogMode, "close"}}) {
        host().addFile(1, 193, QStringLiteral("/1.pptx"));
        host().renderer.setDocument(1, {QSize(4, 3)});
        data()->openPresentation(1, QStringLiteral("/1.pptx"));
        makeHub(nMode);
        data()->setCurrentFile(1);
        data()->beginPendingPresentation(1);
        QTest::keyClick(m_pHub.get(), Qt::Key_Escape);
        QVERIFY(m_pLog->names.isEmpty());
        QVERIFY(host().renderer.openDocuments().isEmpty()); // released, so that the load ends soon
        m_pHub->slot_pptLoadEnd(1, QStringLiteral("/1.pptx"), false);
        QCOMPARE(m_pLog->names, QStringList{QString::fromLatin1(pExpected)});
        QVERIFY(!data()->hasRenderEntry(1));
        // The request to close is used up.
        m_pLog->names.clear();
        m_pHub->slot_pptLoadEnd(1, QStringLiteral("/1.pptx"), true);
        QVERIFY(m_pLog->names.isEmpty());
        QCOMPARE(m_pHub->currentIndex(), int(Hub::PresentationPage));
    }
}

/** The picture is fitted a moment after its page is shown; by then another file may be on its way. */
void tst_hub::stepsDuringTheFitDelay()
{
    FakePicture picture;
    picture.size = QSize(1600, 400);
    host().addPicture(1, 10, QStringLiteral("/1.png"), picture);
    picture.size = QSize(400, 1200);
    const auto pGate = host().addSlowPicture(2, 10, QStringLiteral("/2.png"), picture);
    openFiles({1, 2}, 1);
    makeHub(Hub::DoubleClickMode);
    m_pHub->slot_previewResource();
    finishWorkers();
    QCOMPARE(m_pHub->currentIndex(), int(Hub::ImagePage));
    data()->setCurrentFile(2);
    m_pHub->slot_previewResource();
    QCOMPARE(m_pHub->currentIndex(), int(Hub::LoadingPage));
    QTRY_COMPARE(pGate->waiting(), 1);
    QTest::qWait(10); // past the delay: nothing may come of the first picture
    QCOMPARE(m_pHub->currentIndex(), int(Hub::LoadingPage));
    pGate->open();
    QTRY_COMPARE(m_pHub->currentIndex(), int(Hub::ImagePage));
    QTRY_COMPARE(percent(), QStringLiteral("50%"));
}

void tst_hub::windowButtons()
{
    makeHub(Hub::DoubleClickMode);
    QHash<QString, QPushButton *> buttons;
    for (CPushButton *pButton : m_pHub->findChildren<CPushButton *>(QString(), Qt::FindDirectChildrenOnly)) {
        QVERIFY(!pButton->accessibleName().isEmpty());
        QVERIFY(pButton->isVisible());
        QVERIFY(m_pHub->rect().contains(pButton->geometry()));
        buttons.insert(pButton->accessibleName(), pButton);
    }
    QCOMPARE(buttons.size(), 5);
    buttons.value(QStringLiteral("Minimize"))->click();
    buttons.value(QStringLiteral("Maximize or restore"))->click();
    QVERIFY(host().window.maximized);
    buttons.value(QStringLiteral("Close"))->click();
    QCOMPARE(host().window.minimizeCalls, 1);
    QCOMPARE(host().window.closeCalls, 1);
    QVERIFY(m_pLog->names.isEmpty());
    buttons.value(QStringLiteral("Back（Esc）"))->click();
    buttons.value(QStringLiteral("Hide Left & Right Column (Tab)"))->click();
    QCOMPARE(m_pLog->names, (QStringList{QStringLiteral("exit"), QStringLiteral("columns")}));
    data()->setMainWindowHandle(nullptr);
    for (QPushButton *pButton : qAsConst(buttons))
        pButton->click();
    makeHub(Hub::SpaceDialogMode);
    for (const CPushButton *pButton : m_pHub->findChildren<CPushButton *>(QString(), Qt::FindDirectChildrenOnly))
        QVERIFY(!pButton->isVisible());
}

BIGIMGPREVIEW_TEST_MAIN(tst_hub)
#include "tst_hub.moc"
