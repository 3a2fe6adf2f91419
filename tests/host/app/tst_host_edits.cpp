#include "LibraryFixture.h"
#include "app/LibraryBanner.h"

#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>

/** What users change in the library, and the ways on when the library file cannot be used. */
class HostEditsTest : public LibraryTest {
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        LibraryTest::init();
        write("a.jpg", QByteArrayLiteral("first"));
        write("b.jpg", QByteArrayLiteral("second"));
    }

    void renamesWithoutReplacing_data()
    {
        const auto row = columns<QString, bool>("name", "bDone");
        row("another name", "c.jpg", true);
        row("another kind", "a.png", true);
        row("odd but allowed", " ä\n.jpg", true);
        row("taken", "b.jpg", false);
        row("taken by a file that is not listed", ".hidden.jpg", false);
        row("empty", " ", false);
        row("a place", "../a.jpg", false);
        row("the folder", "..", false);
        row("too long", QString(300, QLatin1Char('x')), false);
    }

    void renamesWithoutReplacing()
    {
        const auto [name, bDone] = currentRow<QString, bool>();
        write(".hidden.jpg", QByteArrayLiteral("hidden"));
        m_place->open();
        m_place->label(QStringLiteral("a.jpg"), QStringLiteral("kept"));
        const qint64 nId = id("a.jpg");
        QSignalSpy renamed(library(), &Library::signalRenamed);
        QVERIFY(library()->renameFile(nId, name) > 0);
        QVERIFY(renamed.wait());
        QCOMPARE(renamed.first().at(2).toString().isEmpty(), bDone);
        const FileRecordPtr pRecord = library()->record(nId);
        QCOMPARE(pRecord->fileName(), bDone ? name : QStringLiteral("a.jpg"));
        QCOMPARE(pRecord->fileType(), name.endsWith(QLatin1String("png")) ? 10 : 20);
        QCOMPARE(pRecord->tags().size(), 1);
        QCOMPARE(QFile::exists(files("a.jpg")), !bDone);
        for (const char *pOther : {"b.jpg", ".hidden.jpg"})
            QVERIFY(readFile(files(pOther)) != "first");
        // The watcher sees the same change and must make nothing else of it.
        m_place->open();
        QCOMPARE(library()->count(), 2);
        QVERIFY(!library()->record(nId)->isUnavailable());
    }

    void keepsLabelsAndColours()
    {
        m_place->open();
        const QString name = QStringLiteral("a.jpg");
        m_place->label(name, QStringLiteral("sea"));
        m_place->label(name, QStringLiteral("Alps"));
        m_place->label(QStringLiteral("b.jpg"), QStringLiteral("sea"));
        QTRY_COMPARE(library()->labels().size(), 2);
        const LabelRecord alps = library()->labels().at(0);
        const LabelRecord sea = library()->labels().at(1);
        QCOMPARE(alps.name, QStringLiteral("Alps"));
        library()->setLabelColor(sea.id, 0x336699);
        library()->removeLabels({m_place->id(name)}, {alps.id, 999});
        QTRY_COMPARE(m_place->record(name)->tags().size(), 1);

        m_place->open();
        QTRY_COMPARE(library()->labels().size(), 2);
        QCOMPARE(library()->labels().at(1).color, 0x336699u);
        QCOMPARE(m_place->record(name)->tags().size(), 1);
        // A label that is deleted leaves every file.
        library()->deleteLabel(sea.id);
        QTRY_COMPARE(library()->labels().size(), 1);
        QTRY_VERIFY(m_place->record(name)->tags().isEmpty() && record("b.jpg")->tags().isEmpty());
    }

    void keepsHowFarFilesAreAnalysed()
    {
        m_place->open();
        FileRow done = record("a.jpg")->row();
        FileRow impossible = record("b.jpg")->row();
        done.analysis = AnalysisState::Done;
        impossible.analysis = AnalysisState::Impossible;
        library()->storeAnalysis({done, impossible});
        m_place->open();
        QCOMPARE(record("a.jpg")->row().analysis, AnalysisState::Done);
        QCOMPARE(record("b.jpg")->row().analysis, AnalysisState::Impossible);
        // Another content waits again.
        write("a.jpg", QByteArray(50, 'z'));
        QTRY_COMPARE(record("a.jpg")->row().nSize, 50);
        QCOMPARE(record("a.jpg")->row().analysis, AnalysisState::Waiting);
        library()->storeAnalysis({done});
        m_place->open();
        QCOMPARE(record("a.jpg")->row().analysis, AnalysisState::Waiting);
    }

    void offersWaysOn_data() { namedRows({"damaged", "newer", "locked"}); }

    void offersWaysOn()
    {
        const QString fault = rowName();
        m_place->open();
        m_place->library.reset();
        const bool bLocked = fault == QLatin1String("locked");
        if (fault == QLatin1String("newer"))
            execute(databasePath(), QStringLiteral("PRAGMA user_version = 99"));
        else if (bLocked)
            execute(databasePath(), QStringLiteral("BEGIN EXCLUSIVE"), true);
        if (fault == QLatin1String("damaged")) {
            QFile file(databasePath());
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray(5000, '?'));
        }
        QFile file(databasePath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray before = file.readAll();

        Library library;
        LibraryBanner banner(&library, nullptr);
        QSignalSpy unusable(&library, &Library::signalUnusable);
        QSignalSpy solved(&library, &Library::signalProblemSolved);
        library.open(databasePath());
        library.showFolders({m_place->files()});
        // A lock is waited for a while: another instance may be about to let go.
        QTRY_COMPARE_WITH_TIMEOUT(unusable.size(), 1, 15000);
        QVERIFY(!banner.isHidden());
        auto *pStartNew = banner.findChild<QPushButton *>(QStringLiteral("hostLibraryStartNew"));
        QCOMPARE(pStartNew->isHidden(), bLocked);
        // The files are shown all the same.
        QTRY_COMPARE(library.count(), 2);
        file.seek(0);
        QCOMPARE(file.readAll(), before);

        if (bLocked) {
            QSqlDatabase::removeDatabase(QStringLiteral("other program"));
            banner.findChild<QPushButton *>(QStringLiteral("hostLibraryRetry"))->click();
        } else {
            pStartNew->click();
        }
        QVERIFY(banner.isHidden());
        QSignalSpy problems(&library, &Library::signalProblem);
        QTRY_VERIFY(!library.isScanning());
        QVERIFY2(problems.isEmpty(), qPrintable(problems.value(0).value(0).toString()));
        QCOMPARE(library.count(), 2);
        QCOMPARE(unusable.size(), 1);
        // Nobody is told any longer that changes are not kept.
        QCOMPARE(solved.size(), 1);
        // Put aside, not overwritten.
        const QStringList aside = QDir(QFileInfo(databasePath()).path())
                                      .entryList({QStringLiteral("library.sqlite.unusable-*")}, QDir::Files)
                                      .filter(QRegularExpression(QStringLiteral("\\d$")));
        QCOMPARE(aside.size(), bLocked ? 0 : 1);
        file.seek(0);
        QCOMPARE(file.readAll(), before);
    }

private:
    QString databasePath() const { return m_place->path(QStringLiteral("library.sqlite")); }

    static void execute(const QString &databasePath, const QString &statement, bool bKeepOpen = false)
    {
        const QString connection = QStringLiteral("other program");
        {
            QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
            database.setDatabaseName(databasePath);
            QVERIFY(database.open());
            QSqlQuery query(database);
            QVERIFY(query.exec(statement));
        }
        if (!bKeepOpen)
            QSqlDatabase::removeDatabase(connection);
    }
};

BIGIMGPREVIEW_TEST_MAIN(HostEditsTest)
#include "tst_host_edits.moc"
