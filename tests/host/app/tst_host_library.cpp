#include "TestMain.h"
#include "interfaces/actions/ICommentAction.h"
#include "interfaces/actions/ITagAction.h"
#include "library/Library.h"
#include "library/LibraryDataSource.h"
#include "library/LibrarySchema.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <memory>

/** The library on real files and folders: what it keeps, and what it does with files that it cannot use. */
class HostLibraryTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void keepsIdsAcrossRuns();
    void noticesChanges();
    void losesNothingWhenHurried();
    void sharesTheFileWithAnotherInstance();
    void listsOneFolderNow();
    void readsWhatItMayNotWrite();
    void keepsNotesAndLabels();
    void survivesCrash();
    void doesWithoutUsableFile_data();
    void doesWithoutUsableFile();
    void migratesStepByStep();
    void answersAfterLibraryIsGone();

private:
    QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }

    void write(const QString &name, int nSize = 1) const
    {
        const QString filePath = m_folder->filePath(QStringLiteral("files/") + name);
        QDir().mkpath(QFileInfo(filePath).path());
        QFile file(filePath);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(nSize, 'x'));
    }

    std::unique_ptr<Library> openLibrary(const QString &filePath) const
    {
        auto pLibrary = std::make_unique<Library>();
        pLibrary->open(filePath);
        return pLibrary;
    }

    static void scan(Library *pLibrary, const std::function<void()> &start)
    {
        QSignalSpy ended(pLibrary, &Library::signalScanEnded);
        start();
        QVERIFY(ended.wait());
    }

    void show(Library *pLibrary) const
    {
        scan(pLibrary, [this, pLibrary] { pLibrary->showFolders({path("files")}); });
    }

    /** The id of the file of this name in view; 0 when it is not. */
    static qint64 idOf(const FileRecordList &records, const QString &name)
    {
        for (const FileRecordPtr &pRecord : records) {
            if (pRecord->fileName() == name)
                return pRecord->fileId();
        }
        return 0;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace {

/** The records of the library, gathered from its signals. */
class Gatherer : public QObject {
public:
    explicit Gatherer(Library *pLibrary)
    {
        connect(pLibrary, &Library::signalRecords, this, [this](const FileRecordList &batch) { records += batch; });
    }

    FileRecordList records;
};

} // namespace

void HostLibraryTest::init()
{
    LoggedTest::init();
    m_folder = std::make_unique<QTemporaryDir>();
    write(QStringLiteral("a.jpg"));
    write(QStringLiteral("sub/b.png"));
}

void HostLibraryTest::cleanup()
{
    m_folder.reset();
    LoggedTest::cleanup();
}

void HostLibraryTest::keepsIdsAcrossRuns()
{
    qint64 nFirst = 0;
    {
        const auto pLibrary = openLibrary(path("new/library.sqlite"));
        const Gatherer gatherer(pLibrary.get());
        show(pLibrary.get());
        QCOMPARE(pLibrary->count(), 2);
        nFirst = idOf(gatherer.records, QStringLiteral("b.png"));
    }
    QVERIFY(nFirst > 0);
    write(QStringLiteral("a1.jpg"));
    const auto pLibrary = openLibrary(path("new/library.sqlite"));
    const Gatherer gatherer(pLibrary.get());
    show(pLibrary.get());
    QCOMPARE(pLibrary->count(), 3);
    QCOMPARE(idOf(gatherer.records, QStringLiteral("b.png")), nFirst);
    const FileRecordPtr pRecord = pLibrary->record(nFirst);
    QCOMPARE(pRecord->filePath(), path("files/sub/b.png"));
    QCOMPARE(pRecord->fileType(), 10);
    QCOMPARE(pRecord->suffix(), QStringLiteral("png"));
    QVERIFY(!pRecord->isUnavailable());
    QVERIFY(pRecord->thumbnailPath().isEmpty());
}

void HostLibraryTest::noticesChanges()
{
    const auto pLibrary = openLibrary(path("library.sqlite"));
    const Gatherer gatherer(pLibrary.get());
    show(pLibrary.get());
    const qint64 nId = idOf(gatherer.records, QStringLiteral("b.png"));
    const qint64 nOtherId = idOf(gatherer.records, QStringLiteral("a.jpg"));

    QSignalSpy missing(pLibrary.get(), &Library::signalMissing);
    QVERIFY(QFile::rename(path("files/sub/b.png"), path("away.png")));
    write(QStringLiteral("a.jpg"), 5);
    scan(pLibrary.get(), [&] { pLibrary->rescan(); });
    QTRY_COMPARE(missing.size(), 1);
    QCOMPARE(missing.first().first().value<QVector<qint64>>(), QVector<qint64>{nId});
    // Not forgotten: it is shown dimmed.
    QVERIFY(pLibrary->record(nId)->isUnavailable());
    QCOMPARE(pLibrary->record(nOtherId)->row().nSize, 5);

    // What comes back is the same file as before.
    QVERIFY(QFile::rename(path("away.png"), path("files/sub/b.png")));
    scan(pLibrary.get(), [&] { pLibrary->rescan(); });
    QVERIFY(!pLibrary->record(nId)->isUnavailable());
    QCOMPARE(pLibrary->count(), 2);
}

void HostLibraryTest::losesNothingWhenHurried()
{
    const auto pLibrary = openLibrary(path("library.sqlite"));
    show(pLibrary.get());
    QSignalSpy ended(pLibrary.get(), &Library::signalScanEnded);
    pLibrary->showFolders({path("files")});
    pLibrary->rescan();
    pLibrary->rescan();
    QTRY_VERIFY(!pLibrary->isScanning());
    QCOMPARE(ended.size(), 1);
    QCOMPARE(pLibrary->count(), 2);
}

void HostLibraryTest::sharesTheFileWithAnotherInstance()
{
    const auto pFirst = openLibrary(path("library.sqlite"));
    const auto pSecond = openLibrary(path("library.sqlite"));
    QSignalSpy problems(pFirst.get(), &Library::signalProblem);
    QSignalSpy otherProblems(pSecond.get(), &Library::signalProblem);
    constexpr int k_nFiles = 1500;
    for (int i = 0; i < k_nFiles; ++i)
        write(QStringLiteral("more/%1.jpg").arg(i));
    for (Library *pLibrary : {pFirst.get(), pSecond.get()})
        pLibrary->showFolders({path("files")});
    QTRY_VERIFY_WITH_TIMEOUT(!pFirst->isScanning() && !pSecond->isScanning(), 20000);
    QCOMPARE(pFirst->count(), k_nFiles + 2);
    QCOMPARE(pSecond->count(), k_nFiles + 2);

    // What the other one stored is news here too.
    write(QStringLiteral("a.jpg"), 7);
    write(QStringLiteral("new.jpg"));
    scan(pFirst.get(), [&] { pFirst->rescan(); });
    const Gatherer gatherer(pSecond.get());
    scan(pSecond.get(), [&] { pSecond->rescan(); });
    QCOMPARE(gatherer.records.size(), 2);
    QCOMPARE(pSecond->record(idOf(gatherer.records, QStringLiteral("a.jpg")))->row().nSize, 7);
    QCOMPARE(problems.size() + otherProblems.size(), 0);
}

void HostLibraryTest::readsWhatItMayNotWrite()
{
    qint64 nId = 0;
    {
        const auto pLibrary = openLibrary(path("library.sqlite"));
        const Gatherer gatherer(pLibrary.get());
        show(pLibrary.get());
        nId = idOf(gatherer.records, QStringLiteral("a.jpg"));
        pLibrary->setNotes(nId, {{QRect(0, 0, 1, 1), 1, QStringLiteral("kept")}});
    }
    QFile file(path("library.sqlite"));
    QVERIFY(file.setPermissions(QFileDevice::ReadOwner));
    if (file.open(QIODevice::ReadWrite))
        QSKIP("this user may write everything");
    Library library;
    QSignalSpy problems(&library, &Library::signalProblem);
    library.open(file.fileName());
    write(QStringLiteral("new.jpg"));
    show(&library);
    QCOMPARE(problems.size(), 1);
    QCOMPARE(library.count(), 3);
    QCOMPARE(library.record(nId)->notes().size(), 1);
}

void HostLibraryTest::listsOneFolderNow()
{
    const auto pLibrary = openLibrary(path("library.sqlite"));
    show(pLibrary.get());
    write(QStringLiteral("c.jpg"));
    QVERIFY(QFile::remove(path("files/a.jpg")));
    QSignalSpy records(pLibrary.get(), &Library::signalRecords);
    QSignalSpy removed(pLibrary.get(), &Library::signalRemoved);
    scan(pLibrary.get(), [&] { pLibrary->showFolderNow(path("files")); });
    // One list, of what is there now, and no second thoughts that would close a preview.
    QCOMPARE(records.size(), 1);
    QCOMPARE(records.first().first().value<FileRecordList>().size(), 1);
    QCOMPARE(removed.size(), 0);

    write(QStringLiteral(".hidden.png"));
    scan(pLibrary.get(), [&] { pLibrary->showFolderNow(path("files"), QStringLiteral(".hidden.png")); });
    QCOMPARE(pLibrary->count(), 2);
}

void HostLibraryTest::keepsNotesAndLabels()
{
    qint64 nId = 0;
    const QVector<NoteRecord> notes = {{QRect(1, 2, 30, 40), 0x00102030, QString::fromUtf8("Größe\n\"x\"")},
                                       {QRect(-1, 0, 1, 1), 0, QString()}};
    {
        const auto pLibrary = openLibrary(path("library.sqlite"));
        const Gatherer gatherer(pLibrary.get());
        LibraryDataSource source(pLibrary.get());
        show(pLibrary.get());
        nId = idOf(gatherer.records, QStringLiteral("a.jpg"));

        const auto pComment = source.commentAction();
        QSignalSpy stored(pComment.data(), &ICommentAction::signalCommentResult);
        QCOMPARE(pComment->setCommentsOfFile(-5, notes), 0);
        const qint64 nAction = pComment->setCommentsOfFile(nId, notes);
        QVERIFY(nAction > 0);
        QCOMPARE(stored.size(), 0);
        QVERIFY(stored.wait());
        QCOMPARE(stored.first().at(0).toLongLong(), nAction);
        QCOMPARE(source.fileInfo(nId, nullptr)->notes().size(), 2);

        const auto pTag = source.tagAction();
        QSignalSpy linked(pTag.data(), &ITagAction::signalTagResult);
        const TagRecordPtr pNamed(new TagRecord{0, QStringLiteral("holiday")});
        const TagRecordPtr pUnknown(new TagRecord{999, QString()});
        QVERIFY(pTag->associateTagsWithFiles({nId}, {pNamed, pNamed}) > 0);
        QVERIFY(pTag->associateTagsWithFiles({nId}, {pUnknown}) > 0);
        QTRY_COMPARE(linked.size(), 2);
        QCOMPARE(linked.at(0).at(1).value<ResponseInfoPtr>()->returnCode(), 0);
        QVERIFY(linked.at(1).at(1).value<ResponseInfoPtr>()->returnCode() != 0);
        QCOMPARE(linked.at(1).at(1).value<ResponseInfoPtr>()->failedFiles(), QVector<qint64>{nId});
    }
    const auto pLibrary = openLibrary(path("library.sqlite"));
    LibraryDataSource source(pLibrary.get());
    show(pLibrary.get());
    TagRecordList labels;
    const FileInfoPtr pInfo = source.fileInfo(nId, &labels);
    QCOMPARE(labels.size(), 1);
    QCOMPARE(labels.first()->name, QStringLiteral("holiday"));
    QCOMPARE(pInfo->tags(), labels);
    QCOMPARE(pInfo->notes().size(), 2);
    QCOMPARE(pInfo->notes().first().rect, notes.first().rect);
    QCOMPARE(pInfo->notes().first().value, notes.first().value);
    QCOMPARE(pInfo->notes().first().text, notes.first().text);
    QVector<FileInfoPtr> list;
    source.fillFileInformation({nId, 12345, nId}, &list);
    QCOMPARE(list.size(), 2);
}

void HostLibraryTest::survivesCrash()
{
    const auto pLibrary = openLibrary(path("library.sqlite"));
    const Gatherer gatherer(pLibrary.get());
    show(pLibrary.get());
    const qint64 nId = idOf(gatherer.records, QStringLiteral("a.jpg"));
    QSignalSpy stored(pLibrary.get(), &Library::signalNotesStored);
    pLibrary->setNotes(nId, {{QRect(0, 0, 1, 1), 1, QStringLiteral("kept")}});
    QVERIFY(stored.wait());

    // The files as a crash would leave them: nothing closed, half a page written to the end of the journal.
    QVERIFY(QFile::copy(path("library.sqlite"), path("crashed.sqlite")));
    QVERIFY(QFile::copy(path("library.sqlite-wal"), path("crashed.sqlite-wal")));
    QFile journal(path("crashed.sqlite-wal"));
    QVERIFY(journal.open(QIODevice::Append));
    journal.write(QByteArray(1500, '\x5a'));
    journal.close();
    const auto pAgain = openLibrary(path("crashed.sqlite"));
    QSignalSpy problems(pAgain.get(), &Library::signalProblem);
    show(pAgain.get());
    QCOMPARE(problems.size(), 0);
    QCOMPARE(pAgain->record(nId)->notes().size(), 1);
}

void HostLibraryTest::doesWithoutUsableFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("no database") << QByteArray("this is a text and no database, but long enough to be read as one ");
    QTest::newRow("a folder") << QByteArray();
}

