#include "PluginTest.h"
#include "common/TSMessageBox.h"
#include "common/TsProgressDialog.h"
#include "theme/TSSkinSetting.h"

#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>

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
    void boxButtons_data();
    void boxButtons();
    void boxFollowsTheTheme();
    void boxIgnoresTheHostsStyle();
    void boxFromAThread();
    void progressCancels();
    void progressKeys();
};

void tst_popups::boxButtons_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("expected"); // -1: closes without an answer
    const auto row = [](int nMode, const char *pButton, int nExpected) {
        QTest::addRow("mode %d %s", nMode, pButton) << nMode << QString::fromLatin1(pButton) << nExpected;
    };
    row(Box::OkMode, "ok_btn", Box::OkValue);
    row(Box::OkMode, "btn_close", -1);
    row(Box::YesNoMode, "confirm_btn", Box::YesValue);
    row(Box::YesNoMode, "cancel_btn", Box::NoValue);
    row(Box::YesNoMode, "btn_close", Box::NoValue);
    row(Box::ThreeButtonMode, "ok_btn", Box::OkValue);
    row(Box::ThreeButtonMode, "btn_close", -1);
    row(Box::YesNoQuietMode, "cancel_btn", Box::NoValue);
    row(Box::YesNoQuietMode, "btn_close", -1);
}

void tst_popups::boxButtons()
{
    QFETCH(int, mode);
    QFETCH(QString, button);
    QWidget parent;
    const QPointer<Box> pBox = new Box(&parent);
    pBox->setMessage(Box::ThreeButtonMode, QString(), QString(), nullptr); // filled before, for something else
    pBox->setMessage(Box::Mode(mode), QStringLiteral("c <b>%1</b>"), QString(), nullptr);
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
    QTest::mouseClick(pBox->findChild<QPushButton *>(button), Qt::LeftButton);
    QFETCH(int, expected);
    QCOMPARE(answers, expected < 0 ? QVector<int>() : QVector<int>{expected});
    QTRY_VERIFY(pBox.isNull());
    QVERIFY(log().hasLine(QStringLiteral("TSMessage exec destory")));
}

void tst_popups::boxFollowsTheTheme()
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
void tst_popups::boxIgnoresTheHostsStyle()
{
    QWidget parent;
    parent.setStyleSheet(QStringLiteral("QPushButton{min-height:60px;padding:9px;}QWidget{font-size:7px;}"
                                        "QProgressBar{max-height:2px;}"));
    auto *pBox = new Box(&parent);
    pBox->setMessage(Box::YesNoMode, QStringLiteral("Title"), QStringLiteral("Text"), nullptr);
    auto *pDialog = new TsProgressDialog(&parent);
    pDialog->setTitle(QStringLiteral("Title"));
    pBox->showModal();
    pDialog->showPopup();
    QCOMPARE(child<QPushButton>(*pBox, "confirm_btn")->size(), QSize(106, 28));
    QCOMPARE(child<QPushButton>(*pBox, "btn_close")->size(), QSize(16, 16));
    QCOMPARE(child<QLabel>(*pBox, "tips_lab")->fontInfo().pixelSize(), 16);
    QCOMPARE(child<QLabel>(*pBox, "lab_context")->fontInfo().pixelSize(), 13);
    QCOMPARE(child<QPushButton>(*pBox, "confirm_btn")->fontInfo().pixelSize(), 13);
    QCOMPARE(child<QPushButton>(*pDialog, "popwindCloseBtn")->height(), 16);
    QCOMPARE(pDialog->findChild<QProgressBar *>()->geometry(), QRect(30, 82, 244, 6));
    for (const QLabel *pLabel : pDialog->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly))
        QCOMPARE(pLabel->fontInfo().pixelSize(), pLabel->text().isEmpty() ? 12 : 16);
}

void tst_popups::boxFromAThread()
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

void tst_popups::progressCancels()
{
    QWidget parent;
    const QPointer<TsProgressDialog> pDialog = new TsProgressDialog(&parent);
    QSignalSpy cancels(pDialog.data(), &TsProgressDialog::userCancle);
    pDialog->showPopup();
    auto *pClose = child<QPushButton>(*pDialog, "popwindCloseBtn");
    QVERIFY(pClose->isVisible());
    QTest::mouseClick(pClose, Qt::LeftButton);
    QTest::mouseClick(pClose, Qt::LeftButton);
    QCOMPARE(cancels.count(), 1);
    QVERIFY(pDialog->isVisible());
    const auto labels = pDialog->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(labels.at(1)->text(), QStringLiteral("Canceling task"));
    pDialog->close(); // the owner's way
    QTRY_VERIFY(pDialog.isNull());
    QVERIFY(log().hasLine(QStringLiteral("TsProgressDialog::~TsProgressDialog()")));
}

void tst_popups::progressKeys()
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

BIGIMGPREVIEW_TEST_MAIN(tst_popups)
#include "tst_popups.moc"
