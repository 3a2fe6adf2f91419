#include "PluginTest.h"
#include "WidgetEvents.h"
#include "common/CNotificationFloatingWidget.h"
#include "common/TSMessageBox.h"
#include "common/TsLargerModeLoadingWidget.h"
#include "common/TsProgressDialog.h"
#include "common/WaitNotice.h"
#include "theme/TSSkinSetting.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

#include <thread>

namespace {

using Box = TSMessageBox;

/** Has the children that the tests ask for by name. */
template <class Widget>
Widget *child(const QWidget &parent, const char *pName)
{
    return parent.findChild<Widget *>(QString::fromLatin1(pName));
}

} // namespace

class tst_popups : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void boxButtons()
    {
        const std::tuple<Box::Mode, const char *, int> rows[] = {
            {Box::OkMode, "ok_btn", Box::OkValue},          {Box::OkMode, "btn_close", -1}, // closes without an answer
            {Box::YesNoMode, "confirm_btn", Box::YesValue}, {Box::YesNoMode, "cancel_btn", Box::NoValue},
            {Box::YesNoMode, "btn_close", Box::NoValue},    {Box::ThreeButtonMode, "ok_btn", Box::OkValue},
            {Box::ThreeButtonMode, "btn_close", -1},        {Box::YesNoQuietMode, "cancel_btn", Box::NoValue},
            {Box::YesNoQuietMode, "btn_close", -1}};
        for (const auto &[mode, pButton, nExpected] : rows) {
            QWidget parent;
            const QPointer<Box> pBox = new Box(&parent);
            pBox->setMessage(Box::ThreeButtonMode, QString(), QString(), nullptr); // filled before, for something else
            pBox->setMessage(mode, QStringLiteral("c <b>%1</b>"), QString(), nullptr);
            QCOMPARE(child<QLabel>(*pBox, "tips_lab")->text(), QStringLiteral("c <b>%1</b>"));
            QVector<int> answers;
            connect(pBox.data(), &Box::signalResult, this, [&answers, pBox](Box::ReturnValue value) {
                QVERIFY(!pBox->isVisible());
                answers.append(value);
            });
            pBox->showModal();
            QVERIFY(pBox->windowModality() == Qt::WindowModal);
            QStringList shown;
            for (const char *pName : {"confirm_btn", "cancel_btn", "ok_btn"}) {
                if (child<QPushButton>(*pBox, pName)->isVisible())
                    shown.append(QLatin1String(pName).chopped(4));
            }
            const QStringList all{QStringLiteral("confirm"), QStringLiteral("cancel"), QStringLiteral("ok")};
            const int nFirst = mode == Box::OkMode ? 2 : 0;
            QCOMPARE(shown, QStringList(all.mid(nFirst, mode == Box::ThreeButtonMode ? 3 : 2)));
            QTest::mouseClick(child<QPushButton>(*pBox, pButton), Qt::LeftButton);
            QCOMPARE(answers, nExpected < 0 ? QVector<int>() : QVector<int>{nExpected});
            QTRY_VERIFY(pBox.isNull());
            QVERIFY(log().hasLine(QStringLiteral("TSMessage exec destory")));
        }
    }

    void boxFollowsTheTheme()
    {
        Box box(nullptr);
        const auto sheets = [&box] {
            QStringList all;
            for (const char *pName : {"main_wid", "tips_lab", "confirm_btn", "cancel_btn", "ok_btn", "btn_close"})
                all.append(child<QWidget>(box, pName)->styleSheet());
            return all;
        };
        const QStringList dark = sheets();
        TSSkinSetting::GetInstance()->SetTheme(TSSkinSetting::LightTheme);
        box.setMessage(Box::ThreeButtonMode, QString(), QString(), nullptr);
        const QStringList light = sheets();
        TSSkinSetting::GetInstance()->SetTheme(TSSkinSetting::DarkTheme);
        for (int i = 0; i < light.size(); ++i)
            QVERIFY2(light.at(i) != dark.at(i), qPrintable(light.at(i)));
    }

    /** A host's style sheet that makes all its buttons tall and all its texts small must not reach into the box. */
    void boxIgnoresTheHostsStyle()
    {
        QWidget parent;
        parent.setStyleSheet(QStringLiteral("QPushButton{min-height:60px;padding:9px;}QWidget{font-size:7px;}"
                                            "QProgressBar{max-height:2px;}"));
        auto *pBox = new Box(&parent);
        pBox->setMessage(Box::YesNoMode, QStringLiteral("Title"), QStringLiteral("Text"), nullptr);
        auto *pDialog = new TsProgressDialog(&parent);
        pBox->showModal();
        pDialog->showPopup();
        QVERIFY(child<QPushButton>(*pBox, "confirm_btn")->height() < 60);
        QVERIFY(child<QPushButton>(*pDialog, "popwindCloseBtn")->height() < 60);
        QVERIFY(pDialog->findChild<QProgressBar *>()->height() > 2);
        for (const QWidget *pPopup : {static_cast<QWidget *>(pBox), static_cast<QWidget *>(pDialog)}) {
            for (const QLabel *pLabel : pPopup->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly))
                QVERIFY(pLabel->fontInfo().pixelSize() > 7);
        }
    }

    void boxFromAThread()
    {
        QWidget parent;
        auto *pBox = new Box(&parent);
        connect(pBox, &Box::signExecInThread, pBox, &Box::slotExecInThread, Qt::QueuedConnection);
        std::thread worker([pBox, &parent] {
            Q_EMIT pBox->signExecInThread(Box::YesNoQuietMode, QStringLiteral("from"), QStringLiteral("afar"), &parent);
        });
        worker.join();
        QVERIFY(!pBox->isVisible());
        QTRY_VERIFY(pBox->isVisible());
        QCOMPARE(child<QLabel>(*pBox, "lab_context")->text(), QStringLiteral("afar"));
    }

    void progressKeys()
    {
        QWidget parent;
        TsProgressDialog dialog(&parent);
        QSignalSpy cancels(&dialog, &TsProgressDialog::userCancle);
        dialog.showPopup();
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Tab})
            QTest::keyClick(&dialog, key);
        QVERIFY(dialog.isVisible());
        QCOMPARE(cancels.count(), 0);
    }

    void noticeLifetime()
    {
        auto pParent = std::make_unique<QWidget>();
        pParent->resize(400, 300);
        WaitNotice::show(pParent.get()); // over a page that is not shown yet
        QPointer<CNotificationFloatingWidget> pNotice = pParent->findChild<CNotificationFloatingWidget *>();
        auto *pTimer = pNotice->findChild<QTimer *>();
        QVERIFY(!pTimer->isActive());
        pParent->show();
        QVERIFY(pTimer->isActive());
        QCOMPARE(pTimer->interval(), 3000);
        pTimer->setInterval(0);
        QTRY_VERIFY(pNotice.isNull());
        for (int i = 0; i < 3; ++i)
            WaitNotice::show(pParent.get());
        pNotice = pParent->findChild<CNotificationFloatingWidget *>();
        pParent.reset();
        QVERIFY(pNotice.isNull());
    }

    void loadingTurnsOnlyWhileShown()
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
};

BIGIMGPREVIEW_TEST_MAIN(tst_popups)
#include "tst_popups.moc"
