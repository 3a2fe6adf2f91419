#include "PluginTest.h"
#include "common/TSScrollBar.h"
#include "preview/PreviewLeftNumWin.h"
#include "preview/PreviewLeftWin.h"
#include "preview/PreviewLeftWinModel.h"
#include "theme/TSSkinSetting.h"

#include <QGraphicsOpacityEffect>
#include <QPainter>
#include <QSignalSpy>

using RecordChange = std::function<void(FakeFileInfo &)>;
Q_DECLARE_METATYPE(RecordChange)

namespace {

/** Counts the paint events of one widget. */
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget *pWidget) { pWidget->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *pEvent) override
    {
        count += pEvent->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;
};

void sendMove(QWidget *pWidget, const QPoint &position)
{
    QMouseEvent event(QEvent::MouseMove, position, pWidget->mapToGlobal(position), Qt::NoButton, Qt::NoButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(pWidget, &event);
}

void sendEvent(QWidget *pWidget, QEvent::Type type)
{
    QEvent event(type);
    QCoreApplication::sendEvent(pWidget, &event);
}

} // namespace

class tst_strip : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void model();
    void reload_data();
    void reload();
    void steps_data();
    void steps();
    void keysAndClicks();
    void boxes();
    void painting_data();
    void painting();
    void opacityAndFrame();
    void standIns();
    void pendingKeys();
    void answersInsideTheRequest();
    void counter();
    void scrollBarFollows();
    void scrollBarComesWithTheMouse();
    void idle();

protected:
    void cleanup() override
    {
        m_pStrip.reset();
        TSSkinSetting::GetInstance()->SetTheme(TSSkinSetting::DarkTheme);
        PluginTest::cleanup();
    }

private:
    /** Files 1 to nFiles, of which nCurrent is shown. */
    void makeStrip(int nFiles, qint64 nCurrent, const RecordChange &change = {})
    {
        QVector<qint64> ids;
        for (qint64 nId = 1; nId <= nFiles; ++nId) {
            const auto pFile = host().addFile(nId, 10, QStringLiteral("/%1.png").arg(nId));
            pFile->cachePicture = true;
            if (change)
                change(*pFile);
            ids.append(nId);
        }
        openFiles(ids, nCurrent);
        m_pStrip = std::make_unique<PreviewLeftWin>(nullptr);
        m_pShown = std::make_unique<QSignalSpy>(m_pStrip.get(), &PreviewLeftWin::SigShowResource);
        m_pStrip->resize(140, 500);
        m_pStrip->show();
        m_pStrip->reload();
        QVERIFY(QTest::qWaitForWindowExposed(m_pStrip.get()));
    }
    QRect itemRect(int nRow) const { return m_pStrip->visualRect(m_pStrip->model()->index(nRow, 0)); }
    /** What the items paint, on black. */
    QImage grab() const
    {
        QImage picture(m_pStrip->viewport()->size(), QImage::Format_RGB32);
        picture.fill(Qt::black);
        QPainter painter(&picture);
        painter.drawPixmap(0, 0, m_pStrip->viewport()->grab());
        return picture;
    }
    QStringList requestedKeys()
    {
        QStringList keys;
        for (const ThumbnailRequest &request : qAsConst(host().cache->requests))
            keys.append(request.cacheKey);
        return keys;
    }

    std::unique_ptr<PreviewLeftWin> m_pStrip;
    std::unique_ptr<QSignalSpy> m_pShown;
};

void tst_strip::model()
{
    const auto pFile = host().addFile(7, 10, QStringLiteral("/7.png"));
    openFiles({7, 8}, 7);
    PreviewLeftWinModel model(nullptr);
    QCOMPARE(model.rowCount(), 0);
    model.setList();
    QCOMPARE(model.rowCount(), 1); // the host knows no file 8
    const QVariant value = model.data(model.index(0, 0), 257);
    QCOMPARE(value.typeName(), "QSharedPointer<const IFileInfo>");
    QCOMPARE(value.value<FileInfoPtr>(), FileInfoPtr(pFile));
    for (const int nRole : {int(Qt::DisplayRole), int(Qt::SizeHintRole), 256, 258})
        QVERIFY(!model.data(model.index(0, 0), nRole).isValid());
    QVERIFY(!model.data(model.index(1, 0), 257).isValid());
    QVERIFY(!model.data(QModelIndex(), 257).isValid());
    model.clear();
    QCOMPARE(model.rowCount(), 0);
}

