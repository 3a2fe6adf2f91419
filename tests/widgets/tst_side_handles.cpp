#include "TestMain.h"
#include "preview/TSHidenSideWidget.h"
#include "theme/TSSkinSetting.h"

#include <QMetaMethod>
#include <QSignalSpy>

class tst_side_handles : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void places_data();
    void places();
    void arrows_data();
    void arrows();
    void clicks_data();
    void clicks();
    void staysWhileTheMouseMoves();
    void stopInTime();
    void stopOfAShownTabLetsItEnd();
    void meta();

protected:
    void init() override
    {
        LoggedTest::init();
        m_pWindow = std::make_unique<QWidget>();
        m_pWindow->resize(400, 300);
        m_pLeft = new TSLeftHidenSideWidget(m_pWindow.get());
        m_pRight = new TSRightHidenSideWidget(m_pWindow.get());
        m_pWindow->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_pWindow.get()));
    }
    void cleanup() override
    {
        m_pWindow.reset();
        LoggedTest::cleanup();
    }

private:
    static void move(QWidget *pWidget, const QPoint &position)
    {
        QMouseEvent event(QEvent::MouseMove, position, pWidget->mapToGlobal(position), Qt::NoButton, Qt::NoButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(pWidget, &event);
    }
    static bool isShown(const QWidget *pHandle) { return pHandle->height() == 70; }
    static void showTab(TSHidenSideWidget *pHandle)
    {
        pHandle->slotStartTimer();
        QTRY_VERIFY(isShown(pHandle));
    }

    std::unique_ptr<QWidget> m_pWindow;
    TSHidenSideWidget *m_pLeft = nullptr;
    TSHidenSideWidget *m_pRight = nullptr;
};

void tst_side_handles::places_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("tabTop");
    QTest::newRow("usual") << QSize(400, 300) << 115;
    QTest::newRow("larger") << QSize(900, 701) << 315;
    QTest::newRow("lower than the tab") << QSize(300, 41) << -14;
    QTest::newRow("hardly there") << QSize(5, 1) << -34;
}

void tst_side_handles::places()
{
    QFETCH(QSize, size);
    QFETCH(int, tabTop);
    m_pWindow->setFixedSize(size);
    QTRY_COMPARE(m_pWindow->size(), size);
    QCOMPARE(m_pLeft->geometry(), QRect(0, 0, 10, size.height()));
    QCOMPARE(m_pRight->geometry(), QRect(size.width() - 1, 0, 1, size.height()));
    showTab(m_pLeft);
    showTab(m_pRight);
    QCOMPARE(m_pLeft->geometry(), QRect(0, tabTop, 10, 70));
    QCOMPARE(m_pRight->geometry(), QRect(size.width() - 10, tabTop, 10, 70));
    // The rounded end is on the inner side.
    QVERIFY(m_pLeft->tabPath().contains(QPointF(1, 3)) && !m_pLeft->tabPath().contains(QPointF(9, 3)));
    QVERIFY(m_pRight->tabPath().contains(QPointF(8, 3)) && !m_pRight->tabPath().contains(QPointF(1, 3)));
    m_pWindow->setFixedSize(size + QSize(20, 10)); // while they are shown
    QTRY_COMPARE(m_pRight->geometry(), QRect(size.width() + 10, tabTop + 5, 10, 70));
    m_pLeft->slotHideTimerTimeout();
    m_pRight->slotHideTimerTimeout();
    QCOMPARE(m_pLeft->geometry(), QRect(0, 0, 10, size.height() + 10));
    QCOMPARE(m_pRight->geometry(), QRect(size.width() + 19, 0, 1, size.height() + 10));
}

void tst_side_handles::arrows_data()
{
    QTest::addColumn<bool>("leftHandle");
    QTest::addColumn<bool>("shown");
    QTest::addColumn<bool>("pointsLeft");
    QTest::newRow("left column shown") << true << true << true;
    QTest::newRow("left column folded") << true << false << false;
    QTest::newRow("right panel shown") << false << true << false;
    QTest::newRow("right panel folded") << false << false << true;
}

