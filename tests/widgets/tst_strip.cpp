#include "PluginTest.h"
#include "WidgetEvents.h"
#include "common/TSScrollBar.h"
#include "preview/PreviewLeftWin.h"
#include "theme/TSSkinSetting.h"

#include <QPainter>

using RecordChange = std::function<void(FakeFileInfo &)>;
Q_DECLARE_METATYPE(RecordChange)

namespace {

void sendEvent(QWidget *pWidget, QEvent::Type type)
{
    QEvent event(type);
    QCoreApplication::sendEvent(pWidget, &event);
}

} // namespace

class tst_strip : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void reload()
    {
        // The file that is shown, and its row: none, one, one of few, one that is not listed, one far down.
        const std::tuple<int, qint64, int> rows[] = {
            {0, -1, -1}, {1, 1, 0}, {9, 5, 4}, {9, 50, -1}, {5000, 4321, 4320}};
        for (const auto &[nFiles, nCurrent, nRow] : rows) {
            makeStrip(nFiles, nCurrent);
            const QModelIndexList selection = m_pStrip->selectionModel()->selectedIndexes();
            QCOMPARE(selection.isEmpty() ? -1 : selection.first().row(), nRow);
            QCOMPARE(m_pShown->count(), nRow < 0 ? 0 : 1);
            if (nRow < 0)
                continue;
            QCOMPARE(m_pShown->first(), (QVariantList{nRow + 1, nFiles, nCurrent}));
            QVERIFY(m_pStrip->viewport()->rect().contains(itemRect(nRow).center()));
            m_pStrip->reload();
            QCOMPARE(m_pShown->count(), 2);
            QCOMPARE(m_pStrip->currentIndex().row(), nRow);
        }
    }

    /** A file chosen by key is shown exactly as one chosen by a click. */
    void keysAndClicks()
    {
        makeStrip(50, 1);
        const auto last = [this] {
            const QVariantList arguments = m_pShown->takeLast();
            m_pShown->clear();
            return arguments;
        };
        QTest::mouseClick(m_pStrip->viewport(), Qt::LeftButton, Qt::NoModifier, itemRect(2).center());
        QCOMPARE(last(), (QVariantList{3, 50, 3LL}));
        const QVector<std::pair<Qt::Key, int>> keys = {
            {Qt::Key_Down, 4}, {Qt::Key_Up, 3}, {Qt::Key_End, 50}, {Qt::Key_Home, 1}};
        for (const auto &[key, nPosition] : keys) {
            QTest::keyClick(m_pStrip.get(), key);
            QCOMPARE(last(), (QVariantList{nPosition, 50, qint64(nPosition)}));
        }
        QTest::keyClick(m_pStrip.get(), Qt::Key_Up);
        QVERIFY(m_pShown->isEmpty());
        // What is on show keeps its frame.
        QTest::mouseClick(m_pStrip->viewport(), Qt::LeftButton, Qt::ControlModifier, itemRect(0).center());
        QTest::keyClick(m_pStrip.get(), Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(m_pStrip->selectionModel()->selectedIndexes(), QModelIndexList{m_pStrip->model()->index(0, 0)});
        QVERIFY(m_pShown->isEmpty());
    }

    /** The selected item is large, but only while the mouse rests on no other. */
    void boxes()
    {
        makeStrip(3, 2);
        grab();
        host().cache->requests.clear();
        grab();
        QCOMPARE(requestedKeys(),
                 (QStringList{QStringLiteral("1@74x74"), QStringLiteral("2@96x96"), QStringLiteral("3@74x74")}));
        hover(m_pStrip->viewport(), itemRect(2).center());
        host().cache->requests.clear();
        grab();
        QCOMPARE(requestedKeys(),
                 (QStringList{QStringLiteral("1@74x74"), QStringLiteral("2@74x74"), QStringLiteral("3@96x96")}));
        hover(m_pStrip->viewport(), QPoint(70, 450)); // below the last item
        QVERIFY(!m_pStrip->hoveredIndex().isValid());
        hover(m_pStrip->viewport(), itemRect(0).center());
        QCOMPARE(m_pStrip->hoveredIndex().row(), 0);
        sendEvent(m_pStrip.get(), QEvent::Leave);
        QVERIFY(!m_pStrip->hoveredIndex().isValid());
    }

    void painting_data()
    {
        // thumbnail: invalid: there is none
        // color: invalid: whatever shines through
        const auto row = columns<RecordChange, QColor, QColor>("change", "thumbnail", "color");
        const QColor none, green(Qt::darkGreen), main = TSSkinSetting::GetInstance()->GetMainColor();
        const auto withoutPicture = [](bool bMissing, bool bPictureType) {
            return RecordChange([bMissing, bPictureType](FakeFileInfo &file) {
                file.cachePicture = false;
                file.missing = bMissing;
                file.picture = bPictureType;
            });
        };
        const RecordChange usual = [](FakeFileInfo &) {
        };
        const RecordChange gone = [](FakeFileInfo &file) {
            file.missing = true;
        };
        const RecordChange backed = [](FakeFileInfo &file) {
            file.kind = 3;
        };
        row("thumbnail", usual, green, green);
        row("thumbnail of a missing file", gone, green, green);
        row("see-through", usual, Qt::transparent, none);
        row("see-through, backed", backed, Qt::transparent, QColor(162, 171, 195));
        row("missing", withoutPicture(true, true), green, QColor(0x6A, 0x74, 0x8B));
        row("picture type", withoutPicture(false, true), green, QColor(0xE6, 0xE6, 0xE6));
        row("other type", withoutPicture(false, false), green, main);
        row("not yet there", usual, none, none);
    }

    void painting()
    {
        const auto [change, thumbnail, color] = currentRow<RecordChange, QColor, QColor>();
        const QImage picture = plainImage(QSize(96, 96), thumbnail, QImage::Format_ARGB32);
        if (thumbnail.isValid())
            host().cache->pictures.insert(QStringLiteral("1@96x96"), picture);
        makeStrip(1, 1, change);
        const QRect item = itemRect(0);
        // Off the middle, where texts and marks are, and off the round corners.
        const QPoint inside(item.center().x(), item.top() + 10);
        const QColor outside = grab().pixelColor(item.left() + 4, item.center().y());
        QCOMPARE(grab().pixelColor(inside).name(), color.isValid() ? color.name() : outside.name());
        // Where there will be none, and where there is no cache at all.
        const QColor main = TSSkinSetting::GetInstance()->GetMainColor();
        if (!thumbnail.isValid()) {
            host().cache->missing = ITSCacheManager::Unavailable;
            QCOMPARE(grab().pixelColor(inside).name(), main.name());
            host().base.cache.reset();
            attachHost();
            QCOMPARE(grab().pixelColor(inside).name(), main.name());
        }
    }

    /** Until the thumbnail of the size comes, what is known of the other size is shown. */
    void standIns()
    {
        makeStrip(3, 1);
        const QImage picture = plainImage(QSize(20, 20), Qt::darkGreen);
        host().cache->pictures.insert(QStringLiteral("2@74x74"), picture);
        host().cache->failed.insert(QStringLiteral("3@74x74"));
        for (const int nRow : {1, 2}) {
            hover(m_pStrip->viewport(), itemRect(nRow).center());
            host().cache->requests.clear();
            // On the edge of the large box, where the small one does not reach.
            const QColor edge = grab().pixelColor(itemRect(nRow).center().x(), itemRect(nRow).top() + 3);
            QCOMPARE(edge.name(),
                     (nRow == 1 ? QColor(Qt::darkGreen) : TSSkinSetting::GetInstance()->GetMainColor()).name());
            QVERIFY(requestedKeys().contains(QStringLiteral("%1@96x96").arg(nRow + 1)));
        }
    }

    /** Thumbnails answered late, twice, in vain and with keys that nobody asked for. */
    void pendingKeys()
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
        QTest::qWait(200); // Windows paints once more when a window has become the active one
        settle();
        QVERIFY(host().cache->hasListeners());
        const QImage picture = plainImage(QSize(8, 8), Qt::red);
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

    void answersInsideTheRequest()
    {
        host().cache->answersAtOnce = true;
        makeStrip(4, 1);
        grab();
        QVERIFY(!host().cache->hasListeners());
        QCOMPARE(grab().pixelColor(itemRect(1).center()).name(), QColor(Qt::darkGreen).name());
    }

    void scrollBarComesWithTheMouse()
    {
        makeStrip(100, 1);
        auto *pBar = m_pStrip->findChild<TSScrollBar *>();
        QScrollBar *pArea = m_pStrip->verticalScrollBar();
        QTRY_VERIFY(pBar->maximum() > 0);
        QVERIFY(!pBar->isVisible() && !pArea->isVisible());
        QVERIFY(pBar->minimum() == 0 && pBar->maximum() == pArea->maximum() && pBar->pageStep() == pArea->pageStep());
        pArea->setValue(20);
        QCOMPARE(pBar->value(), 20);
        pBar->setValue(33);
        QCOMPARE(pArea->value(), 33);
        sendEvent(m_pStrip.get(), QEvent::Enter);
        QVERIFY(pBar->isVisible());
        // Back before it has faded out: it stays.
        sendEvent(m_pStrip.get(), QEvent::Leave);
        sendEvent(m_pStrip.get(), QEvent::Enter);
        QTest::qWait(200);
        QVERIFY(pBar->isVisible());
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
    void idle()
    {
        makeStrip(1000, 500);
        QTest::qWait(300);
        PaintCounter paints(m_pStrip->viewport());
        const int nRequests = host().cache->requests.size();
        QTest::qWait(300);
        QCOMPARE(paints.count, 0);
        QCOMPARE(host().cache->requests.size(), nRequests);
        // Each painting asks, and platforms differ in how often they paint a new window.
        QVERIFY2(requestedKeys().toSet().size() < 10, "only what is in view is asked for");
    }

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
        QImage picture = plainImage(m_pStrip->viewport()->size(), Qt::black);
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

BIGIMGPREVIEW_TEST_MAIN(tst_strip)
#include "tst_strip.moc"
