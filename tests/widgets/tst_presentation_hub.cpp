#include "PluginTest.h"
#include "WidgetEvents.h"
#include "common/CNotificationFloatingWidget.h"
#include "image/TSLargePreviewView.h"
#include "media/PPtPreviewToolBar.h"
#include "media/PPtPreviewWidget.h"
#include "preview/MiddleResourcePreviewWidget.h"
#include "preview/PreviewSpaceDialog.h"

#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QLabel>

using Hub = MiddleResourcePreviewWidget;

/** Presentations in the surfaces: opening, paging, leaving, and results in every order. */
class tst_presentation_hub : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void ordersOfEvents_data()
    {
        // File numbers; e: escape, w: openings begin, o: they may end, d: the hub's end, c: the host's data go, b and
        // f: another surface's opening, whose end nobody tells.
        // shown: -1: the preview is left; 50: what stands for a page
        const auto row = columns<QString, int, QVector<qint64>>("events", "shown", "open");
        const std::tuple<const char *, int, QVector<qint64>> rows[] = {
            {"1wo", 1, {1}},        {"1w1o", 1, {1}},
            {"12wo", 2, {2}},       {"1w2o", 2, {2}},
            {"1w9o", 9, {}},        {"19o", 9, {}},
            {"1w21o", 1, {1}},      {"1w2w1o", 1, {1}},
            {"1w91o", 1, {1}},      {"1w919o", 9, {}},
            {"1w2w3w1w2o", 2, {2}}, {"1oo2oo", 2, {1, 2}},
            {"1oo9oo1oo", 1, {1}},  {"1oo2oo3oo4oo5oo", 5, {2, 3, 4, 5}},
            {"1we", -1, {}},        {"1e", -1, {}},
            {"1w2e", -1, {}},       {"1we2o", -1, {}},
            {"1ooe", -1, {}},       {"9bef", -1, {}},
            {"1wd", 0, {}},         {"1d", 0, {}},
            {"12w3d", 0, {}},       {"1ood", 0, {}},
            {"1wc", 50, {}}};
        for (const auto &[pEvents, nShown, open] : rows)
            row(pEvents, pEvents, nShown, open);
    }

    void ordersOfEvents()
    {
        const auto [events, shown, open] = currentRow<QString, int, QVector<qint64>>();
        for (const int nMode : {Hub::DoubleClickMode, Hub::SpaceDialogMode}) {
            attachHost();
            openFiles({1, 2, 3, 4, 5, 9}, 1);
            host().renderer.openGate.close();
            makeHub(nMode);
            for (const QChar event : events) {
                if (event.isDigit()) {
                    // Who was asked to leave shows nothing more.
                    if (m_signals.isEmpty())
                        show(event.digitValue());
                } else if (event == QLatin1Char('e')) {
                    QTest::keyClick(m_hub.get(), Qt::Key_Escape);
                } else if (event == QLatin1Char('w')) {
                    QTRY_VERIFY(host().renderer.openGate.waiting() > 0);
                } else if (event == QLatin1Char('o')) {
                    host().renderer.openGate.open();
                    QTRY_VERIFY(isSettled());
                } else if (event == QLatin1Char('b')) {
                    QTRY_COMPARE(m_hub->currentIndex(), int(Hub::ImagePage));
                    data()->beginPendingPresentation(3);
                } else if (event == QLatin1Char('f')) {
                    QVERIFY(m_signals.isEmpty());
                    data()->endPendingPresentation(3);
                    QTRY_VERIFY(!m_signals.isEmpty());
                } else if (event == QLatin1Char('d')) {
                    m_hub.reset();
                } else {
                    data()->clearPreviewData();
                }
            }
            // Cancelled openings end by themselves, whatever the gate says.
            QTRY_VERIFY(isSettled());
            finishWorkers();
            QCOMPARE(host().renderer.openDocuments(), QSet<qint64>(open.cbegin(), open.cend()));
            QVERIFY(m_signals.size() <= 1);
            QCOMPARE(!m_signals.isEmpty(), shown == -1);
            if (shown > 0)
                QTRY_COMPARE(shownFile(), shown);
            m_hub.reset();
            QVERIFY(host().renderer.openDocuments().isEmpty());
        }
    }

    /** In the window the hub asks for the next file, in the dialog its keys go to the dialog. */
    void pagesBeforeFiles()
    {
        makeHub(Hub::DoubleClickMode);
        show(1);
        QTRY_COMPARE(shownFile(), 1);
        const auto press = [](Hub *pHub, Qt::Key key) {
            QTest::keyClick(pHub, key);
            return QTest::qWaitFor([&] { return isSettled() && pHub->currentIndex() == Hub::PresentationPage; });
        };
        QString labels;
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Down, Qt::Key_Right, Qt::Key_Left, Qt::Key_Up}) {
            QVERIFY(press(m_hub.get(), key));
            labels += pageLabel() + QLatin1Char(' ');
        }
        QCOMPARE(labels, QStringLiteral("1/3 2/3 3/3 3/3 2/3 1/3 "));
        QCOMPARE(m_signals, (QStringList{QStringLiteral("previous"), QStringLiteral("next")}));

        QWidget window;
        PreviewSpaceDialog dialog(&window);
        dialog.showPreview();
        Hub *pHub = dialog.findChild<Hub *>();
        QTRY_VERIFY(pHub->currentIndex() == Hub::PresentationPage && isSettled());
        QVector<qint64> files;
        for (const Qt::Key key :
             {Qt::Key_Left, Qt::Key_Right, Qt::Key_Down, Qt::Key_Right, Qt::Key_Right, Qt::Key_Up, Qt::Key_Left}) {
            QVERIFY(press(pHub, key));
            files.append(data()->currentFileId());
        }
        QCOMPARE(files, (QVector<qint64>{1, 1, 1, 2, 2, 2, 1}));
        QTest::keyClick(pHub, Qt::Key_Space);
        QVERIFY(!dialog.isVisible() && host().renderer.openDocuments().isEmpty());
    }

    /** A page that takes long gives way to the loading page, and leaving waits for it. */
    void slowPage()
    {
        makeHub(Hub::DoubleClickMode);
        show(1);
        QTRY_COMPARE(shownFile(), 1);
        host().renderer.renderGate.close();
        QTest::keyClick(m_hub.get(), Qt::Key_Right);
        QCOMPARE(m_hub->currentIndex(), int(Hub::PresentationPage));
        QTRY_COMPARE(m_hub->currentIndex(), int(Hub::LoadingPage));
        QTest::keyClick(m_hub.get(), Qt::Key_Right);
        QTest::keyClick(m_hub.get(), Qt::Key_Escape);
        QCOMPARE(m_hub->findChildren<CNotificationFloatingWidget *>().size(), 1);
        QVERIFY(m_signals.isEmpty());
        host().renderer.renderGate.open();
        QTRY_COMPARE(m_hub->currentIndex(), int(Hub::PresentationPage));
        QCOMPARE(pageLabel(), QStringLiteral("2/3"));
        QTest::keyClick(m_hub.get(), Qt::Key_Escape);
        QCOMPARE(m_signals, QStringList{QStringLiteral("exit")});
    }