/** The arrow points where the column goes; it still does after the tab has been laid out again. */
void tst_side_handles::arrows()
{
    QFETCH(bool, leftHandle);
    QFETCH(bool, shown);
    QFETCH(bool, pointsLeft);
    TSHidenSideWidget *pHandle = leftHandle ? m_pLeft : m_pRight;
    pHandle->setArrowLeft(shown);
    showTab(pHandle);
    m_pWindow->resize(410, 310);
    const QColor arrow = TSSkinSetting::GetInstance()->GetSideArrowColor();
    const QColor tab = TSSkinSetting::GetInstance()->GetSideMainColor();
    const QImage picture = pHandle->grab().toImage();
    // Near its base the arrow is tall, near its tip it is not.
    const int nBase = pointsLeft ? 7 : 2;
    const int nTip = pointsLeft ? 2 : 7;
    QCOMPARE(picture.pixelColor(nBase, 35 - 3).name(), arrow.name());
    QCOMPARE(picture.pixelColor(nTip, 35 - 4).name(), tab.name());
}

void tst_side_handles::clicks_data()
{
    QTest::addColumn<bool>("leftHandle");
    QTest::newRow("left") << true;
    QTest::newRow("right") << false;
}

void tst_side_handles::clicks()
{
    QFETCH(bool, leftHandle);
    TSHidenSideWidget *pHandle = leftHandle ? m_pLeft : m_pRight;
    QSignalSpy left(pHandle, &TSHidenSideWidget::signalLeftClicked);
    QSignalSpy right(pHandle, &TSHidenSideWidget::signalRightClicked);
    QSignalSpy triggered(pHandle, &TSHidenSideWidget::signalTriggered);
    const int nInner = leftHandle ? 0 : 9;
    QTest::mouseClick(pHandle, Qt::LeftButton, Qt::NoModifier, QPoint(0, 150)); // hidden: nothing to click
    QCOMPARE(left.count() + right.count(), 0);
    move(pHandle, QPoint(0, 150));
    QVERIFY(!triggered.last().at(1).toBool());
    showTab(pHandle);
    QTest::mouseClick(pHandle, Qt::LeftButton, Qt::NoModifier, QPoint(9 - nInner, 1)); // beside the round end
    QCOMPARE(left.count() + right.count(), 0);
    QTest::mouseClick(pHandle, Qt::LeftButton, Qt::NoModifier, QPoint(5, 35));
    QCOMPARE(left.count(), leftHandle ? 1 : 0);
    QCOMPARE(right.count(), leftHandle ? 0 : 1);
    move(pHandle, QPoint(5, 35));
    QVERIFY(triggered.last().at(1).toBool());
    QCOMPARE(triggered.last().at(0).value<QWidget *>(), pHandle);
    QCOMPARE(pHandle->cursor().shape(), Qt::PointingHandCursor);
    move(pHandle, QPoint(9 - nInner, 1));
    QVERIFY(!triggered.last().at(1).toBool());
    QCOMPARE(pHandle->cursor().shape(), Qt::ArrowCursor);
}

void tst_side_handles::staysWhileTheMouseMoves()
{
    showTab(m_pLeft);
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 1900) {
        move(m_pLeft, QPoint(4, 35));
        QTest::qWait(100);
    }
    QVERIFY(isShown(m_pLeft));
    timer.start();
    QTRY_VERIFY(!isShown(m_pLeft));
    QVERIFY(timer.elapsed() > 1200);
}

void tst_side_handles::stopInTime()
{
    m_pRight->slotStartTimer();
    m_pRight->slotStopTimer();
    QTest::qWait(60);
    QVERIFY(!isShown(m_pRight));
}

/** Start stops the end of a tab that is shown; the stop that follows at once must not leave it there for good. */
void tst_side_handles::stopOfAShownTabLetsItEnd()
{
    showTab(m_pRight);
    m_pRight->slotStartTimer();
    m_pRight->slotStopTimer();
    QVERIFY(isShown(m_pRight));
    QTRY_VERIFY(!isShown(m_pRight));
}

void tst_side_handles::meta()
{
    const auto names = [](const QMetaObject &meta) {
        QStringList list;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            list.append(QString::fromLatin1(meta.method(i).methodSignature()));
        return list.join(QLatin1Char(' '));
    };
    QCOMPARE(names(TSHidenSideWidget::staticMetaObject),
             QStringLiteral("signalLeftClicked() signalRightClicked() signalTriggered(QWidget*,bool) "
                            "signalTriggered(QWidget*) slotStartTimer() slotStopTimer() slotShowTimerTimeout() "
                            "slotHideTimerTimeout()"));
    QCOMPARE(names(TSLeftHidenSideWidget::staticMetaObject),
             QStringLiteral("slotShowTimerTimeout() slotHideTimerTimeout()"));
}

BIGIMGPREVIEW_TEST_MAIN(tst_side_handles)
#include "tst_side_handles.moc"
