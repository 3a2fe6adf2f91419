#include "LibraryFixture.h"
#include "files/SafeRename.h"
#include "library/FolderWatcher.h"
#include "library/LibraryDataSource.h"

#include <QDateTime>

/** What happens to files while their folder is open, and what the library makes of it. */
class HostWatchTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void init() override;
    void noticesNewAndChangedFiles();
    void dimsMissingFilesAndTakesThemBack();
    void movedFilesKeepTheirLabels_data();
    void movedFilesKeepTheirLabels();
    void copiesAreNewFiles();
    void followsFolders();
    void survivesManyChangesAtOnce();
    void looksAtWhatCannotBeWatched();
    void forgetsOnlyWhenTold();

private:
    std::unique_ptr<LibraryFixture> m_place;
};

void HostWatchTest::init()
{
    LoggedTest::init();
    m_place = std::make_unique<LibraryFixture>();
    m_place->write(QStringLiteral("a.jpg"), QByteArrayLiteral("first"));
    m_place->write(QStringLiteral("sub/b.png"), QByteArrayLiteral("second"));
    m_place->open();
}

void HostWatchTest::noticesNewAndChangedFiles()
{
    m_place->write(QStringLiteral("new.jpg"));
    QTRY_VERIFY(m_place->id(QStringLiteral("new.jpg")) != 0);
    // Written in place: nothing in the folder changes but the file.
    const qint64 nId = m_place->id(QStringLiteral("a.jpg"));
    m_place->write(QStringLiteral("a.jpg"), QByteArray(77, 'y'));
    QTRY_COMPARE(m_place->record(QStringLiteral("a.jpg"))->row().nSize, 77);
    QCOMPARE(m_place->id(QStringLiteral("a.jpg")), nId);
}

void HostWatchTest::dimsMissingFilesAndTakesThemBack()
{
    LibraryDataSource source(m_place->library.get());
    QSignalSpy removed(source.fileListProvider(), &IFileListProvider::signalRemoveFiles);
    const QString name = QStringLiteral("sub/b.png");
    m_place->label(name, QStringLiteral("kept"));
    const qint64 nId = m_place->id(name);
    QVERIFY(QFile::rename(m_place->files(name), m_place->path(QStringLiteral("away"))));
    QTRY_VERIFY(m_place->library->record(nId)->isUnavailable());
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed.first().first().value<QVector<qint64>>(), QVector<qint64>{nId});

    // Also after a start: it is not forgotten while it is away.
    m_place->open();
    QVERIFY(m_place->record(name)->isUnavailable());
    QVERIFY(QFile::rename(m_place->path(QStringLiteral("away")), m_place->files(name)));
    QTRY_VERIFY(!m_place->library->record(nId)->isUnavailable());
    QCOMPARE(m_place->library->record(nId)->tags().size(), 1);
}

void HostWatchTest::movedFilesKeepTheirLabels_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("fileAfterwards");
    const auto row = [](const char *pName, const char *pFrom, const char *pTo, const char *pFile, const char *pThen) {
        QTest::newRow(pName) << QString::fromLatin1(pFrom) << QString::fromLatin1(pTo) << QString::fromLatin1(pFile)
                             << QString::fromLatin1(pThen);
    };
    row("renamed", "a.jpg", "z.jpg", "a.jpg", "z.jpg");
    row("into another folder", "a.jpg", "sub/a.jpg", "a.jpg", "sub/a.jpg");
    row("with its folder", "sub", "other", "sub/b.png", "other/b.png");
}

void HostWatchTest::movedFilesKeepTheirLabels()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QString, file);
    QFETCH(QString, fileAfterwards);
    m_place->label(file, QStringLiteral("kept"));
    const qint64 nId = m_place->id(file);
    QVERIFY(QDir().rename(m_place->files(from), m_place->files(to)));
    QTRY_COMPARE(m_place->id(fileAfterwards), nId);
    const FileRecordPtr pRecord = m_place->library->record(nId);
    QVERIFY(!pRecord->isUnavailable());
    QCOMPARE(pRecord->tags().size(), 1);
    QCOMPARE(m_place->library->count(), 2);
}

