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

#include <QSplitter>

#include <numeric>
#include <thread>

using Hub = MiddleResourcePreviewWidget;
using Ids = QVector<qint64>;

/** The whole window on a fake host. */
class tst_full_preview : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void toggles_data()
    {
        // before and after: L: left column shown, R: right panel shown
        const auto row = columns<QString, QString, QString>("command", "before", "after");
        const auto add = [&row](const char *pCommand, const char *pBefore, const char *pAfter) {
            row(QStringLiteral("%1 from %2").arg(QLatin1String(pCommand), QLatin1String(pBefore)), pCommand, pBefore,
                pAfter);
        };
        for (const char *pBoth : {"tab", "button"}) {
            for (const char *pBefore : {"LR", "L-", "--"})
                add(pBoth, pBefore, "-R");
            add(pBoth, "-R", "L-");
        }
        add("left", "LR", "-R");
        add("left", "-R", "LR");
        add("left", "L-", "--");
        add("left", "--", "L-");
        add("right", "LR", "L-");
        add("right", "-R", "--");
        add("right", "L-", "LR");
        add("right", "--", "-R");
    }

    void toggles()
    {
        const auto [command, before, after] = currentRow<QString, QString, QString>();
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
        QCOMPARE(buttonText(), after == QLatin1String("-R") ? QStringLiteral("Show") : QStringLiteral("Hide"));
        // The host toggles its panel exactly when the flag turned.
        QCOMPARE(m_names.count(QStringLiteral("panel")), before.at(1) == after.at(1) ? 0 : 1);
        m_pWindow->setRightPanelHidden(!data()->isRightPanelHidden()); // the host's own doing
        QCOMPARE(data()->isRightPanelHidden(), after.at(1) == QLatin1Char('R'));
    }

    /** Folded by the handles and brought back by them, with the mouse alone. */
    void handles()
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

    void arrowKeysStepThroughTheStrip()
    {
        showFiles(3, 1);
        QSignalSpy changed(m_pWindow, &IPreviewDbClickWidget::signalPreviewFileIdChanged);
        QVector<Ids> raised;
        connect(m_pWindow, &IPreviewDbClickWidget::sigRaiseAnalysisPriority, this,
                [&raised](const QVector<qint64> &ids) { raised.append(ids); });
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Right, Qt::Key_Right, Qt::Key_Up, Qt::Key_Left, Qt::Key_Left}) {
            QTest::keyClick(hub(), key);
            QVERIFY(waitForPicture());
        }
        QCOMPARE(changed.count(), 4);
        QCOMPARE(raised, (QVector<Ids>{{2}, {3}, {2}, {1}}));
        QCOMPARE(counter(), QStringLiteral("1/3"));
        // The hub's own arrow signals belong to the other surface.
        for (const auto pSignal : {&Hub::signal_up_Key_Pressed, &Hub::signal_down_Key_Pressed,
                                   &Hub::signal_left_Key_Pressed, &Hub::signal_right_Key_Pressed})
            Q_EMIT(hub()->*pSignal)();
        QCOMPARE(data()->currentFileId(), 1LL);
    }

    /** After a click in the strip the keyboard goes on as before. */
    void stripKeys()
    {
        showFiles(3, 1);
        QTest::mouseClick(strip()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          strip()->visualRect(strip()->model()->index(1, 0)).center());
        QCOMPARE(data()->currentFileId(), 2LL);
        QCOMPARE(QApplication::focusWidget(), strip());
        QVERIFY(waitForPicture());
        for (const auto &[key, nFileId] : {std::pair(Qt::Key_Down, 3LL), {Qt::Key_Left, 2LL}, {Qt::Key_Right, 3LL}}) {
            QTest::keyClick(QApplication::focusWidget(), key);
            QCOMPARE(data()->currentFileId(), nFileId);
            QVERIFY(waitForPicture());
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

    void removal_data()
    {
        // shown: 0: the preview ends
        const auto row = columns<qint64, Ids, qint64, QString>("current", "removed", "shown", "counter");
        row("one before", 3LL, Ids{1}, 3LL, "2/4");
        row("one after", 3LL, Ids{5}, 3LL, "3/4");
        row("all others", 3LL, Ids{5, 1, 4, 2}, 3LL, "1/1");
        row("unknown ones", 3LL, Ids{77, -1}, 3LL, "3/5");
        row("none", 3LL, Ids{}, 3LL, "3/5");
        row("the current one", 3LL, Ids{3}, 4LL, "3/4");
        row("the current one and the next", 3LL, Ids{4, 3}, 5LL, "3/3");
        row("the current one to the last", 3LL, Ids{3, 4, 5}, 2LL, "2/2");
        row("the last", 5LL, Ids{5}, 4LL, "4/4");
        row("the first", 1LL, Ids{1}, 2LL, "1/4");
        row("named twice", 1LL, Ids{1, 1, 2, 2}, 3LL, "1/3");
        row("all", 3LL, Ids{1, 2, 3, 4, 5}, 0LL, "3/5");
    }

    void removal()
    {
        const auto [current, removed, shown, position] = currentRow<qint64, Ids, qint64, QString>();
        showFiles(5, current);
        const int nDecodes = host().decoder.counts().opened;
        host().removeFiles(removed);
        finishWorkers();
        QCOMPARE(counter(), position);
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

    void removalDuringALoad()
    {
        addPictures(3);
        const auto pGate = showSlow(idsTo(3), 2);
        QVERIFY(pGate);
        host().removeFiles({1}); // another one: the load goes on
        QCOMPARE(hub()->currentIndex(), int(Hub::LoadingPage));
        host().removeFiles({2});
        QCOMPARE(data()->currentFileId(), 3LL);
        pGate->open();
        QVERIFY(waitForPicture());
        finishWorkers();
        QCOMPARE(host().decoder.counts().paths, (QStringList{path(2), path(3)}));
        QCOMPARE(counter(), QStringLiteral("1/1"));
    }

    /** The load that holds up the exit may belong to a file that was stepped past: nothing is shown when it ends. */
    void removalOfAllDuringALoad()
    {
        for (const bool bStale : {false, true}) {
            host().addFile(2, 210, QStringLiteral("/2.mp3"));
            const auto pGate = showSlow(bStale ? Ids{1, 2} : Ids{1}, 1);
            QVERIFY(pGate);
            if (bStale)
                strip()->selectNext();
            host().removeFiles({1, 2});
            QVERIFY(!m_names.contains(QStringLiteral("back"))); // not while it loads; the user is told
            QCOMPARE(m_pWindow->findChildren<CNotificationFloatingWidget *>().size(), 1);
            QVERIFY(!m_pWindow->canClosePreview());
            pGate->open();
            QTRY_COMPARE(m_names.count(QStringLiteral("back")), 1);
            host().removeFiles({1}); // nobody is in any more
            QCOMPARE(m_names.count(QStringLiteral("back")), 1);
            delete m_pWindow;
        }
    }

    void removalWhileAChoiceIsTold_data()
    {
        // shown: 0: the preview ends
        const auto row = columns<Ids, qint64>("removed", "shown");
        row("the chosen one", Ids{5}, 4LL);
        row("the chosen one and those before", Ids{5, 4, 3}, 2LL);
        row("others", Ids{1, 4}, 5LL);
        row("all", Ids{1, 2, 3, 4, 5}, 0LL);
    }

    /** A host that looks for the file when it is told of it, and finds that it has gone. */
    void removalWhileAChoiceIsTold()
    {
        const auto [removed, shown] = currentRow<Ids, qint64>();
        showFiles(5, 4);
        connect(m_pWindow, &IPreviewDbClickWidget::signalPreviewFileIdChanged, m_pLog.get(),
                [this, ids = removed](qint64 nFileId) {
                    if (nFileId == 5)
                        host().removeFiles(ids);
                });
        connect(m_pWindow, &IPreviewDbClickWidget::signalBackBtnClicked, m_pLog.get(), [&] { delete m_pWindow; });
        strip()->selectNext();
        if (shown == 0) {
            QTRY_VERIFY(m_pWindow.isNull());
            return;
        }
        QTRY_COMPARE(counter(), QStringLiteral("%1/%1").arg(5 - removed.size()));
        QVERIFY(waitForPicture());
        QCOMPARE(data()->currentFileId(), shown);
        QCOMPARE(strip()->currentIndex().row(), 4 - removed.size());
        strip()->selectPrevious(); // the very next key works
        QCOMPARE(data()->indexOfCurrent(), 3 - removed.size());
        finishWorkers();
    }

    void removalDuringAnAnimation()
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
    void removalFromAnotherThread()
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

    void removalOfOneHundredThousand()
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

    void lists_data()
    {
        const auto row = columns<Ids, qint64, HostChange, int>("ids", "current", "change", "page");
        const auto without = [](SourcePart part) {
            return HostChange([part](FakeHost &host) { host.source->absent.insert(part); });
        };
        const HostChange usual = [](FakeHost &) {
        };
        row("empty", Ids(), -1LL, usual, int(Hub::ReservedPage));
        row("one file", Ids{1}, 1LL, usual, int(Hub::ImagePage));
        row("a file outside the list", Ids{1, 2}, 3LL, usual, int(Hub::ImagePage));
        row("no list from the host", Ids{1, 2}, 1LL, without(SourcePart::FileInformation), int(Hub::ImagePage));
        row("no records from the host", Ids{1, 2}, 1LL, without(SourcePart::Records), int(Hub::ImagePage));
        row("no provider of removals", Ids{1}, 1LL, without(SourcePart::FileList), int(Hub::ImagePage));
        row("unknown files", Ids{8, 9}, 8LL, usual, int(Hub::ReservedPage));
    }

    /** Whatever the list: something sensible is shown, the keys do no harm and the preview can be left. */
    void lists()
    {
        const auto [ids, current, change, page] = currentRow<Ids, qint64, HostChange, int>();
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
    void staleLoadsAreNotDecoded()
    {
        addPictures(30);
        const auto pGate = showSlow(idsTo(30), 1);
        QVERIFY(pGate);
        for (int i = 1; i < 30; ++i)
            strip()->selectNext();
        pGate->open();
        QVERIFY(waitForPicture());
        finishWorkers();
        QVERIFY(!data()->isLoading());
        QCOMPARE(host().decoder.counts().paths, (QStringList{path(1), path(30)}));
    }

    /** While the load is still under way, and when it was given up and that is not yet told. */
    void comesBackToALoad()
    {
        for (const bool bGivenUp : {false, true}) {
            const int nBefore = host().decoder.counts().opened;
            host().addFile(2, 210, QStringLiteral("/2.mp3"));
            const auto pGate = showSlow({1, 2}, 1);
            QVERIFY(pGate);
            strip()->selectNext();
            QCOMPARE(hub()->currentIndex(), int(Hub::AudioPage));
            if (bGivenUp) {
                pGate->open();
                QThreadPool::globalInstance()->waitForDone();
            }
            strip()->selectPrevious();
            pGate->open();
            QVERIFY(waitForPicture());
            finishWorkers();
            QVERIFY(!data()->isLoading());
            QCOMPARE(host().decoder.counts().opened - nBefore, bGivenUp ? 2 : 1);
            delete m_pWindow;
        }
    }

    /** The host deletes it in answer to one of its signals, at once where that is the last one. */
    void deletedByItsHost()
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
    void mirroredLayout()
    {
        QApplication::setLayoutDirection(Qt::RightToLeft);
        showFiles(3, 1);
        QCOMPARE(leftColumn()->mapTo(m_pWindow, QPoint()), QPoint(0, 0));
        QCOMPARE(hub()->mapTo(m_pWindow, QPoint()).x(), leftColumn()->width());
    }

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
        Ids ids(nFiles);
        std::iota(ids.begin(), ids.end(), 1);
        return ids;
    }
    bool waitForPicture() const
    {
        return QTest::qWaitFor([this] { return hub()->currentIndex() == Hub::ImagePage; });
    }
    /** Opens the window on a picture that is being decoded, until its gate is opened. */
    QSharedPointer<Gate> showSlow(const Ids &ids, qint64 nCurrent)
    {
        const auto pGate = host().addSlowPicture(nCurrent, 10, path(nCurrent));
        makeWindow(ids, nCurrent);
        return QTest::qWaitFor([&pGate] { return pGate->waiting() == 1; }) ? pGate : nullptr;
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
        showActive(m_pWindow);
    }
    void showFiles(int nFiles, qint64 nCurrent)
    {
        addPictures(nFiles);
        makeWindow(idsTo(nFiles), nCurrent);
        QVERIFY(waitForPicture());
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

BIGIMGPREVIEW_TEST_MAIN(tst_full_preview)
#include "tst_full_preview.moc"
