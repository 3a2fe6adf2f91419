#include "DocumentStage.h"
#include "TestMain.h"

using namespace basemodule;

/** The converter and its program, which hangs, dies and lies; a script stands for it. */
class TestDocuments : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void badEnds_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::newRow("hangs") << QByteArray(kHangs);
        QTest::newRow("dies") << QByteArrayLiteral("kill -SEGV $$");
        QTest::newRow("writes nothing") << QByteArrayLiteral("exit 0");
        QTest::newRow("no PDF") << QByteArrayLiteral("echo hello > \"$out/document.pdf\"");
        QTest::newRow("torn PDF") << QByteArrayLiteral("head -c 300 \"$pages\" > \"$out/document.pdf\"");
        QTest::newRow("wants to start again for ever") << QByteArrayLiteral("exit 81");
        QTest::newRow("fills the disk") << QByteArrayLiteral("head -c 3G /dev/zero > \"$out/document.pdf\"");
        QTest::newRow("leaves a child") << QByteArrayLiteral("sleep 300 & echo $! >> \"$log\"; exit 0");
    }

    void badEnds()
    {
        QFETCH(QByteArray, script);
        const DocumentStage stage(script.constData(), 3000);
        QVERIFY(!stage.renderer().openDocument(1, stage.deck()));
        QCOMPARE(stage.renderer().pageCount(1), 0);
        QVERIFY(stage.renderer().renderPage(1, 0, QSize(100, 100)).isNull());
        QVERIFY(!stage.started().isEmpty());
        QTRY_VERIFY(!stage.isAnyAlive());
        QCOMPARE(stage.leftovers(), QStringList());
    }

    void cancelledAtOnce_data() { namedRows({"closed", "all closed", "shutdown"}); }

    void cancelledAtOnce()
    {
        const bool bOneClosed = rowName() == QLatin1String("closed");
        const DocumentStage stage(kHangs);
        // Two at once: closing one is none of the other's business.
        auto first = stage.open(1, stage.deck(1));
        auto second = stage.open(2, stage.deck(2));
        QTRY_COMPARE(stage.started().size(), 4);
        QElapsedTimer clock;
        clock.start();
        if (bOneClosed)
            stage.renderer().closeDocument(1);
        else if (rowName() == QLatin1String("all closed"))
            stage.renderer().closeAllDocuments();
        else
            stage.module->shutdown();
        QVERIFY(clock.elapsed() < 2000);
        QVERIFY(!first.get());
        if (bOneClosed) {
            QVERIFY(second.wait_for(std::chrono::milliseconds(100)) == std::future_status::timeout);
            stage.renderer().closeDocument(2);
        }
        QVERIFY(!second.get());
        QTRY_VERIFY(!stage.isAnyAlive());
        // bench_pages measures it; here it only must not be the patience of somebody else.
        QVERIFY2(clock.elapsed() < 3000, qPrintable(QString::number(clock.elapsed())));
        QTRY_COMPARE(stage.leftovers(), QStringList());
    }

    void convertedOnce()
    {
        const DocumentStage stage(kConverts);
        const QString path = stage.deck();
        const QString copy = stage.folder.filePath(QStringLiteral("copy.pptx"));
        QVERIFY(QFile::copy(path, copy));
        // Two who want the same share it; a copy and the next time need no program at all.
        auto first = stage.open(1, path);
        auto second = stage.open(2, path);
        QVERIFY(first.get() && second.get());
        QVERIFY(stage.renderer().openDocument(3, copy) && stage.renderer().openDocument(1, path));
        stage.renderer().closeAllDocuments();
        QVERIFY(stage.renderer().openDocument(1, path));
        QCOMPARE(stage.renderer().pageCount(1), DocumentStage::kPages);
        QCOMPARE(stage.started().size(), 1);
        // What happens to the file while its pages are looked at shows the next time.
        QVERIFY(documents::writeDeck(path, {2, QSize(300, 200), {}, 0, 0}));
        QVERIFY(showsSlide(stage.renderer().renderPage(1, 3, QSize(200, 200)), 3));
        QVERIFY(stage.renderer().openDocument(1, path));
        QCOMPARE(stage.started().size(), 2);
        // A damaged result is made anew.
        QDirIterator made(stage.folder.filePath(QStringLiteral("d/pages")), {QStringLiteral("*.pdf")}, QDir::Files);
        while (made.hasNext())
            QVERIFY(QFile(made.next()).resize(100));
        stage.renderer().closeAllDocuments();
        QVERIFY(stage.renderer().openDocument(1, path));
        QCOMPARE(stage.started().size(), 3);
    }

    void missingProgram()
    {
        const DocumentStage stage(kConverts);
        QVERIFY(QFile::remove(stage.folder.filePath(QStringLiteral("office"))));
        QStringList problems;
        stage.module->setProblemHandler([&](const QString &problem) { problems.append(problem); });
        const std::atomic_bool running{false};
        QVERIFY(!stage.renderer().openDocument(1, stage.deck()));
        QVERIFY(!stage.renderer().openDocument(2, stage.deck(1)));
        // Not impossible: it is made when the program is there.
        QVERIFY(stage.module->analyse(stage.deck(), running) == AnalysisOutcome::Cancelled);
        // The same words for each who looks, and none for the background, which has been told.
        QTRY_COMPARE(problems.size(), 2);
        QCOMPARE(problems.removeDuplicates(), 1);
        QVERIFY(problems.constFirst().contains(QLatin1String("libreoffice-impress-nogui")));
    }

    void steppingOnEndsTheWait()
    {
        const DocumentStage stage(kHangs);
        const QString path = stage.deck();
        stage.module->setFileShown(QStringLiteral("/before"));
        auto picture =
            std::async(std::launch::async, [&] { return deliver(*stage.module->imageDecoder(), path).image; });
        QTRY_COMPARE(stage.started().size(), 2);
        stage.module->setFileShown(path);
        QVERIFY(picture.wait_for(std::chrono::milliseconds(200)) == std::future_status::timeout);
        stage.module->setFileShown(QStringLiteral("/next"));
        QVERIFY(picture.wait_for(std::chrono::seconds(3)) == std::future_status::ready);
        QVERIFY(picture.get().isNull());
        QTRY_VERIFY(!stage.isAnyAlive());
    }

    void diskBudget()
    {
        QTemporaryDir folder;
        PdfStore store(folder.path(), 2500);
        const auto keep = [&](const char *pDigest) {
            const QString made = folder.filePath(QStringLiteral("made"));
            return writeFile(made, QByteArray(1000, 'x')) && !store.keep(made, pDigest, Extent::Whole).isEmpty();
        };
        const FileKey key{QStringLiteral("/a"), 1, 2, 3};
        QVERIFY(keep("aa"));
        store.link(key, "aa");
        QVERIFY(!store.find(key, Extent::FirstPage).isEmpty());
        QTest::qWait(20); // the times of use differ
        QVERIFY(keep("bb"));
        QTest::qWait(20);
        QVERIFY(keep("cc"));
        QVERIFY(store.find(key, Extent::Whole).isEmpty());
        QVERIFY(!store.findContent("bb", Extent::Whole).isEmpty() && !store.findContent("cc", Extent::Whole).isEmpty());
        QCOMPARE(QDir(folder.filePath(QStringLiteral("pages"))).entryList(QDir::System | QDir::Files).size(), 2);
    }

    void neighboursAreRenderedAhead()
    {
        const DocumentStage stage(kConverts);
        PageAhead &ahead = stage.renderer().ahead();
        const QSize size(800, 450);
        QVERIFY(stage.renderer().openDocument(1, stage.deck()));
        const QImage first = stage.renderer().renderPage(1, 2, size);
        QTRY_COMPARE(ahead.heldBytes(), 3 * first.sizeInBytes());
        QVERIFY(showsSlide(stage.renderer().renderPage(1, 3, size), 3));
        QVERIFY(showsSlide(stage.renderer().renderPage(1, 1, size), 1));
        // A page zoomed far does not push its neighbours out, nor the memory up.
        ahead.setBudget(5 * first.sizeInBytes());
        QVERIFY(showsSlide(stage.renderer().renderPage(1, 2, size), 2));
        QTRY_COMPARE(ahead.heldBytes(), 3 * first.sizeInBytes());
        QVERIFY(showsSlide(stage.renderer().renderPage(1, 2, size * 8), 2));
        QTRY_VERIFY(ahead.isIdle());
        QCOMPARE(ahead.heldBytes(), 3 * first.sizeInBytes());
        // One that is zoomed a little is ahead in both sizes, as far as they fit, and that comes to an end.
        ahead.setBudget(8 * first.sizeInBytes());
        QVERIFY(showsSlide(stage.renderer().renderPage(1, 3, size), 3));
        QVERIFY(showsSlide(stage.renderer().renderPage(1, 3, size * 1.5), 3));
        QTRY_VERIFY(ahead.isIdle());
        QVERIFY(ahead.heldBytes() <= 8 * first.sizeInBytes() && ahead.heldBytes() > 5 * first.sizeInBytes());
        stage.renderer().closeDocument(1);
        QTRY_COMPARE(ahead.heldBytes(), 0);
    }

    void farZoomMakesWay()
    {
        const DocumentStage stage(kConverts);
        QVERIFY(stage.renderer().openDocument(1, stage.deck()));
        bool bGivenUp = false;
        // Sooner or later the next page is asked for in the middle of it.
        for (int nMsec = 0; !bGivenUp && nMsec < 200; nMsec += 5) {
            auto large = std::async(std::launch::async,
                                    [&stage] { return stage.renderer().renderPage(1, 0, QSize(8000, 4500)); });
            QTest::qWait(nMsec);
            QVERIFY(showsSlide(stage.renderer().renderPage(1, 1, QSize(800, 450)), 1));
            bGivenUp = large.get().isNull();
        }
        QVERIFY(bGivenUp);
        QVERIFY(showsSlide(stage.renderer().renderPage(1, 0, QSize(8000, 4500)), 0));
    }

    void openAndLeave()
    {
        const DocumentStage stage("sleep 0.0$(($$ % 8)); cp \"$pages\" \"$out/document.pdf\"");
        QRandomGenerator random(7);
        QVector<QString> decks;
        for (int i = 0; i < 40; ++i)
            decks.append(stage.deck(i));
        for (int i = 0; i < 200; ++i) {
            auto opening = stage.open(i, decks.at(i % decks.size()));
            std::future<QImage> page;
            if (random.bounded(3) > 0)
                opening.wait_for(std::chrono::milliseconds(random.bounded(120)));
            if (random.bounded(2) > 0)
                page =
                    std::async(std::launch::async, [&] { return stage.renderer().renderPage(i, 1, QSize(900, 900)); });
            if (random.bounded(2) > 0)
                stage.renderer().closeDocument(i);
            else
                stage.renderer().closeAllDocuments();
            opening.get();
            // An opening that was late for the closing has its own.
            stage.renderer().closeDocument(i);
        }
        QCOMPARE(stage.renderer().openDocuments(), 0);
        QTRY_COMPARE(stage.renderer().ahead().heldBytes(), 0);
        QTRY_VERIFY(!stage.isAnyAlive());
        QTRY_COMPARE(stage.leftovers(), QStringList());
        // One process or more at a time: the places to work in were used again.
        QVERIFY(QDir(stage.folder.filePath(QStringLiteral("d"))).entryList({QStringLiteral("converter-*")}).size() <=
                3);
    }
};

BIGIMGPREVIEW_TEST_MAIN(TestDocuments)

#include "tst_documents.moc"
