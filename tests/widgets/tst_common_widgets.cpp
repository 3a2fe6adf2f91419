#include "PluginTest.h"
#include "WidgetEvents.h"
#include "common/CNotificationFloatingWidget.h"
#include "common/TsLargerModeLoadingWidget.h"
#include "common/WaitNotice.h"

#include <QLabel>
#include <QPointer>
#include <QTimer>

class tst_common_widgets : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void noticeLifetime();
    void noticesGoWithTheirParent();
    void loadingTurnsOnlyWhileShown();
};

void tst_common_widgets::noticeLifetime()
{
    QWidget parent;
    parent.resize(400, 300);
    WaitNotice::show(&parent); // over a page that is not shown yet
    QPointer<CNotificationFloatingWidget> pNotice = parent.findChild<CNotificationFloatingWidget *>();
    auto *pTimer = pNotice->findChild<QTimer *>();
    QVERIFY(!pTimer->isActive());
    parent.show();
    QVERIFY(pTimer->isActive());
    QCOMPARE(pTimer->interval(), 3000);
    QCOMPARE(pNotice->y(), 20);
    pTimer->setInterval(0);
    QTRY_VERIFY(pNotice.isNull());
}

void tst_common_widgets::noticesGoWithTheirParent()
{
    auto pParent = std::make_unique<QWidget>();
    pParent->show();
    for (int i = 0; i < 3; ++i)
        WaitNotice::show(pParent.get());
    const QPointer<CNotificationFloatingWidget> pNotice = pParent->findChild<CNotificationFloatingWidget *>();
    pParent.reset();
    QVERIFY(pNotice.isNull());
}

void tst_common_widgets::loadingTurnsOnlyWhileShown()
{
    TsLargerModeLoadingWidget loading(76, 36, 43, nullptr);
    loading.resize(200, 200);
    auto *pTimer = loading.findChild<QTimer *>();
    QVERIFY(!pTimer->isActive());
    loading.show();
    QVERIFY(QTest::qWaitForWindowExposed(&loading));
    QVERIFY(pTimer->isActive());
    QCOMPARE(pTimer->interval(), 10);
    const QLabel *pRing = loading.findChildren<QLabel *>().first();
    const QImage first = pRing->pixmap(Qt::ReturnByValue).toImage();
    for (int i = 0; i < 10; ++i)
        loading.updatePixmap();
    loading.grab();
    QVERIFY(pRing->pixmap(Qt::ReturnByValue).toImage() != first);

    // Painting must not ask for painting: with the timer stopped, it ends.
    pTimer->stop();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    const PaintCounter paints(&loading);
    loading.update();
    QTest::qWait(50);
    QVERIFY2(paints.count <= 2, qPrintable(QString::number(paints.count)));
    loading.hide();
    loading.show();
    QVERIFY(pTimer->isActive());
    loading.hide();
    QVERIFY(!pTimer->isActive());
}

BIGIMGPREVIEW_TEST_MAIN(tst_common_widgets)
#include "tst_common_widgets.moc"