void tst_strip::reload_data()
{
    QTest::addColumn<int>("files");
    QTest::addColumn<qint64>("current");
    QTest::addColumn<int>("row");
    QTest::newRow("empty") << 0 << -1LL << -1;
    QTest::newRow("one file") << 1 << 1LL << 0;
    QTest::newRow("the middle one") << 9 << 5LL << 4;
    QTest::newRow("a file that is not listed") << 9 << 50LL << -1;
    QTest::newRow("far down") << 5000 << 4321LL << 4320;
}

void tst_strip::reload()
{
    QFETCH(int, files);
    QFETCH(qint64, current);
    QFETCH(int, row);
    makeStrip(files, current);
    const QModelIndexList selection = m_pStrip->selectionModel()->selectedIndexes();
    QCOMPARE(selection.isEmpty() ? -1 : selection.first().row(), row);
    QCOMPARE(m_pShown->count(), row < 0 ? 0 : 1);
    if (row < 0)
        return;
    QCOMPARE(m_pShown->first(), (QVariantList{row + 1, files, current}));
    QVERIFY(m_pStrip->viewport()->rect().contains(itemRect(row).center()));
    QCOMPARE(itemRect(row).height(), 96);
    m_pStrip->reload();
    QCOMPARE(m_pShown->count(), 2);
    QCOMPARE(m_pStrip->currentIndex().row(), row);
}

void tst_strip::steps_data()
{
    QTest::addColumn<int>("files");
    QTest::addColumn<int>("start");
    QTest::addColumn<bool>("next");
    QTest::addColumn<int>("expected");
    QTest::newRow("next") << 3 << 1 << true << 2;
    QTest::newRow("previous") << 3 << 2 << false << 1;
    QTest::newRow("next on the last") << 3 << 3 << true << 0;
    QTest::newRow("previous on the first") << 3 << 1 << false << 0;
    QTest::newRow("next of one") << 1 << 1 << true << 0;
    QTest::newRow("previous of one") << 1 << 1 << false << 0;
    QTest::newRow("next of none") << 0 << -1 << true << 0;
    QTest::newRow("previous of none") << 0 << -1 << false << 0;
}

void tst_strip::steps()
{
    QFETCH(int, files);
    QFETCH(int, start);
    QFETCH(bool, next);
    QFETCH(int, expected);
    makeStrip(files, start);
    m_pShown->clear();
    if (next)
        m_pStrip->selectNext();
    else
        m_pStrip->selectPrevious();
    QCOMPARE(m_pShown->count(), expected == 0 ? 0 : 1);
    if (expected != 0) {
        QCOMPARE(m_pShown->first(), (QVariantList{expected, files, qint64(expected)}));
        QCOMPARE(data()->currentFileId(), qint64(expected));
        QCOMPARE(data()->indexOfCurrent(), expected - 1);
    }
}

/** A file chosen by key is shown exactly as one chosen by a click. */
void tst_strip::keysAndClicks()
{
    makeStrip(50, 1);
    const auto last = [this] {
        const QVariantList arguments = m_pShown->takeLast();
        m_pShown->clear();
        return arguments;
    };
    QTest::mouseClick(m_pStrip->viewport(), Qt::LeftButton, Qt::NoModifier, itemRect(2).center());
    QCOMPARE(last(), (QVariantList{3, 50, 3LL}));
    QTest::keyClick(m_pStrip.get(), Qt::Key_Down);
    QCOMPARE(last(), (QVariantList{4, 50, 4LL}));
    QTest::keyClick(m_pStrip.get(), Qt::Key_Up);
    QCOMPARE(last(), (QVariantList{3, 50, 3LL}));
    QTest::keyClick(m_pStrip.get(), Qt::Key_End);
    QCOMPARE(last(), (QVariantList{50, 50, 50LL}));
    QTest::keyClick(m_pStrip.get(), Qt::Key_Home);
    QCOMPARE(last(), (QVariantList{1, 50, 1LL}));
    QTest::keyClick(m_pStrip.get(), Qt::Key_Up);
    QVERIFY(m_pShown->isEmpty());
    // What is on show keeps its frame.
    QTest::mouseClick(m_pStrip->viewport(), Qt::LeftButton, Qt::ControlModifier, itemRect(0).center());
    QTest::keyClick(m_pStrip.get(), Qt::Key_Space, Qt::ControlModifier);
    QCOMPARE(m_pStrip->selectionModel()->selectedIndexes(), QModelIndexList{m_pStrip->model()->index(0, 0)});
    QVERIFY(m_pShown->isEmpty());
}

