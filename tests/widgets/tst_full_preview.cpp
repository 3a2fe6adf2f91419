#include "PluginTest.h"
#include "WidgetEvents.h"
#include "common/CNotificationFloatingWidget.h"
#include "common/CircleBtn.h"
#include "image/ImgPreviewWidget.h"
#include "preview/HubTitleBar.h"
#include "preview/MiddleResourcePreviewWidget.h"
#include "preview/PreviewDbClickWidget.h"
#include "preview/PreviewLeftNumWin.h"
#include "preview/PreviewLeftWin.h"
#include "preview/TSHidenSideWidget.h"

#include <QSignalSpy>
#include <QSplitter>

#include <thread>

using Hub = MiddleResourcePreviewWidget;
using Ids = QVector<qint64>;

/** The whole window on a fake host. */
class tst_full_preview : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void toggles_data();
    void toggles();
    void handles();
    void arrowKeysStepThroughTheStrip();
    void stripKeys();
    void removal_data();
    void removal();
    void removalDuringALoad();
    void removalOfAllDuringALoad();
    void removalOfAllBesideAStaleLoad();
    void removalWhileAChoiceIsTold_data();
    void removalWhileAChoiceIsTold();
    void removalDuringAnAnimation();
    void removalFromAnotherThread();
    void removalOfOneHundredThousand();
    void lists_data();
    void lists();
    void staleLoadsAreNotDecoded();
    void comesBackToALoad();
    void deletedByItsHost();
    void mirroredLayout();

protected:
    void cleanup() override
    {
        delete m_pWindow;
        m_pLog.reset();
        QApplication::setLayoutDirection(Qt::LeftToRight);
        PluginTest::cleanup();
    }

private:
    void addPictures(int nFiles)
    {
        for (qint64 nId = 1; nId <= nFiles; ++nId)
            host().addPicture(nId, 10, path(nId));
    }
    static QString path(qint64 nId) { return QStringLiteral("/%1.png").arg(nId); }
    static Ids idsTo(int nFiles)
    {
        Ids ids;
        for (qint64 nId = 1; nId <= nFiles; ++nId)
            ids.append(nId);
        return ids;
    }
    void makeWindow(const Ids &ids, qint64 nCurrent)
    {
        openFiles(ids, nCurrent);
        m_pWindow = new PreviewDbClickWidget(nullptr);
        m_pLog = std::make_unique<QObject>();
        m_names.clear();
        const auto add = [this](auto pSignal, const char *pName) {
            connect(m_pWindow, pSignal, m_pLog.get(), [this, pName] { m_names.append(QLatin1String(pName)); });
        };
        add(&IPreviewDbClickWidget::signalHideRightView, "panel");
        add(&IPreviewDbClickWidget::signalBackBtnClicked, "back");
        add(&IPreviewDbClickWidget::signalPreviewFileIdChanged, "changed");
        m_pWindow->show();
        QApplication::setActiveWindow(m_pWindow);
        QVERIFY(QTest::qWaitForWindowActive(m_pWindow));
    }
    void showFiles(int nFiles, qint64 nCurrent)
    {
        addPictures(nFiles);
        makeWindow(idsTo(nFiles), nCurrent);
        QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
    }
    Hub *hub() const { return m_pWindow->findChild<Hub *>(); }
    PreviewLeftWin *strip() const { return m_pWindow->findChild<PreviewLeftWin *>(); }
    QWidget *leftColumn() const { return m_pWindow->findChild<QWidget *>(QStringLiteral("wid_left")); }
    QString buttonText() const { return hub()->titleBar()->columnButton()->toolTip().section(QLatin1Char(' '), 0, 0); }
    QString counter() const
    {
        const auto *pCounter = m_pWindow->findChild<PreviewLeftNumWin *>();
        return QStringLiteral("%1/%2").arg(pCounter->cur()).arg(pCounter->total());
    }

    QPointer<PreviewDbClickWidget> m_pWindow;
    std::unique_ptr<QObject> m_pLog;
    QStringList m_names;
};