void HostWatchTest::copiesAreNewFiles()
{
    m_place->label(QStringLiteral("a.jpg"), QStringLiteral("original"));
    const qint64 nId = m_place->id(QStringLiteral("a.jpg"));
    // The same name, size and time of change, as a copy that keeps the time has them.
    QVERIFY(QFile::copy(m_place->files(QStringLiteral("a.jpg")), m_place->files(QStringLiteral("sub/a.jpg"))));
    QFile copy(m_place->files(QStringLiteral("sub/a.jpg")));
    QVERIFY(copy.open(QIODevice::ReadWrite));
    QVERIFY(copy.setFileTime(QFileInfo(m_place->files(QStringLiteral("a.jpg"))).lastModified(),
                             QFileDevice::FileModificationTime));
    copy.close();
    QTRY_VERIFY(m_place->id(QStringLiteral("sub/a.jpg")) != 0);
    QVERIFY(m_place->id(QStringLiteral("sub/a.jpg")) != nId);
    QCOMPARE(m_place->id(QStringLiteral("a.jpg")), nId);
}

void HostWatchTest::followsFolders()
{
    m_place->write(QStringLiteral("deep/er/c.jpg"));
    QTRY_VERIFY(m_place->id(QStringLiteral("deep/er/c.jpg")) != 0);
    // The new folder is watched like the others.
    m_place->write(QStringLiteral("deep/er/d.jpg"));
    QTRY_VERIFY(m_place->id(QStringLiteral("deep/er/d.jpg")) != 0);
    QVERIFY(QDir(m_place->files(QStringLiteral("deep"))).removeRecursively());
    QTRY_VERIFY(m_place->record(QStringLiteral("deep/er/c.jpg"))->isUnavailable() &&
                m_place->record(QStringLiteral("deep/er/d.jpg"))->isUnavailable());
    QVERIFY(!m_place->record(QStringLiteral("a.jpg"))->isUnavailable());
}

void HostWatchTest::survivesManyChangesAtOnce()
{
    constexpr int k_nFiles = 1200;
    for (int i = 0; i < k_nFiles; ++i)
        m_place->write(QStringLiteral("many/%1.jpg").arg(i));
    QTRY_COMPARE_WITH_TIMEOUT(m_place->library->count(), k_nFiles + 2, 20000);
    QSignalSpy missing(m_place->library.get(), &Library::signalMissing);
    QVERIFY(QDir(m_place->files(QStringLiteral("many"))).removeRecursively());
    const auto missingCount = [&missing] {
        int nCount = 0;
        for (const QList<QVariant> &arguments : missing)
            nCount += arguments.first().value<QVector<qint64>>().size();
        return nCount;
    };
    QTRY_COMPARE_WITH_TIMEOUT(missingCount(), k_nFiles, 20000);
    // As few signals, not one for each file.
    QVERIFY(missing.size() < 50);
}

void HostWatchTest::looksAtWhatCannotBeWatched()
{
    FolderWatcher watcher;
    watcher.setSystemLimit(1);
    QSignalSpy changed(&watcher, &FolderWatcher::signalChanged);
    watcher.add(m_place->files());
    watcher.add(m_place->files(QStringLiteral("sub")));
    QVERIFY(watcher.contains(m_place->files(QStringLiteral("sub"))));
    m_place->write(QStringLiteral("sub/new.jpg"));
    QTRY_VERIFY_WITH_TIMEOUT(!changed.isEmpty(), 10000);
    QCOMPARE(changed.first().first().toStringList(), QStringList{m_place->files(QStringLiteral("sub"))});
    watcher.clear();
    changed.clear();
    m_place->write(QStringLiteral("other.jpg"));
    QVERIFY(!changed.wait(600));
}

void HostWatchTest::forgetsOnlyWhenTold()
{
    const QString name = QStringLiteral("a.jpg");
    m_place->label(name, QStringLiteral("gone with it"));
    const qint64 nId = m_place->id(name);
    QSignalSpy removed(m_place->library.get(), &Library::signalRemoved);
    m_place->library->forgetFiles({nId, 12345});
    QTRY_COMPARE(removed.size(), 1);
    QCOMPARE(removed.first().first().value<QVector<qint64>>(), QVector<qint64>{nId});
    QVERIFY(m_place->library->record(nId) == nullptr);
    // The disk is not touched; looked at again it is a new file.
    QVERIFY(QFile::exists(m_place->files(name)));
    m_place->library->rescan();
    QTRY_VERIFY(m_place->id(name) != 0);
    QVERIFY(m_place->id(name) != nId);
    QVERIFY(m_place->record(name)->tags().isEmpty());
}

BIGIMGPREVIEW_TEST_MAIN(HostWatchTest)
#include "tst_host_watch.moc"