/** The selected item is large, but only while the mouse rests on no other. */
void tst_strip::boxes()
{
    makeStrip(3, 2);
    grab();
    host().cache->requests.clear();
    grab();
    QCOMPARE(requestedKeys(),
             (QStringList{QStringLiteral("1@74x74"), QStringLiteral("2@96x96"), QStringLiteral("3@74x74")}));
    sendMove(m_pStrip->viewport(), itemRect(2).center());
    host().cache->requests.clear();
    grab();
    QCOMPARE(requestedKeys(),
             (QStringList{QStringLiteral("1@74x74"), QStringLiteral("2@74x74"), QStringLiteral("3@96x96")}));
    sendMove(m_pStrip->viewport(), QPoint(70, 450)); // below the last item
    QVERIFY(!m_pStrip->hoveredIndex().isValid());
    sendMove(m_pStrip->viewport(), itemRect(0).center());
    QCOMPARE(m_pStrip->hoveredIndex().row(), 0);
    sendEvent(m_pStrip.get(), QEvent::Leave);
    QVERIFY(!m_pStrip->hoveredIndex().isValid());
}

void tst_strip::painting_data()
{
    QTest::addColumn<RecordChange>("change");
    QTest::addColumn<HostChange>("hostChange");
    QTest::addColumn<QColor>("color");
    const QColor none; // whatever shines through
    const HostChange usual = [](FakeHost &host) {
        QImage picture(20, 20, QImage::Format_RGB32);
        picture.fill(Qt::darkGreen);
        host.cache->pictures.insert(QStringLiteral("1@96x96"), picture);
    };
    const HostChange clear = [](FakeHost &host) {
        QImage picture(96, 96, QImage::Format_ARGB32);
        picture.fill(Qt::transparent);
        host.cache->pictures.insert(QStringLiteral("1@96x96"), picture);
    };
    const RecordChange plain = [](FakeFileInfo &) {
    };
    const RecordChange noPicture = [](FakeFileInfo &file) {
        file.cachePicture = false;
    };
    const RecordChange missing = [](FakeFileInfo &file) {
        file.cachePicture = false;
        file.missing = file.picture = true;
    };
    const RecordChange pictureType = [](FakeFileInfo &file) {
        file.cachePicture = false;
        file.picture = true;
    };
    const RecordChange backed = [](FakeFileInfo &file) {
        file.kind = 3;
    };
    const QColor main = TSSkinSetting::GetInstance()->GetMainColor();
    QTest::newRow("thumbnail") << plain << usual << QColor(Qt::darkGreen);
    QTest::newRow("thumbnail of a missing file")
        << RecordChange([](FakeFileInfo &file) { file.missing = true; }) << usual << QColor(Qt::darkGreen);
    QTest::newRow("see-through") << plain << clear << none;
    QTest::newRow("see-through, backed") << backed << clear << QColor(162, 171, 195);
    QTest::newRow("missing") << missing << usual << QColor(0x6A, 0x74, 0x8B);
    QTest::newRow("picture type") << pictureType << usual << QColor(0xE6, 0xE6, 0xE6);
    QTest::newRow("other type") << noPicture << usual << main;
    QTest::newRow("not yet there") << plain << HostChange([](FakeHost &) {}) << none;
    QTest::newRow("never there") << plain << HostChange([](FakeHost &host) {
        host.cache->missing = ITSCacheManager::Unavailable;
    }) << main;
    QTest::newRow("no cache") << plain << HostChange([](FakeHost &host) { host.base.cache.reset(); }) << main;
}