void tst_full_preview::toggles_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("before"); // L: left column shown, R: right panel shown
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *pCommand, const char *pBefore, const char *pAfter, const char *pText) {
        QTest::addRow("%s from %s", pCommand, pBefore) << QString::fromLatin1(pCommand) << QString::fromLatin1(pBefore)
                                                       << QString::fromLatin1(pAfter) << QString::fromLatin1(pText);
    };
    for (const char *pBoth : {"tab", "button"}) {
        row(pBoth, "LR", "-R", "Show");
        row(pBoth, "-R", "L-", "Hide");
        row(pBoth, "L-", "-R", "Show");
        row(pBoth, "--", "-R", "Show");
    }
    row("left", "LR", "-R", "Show");
    row("left", "-R", "LR", "Hide");
    row("left", "L-", "--", "Hide");
    row("left", "--", "L-", "Hide");
    row("right", "LR", "L-", "Hide");
    row("right", "-R", "--", "Hide");
    row("right", "L-", "LR", "Hide");
    row("right", "--", "-R", "Show");
}

void tst_full_preview::toggles()
{
    QFETCH(QString, command);
    QFETCH(QString, before);
    QFETCH(QString, after);
    host().settings.leftColumnShown = before.at(0) == QLatin1Char('L');
    host().settings.rightPanelHidden = before.at(1) != QLatin1Char('R');
    showFiles(2, 1);
    const auto state = [this]() -> QString {
        return QString(leftColumn()->isVisible() ? QLatin1Char('L') : QLatin1Char('-')) +
               (data()->isRightPanelHidden() ? QLatin1Char('-') : QLatin1Char('R'));
    };
    QCOMPARE(state(), before);
    if (command == QLatin1String("tab"))
        QTest::keyClick(hub(), Qt::Key_Tab);
    else if (command == QLatin1String("button"))
        QTest::mouseClick(hub()->titleBar()->columnButton(), Qt::LeftButton);
    else if (command == QLatin1String("left"))
        Q_EMIT hub()->signal_left_chenged();
    else
        Q_EMIT hub()->signal_right_changed();
    QCOMPARE(state(), after);
    QCOMPARE(data()->isLeftColumnShown(), leftColumn()->isVisible());
    QTEST(buttonText(), "text");
    // The host toggles its panel exactly when the flag turned.
    QCOMPARE(m_names.count(QStringLiteral("panel")), before.at(1) == after.at(1) ? 0 : 1);
    m_pWindow->setRightPanelHidden(!data()->isRightPanelHidden()); // the host's own doing
    QCOMPARE(data()->isRightPanelHidden(), after.at(1) == QLatin1Char('R'));
}

/** Folded by the handles and brought back by them, with the mouse alone. */
void tst_full_preview::handles()
{
    showFiles(2, 1);
    auto *pLeft = hub()->findChild<TSLeftHidenSideWidget *>();
    auto *pRight = hub()->findChild<TSRightHidenSideWidget *>();
    const auto moveOver = [](QWidget *pWidget) {
        hover(pWidget, QPoint(0, 3));
    };
    const auto send = [](QWidget *pWidget, QEvent::Type type) {
        QEvent event(type);
        QCoreApplication::sendEvent(pWidget, &event);
    };
    const auto press = [](QWidget *pHandle) {
        QTRY_COMPARE(pHandle->height(), 70);
        QTest::mouseClick(pHandle, Qt::LeftButton, Qt::NoModifier, QPoint(5, 35));
    };
    QWidget *pBoundary = m_pWindow->findChild<QSplitter *>()->handle(1);
    moveOver(pLeft); // the column is shown: its boundary calls the handle, not the handle itself
    send(pBoundary, QEvent::Enter);
    send(pBoundary, QEvent::Leave);
    QTest::qWait(50);
    QVERIFY(pLeft->height() != 70);
    send(pBoundary, QEvent::Enter);
    press(pLeft);
    QVERIFY(!leftColumn()->isVisible());
    QTRY_COMPARE(hub()->width(), m_pWindow->width());
    pLeft->slotHideTimerTimeout();
    moveOver(pLeft);
    press(pLeft);
    QVERIFY(leftColumn()->isVisible());
    moveOver(pRight);
    press(pRight);
    QVERIFY(data()->isRightPanelHidden());
    pRight->slotHideTimerTimeout();
    moveOver(pRight); // with the panel away the host tells of the mouse
    QTest::qWait(50);
    QVERIFY(pRight->height() != 70);
    Q_EMIT m_pWindow->signalStartSideTimer();
    press(pRight);
    QVERIFY(!data()->isRightPanelHidden());
    QCOMPARE(m_names, (QStringList{QStringLiteral("panel"), QStringLiteral("panel")}));
}

