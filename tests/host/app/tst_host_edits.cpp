#include "LibraryFixture.h"
#include "app/LibraryBanner.h"

#include <QPushButton>
#include <QSqlDatabase>
#include <QSqlQuery>

/** What users change in the library, and the ways on when the library file cannot be used. */
class HostEditsTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void init() override;
    void renamesWithoutReplacing_data();
    void renamesWithoutReplacing();
    void keepsLabelsAndColours();
    void keepsHowFarFilesAreAnalysed();
    void offersWaysOn_data();
    void offersWaysOn();

private:
    QString databasePath() const { return m_place->path(QStringLiteral("library.sqlite")); }
    static void execute(const QString &databasePath, const QString &statement, bool bKeepOpen = false);

    std::unique_ptr<LibraryFixture> m_place;
};

void HostEditsTest::init()
{
    LoggedTest::init();
    m_place = std::make_unique<LibraryFixture>();
    m_place->write(QStringLiteral("a.jpg"), QByteArrayLiteral("first"));
    m_place->write(QStringLiteral("b.jpg"), QByteArrayLiteral("second"));
}

void HostEditsTest::renamesWithoutReplacing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("bDone");
    QTest::newRow("another name") << "c.jpg" << true;
    QTest::newRow("another kind") << "a.png" << true;
    QTest::newRow("odd but allowed") << QString::fromUtf8(" ä\n.jpg") << true;
    QTest::newRow("taken") << "b.jpg" << false;
    QTest::newRow("taken by a file that is not listed") << ".hidden.jpg" << false;
    QTest::newRow("empty") << " " << false;
    QTest::newRow("a place") << "../a.jpg" << false;
    QTest::newRow("the folder") << ".." << false;
    QTest::newRow("too long") << QString(300, QLatin1Char('x')) << false;
}

void HostEditsTest::renamesWithoutReplacing()
{
    QFETCH(QString, name);
    QFETCH(bool, bDone);
    m_place->write(QStringLiteral(".hidden.jpg"), QByteArrayLiteral("hidden"));
    m_place->open();
    m_place->label(QStringLiteral("a.jpg"), QStringLiteral("kept"));
    const qint64 nId = m_place->id(QStringLiteral("a.jpg"));
    QSignalSpy renamed(m_place->library.get(), &Library::signalRenamed);
    QVERIFY(m_place->library->renameFile(nId, name) > 0);
    QVERIFY(renamed.wait());
    QCOMPARE(renamed.first().at(2).toString().isEmpty(), bDone);
    const FileRecordPtr pRecord = m_place->library->record(nId);
    QCOMPARE(pRecord->fileName(), bDone ? name : QStringLiteral("a.jpg"));
    QCOMPARE(pRecord->fileType(), name.endsWith(QLatin1String("png")) ? 10 : 20);
    QCOMPARE(pRecord->tags().size(), 1);
    QCOMPARE(QFile::exists(m_place->files(QStringLiteral("a.jpg"))), !bDone);
    for (const char *pOther : {"b.jpg", ".hidden.jpg"}) {
        QFile other(m_place->files(QLatin1String(pOther)));
        QVERIFY(other.open(QIODevice::ReadOnly));
        QVERIFY(other.readAll() != QByteArrayLiteral("first"));
    }
    // The watcher sees the same change and must make nothing else of it.
    m_place->open();
    QCOMPARE(m_place->library->count(), 2);
    QVERIFY(!m_place->library->record(nId)->isUnavailable());
}

void HostEditsTest::keepsLabelsAndColours()
{
    m_place->open();
    const QString name = QStringLiteral("a.jpg");
    m_place->label(name, QStringLiteral("sea"));
    m_place->label(name, QStringLiteral("Alps"));
    m_place->label(QStringLiteral("b.jpg"), QStringLiteral("sea"));
    QTRY_COMPARE(m_place->library->labels().size(), 2);
    const LabelRecord alps = m_place->library->labels().at(0);
    const LabelRecord sea = m_place->library->labels().at(1);
    QCOMPARE(alps.name, QStringLiteral("Alps"));
    m_place->library->setLabelColor(sea.id, 0x336699);
    m_place->library->removeLabels({m_place->id(name)}, {alps.id, 999});
    QTRY_COMPARE(m_place->record(name)->tags().size(), 1);

    m_place->open();
    QTRY_COMPARE(m_place->library->labels().size(), 2);
    QCOMPARE(m_place->library->labels().at(1).color, 0x336699u);
    QCOMPARE(m_place->record(name)->tags().size(), 1);
    // A label that is deleted leaves every file.
    m_place->library->deleteLabel(sea.id);
    QTRY_COMPARE(m_place->library->labels().size(), 1);
    QTRY_VERIFY(m_place->record(name)->tags().isEmpty() && m_place->record(QStringLiteral("b.jpg"))->tags().isEmpty());
}

void HostEditsTest::keepsHowFarFilesAreAnalysed()
{
    m_place->open();
    FileRow done = m_place->record(QStringLiteral("a.jpg"))->row();
    FileRow impossible = m_place->record(QStringLiteral("b.jpg"))->row();
    done.analysis = AnalysisState::Done;
    impossible.analysis = AnalysisState::Impossible;
    m_place->library->storeAnalysis({done, impossible});
    m_place->open();
    QCOMPARE(m_place->record(QStringLiteral("a.jpg"))->row().analysis, AnalysisState::Done);
    QCOMPARE(m_place->record(QStringLiteral("b.jpg"))->row().analysis, AnalysisState::Impossible);
    // Another content waits again.
    m_place->write(QStringLiteral("a.jpg"), QByteArray(50, 'z'));
    QTRY_COMPARE(m_place->record(QStringLiteral("a.jpg"))->row().nSize, 50);
    QCOMPARE(m_place->record(QStringLiteral("a.jpg"))->row().analysis, AnalysisState::Waiting);
    m_place->library->storeAnalysis({done});
    m_place->open();
    QCOMPARE(m_place->record(QStringLiteral("a.jpg"))->row().analysis, AnalysisState::Waiting);
}

void HostEditsTest::execute(const QString &databasePath, const QString &statement, bool bKeepOpen)
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

void HostEditsTest::offersWaysOn_data()
{
    QTest::addColumn<QString>("fault");
    QTest::newRow("damaged") << "damaged";
    QTest::newRow("newer") << "newer";
    QTest::newRow("locked") << "locked";
}

void HostEditsTest::offersWaysOn()
{
    QFETCH(QString, fault);
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
    // Put aside, not overwritten.
    const QStringList aside = QDir(QFileInfo(databasePath()).path())
                                  .entryList({QStringLiteral("library.sqlite.unusable-*")}, QDir::Files)
                                  .filter(QRegularExpression(QStringLiteral("\\d$")));
    QCOMPARE(aside.size(), bLocked ? 0 : 1);
    file.seek(0);
    QCOMPARE(file.readAll(), before);
}

BIGIMGPREVIEW_TEST_MAIN(HostEditsTest)
#include "tst_host_edits.moc"