protected:
    void init() override
    {
        PluginTest::init();
        for (const qint64 nId : {1, 2, 3, 4, 5}) {
            host().addFile(nId, 193, QStringLiteral("/%1.pptx").arg(nId));
            host().renderer.setDocument(nId, QVector<QSize>(3, QSize(int(nId) * 10, 20)));
        }
        host().addPicture(9, 10, QStringLiteral("/9.png"));
        openFiles({1, 2, 3, 4, 5, 9}, 1);
    }
    void cleanup() override
    {
        m_hub.reset();
        PluginTest::cleanup();
    }

private:
    void makeHub(int nMode)
    {
        m_signals.clear();
        m_hub = std::make_unique<Hub>(nullptr, nMode);
        const auto add = [this](auto pSignal, const char *pName) {
            connect(m_hub.get(), pSignal, this, [this, pName] { m_signals.append(QLatin1String(pName)); });
        };
        add(&Hub::signal_exitCurWidget, "exit");
        add(&Hub::signal_nextSource, "next");
        add(&Hub::signal_previousSource, "previous");
        add(&Hub::signal_right_Key_Pressed, "right");
        add(&Hub::signal_close_space_dialog, "close");
        m_hub->resize(800, 600);
        showActive(m_hub.get(), m_hub.get());
    }
    void show(qint64 nFileId)
    {
        data()->setCurrentFile(nFileId);
        m_hub->slot_previewResource();
    }
    PPtPreviewWidget *page() const { return m_hub->findChild<PPtPreviewWidget *>(); }
    static bool isSettled() { return !data()->isLoading() && !data()->hasPendingPresentations(); }
    /** The file whose page is seen: each has pages of a width of its own. */
    int shownFile() const
    {
        if (m_hub->currentIndex() != Hub::PresentationPage)
            return m_hub->currentIndex() == Hub::ImagePage ? 9 : 0;
        const auto items = page()->findChild<TSLargePreviewView *>()->scene()->items();
        return items.isEmpty() || !items.first()->isVisible() ? 0 : qRound(items.first()->boundingRect().width() / 10);
    }
    QString pageLabel() const
    {
        return page()->findChild<PPtPreviewToolBar *>()->findChildren<QLabel *>().last()->text();
    }

    std::unique_ptr<Hub> m_hub;
    QStringList m_signals;
};

BIGIMGPREVIEW_TEST_MAIN(tst_presentation_hub)
#include "tst_presentation_hub.moc"