void tst_full_preview::arrowKeysStepThroughTheStrip()
{
    showFiles(3, 1);
    QSignalSpy changed(m_pWindow, &IPreviewDbClickWidget::signalPreviewFileIdChanged);
    QVector<Ids> raised;
    connect(m_pWindow, &IPreviewDbClickWidget::sigRaiseAnalysisPriority, this,
            [&raised](const QVector<qint64> &ids) { raised.append(ids); });
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Right, Qt::Key_Up, Qt::Key_Left, Qt::Key_Left}) {
        QTest::keyClick(hub(), key);
        QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
    }
    QVector<qint64> ids;
    for (const QVariantList &arguments : changed)
        ids.append(arguments.first().toLongLong());
    QCOMPARE(ids, (Ids{2, 3, 2, 1}));
    QCOMPARE(raised, (QVector<Ids>{{2}, {3}, {2}, {1}}));
    QCOMPARE(counter(), QStringLiteral("1/3"));
    // The hub's own arrow signals belong to the other surface.
    for (const auto pSignal : {&Hub::signal_up_Key_Pressed, &Hub::signal_down_Key_Pressed,
                               &Hub::signal_left_Key_Pressed, &Hub::signal_right_Key_Pressed})
        Q_EMIT(hub()->*pSignal)();
    QCOMPARE(data()->currentFileId(), 1LL);
}

