#include "PluginTest.h"
#include "common/CNotificationFloatingWidget.h"
#include "preview/MiddleResourcePreviewWidget.h"
#include "preview/PreviewSpaceDialog.h"

#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>

using Hub = MiddleResourcePreviewWidget;

class tst_space_dialog : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void steps_data();
    void steps();
    void waysToClose_data();
    void waysToClose();
    void hostReactsInTheSignal_data();
    void hostReactsInTheSignal();
    void removalCloses();
    void presentationEndsFirst();

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

void tst_space_dialog::steps_data()
{
    QTest::addColumn<qint64>("first");
    QTest::addColumn<QString>("keys"); // arrows: l, r, u, d
    QTest::addColumn<QVector<qint64>>("expected");
    using Ids = QVector<qint64>;
    QTest::newRow("right to the end") << 1LL << QStringLiteral("rrrr") << Ids{2, 3};
    QTest::newRow("down to the end") << 1LL << QStringLiteral("dddd") << Ids{2, 3};
    QTest::newRow("left to the start") << 3LL << QStringLiteral("lll") << Ids{2, 1};
    QTest::newRow("up to the start") << 3LL << QStringLiteral("uuu") << Ids{2, 1};
    QTest::newRow("to and fro") << 2LL << QStringLiteral("rlud") << Ids{3, 2, 1, 2};
}

void tst_space_dialog::steps()
{
    QFETCH(qint64, first);
    QFETCH(QString, keys);
    open(first);
    QVector<qint64> changes;
    connect(m_pDialog, &IPreviewSpaceDialog::signalPreviewFileIdChanged, this,
            [&changes](qint64 nId) { changes.append(nId); });
    for (const QChar key : keys) {
        press(key == QLatin1Char('l')   ? Qt::Key_Left
              : key == QLatin1Char('r') ? Qt::Key_Right
              : key == QLatin1Char('u') ? Qt::Key_Up
                                        : Qt::Key_Down);
        QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
    }
    QTEST(changes, "expected");
    QCOMPARE(data()->currentFileId(), changes.last());
    // From a file that is not listed, and with nowhere to go.
    log().expect(QStringLiteral("PreviewSpaceDialog::slot_show_left_source -1"));
    for (const qint64 nFileId : {9, 2}) {
        openFiles({2}, nFileId);
        changes.clear();
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down})
            press(key);
        QVERIFY(changes.isEmpty());
    }
}

void tst_space_dialog::waysToClose_data()
{
    QTest::addColumn<QString>("way");
    for (const char *pWay : {"escape", "space", "button", "window manager", "reject", "double click", "removal"})
        QTest::newRow(pWay) << QString::fromLatin1(pWay);
}

/** Refused with a notice while a file loads; afterwards the dialog closes and tells it once. */
void tst_space_dialog::waysToClose()
{
    const auto pGate = host().addSlowPicture(1, 10, QStringLiteral("/1.png"));
    open(1, false);
    QTRY_COMPARE(pGate->waiting(), 1);
    QSignalSpy closed(m_pDialog, &IPreviewSpaceDialog::signalSpacePreviewClosed);
    QFETCH(QString, way);
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

void tst_space_dialog::hostReactsInTheSignal_data()
{
    QTest::addColumn<QString>("reaction");
    for (const char *pReaction : {"deletes later", "closes again", "clears", "opens another"})
        QTest::newRow(pReaction) << QString::fromLatin1(pReaction);
}

void tst_space_dialog::hostReactsInTheSignal()
{
    open(1);
    QFETCH(QString, reaction);
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
void tst_space_dialog::removalCloses()
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

void tst_space_dialog::presentationEndsFirst()
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

BIGIMGPREVIEW_TEST_MAIN(tst_space_dialog)
#include "tst_space_dialog.moc"
