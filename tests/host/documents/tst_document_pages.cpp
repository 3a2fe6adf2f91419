#include "DocumentStage.h"
#include "TestMain.h"

#include <QTcpServer>

using basemodule::ConverterSlot;

/** What LibreOffice, Poppler and Ghostscript really make of documents. */
class TestDocumentPages : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void pages_data() { namedRows({"deck.pptx", "deck.ppt", "pptx_named.ppt"}); }

    void pages()
    {
        const DocumentStage stage;
        auto &renderer = stage.renderer();
        QVERIFY(renderer.openDocument(1, document(QTest::currentDataTag())));
        QCOMPARE(renderer.pageCount(1), 5);
        for (int i = 0; i < 5; ++i)
            QVERIFY(showsSlide(renderer.renderPage(1, i, QSize(400, 400)), i));
        QVERIFY(renderer.renderPage(1, -1, QSize(400, 400)).isNull() && renderer.renderPage(1, 5, QSize()).isNull());
        QVERIFY(renderer.renderPage(2, 0, QSize(400, 400)).isNull());
        QCOMPARE(renderer.renderPage(1, 0, QSize()).size(), QSize(1280, 720));
        QCOMPARE(renderer.renderPage(1, 0, QSize(1000, 200)).size(), QSize(356, 200));
        QCOMPARE(renderer.renderPage(1, 0, QSize(500, 2000)).size(), QSize(500, 281));
        // Sharp at 800 %: the edge between the halves is one pixel wide at any size.
        const QImage large = renderer.renderPage(1, 0, QSize(1280, 720) * 8);
        // A page of the older format may be a hair lower.
        QVERIFY(large.width() == 1280 * 8 && qAbs(large.height() - 720 * 8) <= 2);
        QCOMPARE(large.format(), QImage::Format_RGB32);
        int nBlended = 0;
        for (int x = large.width() / 2 - 8; x < large.width() / 2 + 8; ++x) {
            const QRgb pixel = large.pixel(x, 40);
            nBlended += pixel != documents::slideColor(0) && pixel != qRgb(255, 255, 255);
        }
        QVERIFY2(nBlended <= 2, qPrintable(QString::number(nBlended)));
    }

    void severalAtOnce()
    {
        const DocumentStage stage;
        auto &renderer = stage.renderer();
        const QString one = stage.deck();
        auto first = stage.open(1, document("deck.pptx"));
        auto second = stage.open(2, one);
        QVERIFY(first.get() && second.get());
        QCOMPARE(renderer.pageCount(1), 5);
        QCOMPARE(renderer.pageCount(2), 1);
        std::vector<std::future<QImage>> rendered;
        for (int i = 0; i < 8; ++i)
            rendered.push_back(std::async(std::launch::async, [&renderer, i] {
                return renderer.renderPage(i % 2 + 1, i % 2 == 0 ? i / 2 : 0, QSize(300, 300));
            }));
        for (size_t i = 0; i < rendered.size(); ++i)
            QVERIFY(showsSlide(rendered[i].get(), i % 2 == 0 ? int(i / 2) : 0));
        renderer.closeDocument(1);
        QCOMPARE(renderer.pageCount(1), 0);
        QVERIFY(showsSlide(renderer.renderPage(2, 0, QSize(300, 300)), 0));
    }

    void cancelledInTheMiddle()
    {
        const DocumentStage stage;
        const QString profile = stage.folder.filePath(QStringLiteral("d/converter-0/profile"));
        const QString socket = ConverterSlot::socketPath(profile);
        const QString path = stage.folder.filePath(QStringLiteral("long.pptx"));
        QVERIFY(documents::writeDeck(path, {2000, QSize(1280, 720), {}, 0, 0}));
        auto opening = stage.open(1, path);
        // The program works, and has what it leaves behind when it is killed.
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(socket), 120000);
        QElapsedTimer clock;
        clock.start();
        stage.renderer().closeAllDocuments();
        QVERIFY(!opening.get());
        QTRY_COMPARE(stage.leftovers(), QStringList());
        QVERIFY2(clock.elapsed() < 5000, qPrintable(QString::number(clock.elapsed())));
        QTRY_VERIFY(!QFile::exists(socket));
        QDirIterator processes(QStringLiteral("/proc"), QDir::Dirs | QDir::NoDotAndDotDot);
        while (processes.hasNext()) {
            const QByteArray command = readFile(processes.next() + QStringLiteral("/cmdline"));
            QVERIFY(!command.contains(profile.toUtf8()));
        }
    }

    void firstPages_data()
    {
        QTest::addColumn<QRgb>("color"); ///< Found on the page.
        const QRgb black = qRgb(0, 0, 0);
        QTest::newRow("deck.pptx") << documents::slideColor(0);
        QTest::newRow("text.docx") << qRgb(0, 160, 0);
        QTest::newRow("text.doc") << qRgb(0, 160, 0);
        QTest::newRow("table.xlsx") << black;
        QTest::newRow("table.xls") << black;
        QTest::newRow("pptx_named.docx") << documents::slideColor(0);
        QTest::newRow("drawing.eps") << qRgb(0, 161, 0);
        QTest::newRow("font.ttf") << black;
    }

    void firstPages()
    {
        QFETCH(QRgb, color);
        const DocumentStage stage;
        const QString path = document(QTest::currentDataTag());
        const std::atomic_bool running{false};
        QVERIFY(stage.module->analyse(path, running) == AnalysisOutcome::Done);
        // Analysed once, a preview has it at once.
        const QImage image = deliver(*stage.module->imageDecoder(), path).image;
        QVERIFY(qMax(image.width(), image.height()) >= 1024);
        int nFound = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                nFound += qAbs(qRed(image.pixel(x, y)) - qRed(color)) < 12 &&
                          qAbs(qGreen(image.pixel(x, y)) - qGreen(color)) < 12 &&
                          qAbs(qBlue(image.pixel(x, y)) - qBlue(color)) < 12;
        }
        QVERIFY2(nFound > 200, qPrintable(QString::number(nFound)));
        const QImage thumbnail = stage.module->readPicture(path, 256, running);
        QCOMPARE(qMax(thumbnail.width(), thumbnail.height()), 256);
    }

    void badDocuments_data()
    {
        QTest::addColumn<int>("msec"); ///< Told without a program in this time.
        for (const char *pName : {"truncated_deck.pptx", "stub_deck.pptx", "zero_deck.pptx", "text_named.pptx",
                                  "bomb.pptx", "broken.ttf", "not there.pptx"})
            QTest::newRow(pName) << 3000;
        QTest::newRow("locked.pptx") << 60000;
        QTest::newRow("endless.eps") << 60000;
    }

    void badDocuments()
    {
        QFETCH(int, msec);
        const DocumentStage stage(nullptr, 4000);
        const QString path = document(QTest::currentDataTag());
        QElapsedTimer clock;
        clock.start();
        QVERIFY(!stage.renderer().openDocument(1, path));
        QVERIFY(deliver(*stage.module->imageDecoder(), path).image.isNull());
        QVERIFY2(clock.elapsed() < msec, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(stage.leftovers(), QStringList());
    }

    void macrosDoNotRun()
    {
        const DocumentStage stage;
        const QString path = stage.folder.filePath(QStringLiteral("macro.odp"));
        const QString made = stage.folder.filePath(QStringLiteral("made"));
        QVERIFY(documents::writeMacroDeck(path, made));
        QVERIFY(stage.renderer().openDocument(1, path));
        QCOMPARE(stage.renderer().pageCount(1), 1);
        QVERIFY(!QFile::exists(made));
    }

    void nothingIsFetchedOrRemembered()
    {
        QTcpServer server;
        QVERIFY(server.listen(QHostAddress::LocalHost));
        const DocumentStage stage;
        const QString picture = stage.folder.filePath(QStringLiteral("secret.png"));
        QVERIFY(plainImage(QSize(40, 40), qRgb(250, 0, 250)).save(picture));
        const QString path = stage.folder.filePath(QStringLiteral("private talk.pptx"));
        const QString address = QStringLiteral("http://127.0.0.1:%1/picture.png").arg(server.serverPort());
        int nId = 0;
        for (const QString &link : {address, QUrl::fromLocalFile(picture).toString()}) {
            QVERIFY(documents::writeDeck(path, {1, QSize(400, 300), link.toUtf8(), 0, 0}));
            QVERIFY(stage.renderer().openDocument(++nId, path));
            const QImage page = stage.renderer().renderPage(nId, 0, QSize(400, 300));
            QVERIFY(!page.isNull() && page.pixel(100, 150) != qRgb(250, 0, 250));
            QVERIFY(!server.waitForNewConnection(50) && !server.hasPendingConnections());
        }
        QDirIterator profile(stage.folder.filePath(QStringLiteral("d")), QDir::Files | QDir::Hidden,
                             QDirIterator::Subdirectories);
        while (profile.hasNext()) {
            const QByteArray bytes = readFile(profile.next());
            QVERIFY2(!bytes.contains("private talk") && !bytes.contains("document.pptx"),
                     qPrintable(profile.filePath()));
        }
    }

    void hugeSlide()
    {
        const DocumentStage stage;
        const QString path = stage.folder.filePath(QStringLiteral("huge.pptx"));
        QVERIFY(documents::writeDeck(path, {1, QSize(20000, 20000), {}, 0, 0}));
        QVERIFY(stage.renderer().openDocument(1, path));
        const QImage page = stage.renderer().renderPage(1, 0, QSize());
        QVERIFY(showsSlide(page, 0) && page.width() <= 8192);
        const QImage large = stage.renderer().renderPage(1, 0, QSize(100000, 100000));
        QVERIFY(large.isNull() || qint64(large.width()) * large.height() <= 170000000);
    }
};

BIGIMGPREVIEW_TEST_MAIN(TestDocumentPages)

#include "tst_document_pages.moc"
