#include "PluginTest.h"
#include "common/CNotificationFloatingWidget.h"
#include "preview/MiddleResourcePreviewWidget.h"
#include "preview/PreviewSpaceDialog.h"

#include <QPushButton>

using Hub = MiddleResourcePreviewWidget;

class tst_space_dialog : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void steps()
    {
        // The first file, arrow keys (l, r, u, d) and the files that they show.
        const std::tuple<qint64, const char *, QVector<qint64>> rows[] = {{1, "rrrr", {2, 3}},
                                                                          {1, "dddd", {2, 3}},
                                                                          {3, "lll", {2, 1}},
                                                                          {3, "uuu", {2, 1}},
                                                                          {2, "rlud", {3, 2, 1, 2}}};
        const QHash<char, Qt::Key> arrows{
            {'l', Qt::Key_Left}, {'r', Qt::Key_Right}, {'u', Qt::Key_Up}, {'d', Qt::Key_Down}};
        QVector<qint64> changes;
        for (const auto &[nFirst, pKeys, expected] : rows) {
            delete m_pDialog;
            open(nFirst);
            connect(m_pDialog, &IPreviewSpaceDialog::signalPreviewFileIdChanged, this,
                    [&changes](qint64 nId) { changes.append(nId); });
            changes.clear();
            for (const char *pKey = pKeys; *pKey != 0; ++pKey) {
                press(arrows.value(*pKey));
                QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
            }
            QCOMPARE(changes, expected);
            QCOMPARE(data()->currentFileId(), changes.last());
        }
        // From a file that is not listed, and with nowhere to go.
        log().expect(QStringLiteral("PreviewSpaceDialog::slot_show_left_source -1"));
        for (const qint64 nFileId : {9, 2}) {
            openFiles({2}, nFileId);
            changes.clear();
            for (const Qt::Key key : arrows)
                press(key);
            QVERIFY(changes.isEmpty());
        }
    }

    void waysToClose_data()
    {
        namedRows({"escape", "space", "button", "window manager", "reject", "double click", "removal"});
    }

    /** Refused with a notice while a file loads; afterwards the dialog closes and tells it once. */
    void waysToClose()
    {
        const auto pGate = host().addSlowPicture(1, 10, QStringLiteral("/1.png"));
        open(1, false);
        QTRY_COMPARE(pGate->waiting(), 1);
        QSignalSpy closed(m_pDialog, &IPreviewSpaceDialog::signalSpacePreviewClosed);
        const QString way = rowName();
        const auto close = [this, way] {
            if (way == QLatin1String("escape"))
                press(Qt::Key_Escape);
            else if (way == QLatin1String("space"))
                press(Qt::Key_Space);
            else if (way == QLatin1String("button"))
                QTest::mouseClick(closeButton(), Qt::LeftButton);
            else if (way == QLatin1String("window manager"))
                m_pDialog->close();
            else if (way == QLatin1String("reject"))
                static_cast<QDialog *>(m_pDialog.data())->reject();
            else if (way == QLatin1String("double click"))
                QTest::mouseDClick(hub()->currentWidget(), Qt::LeftButton, {}, QPoint(200, 200));
            else
                host().source->files.announceRemoved({2});
        };
        if (way != QLatin1String("double click")) { // the loading page has none
            press(Qt::Key_Right);                   // nor is it stepped past
            QCOMPARE(data()->currentFileId(), 1LL);
            close();
            QCOMPARE(notices(), 1);
            QVERIFY(m_pDialog->isVisible());
            QVERIFY(!m_pDialog->canClosePreview());
        }
        QCOMPARE(closed.count(), 0);
        pGate->open();
        QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
        QVERIFY(m_pDialog->canClosePreview());
        close();
        QVERIFY(!m_pDialog->isVisible());
        QCOMPARE(closed.count(), 1);
        QCOMPARE(closed.at(0).at(0).toLongLong(), 1LL);
        if (way != QLatin1String("double click"))
            close(); // once more, on the closed dialog
        host().removeFiles({1, 2});
        QCOMPARE(closed.count(), 1);
    }

    void hostReactsInTheSignal_data() { namedRows({"deletes later", "closes again", "clears", "opens another"}); }

    void hostReactsInTheSignal()
    {
        open(1);
        const QString reaction = rowName();
        int nClosed = 0;
        QPointer<PreviewSpaceDialog> pFirst = m_pDialog;
        connect(m_pDialog, &IPreviewSpaceDialog::signalSpacePreviewClosed, this, [this, &nClosed, reaction, pFirst] {
            ++nClosed;
            if (reaction == QLatin1String("closes again")) {
                pFirst->close();
                return;
            }
            pFirst->deleteLater();
            if (reaction == QLatin1String("clears"))
                data()->clearPreviewData();
            else if (reaction == QLatin1String("opens another"))
                open(2, false);
        });
        QTest::mouseClick(closeButton(), Qt::LeftButton);
        QCOMPARE(nClosed, 1);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(pFirst.isNull(), reaction != QLatin1String("closes again"));
        if (reaction == QLatin1String("opens another"))
            QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
    }

    /** Whichever file it was. */
    void removalCloses()
    {
        for (const QVector<qint64> &removed : QVector<QVector<qint64>>{{77}, {3}, {2}, {1, 2, 3}}) {
            open(2);
            QSignalSpy closed(m_pDialog, &IPreviewSpaceDialog::signalSpacePreviewClosed);
            QSignalSpy changes(m_pDialog, &IPreviewSpaceDialog::signalPreviewFileIdChanged);
            host().removeFiles(removed);
            QVERIFY(!m_pDialog->isVisible());
            QCOMPARE(closed.count(), 1);
            QCOMPARE(changes.count(), 0);
            QCOMPARE(closed.at(0).at(0).toLongLong(), 2LL);
            delete m_pDialog;
            for (const qint64 nId : {1, 2, 3})
                host().addPicture(nId, 10, QStringLiteral("/%1.png").arg(nId));
        }
    }

    /** The surface or its window is deleted while a file loads: the next one opens and closes as ever. */
    void diesDuringALoad()
    {
        for (const bool bWindow : {false, true}) {
            const auto pGate = host().addSlowPicture(1, 10, QStringLiteral("/1.png"));
            open(1, false);
            QTRY_COMPARE(pGate->waiting(), 1);
            bWindow ? m_pWindow.reset() : delete m_pDialog;
            QVERIFY(m_pDialog.isNull());
            pGate->open();
            finishWorkers();
            m_pWindow = std::make_unique<QWidget>();
            m_pWindow->show();
            open(2);
            press(Qt::Key_Escape);
            QVERIFY(!m_pDialog->isVisible());
        }
    }

    /** The first one steps in the second one's list from then on; each closes by itself. */
    void secondSurfaceOpensBesideTheFirst()
    {
        log().expect(QStringLiteral("PreviewSpaceDialog::slot_show_left_source"));
        open(1);
        const std::unique_ptr<PreviewSpaceDialog> pFirst(m_pDialog);
        QSignalSpy closed(pFirst.get(), &IPreviewSpaceDialog::signalSpacePreviewClosed);
        open(3);
        QTest::keyClick(pFirst->findChild<Hub *>(), Qt::Key_Left);
        QCOMPARE(data()->currentFileId(), 2LL);
        QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
        pFirst->close();
        QTRY_COMPARE(closed.count(), 1);
        QVERIFY(m_pDialog->isVisible());
        press(Qt::Key_Escape);
        QVERIFY(!m_pDialog || !m_pDialog->isVisible());
    }

    void presentationEndsFirst()
    {
        open(1);
        QSignalSpy closed(m_pDialog, &IPreviewSpaceDialog::signalSpacePreviewClosed);
        data()->beginPendingPresentation(7);
        press(Qt::Key_Escape);
        closeButton()->click();
        QVERIFY(m_pDialog->isVisible());
        QCOMPARE(notices(), 0);
        hub()->slot_pptLoadEnd(7, QStringLiteral("/7.pptx"), false);
        QVERIFY(!m_pDialog->isVisible());
        QCOMPARE(closed.count(), 1);
    }