void HostLibraryTest::doesWithoutUsableFile()
{
    QFETCH(QByteArray, content);
    const QString filePath = path("damaged.sqlite");
    if (content.isEmpty()) {
        QVERIFY(QDir().mkpath(filePath));
    } else {
        QFile file(filePath);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content.repeated(100));
    }
    auto pLibrary = std::make_unique<Library>();
    QSignalSpy problems(pLibrary.get(), &Library::signalProblem);
    pLibrary->open(filePath);
    show(pLibrary.get());
    QCOMPARE(problems.size(), 1);
    QVERIFY(problems.first().first().toString().contains(filePath));
    QCOMPARE(pLibrary->count(), 2);
    pLibrary.reset();
    QFile file(filePath);
    if (!content.isEmpty()) {
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), content.repeated(100));
    }
}

void HostLibraryTest::migratesStepByStep()
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

void HostLibraryTest::answersAfterLibraryIsGone()
{
    auto pLibrary = openLibrary(QStringLiteral(":memory:"));
    LibraryDataSource source(pLibrary.get());
    const auto pComment = source.commentAction();
    const auto pTag = source.tagAction();
    pLibrary.reset();
    QVector<FileInfoPtr> list;
    source.fillFileInformation({1}, &list);
    QVERIFY(list.isEmpty());
    QVERIFY(source.fileInfo(1, nullptr) == nullptr);
    QVERIFY(source.tagAction() == nullptr);
    QCOMPARE(pComment->setCommentsOfFile(1, {}), 0);
    QCOMPARE(pTag->associateTagsWithFiles({1}, {TagRecordPtr(new TagRecord{1, QString()})}), 0);
}

BIGIMGPREVIEW_TEST_MAIN(HostLibraryTest)
#include "tst_host_library.moc"
