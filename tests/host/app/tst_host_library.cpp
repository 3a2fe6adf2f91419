#include "LibraryFixture.h"
#include "interfaces/actions/ICommentAction.h"
#include "interfaces/actions/ITagAction.h"
#include "library/LibraryDataSource.h"
#include "library/LibrarySchema.h"

#include <QSqlQuery>

/** The library on real files and folders: what it keeps, and what it does with files that it cannot use. */
class HostLibraryTest : public LibraryTest {
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        LibraryTest::init();
        write("a.jpg");
        write("sub/b.png");
        m_place->open();
    }

    void keepsIdsAcrossRuns()
    {
        const qint64 nFirst = id("sub/b.png");
        QCOMPARE(library()->count(), 2);
        QVERIFY(nFirst > 0);
        write("a1.jpg");
        m_place->open();
        QCOMPARE(library()->count(), 3);
        const FileRecordPtr pRecord = library()->record(nFirst);
        QCOMPARE(pRecord->filePath(), files("sub/b.png"));
        QCOMPARE(pRecord->fileType(), 10);
        QVERIFY(!pRecord->isUnavailable());
    }

    void losesNothingWhenHurried()
    {
        QSignalSpy ended(library(), &Library::signalScanEnded);
        library()->showFolders({m_place->files()});
        library()->rescan();
        library()->rescan();
        QTRY_VERIFY(!library()->isScanning());
        QCOMPARE(ended.size(), 1);
        QCOMPARE(library()->count(), 2);
    }

    void sharesTheFileWithAnotherInstance()
    {
        Library second;
        second.open(databasePath());
        QSignalSpy problems(library(), &Library::signalProblem);
        QSignalSpy otherProblems(&second, &Library::signalProblem);
        constexpr int k_nFiles = 1500;
        for (int i = 0; i < k_nFiles; ++i)
            m_place->write(QStringLiteral("more/%1.jpg").arg(i));
        for (Library *pLibrary : {library(), &second})
            pLibrary->showFolders({m_place->files()});
        QTRY_VERIFY_WITH_TIMEOUT(!library()->isScanning() && !second.isScanning(), 20000);
        QCOMPARE(library()->count(), k_nFiles + 2);
        QCOMPARE(second.count(), k_nFiles + 2);
        // What the other one stored is news here too.
        write("a.jpg", QByteArray(7, 'x'));
        write("new.jpg");
        scan(library(), [this] { library()->rescan(); });
        scan(&second, [&second] { second.rescan(); });
        QCOMPARE(second.count(), k_nFiles + 3);
        QCOMPARE(second.record(id("a.jpg"))->row().nSize, 7);
        QCOMPARE(problems.size() + otherProblems.size(), 0);
    }

    void listsOneFolderNow()
    {
        m_place->library.reset(); // whose watch would tell of the changes first
        write("c.jpg");
        QVERIFY(QFile::remove(files("a.jpg")));
        Library again;
        again.open(databasePath());
        QSignalSpy records(&again, &Library::signalRecords);
        QSignalSpy removed(&again, &Library::signalRemoved);
        scan(&again, [&] { again.showFolderNow(m_place->files()); });
        // One list, of what is there now, and no second thoughts that would close a preview.
        QCOMPARE(records.size(), 1);
        QCOMPARE(records.first().first().value<FileRecordList>().size(), 1);
        QCOMPARE(removed.size(), 0);
        write(".hidden.png");
        scan(&again, [&] { again.showFolderNow(m_place->files(), QStringLiteral(".hidden.png")); });
        QCOMPARE(again.count(), 2);
    }

    void readsWhatItMayNotWrite()
    {
        const qint64 nId = id("a.jpg");
        note(QStringLiteral("a.jpg"));
        m_place->library.reset();
        QFile file(databasePath());
        QVERIFY(file.setPermissions(QFileDevice::ReadOwner));
        const bool bMayAll = file.open(QIODevice::ReadWrite); // as a system's administrator
        file.close();
        Library again;
        QSignalSpy problems(&again, &Library::signalProblem);
        again.open(databasePath());
        write("new.jpg");
        scan(&again, [&] { again.showFolders({m_place->files()}); });
        QCOMPARE(problems.size(), bMayAll ? 0 : 1);
        QCOMPARE(again.count(), 3);
        QCOMPARE(again.record(nId)->notes().size(), 1);
    }

    void keepsNotesAndLabels()
    {
        const QVector<NoteRecord> notes = {{QRect(1, 2, 30, 40), 0x00102030, QString::fromUtf8("Größe\n\"x\"")},
                                           {QRect(-1, 0, 1, 1), 0, QString()}};
        const qint64 nId = id("a.jpg");
        {
            LibraryDataSource source(library());
            const auto pComment = source.commentAction();
            QSignalSpy stored(pComment.data(), &ICommentAction::signalCommentResult);
            QCOMPARE(pComment->setCommentsOfFile(-5, notes), 0);
            const qint64 nAction = pComment->setCommentsOfFile(nId, notes);
            QVERIFY(nAction > 0);
            QCOMPARE(stored.size(), 0);
            QVERIFY(stored.wait());
            QCOMPARE(stored.first().at(0).toLongLong(), nAction);
            const auto pTag = source.tagAction();
            QSignalSpy linked(pTag.data(), &ITagAction::signalTagResult);
            const TagRecordPtr pNamed(new TagRecord{0, QStringLiteral("holiday")});
            const TagRecordPtr pUnknown(new TagRecord{999, QString()});
            QVERIFY(pTag->associateTagsWithFiles({nId}, {pNamed, pNamed}) > 0);
            QVERIFY(pTag->associateTagsWithFiles({nId}, {pUnknown}) > 0);
            QTRY_COMPARE(linked.size(), 2);
            QCOMPARE(linked.at(0).at(1).value<ResponseInfoPtr>()->returnCode(), 0);
            QCOMPARE(linked.at(1).at(1).value<ResponseInfoPtr>()->failedFiles(), QVector<qint64>{nId});
        }
        m_place->open();
        LibraryDataSource source(library());
        TagRecordList labels;
        const FileInfoPtr pInfo = source.fileInfo(nId, &labels);
        QCOMPARE(labels.size(), 1);
        QCOMPARE(labels.first()->name, QStringLiteral("holiday"));
        QCOMPARE(pInfo->notes().size(), 2);
        QCOMPARE(pInfo->notes().first().rect, notes.first().rect);
        QCOMPARE(pInfo->notes().first().value, notes.first().value);
        QCOMPARE(pInfo->notes().first().text, notes.first().text);
        QVector<FileInfoPtr> list;
        source.fillFileInformation({nId, 12345, nId}, &list);
        QCOMPARE(list.size(), 2);
    }

    void survivesCrash()
    {
        const qint64 nId = id("a.jpg");
        note(QStringLiteral("a.jpg"));
        // The files as a crash would leave them: nothing closed, half a page written to the end of the journal.
        const QString crashed = m_place->path(QStringLiteral("crashed.sqlite"));
        QVERIFY(QFile::copy(databasePath(), crashed));
        QVERIFY(QFile::copy(databasePath() + QStringLiteral("-wal"), crashed + QStringLiteral("-wal")));
        QFile journal(crashed + QStringLiteral("-wal"));
        QVERIFY(journal.open(QIODevice::Append));
        journal.write(QByteArray(1500, '\x5a'));
        journal.close();
        Library again;
        QSignalSpy problems(&again, &Library::signalProblem);
        again.open(crashed);
        scan(&again, [&] { again.showFolders({m_place->files()}); });
        QCOMPARE(problems.size(), 0);
        QCOMPARE(again.record(nId)->notes().size(), 1);
    }

    void migratesStepByStep()
    {
        const QString connection = QStringLiteral("migration");
        {
            QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
            database.setDatabaseName(QStringLiteral(":memory:"));
            QVERIFY(database.open());
            const auto number = [&database](const char *statement) {
                QSqlQuery query(database);
                return query.exec(QLatin1String(statement)) && query.next() ? query.value(0).toInt() : -1;
            };
            LibrarySchema::Steps steps = {
                {QStringLiteral("CREATE TABLE t (a)"), QStringLiteral("INSERT INTO t VALUES (7)")}};
            QString error;
            QVERIFY(LibrarySchema::migrate(&database, steps, &error));
            steps.append({QStringLiteral("ALTER TABLE t ADD COLUMN b DEFAULT 8")});
            steps.append({QStringLiteral("UPDATE t SET b = 9"), QStringLiteral("no statement")});
            QVERIFY(!LibrarySchema::migrate(&database, steps, &error));
            QVERIFY(!error.isEmpty());
            // The step that worked stays, the one that failed left nothing behind.
            QCOMPARE(number("PRAGMA user_version"), 2);
            QCOMPARE(number("SELECT a FROM t"), 7);
            QCOMPARE(number("SELECT b FROM t"), 8);
            steps.last().removeLast();
            QVERIFY(LibrarySchema::migrate(&database, steps, &error));
            QCOMPARE(number("SELECT b FROM t"), 9);
            steps.removeLast();
            QVERIFY(!LibrarySchema::migrate(&database, steps, &error));
        }
        QSqlDatabase::removeDatabase(connection);
    }

    void answersAfterLibraryIsGone()
    {
        LibraryDataSource source(library());
        const auto pComment = source.commentAction();
        const auto pTag = source.tagAction();
        m_place->library.reset();
        QVector<FileInfoPtr> list;
        source.fillFileInformation({1}, &list);
        QVERIFY(list.isEmpty());
        QVERIFY(source.fileInfo(1, nullptr) == nullptr);
        QVERIFY(source.tagAction() == nullptr);
        QCOMPARE(pComment->setCommentsOfFile(1, {}), 0);
        QCOMPARE(pTag->associateTagsWithFiles({1}, {TagRecordPtr(new TagRecord{1, QString()})}), 0);
    }

private:
    QString databasePath() const { return m_place->path(QStringLiteral("library.sqlite")); }

    static void scan(Library *pLibrary, const std::function<void()> &start)
    {
        QSignalSpy ended(pLibrary, &Library::signalScanEnded);
        start();
        QVERIFY(ended.wait());
    }
    /** Gives the file a note and waits until it is stored. */
    void note(const QString &name)
    {
        QSignalSpy stored(library(), &Library::signalNotesStored);
        library()->setNotes(m_place->id(name), {{QRect(0, 0, 1, 1), 1, QStringLiteral("kept")}});
        QVERIFY(stored.wait());
    }
};

BIGIMGPREVIEW_TEST_MAIN(HostLibraryTest)
#include "tst_host_library.moc"
