#include "PluginTest.h"
#include "common/CPopupDialog.h"
#include "common/TSCustomMenu.h"
#include "common/TSMessageBox.h"
#include "common/TsProgressDialog.h"
#include "theme/TSSkinSetting.h"

#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>

#include <thread>

namespace {

using Box = TSMessageBox;

QStringList methodNames(const QMetaObject &meta)
{
    QStringList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        names.append(QString::fromLatin1(meta.method(i).name()));
    return names;
}

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
    void boxModes_data();
    void boxModes();
    void boxButtons_data();
    void boxButtons();
    void boxPlaces();
    void boxIsFilledTwice();
    void boxFollowsTheTheme();
    void boxIgnoresTheHostsStyle();
    void boxFromAThread();
    void popupFrame();
    void progressPlaces();
    void progressTitle_data();
    void progressTitle();
    void progressCancels();
    void progressKeys();
    void progressWithoutItsChildren();
    void menuLook();
    void methodOrder();
};

void tst_popups::boxModes_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QRect>("confirm"); // null: hidden
    QTest::addColumn<QRect>("cancel");
    QTest::addColumn<QRect>("ok");
    const QRect wideConfirm(56, 167, 106, 28), wideCancel(202, 167, 106, 28), wideOk(129, 167, 106, 28);
    QTest::newRow("ok") << int(Box::OkMode) << QRect() << QRect() << wideOk;
    QTest::newRow("yes, no") << int(Box::YesNoMode) << wideConfirm << wideCancel << QRect();
    QTest::newRow("quiet") << int(Box::YesNoQuietMode) << wideConfirm << wideCancel << QRect();
    QTest::newRow("three") << int(Box::ThreeButtonMode) << QRect(31, 167, 90, 28) << QRect(137, 167, 90, 28)
                           << QRect(243, 167, 90, 28);
    QTest::newRow("unknown") << 9 << wideConfirm << wideCancel << wideOk;
}

void tst_popups::boxModes()
{
    QFETCH(int, mode);
    Box box(nullptr);
    box.setAttribute(Qt::WA_DeleteOnClose, false);
    box.setMessage(Box::Mode(mode), QStringLiteral("title"), QStringLiteral("text"), nullptr);
    box.showModal();
    QVERIFY(box.isModal() && box.windowModality() == Qt::WindowModal);
    QFETCH(QRect, confirm);
    QFETCH(QRect, cancel);
    QFETCH(QRect, ok);
    const auto placeOf = [&box](const char *pName) {
        const auto *pButton = child<QPushButton>(box, pName);
        return pButton->isVisible() ? pButton->geometry() : QRect();
    };
    QCOMPARE(placeOf("confirm_btn"), confirm);
    QCOMPARE(placeOf("cancel_btn"), cancel);
    QCOMPARE(placeOf("ok_btn"), ok);
}

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
    pBox->setMessage(Box::Mode(mode), QString(), QString(), nullptr);
    QVector<int> answers;
    connect(pBox.data(), &Box::signalResult, this, [&answers, pBox](Box::ReturnValue value) {
        QVERIFY(!pBox->isVisible());
        answers.append(value);
    });
    pBox->showModal();
    QTest::mouseClick(pBox->findChild<QPushButton *>(button), Qt::LeftButton);
    QFETCH(int, expected);
    QCOMPARE(answers, expected < 0 ? QVector<int>() : QVector<int>{expected});
    QTRY_VERIFY(pBox.isNull());
    QVERIFY(log().hasLine(QStringLiteral("TSMessage exec destory")));
}

