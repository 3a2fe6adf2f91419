#include "PluginTest.h"
#include "common/CNotificationFloatingWidget.h"
#include "common/CircleBtn.h"
#include "common/CircleNumToolTip.h"
#include "common/TsLargerModeLoadingWidget.h"
#include "common/WaitNotice.h"
#include "image/TSBaseViewWidget.h"
#include "theme/TSSkinSetting.h"

#include <QFontMetrics>
#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <QVBoxLayout>

namespace {

/** Counts the paint events of a widget. */
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget *pWidget)
        : QObject(pWidget)
    {
        pWidget->installEventFilter(this);
    }
    int count = 0;

protected:
    bool eventFilter(QObject *, QEvent *pEvent) override
    {
        count += pEvent->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

class PlayingSurface : public TSBaseViewWidget {
public:
    using TSBaseViewWidget::TSBaseViewWidget;
    void startPlay() override {}
    void stopPlay() override {}
    void setViewRect(const QRectF &) override {}
    bool isPlaying() override { return false; }
    void viewMousePress(const QPointF &) override {}
};

} // namespace

class tst_common_widgets : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void noticeSizes_data();
    void noticeSizes();
    void noticeLifetime();
    void noticeColours();
    void noticesGoWithTheirParent();
    void loadingPlaces_data();
    void loadingPlaces();
    void loadingTurnsOnlyWhileShown();
    void smallControls();
    void playingSurface();
};

void tst_common_widgets::noticeSizes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("top"); // -1: not set
    QTest::addColumn<int>("parentWidth");
    QTest::newRow("short") << QStringLiteral("Done") << -1 << 400;
    QTest::newRow("warning") << QStringLiteral("Please wait!") << 20 << 401;
    QTest::newRow("empty") << QString() << 0 << 300;
    QTest::newRow("wider than the parent") << QString(60, QLatin1Char('W')) << -1 << 200;
    QTest::newRow("as wide as negative odd") << QString(40, QLatin1Char('W')) << 20 << 101;
}

void tst_common_widgets::noticeSizes()
{
    QFETCH(QString, text);
    QFETCH(int, top);
    QFETCH(int, parentWidth);
    QWidget parent;
    parent.resize(parentWidth, 300);
    parent.show();
    auto *pNotice = new CNotificationFloatingWidget(&parent);
    QCOMPARE(pNotice->size(), QSize(130, 28));
    pNotice->setContent(QStringLiteral("remind_error_icon.svg"), text);
    if (top >= 0)
        pNotice->setTop(top);
    pNotice->show();
    QFont font;
    font.setPixelSize(12);
    const int nText = text.isEmpty() ? 0 : QFontMetrics(font).boundingRect(text).width();
    QCOMPARE(pNotice->size(), QSize(nText + 40 + 12, 28));
    QCOMPARE(pNotice->pos(), QPoint((parentWidth - pNotice->width()) / 2, top < 0 ? 80 : top));
    QVERIFY(!pNotice->isWindow());
    for (const QLabel *pLabel : pNotice->findChildren<QLabel *>())
        QVERIFY(pNotice->rect().contains(pLabel->geometry()) || text.isEmpty());
}

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

void tst_common_widgets::noticeColours()
{
    QWidget parent;
    WaitNotice::showWarning(&parent, QStringLiteral("text"));
    auto *pNotice = parent.findChild<CNotificationFloatingWidget *>();
    const QString sheet = QStringLiteral("#floatingWidget{border-radius:6px;background:%1;}");
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    QCOMPARE(pNotice->styleSheet(), sheet.arg(pSkin->GetNotificationBackColor2().name(QColor::HexArgb)));
    const CNotificationFloatingWidget plain(&parent);
    QCOMPARE(plain.styleSheet(), sheet.arg(pSkin->GetNotificationBackColor1().name(QColor::HexArgb)));
    // The colour is really painted.
    parent.resize(300, 200);
    parent.show();
    pNotice->setBackgroundColor(Qt::magenta);
    QCOMPARE(parent.grab().toImage().pixelColor(pNotice->geometry().center().x(), pNotice->y() + 2),
             QColor(Qt::magenta));
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

void tst_common_widgets::loadingPlaces_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("large") << QSize(800, 600);
    QTest::newRow("odd") << QSize(801, 601);
    QTest::newRow("smaller than the ring") << QSize(51, 31);
}

void tst_common_widgets::loadingPlaces()
{
    QFETCH(QSize, size);
    QWidget parent;
    TsLargerModeLoadingWidget loading(76, 36, 43, &parent);
    QVERIFY(loading.parentWidget() == nullptr);
    loading.resize(size);
    loading.grab();
    const int nW = size.width();
    const int nH = size.height();
    const auto labels = loading.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(labels.size(), 3);
    QCOMPARE(labels.at(0)->geometry(), QRect((nW - 76) / 2, (nH - 76) / 2, 76, 76));
    QCOMPARE(labels.at(1)->geometry(), QRect((nW - 36) / 2, (nH - 43) / 2, 36, 43));
    QCOMPARE(labels.at(2)->geometry(), QRect((nW - 98) / 2, (nH - 14) / 2 + 76 + 16, 98, 14));
    QVERIFY(labels.at(0)->pixmap(Qt::ReturnByValue).size() == QSize(76, 76) * TSSkinSetting::GetInstance()->GetDpi());
    QVERIFY(!labels.at(1)->pixmap(Qt::ReturnByValue).isNull());
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

void tst_common_widgets::smallControls()
{
    QWidget parent;
    parent.resize(100, 100);
    CircleBtn button(&parent, 26, 26);
    QCOMPARE(button.size(), QSize(26, 26));
    QVERIFY(button.isFlat());
    QVERIFY(button.parentWidget() == &parent && !button.isWindow());
    QCOMPARE(button.focusPolicy(), Qt::NoFocus); // keys stay with the preview
    button.setIcons(QStringLiteral("preview_back_normal.svg"), QStringLiteral("preview_back_select.svg"));
    parent.show();
    QSet<QRgb> colours;
    const QImage icon = button.grab().toImage();
    for (int y = 0; y < icon.height(); ++y) {
        for (int x = 0; x < icon.width(); ++x)
            colours.insert(icon.pixel(x, y));
    }
    QVERIFY2(colours.size() > 2, "the icon is drawn");

    CircleNumToolTip badge(&parent);
    badge.setText(QStringLiteral("7"));
    QCOMPARE(badge.size(), QSize(16, 16));
    QVERIFY(!badge.isWindow());
    QCOMPARE(badge.findChild<QLabel *>()->geometry(), QRect(0, 0, 16, 16));
    QVERIFY(badge.testAttribute(Qt::WA_TranslucentBackground));
}

void tst_common_widgets::playingSurface()
{
    QWidget parent;
    auto pSurface = std::make_unique<PlayingSurface>(&parent);
    QCOMPARE(pSurface->objectName(), QStringLiteral("TSBaseViewWidget"));
    QCOMPARE(pSurface->size(), QSize(400, 300));
    QCOMPARE(pSurface->windowTitle(), QStringLiteral("TSBaseViewWidget"));
    pSurface.reset();
    QVERIFY(log().hasLine(QStringLiteral("TSBaseViewWidget::~destory();")));
}

BIGIMGPREVIEW_TEST_MAIN(tst_common_widgets)
#include "tst_common_widgets.moc"