void tst_strip::painting()
{
    QFETCH(RecordChange, change);
    QFETCH(HostChange, hostChange);
    QFETCH(QColor, color);
    hostChange(host());
    makeStrip(1, 1, change);
    const QRect item = itemRect(0);
    const QImage picture = grab();
    const QColor outside = picture.pixelColor(item.left() + 4, item.center().y());
    // Off the middle, where texts and marks are, and off the round corners.
    const QColor inside = picture.pixelColor(item.center().x(), item.top() + 10);
    QCOMPARE(inside.name(), color.isValid() ? color.name() : outside.name());
}

void tst_strip::opacityAndFrame()
{
    makeStrip(2, 1, [](FakeFileInfo &file) { file.unavailable = file.id == 2; });
    host().cache->missing = ITSCacheManager::Unavailable;
    const QImage picture = grab();
    const QColor main = TSSkinSetting::GetInstance()->GetMainColor();
    const QRect selected = itemRect(0);
    const QRect dimmed = itemRect(1);
    QCOMPARE(picture.pixelColor(selected.center().x() - 48 - 1, selected.center().y()).name(),
             TSSkinSetting::GetInstance()->GetCommonColor(0).name());
    const QColor ground = picture.pixelColor(dimmed.left() + 4, dimmed.center().y());
    const QColor inside = picture.pixelColor(dimmed.center().x(), dimmed.top() + 20);
    const auto mixed = [](int nFront, int nBack) {
        return qRound(nFront * 0.3 + nBack * 0.7);
    };
    QVERIFY(qAbs(inside.red() - mixed(main.red(), ground.red())) <= 2);
    QVERIFY(qAbs(inside.blue() - mixed(main.blue(), ground.blue())) <= 2);
}