protected:
    void init() override
    {
        PluginTest::init();
        for (const qint64 nId : {1, 2, 3})
            host().addPicture(nId, 10, QStringLiteral("/%1.png").arg(nId));
        m_pWindow = std::make_unique<QWidget>();
        m_pWindow->setGeometry(50, 60, 900, 700);
        m_pWindow->show();
    }
    void cleanup() override
    {
        m_pWindow.reset();
        PluginTest::cleanup();
    }

private:
    /** As the factory: list and current file first. */
    void open(qint64 nCurrentId, bool bWaits = true)
    {
        openFiles({1, 2, 3}, nCurrentId);
        m_pDialog = new PreviewSpaceDialog(m_pWindow.get());
        m_pDialog->showPreview();
        QApplication::setActiveWindow(m_pDialog);
        QVERIFY(QTest::qWaitForWindowActive(m_pDialog));
        if (bWaits)
            QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
    }
    Hub *hub() const { return m_pDialog->findChild<Hub *>(); }
    int notices() const { return m_pDialog->findChildren<CNotificationFloatingWidget *>().size(); }
    QPushButton *closeButton() const { return m_pDialog->findChild<QPushButton *>(QStringLiteral("closeButton")); }
    void press(Qt::Key key) { QTest::keyClick(hub(), key); }

    std::unique_ptr<QWidget> m_pWindow;
    QPointer<PreviewSpaceDialog> m_pDialog;
};

BIGIMGPREVIEW_TEST_MAIN(tst_space_dialog)
#include "tst_space_dialog.moc"
