#include "TestMain.h"
#include "WidgetEvents.h"
#include "preview/TSHidenSideWidget.h"
#include "theme/TSSkinSetting.h"

class tst_side_handles : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    /** The arrow points where the column goes; it still does after the tab has been laid out again. */
    void arrows()
    {
        const QColor arrow = TSSkinSetting::GetInstance()->GetSideArrowColor();
        const QColor tab = TSSkinSetting::GetInstance()->GetSideMainColor();
        for (TSHidenSideWidget *pHandle : {m_pLeft, m_pRight}) {
            for (const bool bShown : {true, false}) {
                pHandle->setArrowLeft(bShown);
                showTab(pHandle);
                m_pWindow->resize(m_pWindow->size() + QSize(10, 10));
                const QImage picture = pHandle->grab().toImage();
                // Near its base the arrow is tall, near its tip it is not.
                const bool bPointsLeft = bShown == (pHandle == m_pLeft);
                QCOMPARE(picture.pixelColor(bPointsLeft ? 7 : 2, 35 - 3).name(), arrow.name());
                QCOMPARE(picture.pixelColor(bPointsLeft ? 2 : 7, 35 - 4).name(), tab.name());
            }
        }
    }

    void clicks()
    {
        for (TSHidenSideWidget *pHandle : {m_pLeft, m_pRight}) {
            QSignalSpy left(pHandle, &TSHidenSideWidget::signalLeftClicked);
            QSignalSpy right(pHandle, &TSHidenSideWidget::signalRightClicked);
            QSignalSpy triggered(pHandle, &TSHidenSideWidget::signalTriggered);
            const QPoint besideTheRoundEnd(pHandle == m_pLeft ? 9 : 0, 1);
            QTest::mouseClick(pHandle, Qt::LeftButton, Qt::NoModifier, QPoint(0, 150)); // hidden: nothing to click
            hover(pHandle, QPoint(0, 150));
            QVERIFY(!triggered.last().at(1).toBool());
            showTab(pHandle);
            QTest::mouseClick(pHandle, Qt::LeftButton, Qt::NoModifier, besideTheRoundEnd);
            QCOMPARE(left.count() + right.count(), 0);
            QTest::mouseClick(pHandle, Qt::LeftButton, Qt::NoModifier, QPoint(5, 35));
            QCOMPARE(left.count(), pHandle == m_pLeft ? 1 : 0);
            QCOMPARE(right.count(), pHandle == m_pLeft ? 0 : 1);
            hover(pHandle, QPoint(5, 35));
            QVERIFY(triggered.last().at(1).toBool());
            QCOMPARE(triggered.last().at(0).value<QWidget *>(), pHandle);
            QCOMPARE(pHandle->cursor().shape(), Qt::PointingHandCursor);
            hover(pHandle, besideTheRoundEnd);
            QVERIFY(!triggered.last().at(1).toBool());
            QCOMPARE(pHandle->cursor().shape(), Qt::ArrowCursor);
        }
    }

    void staysWhileTheMouseMoves()
    {
        showTab(m_pLeft);
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 1900) {
            hover(m_pLeft, QPoint(4, 35));
            QTest::qWait(100);
        }
        QVERIFY(isShown(m_pLeft));
        timer.start();
        QTRY_VERIFY(!isShown(m_pLeft));
        QVERIFY(timer.elapsed() > 1200);
    }

    void stopInTime()
    {
        m_pRight->slotStartTimer();
        m_pRight->slotStopTimer();
        QTest::qWait(60);
        QVERIFY(!isShown(m_pRight));
    }

    /** Start stops the end of a tab that is shown; the stop that follows at once must not leave it there for good. */
    void stopOfAShownTabLetsItEnd()
    {
        showTab(m_pRight);
        m_pRight->slotStartTimer();
        m_pRight->slotStopTimer();
        QVERIFY(isShown(m_pRight));
        QTRY_VERIFY(!isShown(m_pRight));
    }

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

BIGIMGPREVIEW_TEST_MAIN(tst_side_handles)
#include "tst_side_handles.moc"