/** Until the thumbnail of the size comes, what is known of the other size is shown. */
void tst_strip::standIns()
{
    makeStrip(3, 1);
    QImage picture(20, 20, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    host().cache->pictures.insert(QStringLiteral("2@74x74"), picture);
    host().cache->failed.insert(QStringLiteral("3@74x74"));
    for (const int nRow : {1, 2}) {
        sendMove(m_pStrip->viewport(), itemRect(nRow).center());
        host().cache->requests.clear();
        // On the edge of the large box, where the small one does not reach.
        const QColor edge = grab().pixelColor(itemRect(nRow).center().x(), itemRect(nRow).top() + 3);
        QCOMPARE(edge.name(),
                 (nRow == 1 ? QColor(Qt::darkGreen) : TSSkinSetting::GetInstance()->GetMainColor()).name());
        QVERIFY(requestedKeys().contains(QStringLiteral("%1@96x96").arg(nRow + 1)));
    }
}

/** Thumbnails answered late, twice, in vain and with keys that nobody asked for. */
void tst_strip::pendingKeys()
{
    makeStrip(3, 1);
    PaintCounter paints(m_pStrip->viewport());
    const auto settle = [&paints] {
        QCoreApplication::processEvents();
        const int nCount = paints.count;
        paints.count = 0;
        return nCount;
    };
    grab();
    settle();
    QVERIFY(host().cache->hasListeners());
    QImage picture(8, 8, QImage::Format_RGB32);
    picture.fill(Qt::red);
    host().cache->finish(QStringLiteral("9@74x74"), picture);
    QCOMPARE(settle(), 0);
    host().cache->finish(QStringLiteral("1@96x96"), picture);
    QCOMPARE(settle(), 1);
    host().cache->finish(QStringLiteral("1@96x96"), picture); // again
    QCOMPARE(settle(), 0);
    host().cache->finish(QStringLiteral("2@74x74"), QImage()); // in vain
    QCOMPARE(settle(), 0);
    QVERIFY(host().cache->hasListeners());
    host().cache->finish(QStringLiteral("3@74x74"), picture);
    QVERIFY(!host().cache->hasListeners());
    settle();
    // What failed is asked for again when it is next painted, and listened to again.
    host().cache->requests.clear();
    grab();
    QCOMPARE(requestedKeys(), QStringList{QStringLiteral("2@74x74")});
    QCOMPARE(host().cache->requests.first().dpi, TSSkinSetting::GetInstance()->GetDpi());
    QVERIFY(host().cache->hasListeners());
    // An answer after the strip has gone.
    m_pStrip.reset();
    QVERIFY(!host().cache->hasListeners());
    host().cache->finish(QStringLiteral("2@74x74"), picture);
}

void tst_strip::answersInsideTheRequest()
{
    host().cache->answersAtOnce = true;
    makeStrip(4, 1);
    grab();
    QVERIFY(!host().cache->hasListeners());
    QCOMPARE(grab().pixelColor(itemRect(1).center()).name(), QColor(Qt::darkGreen).name());
}

void tst_strip::counter()
{
    PreviewLeftNumWin counter(nullptr);
    QCOMPARE(counter.height(), 82);
    counter.resize(140, 82);
    const QImage before = counter.grab().toImage();
    counter.setNumbers(3, 12);
    const QImage after = counter.grab().toImage();
    QVERIFY(before != after);
    // Nothing above the text, and the text at the top of what remains.
    QCOMPARE(after.copy(0, 0, 140, 14), before.copy(0, 0, 140, 14));
    QCOMPARE(after.copy(0, 40, 140, 42), before.copy(0, 40, 140, 42));
    counter.setNumbers(0, 0);
    QCOMPARE(counter.grab().toImage(), before);
}

void tst_strip::scrollBarFollows()
{
    makeStrip(100, 1);
    auto *pBar = m_pStrip->findChild<TSScrollBar *>();
    QScrollBar *pArea = m_pStrip->verticalScrollBar();
    QVERIFY(!pArea->isVisible());
    QTRY_VERIFY(pArea->maximum() > 0);
    QCOMPARE(pBar->minimum(), 0);
    QCOMPARE(pBar->maximum(), pArea->maximum());
    QCOMPARE(pBar->pageStep(), pArea->pageStep());
    pArea->setValue(20);
    QCOMPARE(pBar->value(), 20);
    pBar->setValue(33);
    QCOMPARE(pArea->value(), 33);
    QCOMPARE(pBar->geometry(), QRect(140 - 9, 1, 5, 498));
    m_pStrip->resize(200, 300);
    QCOMPARE(pBar->geometry(), QRect(200 - 9, 1, 5, 298));
    pBar->slot_rangeChanged(5, 40);
    QCOMPARE(pBar->minimum(), 0);
    QCOMPARE(pBar->maximum(), 40);
}

void tst_strip::scrollBarComesWithTheMouse()
{
    makeStrip(100, 1);
    auto *pBar = m_pStrip->findChild<TSScrollBar *>();
    auto *pEffect = static_cast<QGraphicsOpacityEffect *>(pBar->graphicsEffect());
    QTRY_VERIFY(pBar->maximum() > 0);
    QVERIFY(!pBar->isVisible());
    sendEvent(m_pStrip.get(), QEvent::Enter);
    QVERIFY(pBar->isVisible());
    QTRY_COMPARE(pEffect->opacity(), 0.6);
    sendEvent(pBar, QEvent::Enter);
    QTRY_COMPARE(pEffect->opacity(), 1.0);
    QCOMPARE(pBar->width(), 5);
    sendEvent(pBar, QEvent::Leave);
    QTRY_COMPARE(pEffect->opacity(), 0.6);
    // Back before it has faded out: it stays.
    sendEvent(m_pStrip.get(), QEvent::Leave);
    sendEvent(m_pStrip.get(), QEvent::Enter);
    QTest::qWait(200);
    QVERIFY(pBar->isVisible());
    QCOMPARE(pEffect->opacity(), 0.6);
    sendEvent(m_pStrip.get(), QEvent::Leave);
    QTRY_VERIFY(!pBar->isVisible());
    // Nothing to scroll: it stays away.
    openFiles({1, 2}, 1);
    m_pStrip->reload();
    QTRY_COMPARE(pBar->maximum(), 0);
    sendEvent(m_pStrip.get(), QEvent::Enter);
    QVERIFY(!pBar->isVisible());
}

/** Nothing is painted and nothing asked while nothing moves, waiting requests or not. */
void tst_strip::idle()
{
    makeStrip(1000, 500);
    QTest::qWait(300);
    PaintCounter paints(m_pStrip->viewport());
    const int nRequests = host().cache->requests.size();
    QTest::qWait(300);
    QCOMPARE(paints.count, 0);
    QCOMPARE(host().cache->requests.size(), nRequests);
    QVERIFY2(nRequests < 60, "only what is in view is asked for");
}

BIGIMGPREVIEW_TEST_MAIN(tst_strip)
#include "tst_strip.moc"