/** After a click in the strip the keyboard goes on as before. */
void tst_full_preview::stripKeys()
{
    showFiles(3, 1);
    QTest::mouseClick(strip()->viewport(), Qt::LeftButton, Qt::NoModifier,
                      strip()->visualRect(strip()->model()->index(1, 0)).center());
    QCOMPARE(data()->currentFileId(), 2LL);
    QCOMPARE(QApplication::focusWidget(), strip());
    QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
    for (const auto &[key, nFileId] : {std::pair(Qt::Key_Down, 3LL), {Qt::Key_Left, 2LL}, {Qt::Key_Right, 3LL}}) {
        QTest::keyClick(QApplication::focusWidget(), key);
        QCOMPARE(data()->currentFileId(), nFileId);
        QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(!leftColumn()->isVisible());
    QCOMPARE(QApplication::focusWidget(), hub()); // not lost with the column
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QVERIFY(leftColumn()->isVisible());
    strip()->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QCOMPARE(m_names.last(), QStringLiteral("back"));
}

void tst_full_preview::removal_data()
{
    QTest::addColumn<qint64>("current");
    QTest::addColumn<Ids>("removed");
    QTest::addColumn<qint64>("shown"); // 0: the preview ends
    QTest::addColumn<QString>("counter");
    QTest::newRow("one before") << 3LL << Ids{1} << 3LL << QStringLiteral("2/4");
    QTest::newRow("one after") << 3LL << Ids{5} << 3LL << QStringLiteral("3/4");
    QTest::newRow("all others") << 3LL << Ids{5, 1, 4, 2} << 3LL << QStringLiteral("1/1");
    QTest::newRow("unknown ones") << 3LL << Ids{77, -1} << 3LL << QStringLiteral("3/5");
    QTest::newRow("none") << 3LL << Ids{} << 3LL << QStringLiteral("3/5");
    QTest::newRow("the current one") << 3LL << Ids{3} << 4LL << QStringLiteral("3/4");
    QTest::newRow("the current one and the next") << 3LL << Ids{4, 3} << 5LL << QStringLiteral("3/3");
    QTest::newRow("the current one to the last") << 3LL << Ids{3, 4, 5} << 2LL << QStringLiteral("2/2");
    QTest::newRow("the last") << 5LL << Ids{5} << 4LL << QStringLiteral("4/4");
    QTest::newRow("the first") << 1LL << Ids{1} << 2LL << QStringLiteral("1/4");
    QTest::newRow("named twice") << 1LL << Ids{1, 1, 2, 2} << 3LL << QStringLiteral("1/3");
    QTest::newRow("all") << 3LL << Ids{1, 2, 3, 4, 5} << 0LL << QStringLiteral("3/5");
}

void tst_full_preview::removal()
{
    QFETCH(qint64, current);
    QFETCH(Ids, removed);
    QFETCH(qint64, shown);
    showFiles(5, current);
    const int nDecodes = host().decoder.counts().opened;
    host().removeFiles(removed);
    finishWorkers();
    QTEST(counter(), "counter");
    QStringList expected;
    if (shown == 0)
        expected = QStringList{QStringLiteral("back")};
    else if (shown != current)
        expected = QStringList{QStringLiteral("changed")};
    QCOMPARE(m_names, expected);
    QCOMPARE(host().decoder.counts().opened - nDecodes, shown == 0 || shown == current ? 0 : 1);
    if (shown == 0)
        return;
    QCOMPARE(data()->currentFileId(), shown);
    QCOMPARE(hub()->currentIndex(), int(Hub::ImagePage));
    for (int i = 0; i < 5; ++i) // on to the end, over what is left
        strip()->selectNext();
    QCOMPARE(data()->currentFileId(), data()->fileIds().last());
}

void tst_full_preview::removalDuringALoad()
{
    addPictures(3);
    const auto pGate = host().addSlowPicture(2, 10, path(2));
    makeWindow(idsTo(3), 2);
    QTRY_COMPARE(pGate->waiting(), 1);
    host().removeFiles({1}); // another one: the load goes on
    QCOMPARE(hub()->currentIndex(), int(Hub::LoadingPage));
    host().removeFiles({2});
    QCOMPARE(data()->currentFileId(), 3LL);
    pGate->open();
    QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
    finishWorkers();
    QCOMPARE(host().decoder.counts().paths, (QStringList{path(2), path(3)}));
    QCOMPARE(counter(), QStringLiteral("1/1"));
}

void tst_full_preview::removalOfAllDuringALoad()
{
    const auto pGate = host().addSlowPicture(1, 10, path(1));
    makeWindow({1}, 1);
    QTRY_COMPARE(pGate->waiting(), 1);
    host().removeFiles({1});
    QVERIFY(m_names.isEmpty()); // not while it loads; the user is told
    QCOMPARE(m_pWindow->findChildren<CNotificationFloatingWidget *>().size(), 1);
    QVERIFY(!m_pWindow->canClosePreview());
    pGate->open();
    QTRY_COMPARE(m_names, QStringList{QStringLiteral("back")});
    host().removeFiles({1}); // nobody is in any more
    QCOMPARE(m_names.size(), 1);
}

/** The load that holds up the exit belongs to a file that was stepped past: nothing is shown when it ends. */
void tst_full_preview::removalOfAllBesideAStaleLoad()
{
    const auto pGate = host().addSlowPicture(1, 10, path(1));
    host().addFile(2, 210, QStringLiteral("/2.mp3"));
    makeWindow({1, 2}, 1);
    QTRY_COMPARE(pGate->waiting(), 1);
    strip()->selectNext();
    host().removeFiles({1, 2});
    QVERIFY(!m_names.contains(QStringLiteral("back")));
    pGate->open();
    QTRY_COMPARE(m_names.count(QStringLiteral("back")), 1);
}

void tst_full_preview::removalWhileAChoiceIsTold_data()
{
    QTest::addColumn<Ids>("removed");
    QTest::addColumn<qint64>("shown"); // 0: the preview ends
    QTest::newRow("the chosen one") << Ids{5} << 4LL;
    QTest::newRow("the chosen one and those before") << Ids{5, 4, 3} << 2LL;
    QTest::newRow("others") << Ids{1, 4} << 5LL;
    QTest::newRow("all") << Ids{1, 2, 3, 4, 5} << 0LL;
}

/** A host that looks for the file when it is told of it, and finds that it has gone. */
void tst_full_preview::removalWhileAChoiceIsTold()
{
    QFETCH(Ids, removed);
    QFETCH(qint64, shown);
    showFiles(5, 4);
    connect(m_pWindow, &IPreviewDbClickWidget::signalPreviewFileIdChanged, m_pLog.get(), [&](qint64 nFileId) {
        if (nFileId == 5)
            host().removeFiles(removed);
    });
    connect(m_pWindow, &IPreviewDbClickWidget::signalBackBtnClicked, m_pLog.get(), [&] { delete m_pWindow; });
    strip()->selectNext();
    if (shown == 0) {
        QTRY_VERIFY(m_pWindow.isNull());
        return;
    }
    QTRY_COMPARE(counter(), QStringLiteral("%1/%1").arg(5 - removed.size()));
    QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
    QCOMPARE(data()->currentFileId(), shown);
    QCOMPARE(strip()->currentIndex().row(), 4 - removed.size());
    strip()->selectPrevious(); // the very next key works
    QCOMPARE(data()->indexOfCurrent(), 3 - removed.size());
    finishWorkers();
}

void tst_full_preview::removalDuringAnAnimation()
{
    showFiles(3, 1);
    hub()->findChild<ImgPreviewWidget *>()->slot_RotateBtnCllicked();
    hub()->findChild<ImgPreviewWidget *>()->slot_ZoomInBtnClicked();
    host().removeFiles({1});
    QCOMPARE(data()->currentFileId(), 2LL);
    QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
    hub()->findChild<ImgPreviewWidget *>()->slot_RotateBtnCllicked();
    host().removeFiles({2, 3});
    QCOMPARE(m_names.last(), QStringLiteral("back"));
    QTest::qWait(150); // past the ten ticks
}

/** A host that breaks the rule does no harm: the removal is handled when this thread comes to it. */
void tst_full_preview::removalFromAnotherThread()
{
    const auto pGate = host().addSlowPicture(1, 10, path(1));
    host().addPicture(2, 10, path(2));
    makeWindow({1, 2}, 1);
    QTRY_COMPARE(pGate->waiting(), 1);
    std::thread([this] { host().source->files.announceRemoved({1}); }).join();
    QCOMPARE(data()->currentFileId(), 1LL);
    pGate->open();
    QTRY_COMPARE(data()->currentFileId(), 2LL);
    QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
}

void tst_full_preview::removalOfOneHundredThousand()
{
    constexpr int Many = 100000;
    for (qint64 nId = 1; nId <= Many + 1; ++nId)
        host().addFile(nId, 210, QString());
    makeWindow(idsTo(Many + 1), 50000);
    QCOMPARE(counter(), QStringLiteral("50000/100001"));
    QElapsedTimer timer;
    timer.start();
    for (qint64 nId = Many; nId > Many - 1000; --nId) // a flood of small ones
        host().removeFiles({nId});
    QTRY_COMPARE(counter(), QStringLiteral("50000/99001"));
    QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
    host().removeFiles(idsTo(Many));
    QTRY_COMPARE(data()->currentFileId(), qint64(Many + 1));
    QCOMPARE(counter(), QStringLiteral("1/1"));
    host().removeFiles({Many + 1});
    QCOMPARE(m_names.last(), QStringLiteral("back"));
}

void tst_full_preview::lists_data()
{
    QTest::addColumn<Ids>("ids");
    QTest::addColumn<qint64>("current");
    QTest::addColumn<HostChange>("change");
    QTest::addColumn<int>("page");
    const auto without = [](SourcePart part) {
        return HostChange([part](FakeHost &host) { host.source->absent.insert(part); });
    };
    const HostChange usual = [](FakeHost &) {
    };
    QTest::newRow("empty") << Ids() << -1LL << usual << int(Hub::ReservedPage);
    QTest::newRow("one file") << Ids{1} << 1LL << usual << int(Hub::ImagePage);
    QTest::newRow("a file outside the list") << Ids{1, 2} << 3LL << usual << int(Hub::ImagePage);
    QTest::newRow("no list from the host")
        << Ids{1, 2} << 1LL << without(SourcePart::FileInformation) << int(Hub::ImagePage);
    QTest::newRow("no records from the host")
        << Ids{1, 2} << 1LL << without(SourcePart::Records) << int(Hub::ImagePage);
    QTest::newRow("no provider of removals") << Ids{1} << 1LL << without(SourcePart::FileList) << int(Hub::ImagePage);
    QTest::newRow("unknown files") << Ids{8, 9} << 8LL << usual << int(Hub::ReservedPage);
}

/** Whatever the list: something sensible is shown, the keys do no harm and the preview can be left. */
void tst_full_preview::lists()
{
    QFETCH(Ids, ids);
    QFETCH(qint64, current);
    QFETCH(HostChange, change);
    QFETCH(int, page);
    addPictures(3);
    change(host());
    makeWindow(ids, current);
    QTRY_COMPARE(hub()->currentIndex(), page);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Tab, Qt::Key_Tab})
        QTest::keyClick(hub(), key);
    finishWorkers();
    QTest::keyClick(hub(), Qt::Key_Escape);
    QCOMPARE(m_names.count(QStringLiteral("back")), 1);
    QVERIFY(!m_pWindow->isVisible());
}

