#include "FakeServices.h"
#include "HostRecords.h"
#include "TestMain.h"
#include "app/FileGridModel.h"
#include "app/FileGridView.h"
#include "app/ThumbnailSource.h"

#include <ctime>

/** Order, merging and selection of the grid, and what it asks of the thumbnail cache. */
class HostGridTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void ordersFiles()
    {
        FileGridModel model;
        model.addRecords({makeRecord(1, QStringLiteral("b10.jpg"), 5), makeRecord(2, QStringLiteral("B9.jpg"), 9)});
        model.addRecords({makeRecord(3, QStringLiteral("a.jpg"), 7)});
        QTRY_COMPARE(model.rowCount(), 3);
        QCOMPARE(names(model),
                 QStringList({QStringLiteral("a.jpg"), QStringLiteral("B9.jpg"), QStringLiteral("b10.jpg")}));
        QCOMPARE(model.rowOf(1), 2);
        model.setOrder(FileGridModel::Order::NewestFirst);
        QCOMPARE(model.fileIds(), QVector<qint64>({2, 3, 1}));
        QCOMPARE(model.rowOf(1), 2);
        model.removeFiles({3, 77});
        QCOMPARE(model.fileIds(), QVector<qint64>({2, 1}));
        QCOMPARE(model.rowOf(3), -1);
    }

    void filtersFiles_data()
    {
        const auto add = columns<QString, int, int, QVector<qint64>>("text", "nKind", "nLabelId", "wanted");
        using FileTypes::Kind;
        const auto row = [&add](const char *pName, const char *pText, Kind kind, int nLabelId,
                                const QVector<qint64> &wanted) {
            add(pName, pText, int(kind), nLabelId, wanted);
        };
        row("everything", "", Kind::Any, 0, {1, 2, 3});
        row("by name, any case", "BEACH", Kind::Any, 0, {1});
        row("by label", "sun", Kind::Any, 0, {2});
        row("all words, in any order", "jpg beach", Kind::Any, 0, {1});
        row("words in name and label", "hill sun", Kind::Any, 0, {2});
        row("no such word", "beach hill", Kind::Any, 0, {});
        row("kind", "", Kind::Video, 0, {3});
        row("one label", "", Kind::Any, 7, {2});
        row("label and kind", "", Kind::Video, 7, {});
    }

    void filtersFiles()
    {
        const auto [text, nKind, nLabelId, wanted] = currentRow<QString, int, int, QVector<qint64>>();
        FileGridModel model;
        const FileRecordPtr pLabelled =
            makeRecord(2, QStringLiteral("hill.jpg"))
                ->withAnnotations({{}, {TagRecordPtr(new TagRecord{7, QStringLiteral("sunny")})}});
        FileRow video;
        video.id = 3;
        video.name = QStringLiteral("wave.mp4");
        video.nType = FileTypes::typeOfSuffix(QStringLiteral("mp4"));
        const FileRecordPtr pVideo(new FileRecord(video, {}, fileNameCollator().sortKey(video.name), {}));
        model.addRecords({makeRecord(1, QStringLiteral("beach.jpg")), pLabelled, pVideo});
        model.setFilter({QString(), text, FileTypes::Kind(nKind), quint64(nLabelId)});
        QCOMPARE(model.fileIds(), wanted);
        QCOMPARE(model.totalCount(), 3);
        QCOMPARE(model.labelUses().value(7), 1);
        // What arrives later is filtered as well.
        model.addRecords({makeRecord(4, QStringLiteral("a beach.jpg"))});
        QTRY_VERIFY(model.isArranged());
        QCOMPARE(model.rowOf(4) >= 0, text.isEmpty() ? nKind == 0 && nLabelId == 0 : wanted == QVector<qint64>{1});
    }

    void arrangesManyFilesAside()
    {
        constexpr int k_nFiles = 5000;
        FileGridModel model;
        QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
        model.addRecords(manyRecords(k_nFiles));
        // The call itself arranges nothing; of what is asked for meanwhile the last counts, and nothing is lost.
        QCOMPARE(model.rowCount(), 0);
        model.setFilter({QString(), QStringLiteral("9"), FileTypes::Kind::Any, 0});
        model.setFilter({QString(), QStringLiteral("499"), FileTypes::Kind::Any, 0});
        model.setOrder(FileOrder::OldestFirst);
        model.removeFiles({4991});
        QTRY_VERIFY(model.isArranged() && model.rowCount() == 14);
        QVERIFY(reset.size() <= 3);
        QCOMPARE(model.recordAt(0)->fileName(), QStringLiteral("4999.jpg"));
        QCOMPARE(model.rowOf(4991), -1);
        // A new record of a file changes its row alone.
        reset.clear();
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        model.addRecords({makeRecord(5000, QStringLiteral("4999.jpg"), 1)});
        QTRY_COMPARE(changed.size(), 1);
        QCOMPARE(reset.size(), 0);
        // Cleared while it is at work: the old files do not come back.
        model.setOrder(FileOrder::Name);
        model.clear();
        QTest::qWait(0);
        QTRY_VERIFY(model.isArranged());
        QCOMPARE(model.totalCount(), 0);
    }

    void keepsSelectionById()
    {
        FileGridModel model;
        ThumbnailSource thumbnails;
        FileGridView view(&model, &thumbnails, nullptr);
        QSignalSpy quick(&view, &FileGridView::signalQuickPreview);
        view.resize(800, 600);
        QCOMPARE(view.currentFileId(), 0);
        model.addRecords({makeRecord(1, QStringLiteral("m.jpg")), makeRecord(2, QStringLiteral("n.jpg"))});
        QCOMPARE(view.currentFileId(), 1);
        view.selectFile(2);
        model.addRecords({makeRecord(3, QStringLiteral("a.jpg")), makeRecord(4, QStringLiteral("z.jpg"))});
        QTRY_COMPARE(model.rowCount(), 4);
        QCOMPARE(view.currentFileId(), 2);
        QCOMPARE(view.selectionModel()->selectedIndexes().size(), 1);
        view.selectFile(99);
        QCOMPARE(view.currentFileId(), 2);
        QTest::keyClick(&view, Qt::Key_Space);
        QCOMPARE(quick.size(), 1);
        // A file that goes hands its place to the next one.
        model.removeFiles({2});
        QCOMPARE(view.currentFileId(), 4);
        model.clear();
        QCOMPARE(view.currentFileId(), 0);
    }

    void movesByRowsAndColumns()
    {
        FileGridModel model;
        ThumbnailSource thumbnails;
        FileGridView view(&model, &thumbnails, nullptr);
        model.addRecords(manyRecords(20));
        view.resize(700, 600);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        view.selectFile(1);
        QTest::keyClick(&view, Qt::Key_Down);
        const int nColumns = int(view.currentFileId()) - 1;
        QVERIFY(nColumns > 1);
        QCOMPARE(view.visualRect(model.index(nColumns)).left(), view.visualRect(model.index(0)).left());
        QTest::keyClick(&view, Qt::Key_Left);
        QCOMPARE(view.currentFileId(), nColumns);
        QTest::keyClick(&view, Qt::Key_End);
        QTest::keyClick(&view, Qt::Key_Right);
        QTest::keyClick(&view, Qt::Key_Down);
        QCOMPARE(view.currentFileId(), 20);
        QTest::keyClick(&view, Qt::Key_Home);
        QTest::keyClick(&view, Qt::Key_Up);
        QCOMPARE(view.currentFileId(), 1);
    }

    void selectsRangesAndAreas()
    {
        for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
            FileGridModel model;
            ThumbnailSource thumbnails;
            FileGridView view(&model, &thumbnails, nullptr);
            view.setLayoutDirection(direction);
            model.addRecords(manyRecords(20));
            view.resize(700, 600);
            view.show();
            QVERIFY(QTest::qWaitForWindowExposed(&view));
            const auto middle = [&](int nRow) {
                return view.visualRect(model.index(nRow)).center();
            };
            QCOMPARE(middle(1).x() > middle(0).x(), direction == Qt::LeftToRight);
            QCOMPARE(view.indexAt(middle(4)).row(), 4);
            const int nColumns = 3;
            QCOMPARE(middle(nColumns).x(), middle(0).x());
            // In the list's order, also against the direction of reading.
            QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, middle(5));
            QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::ShiftModifier, middle(1));
            QCOMPARE(sorted(view.selectedFileIds()), (QVector<qint64>{2, 3, 4, 5, 6}));
            // What a drag covers: two rows of two columns.
            QTest::mousePress(view.viewport(), Qt::LeftButton, {}, middle(1));
            QMouseEvent move(QEvent::MouseMove, middle(5), Qt::LeftButton, Qt::LeftButton, {});
            QApplication::sendEvent(view.viewport(), &move);
            QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, middle(5));
            QCOMPARE(sorted(view.selectedFileIds()), (QVector<qint64>{2, 3, 5, 6}));
            QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
            QCOMPARE(view.selectedFileIds().size(), 20);
            // A preview that was left at the file where it was opened leaves the selection alone.
            view.selectFile(view.currentFileId());
            QCOMPARE(view.selectedFileIds().size(), 20);
            view.selectFile(7);
            QCOMPARE(view.selectedFileIds(), QVector<qint64>{7});
        }
    }

    void stepsThroughManyFiles()
    {
        constexpr int k_nFiles = 100000;
        FileGridModel model;
        ThumbnailSource thumbnails;
        FileGridView view(&model, &thumbnails, nullptr);
        view.resize(1200, 800);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        model.addRecords(manyRecords(k_nFiles));
        QTRY_COMPARE_WITH_TIMEOUT(model.rowCount(), k_nFiles, 30000);
        view.selectFile(k_nFiles / 2);
        const std::clock_t begin = std::clock();
        constexpr int k_nSteps = 100;
        for (int i = 0; i < k_nSteps; ++i) {
            QTest::keyClick(&view, Qt::Key_Right);
            view.viewport()->repaint();
        }
        // Time of our own on the processor: what else the machine does meanwhile is no matter. Generous, for slow
        // machines under a sanitizer; work for each file would take minutes.
        constexpr int k_nMostMsecEach = 50;
        const auto nMsecs = (std::clock() - begin) / (CLOCKS_PER_SEC / 1000);
        QVERIFY2(nMsecs < k_nSteps * k_nMostMsecEach, qPrintable(QString::number(nMsecs)));
        QCOMPARE(view.currentFileId(), k_nFiles / 2 + k_nSteps);
    }

    void requestsThumbnailsOnce()
    {
        const auto pCache = QSharedPointer<FakeCacheManager>::create();
        ThumbnailSource thumbnails;
        QSignalSpy changed(&thumbnails, &ThumbnailSource::signalChanged);
        bool bComing = true;
        const FileRecordPtr pGood = makeRecord(1, QStringLiteral("good.jpg"));
        const FileRecordPtr pBad = makeRecord(2, QStringLiteral("bad.jpg"));
        const auto ask = [&](const FileRecordPtr &pRecord) {
            return !thumbnails.thumbnail(pRecord, QSize(10, 10), 1.0, &bComing).isNull();
        };
        QVERIFY(!ask(pGood) && !bComing);
        thumbnails.setCache(pCache);
        for (int i = 0; i < 3; ++i) {
            QVERIFY(!ask(pGood) && bComing);
            QVERIFY(!ask(pBad) && bComing);
        }
        QCOMPARE(pCache->requests.size(), 2);
        QVERIFY(thumbnails.isBusy());
        pCache->finish(QStringLiteral("1@10x10"), QImage(4, 4, QImage::Format_RGB32));
        // Dropped from a long queue first, then found to be of no use.
        pCache->finish(QStringLiteral("2@10x10"), QImage());
        QVERIFY(!ask(pBad) && bComing);
        QCOMPARE(pCache->requests.size(), 3);
        pCache->failed.insert(QStringLiteral("2@10x10"));
        pCache->finish(QStringLiteral("2@10x10"), QImage());
        QCOMPARE(changed.size(), 3);
        QVERIFY(ask(pGood));
        QVERIFY(!ask(pBad) && !bComing);
        QVERIFY(!thumbnails.isBusy());
        QCOMPARE(pCache->requests.size(), 3);
    }

private:
    /** Files 1 to nFiles, 0.jpg and so on, each older than the one before. */
    static FileRecordList manyRecords(int nFiles)
    {
        FileRecordList records;
        for (int i = 0; i < nFiles; ++i)
            records.append(makeRecord(i + 1, QStringLiteral("%1.jpg").arg(i), nFiles - i));
        return records;
    }
    static QVector<qint64> sorted(QVector<qint64> ids)
    {
        std::sort(ids.begin(), ids.end());
        return ids;
    }
    static QStringList names(const FileGridModel &model)
    {
        QStringList all;
        for (int i = 0; i < model.rowCount(); ++i)
            all.append(model.recordAt(i)->fileName());
        return all;
    }
};

BIGIMGPREVIEW_TEST_MAIN(HostGridTest)
#include "tst_host_grid.moc"
