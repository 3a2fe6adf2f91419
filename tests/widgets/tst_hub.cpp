#include "PluginTest.h"
#include "WidgetEvents.h"
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
    void dispatch()
    {
        struct Row {
            QVector<qint64> types;
            bool bVideo;
            int nPage;
        };
        const Row rows[] = {
            {{1, 10, 30, 100, 120, 131, 190, 195, 200, 390, 430, 690, 940, 3000, 0, 777, -5}, false, Hub::ImagePage},
            {{220, 224, 231, 239, 640, 650}, false, Hub::VideoPage},
            {{210, 620, 660, 754}, false, Hub::AudioPage},
            {{620}, true, Hub::VideoPage},
            {{210}, true, Hub::AudioPage},
            {{10}, true, Hub::ImagePage},
            {{192, 193}, false, Hub::PresentationPage}};
        makeHub(Hub::DoubleClickMode);
        for (const Row &row : rows) {
            for (const qint64 nType : row.types) {
                host().addPicture(1, nType, QStringLiteral("/1.x"))->videoStream = row.bVideo;
                host().renderer.setDocument(1, {QSize(40, 30)});
                openFiles({1}, 1);
                m_pHub->slot_previewResource();
                QVERIFY2(QTest::qWaitFor([&] { return m_pHub->currentIndex() == row.nPage; }),
                         qPrintable(QString::number(nType)));
                // The right panel is forbidden exactly while the loading page shows.
                QVERIFY2(m_pLog->forbidden.endsWith(QLatin1Char('0')), qPrintable(m_pLog->forbidden));
                QTRY_VERIFY(!data()->isLoading() && !data()->hasPendingPresentations());
                QVERIFY(m_pLog->names.isEmpty());
                data()->clearRenderCache();
            }
        }
    }

    void keys()
    {
        // What is told in the window (mode 0) and in the dialog (mode 1).
        const std::tuple<Qt::Key, const char *, const char *> rows[] = {
            {Qt::Key_Up, "previous", "up"},   {Qt::Key_Down, "next", "down"},   {Qt::Key_Left, "previous", "left"},
            {Qt::Key_Right, "next", "right"}, {Qt::Key_Escape, "exit", "exit"}, {Qt::Key_Tab, "columns", "columns"},
            {Qt::Key_Space, nullptr, "exit"}};
        for (int nMode = 0; nMode <= 1; ++nMode) {
            for (int nPage = Hub::ImagePage; nPage <= Hub::ReservedPage; ++nPage) {
                for (const auto &[key, pInWindow, pInDialog] : rows) {
                    makeHub(nMode);
                    m_pHub->slot_switchPreviewWidget(nPage);
                    QCOMPARE(m_pLog->forbidden,
                             QString(nPage == Hub::LoadingPage ? QLatin1Char('1') : QLatin1Char('0')));
                    QTest::keyClick(m_pHub.get(), key);
                    const char *pName = nMode == 0 ? pInWindow : pInDialog;
                    const bool bNone =
                        pName == nullptr || (nPage == Hub::LoadingPage && key >= Qt::Key_Left && key <= Qt::Key_Down);
                    QCOMPARE(m_pLog->names, bNone ? QStringList() : QStringList{QLatin1String(pName)});
                }
            }
        }
    }

    void zoomKeys()
    {
        for (const bool bEnabled : {true, false}) {
            host().shortcuts.enabled = bEnabled;
            FakePicture picture;
            picture.size = QSize(1600, 400);
            host().addPicture(1, 10, QStringLiteral("/1.png"), picture);
            openFiles({1}, 1);
            makeHub(Hub::SpaceDialogMode);
            m_pHub->slot_previewResource();
            QTRY_COMPARE(percent(), QStringLiteral("50%"));
            for (const auto &[key, pPercent] : {std::pair(Qt::Key_1, "100%"),
                                                {Qt::Key_Equal, "125%"},
                                                {Qt::Key_Minus, "100%"},
                                                {Qt::Key_0, "50%"},
                                                {Qt::Key_2, "50%"}}) {
                QTest::keyClick(m_pHub.get(), key, Qt::ControlModifier);
                QTRY_COMPARE(percent(), QLatin1String(bEnabled ? pPercent : "50%"));
                QTRY_VERIFY(m_pHub->findChild<ImgPreviewToolBar *>()->findChild<QPushButton *>()->isEnabled());
            }
            m_pHub->slot_switchPreviewWidget(Hub::AudioPage);
            QTest::keyClick(m_pHub.get(), Qt::Key_1, Qt::ControlModifier);
            QCOMPARE(percent(), QStringLiteral("50%"));
        }
    }

    void exitWaitsForTheLoad()
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

    /** The picture is fitted a moment after its page is shown; by then another file may be on its way. */
    void stepsDuringTheFitDelay()
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

    void windowButtons()
    {
        makeHub(Hub::DoubleClickMode);
        QHash<QString, QPushButton *> buttons;
        for (CPushButton *pButton : m_pHub->findChildren<CPushButton *>(QString(), Qt::FindDirectChildrenOnly)) {
            QVERIFY(pButton->isVisible() && m_pHub->rect().contains(pButton->geometry()));
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
        showActive(m_pHub.get(), m_pHub.get());
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

BIGIMGPREVIEW_TEST_MAIN(tst_hub)
#include "tst_hub.moc"