/** Stepping faster than pictures decode: of the files stepped past, only the one under way was begun. */
void tst_full_preview::staleLoadsAreNotDecoded()
{
    addPictures(30);
    const auto pGate = host().addSlowPicture(1, 10, path(1));
    makeWindow(idsTo(30), 1);
    QTRY_COMPARE(pGate->waiting(), 1);
    for (int i = 1; i < 30; ++i)
        strip()->selectNext();
    pGate->open();
    QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
    finishWorkers();
    QVERIFY(!data()->isLoading());
    QCOMPARE(host().decoder.counts().paths, (QStringList{path(1), path(30)}));
}

/** While the load is still under way, and when it was given up and that is not yet told. */
void tst_full_preview::comesBackToALoad()
{
    for (const bool bGivenUp : {false, true}) {
        const int nBefore = host().decoder.counts().opened;
        const auto pGate = host().addSlowPicture(1, 10, path(1));
        host().addFile(2, 210, QStringLiteral("/2.mp3"));
        makeWindow({1, 2}, 1);
        QTRY_COMPARE(pGate->waiting(), 1);
        strip()->selectNext();
        QCOMPARE(hub()->currentIndex(), int(Hub::AudioPage));
        if (bGivenUp) {
            pGate->open();
            QThreadPool::globalInstance()->waitForDone();
        }
        strip()->selectPrevious();
        pGate->open();
        QTRY_COMPARE(hub()->currentIndex(), int(Hub::ImagePage));
        finishWorkers();
        QVERIFY(!data()->isLoading());
        QCOMPARE(host().decoder.counts().opened - nBefore, bGivenUp ? 2 : 1);
        delete m_pWindow;
    }
}