void tst_popups::boxPlaces()
{
    const Box box(nullptr);
    QCOMPARE(box.size(), QSize(364, 225));
    QCOMPARE(box.windowFlags() & (Qt::Dialog | Qt::FramelessWindowHint), Qt::Dialog | Qt::FramelessWindowHint);
    QVERIFY(box.testAttribute(Qt::WA_TranslucentBackground) && box.testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(box.windowTitle(), QStringLiteral("Tessaro"));
    const auto *pTitle = child<QLabel>(box, "tips_lab");
    const auto *pText = child<QLabel>(box, "lab_context");
    QCOMPARE(pTitle->geometry(), QRect(0, 30, 364, 17));
    QCOMPARE(pText->geometry(), QRect(30, 76, 300, 70));
    QCOMPARE(child<QPushButton>(box, "btn_close")->geometry(), QRect(330, 10, 16, 16));
    QCOMPARE(pTitle->alignment(), Qt::AlignHCenter | Qt::AlignVCenter);
    QVERIFY(pText->wordWrap() && pText->openExternalLinks());
    QCOMPARE(child<QPushButton>(box, "confirm_btn")->focusPolicy(), Qt::ClickFocus);
    QCOMPARE(child<QPushButton>(box, "cancel_btn")->focusPolicy(), Qt::ClickFocus);
    QCOMPARE(child<QPushButton>(box, "ok_btn")->focusPolicy(), QPushButton().focusPolicy());
    QVERIFY(child<QGridLayout>(box, "gridLayout") != nullptr);
}

void tst_popups::boxIsFilledTwice()
{
    Box box(nullptr);
    box.setMessage(Box::ThreeButtonMode, QStringLiteral("a"), QStringLiteral("b"), nullptr);
    box.setButtonTexts(QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"));
    QCOMPARE(child<QPushButton>(box, "ok_btn")->text(), QStringLiteral("3"));
    box.setMessage(Box::YesNoMode, QStringLiteral("c <b>%1</b>"), QStringLiteral("d"), nullptr);
    QCOMPARE(child<QPushButton>(box, "confirm_btn")->text(), QStringLiteral("Yes"));
    QCOMPARE(child<QPushButton>(box, "cancel_btn")->text(), QStringLiteral("No"));
    QCOMPARE(child<QPushButton>(box, "ok_btn")->text(), QStringLiteral("Ok"));
    QVERIFY(child<QPushButton>(box, "ok_btn")->isHidden());
    QCOMPARE(child<QPushButton>(box, "confirm_btn")->geometry(), QRect(56, 167, 106, 28));
    QCOMPARE(child<QLabel>(box, "tips_lab")->text(), QStringLiteral("c <b>%1</b>"));
    QCOMPARE(child<QLabel>(box, "lab_context")->text(), QStringLiteral("d"));
    QCOMPARE(box.windowTitle(), QStringLiteral("TSMessageBox"));
}

void tst_popups::boxFollowsTheTheme()
{
    TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    const auto argb = [](const QColor &color) {
        return color.name(QColor::HexArgb);
    };
    Box box(nullptr);
    const QString dark = child<QWidget>(box, "main_wid")->styleSheet();
    pSkin->SetTheme(TSSkinSetting::LightTheme);
    box.setMessage(Box::ThreeButtonMode, QString(), QString(), nullptr);
    const QString main = child<QWidget>(box, "main_wid")->styleSheet();
    const QString button = QStringLiteral("color:%1;border-radius:14px;background-color:%2;");
    const QString text = argb(pSkin->GetTextColor(0));
    const QString secondary = button.arg(text, argb(pSkin->GetInputAndButtonColor()));
    const QString primary = button.arg(text, argb(pSkin->GetMainColor()));
    const QString close = child<QPushButton>(box, "btn_close")->styleSheet();
    pSkin->SetTheme(TSSkinSetting::DarkTheme);

    QVERIFY(main != dark);
    QVERIFY(main.startsWith(QStringLiteral("#main_wid{background-color:#ff")));
    QVERIFY(main.contains(QStringLiteral(";border-radius:10px;border:1px solid; border-color:#ff")));
    QCOMPARE(child<QPushButton>(box, "confirm_btn")->styleSheet(), primary);
    QCOMPARE(child<QPushButton>(box, "cancel_btn")->styleSheet(), secondary);
    QCOMPARE(child<QPushButton>(box, "ok_btn")->styleSheet(), secondary);
    QCOMPARE(child<QLabel>(box, "tips_lab")->styleSheet(),
             QStringLiteral("background-color:rgba(0,0,0,0);color:%1;").arg(text));
    QVERIFY(close.startsWith(QStringLiteral("image:url(:/")) && close.endsWith(QStringLiteral("border:none;")));
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

void tst_popups::popupFrame()
{
    CPopupDialog plain(nullptr, false, false, false, false, false);
    QVERIFY(!plain.testAttribute(Qt::WA_DeleteOnClose) && plain.testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(child<QPushButton>(plain, "popwindCloseBtn") == nullptr);
    plain.setCloseButtonVisible(true); // has none
    plain.setTitleVisible(true);

    const QPointer<CPopupDialog> pFull = new CPopupDialog(nullptr, true, true, true, true, true);
    pFull->setWindowTitle(QStringLiteral("<b>Name</b>"));
    pFull->setTitleBarHeight(30);
    QVERIFY(child<QGridLayout>(*pFull, "main_layout") != nullptr);
    QVERIFY(child<QWidget>(*pFull, "wid_main")->styleSheet().contains(QStringLiteral(";border-radius:8px;border:1px")));
    pFull->showPopup();
    bool bTitle = false;
    for (const QLabel *pLabel : pFull->findChildren<QLabel *>())
        bTitle |= pLabel->text() == QStringLiteral("<b>Name</b>") && pLabel->isVisible();
    QVERIFY(bTitle);
    QTest::mouseClick(child<QPushButton>(*pFull, "popwindCloseBtn"), Qt::LeftButton);
    QTRY_VERIFY(pFull.isNull());
}

void tst_popups::progressPlaces()
{
    const TsProgressDialog dialog(nullptr);
    QCOMPARE(dialog.objectName(), QStringLiteral("TsProgressDialog"));
    QCOMPARE(dialog.size(), QSize(304, 142));
    QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
    const auto *pBar = dialog.findChild<QProgressBar *>();
    QCOMPARE(pBar->geometry(), QRect(30, 82, 244, 6));
    QCOMPARE(pBar->minimum(), 0);
    QCOMPARE(pBar->maximum(), 100);
    QVERIFY(!pBar->isTextVisible());
    const auto labels = dialog.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(labels.size(), 2);
    QCOMPARE(labels.at(0)->geometry(), QRect(0, 23, 304, 30));
    QCOMPARE(labels.at(1)->geometry(), QRect(0, 100, 304, 20));
    QCOMPARE(labels.at(1)->alignment(), Qt::AlignHCenter);
    QVERIFY(pBar->styleSheet().contains(QStringLiteral("border-radius:3px;text-align:center;} QProgressBar::chunk{")));
    for (const QWidget *pWidget : {static_cast<const QWidget *>(&dialog), static_cast<const QWidget *>(pBar)})
        QCOMPARE(pWidget->focusPolicy(), Qt::NoFocus);
}

void tst_popups::progressTitle_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("export") << QStringLiteral("Exporting");
    QTest::newRow("long") << QStringLiteral("Deleting files permanently");
    QTest::newRow("wider than the dialog") << QString(60, QLatin1Char('W'));
    QTest::newRow("empty") << QString();
}

void tst_popups::progressTitle()
{
    QFETCH(QString, title);
    TsProgressDialog dialog(nullptr);
    dialog.setTitle(title);
    QFont font;
    font.setPixelSize(16);
    const int nWidth = title.isEmpty() ? 0 : QFontMetrics(font).boundingRect(title).width();
    const auto *pLabel = dialog.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly).constFirst();
    QCOMPARE(pLabel->geometry(), QRect((304 - nWidth) / 2, 23, nWidth, 30));
    QCOMPARE(pLabel->text(), title);
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

void tst_popups::progressWithoutItsChildren()
{
    TsProgressDialog dialog(nullptr);
    qDeleteAll(dialog.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly));
    delete dialog.findChild<QProgressBar *>();
    dialog.setTitle(QStringLiteral("a"));
    dialog.setStatusText(QStringLiteral("b"));
    dialog.setValue(7);
    Q_EMIT TSSkinSetting::GetInstance()->signalThemeChanged();
}

void tst_popups::menuLook()
{
    TSCustomMenu menu(nullptr);
    QVERIFY(menu.testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(menu.windowFlags().testFlag(Qt::FramelessWindowHint));
    QCOMPARE(menu.windowType(), Qt::Popup);
    QCOMPARE(menu.styleSheet(), TSSkinSetting::GetInstance()->GetStyleSheet(QStringLiteral("menu")));
}

void tst_popups::methodOrder()
{
    QCOMPARE(methodNames(Box::staticMetaObject).join(QLatin1Char(' ')),
             QStringLiteral("signExecInThread signalResult on_confirm_btn_clicked on_ok_btn_clicked "
                            "on_cancel_btn_clicked on_btn_close_clicked slotExecInThread"));
    QCOMPARE(methodNames(TsProgressDialog::staticMetaObject).join(QLatin1Char(' ')),
             QStringLiteral("userCancle slotCloseBtnClicked"));
}

BIGIMGPREVIEW_TEST_MAIN(tst_popups)
#include "tst_popups.moc"