/** The host deletes it in answer to one of its signals, at once where that is the last one. */
void tst_full_preview::deletedByItsHost()
{
    const auto remove = [this] {
        m_pWindow->deleteLater();
    };
    for (const int nSignal : {0, 1, 2}) {
        showFiles(3, 1);
        if (nSignal == 0)
            connect(m_pWindow, &IPreviewDbClickWidget::signalPreviewFileIdChanged, m_pLog.get(), remove);
        else if (nSignal == 1)
            connect(m_pWindow, &IPreviewDbClickWidget::sigRaiseAnalysisPriority, m_pLog.get(), remove);
        connect(m_pWindow, &IPreviewDbClickWidget::signalBackBtnClicked, m_pLog.get(), [&] { delete m_pWindow; });
        QTest::keyPress(m_pWindow->windowHandle(), nSignal == 2 ? Qt::Key_Escape : Qt::Key_Down);
        QTRY_VERIFY(m_pWindow.isNull());
    }
}

/** The names say left and right, and so do the handles: the window keeps its sides in every script. */
void tst_full_preview::mirroredLayout()
{
    QApplication::setLayoutDirection(Qt::RightToLeft);
    showFiles(3, 1);
    QCOMPARE(leftColumn()->mapTo(m_pWindow, QPoint()), QPoint(0, 0));
    QCOMPARE(hub()->mapTo(m_pWindow, QPoint()).x(), leftColumn()->width());
}

BIGIMGPREVIEW_TEST_MAIN(tst_full_preview)
#include "tst_full_preview.moc"
