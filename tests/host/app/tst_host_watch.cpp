#include "LibraryFixture.h"
#include "files/SafeRename.h"
#include "library/FolderWatcher.h"
#include "library/LibraryDataSource.h"

/** What happens to files while their folder is open, and what the library makes of it. */
class HostWatchTest : public LibraryTest {
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        LibraryTest::init();
        write("a.jpg", QByteArrayLiteral("first"));
        write("sub/b.png", QByteArrayLiteral("second"));
        m_place->open();
    }

    void noticesNewAndChangedFiles()
    {
        write("new.jpg");
        QTRY_VERIFY(id("new.jpg") != 0);
        // Written in place: nothing in the folder changes but the file.
        const qint64 nId = id("a.jpg");
        write("a.jpg", QByteArray(77, 'y'));
        QTRY_COMPARE(record("a.jpg")->row().nSize, 77);
        QCOMPARE(id("a.jpg"), nId);
    }

    void dimsMissingFilesAndTakesThemBack()
    {
        LibraryDataSource source(library());
        QSignalSpy removed(source.fileListProvider(), &IFileListProvider::signalRemoveFiles);
        const QString name = QStringLiteral("sub/b.png");
        m_place->label(name, QStringLiteral("kept"));
        const qint64 nId = m_place->id(name);
        QVERIFY(QFile::rename(m_place->files(name), m_place->path(QStringLiteral("away"))));
        QTRY_VERIFY(library()->record(nId)->isUnavailable());
        QCOMPARE(removed.size(), 1);
        QCOMPARE(removed.first().first().value<QVector<qint64>>(), QVector<qint64>{nId});

        // Also after a start: it is not forgotten while it is away.
        m_place->open();
        QVERIFY(m_place->record(name)->isUnavailable());
        QVERIFY(QFile::rename(m_place->path(QStringLiteral("away")), m_place->files(name)));
        QTRY_VERIFY(!library()->record(nId)->isUnavailable());
        QCOMPARE(library()->record(nId)->tags().size(), 1);
    }

    void movedFilesKeepTheirLabels_data()
    {
        const auto row = columns<QString, QString, QString, QString>("from", "to", "file", "fileAfterwards");
        row("renamed", "a.jpg", "z.jpg", "a.jpg", "z.jpg");
        row("into another folder", "a.jpg", "sub/a.jpg", "a.jpg", "sub/a.jpg");
        row("with its folder", "sub", "other", "sub/b.png", "other/b.png");
    }

    void movedFilesKeepTheirLabels()
    {
        const auto [from, to, file, fileAfterwards] = currentRow<QString, QString, QString, QString>();
        m_place->label(file, QStringLiteral("kept"));
        const qint64 nId = m_place->id(file);
        QVERIFY(QDir().rename(m_place->files(from), m_place->files(to)));
        QTRY_COMPARE(m_place->id(fileAfterwards), nId);
        const FileRecordPtr pRecord = library()->record(nId);
        QVERIFY(!pRecord->isUnavailable());
        QCOMPARE(pRecord->tags().size(), 1);
        QCOMPARE(library()->count(), 2);
    }

    void copiesAreNewFiles()
    {
        m_place->label(QStringLiteral("a.jpg"), QStringLiteral("original"));
        const qint64 nId = id("a.jpg");
        // The same name, size and time of change, as a copy that keeps the time has them.
        QVERIFY(QFile::copy(files("a.jpg"), files("sub/a.jpg")));
        QFile copy(files("sub/a.jpg"));
        QVERIFY(copy.open(QIODevice::ReadWrite));
        QVERIFY(copy.setFileTime(QFileInfo(files("a.jpg")).lastModified(), QFileDevice::FileModificationTime));
        copy.close();
        QTRY_VERIFY(id("sub/a.jpg") != 0);
        QVERIFY(id("sub/a.jpg") != nId);
        QCOMPARE(id("a.jpg"), nId);
    }

    void followsFolders()
    {
        write("deep/er/c.jpg");
        QTRY_VERIFY(id("deep/er/c.jpg") != 0);
        // The new folder is watched like the others.
        write("deep/er/d.jpg");
        QTRY_VERIFY(id("deep/er/d.jpg") != 0);
        QVERIFY(QDir(files("deep")).removeRecursively());
        QTRY_VERIFY(record("deep/er/c.jpg")->isUnavailable() && record("deep/er/d.jpg")->isUnavailable());
        QVERIFY(!record("a.jpg")->isUnavailable());
    }

    void survivesManyChangesAtOnce()
    {
        constexpr int k_nFiles = 1200;
        for (int i = 0; i < k_nFiles; ++i)
            m_place->write(QStringLiteral("many/%1.jpg").arg(i));
        QTRY_COMPARE_WITH_TIMEOUT(library()->count(), k_nFiles + 2, 20000);
        QSignalSpy missing(library(), &Library::signalMissing);
        QVERIFY(QDir(files("many")).removeRecursively());
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

    void looksAtWhatCannotBeWatched()
    {
        FolderWatcher watcher;
        watcher.setSystemLimit(1, 100);
        QSignalSpy changed(&watcher, &FolderWatcher::signalChanged);
        watcher.add(m_place->files());
        watcher.add(files("sub"));
        QVERIFY(watcher.contains(files("sub")));
        write("sub/new.jpg");
        QTRY_VERIFY_WITH_TIMEOUT(!changed.isEmpty(), 10000);
        QCOMPARE(changed.first().first().toStringList(), QStringList{files("sub")});
        // Written in place: nothing in the folder tells.
        changed.clear();
        write("sub/new.jpg", QByteArrayLiteral("other"));
        QTRY_VERIFY(!changed.isEmpty());
        watcher.clear();
        changed.clear();
        write("other.jpg");
        QVERIFY(!changed.wait(600));
    }

    void watchesWhatTookThePlace()
    {
        // As with a drive that is taken out and put in again: the same path leads to another folder.
        const QString place = m_place->path(QStringLiteral("drive"));
        FolderWatcher watcher;
        QSignalSpy changed(&watcher, &FolderWatcher::signalChanged);
        for (const QString &folder : {files("sub"), m_place->files()}) {
            QFile::remove(place);
            QVERIFY(QFile::link(folder, place));
            watcher.add(place);
            QVERIFY(writeFile(folder + QStringLiteral("/new.jpg"), QByteArrayLiteral("x")));
            QTRY_COMPARE(changed.size(), 1);
            QCOMPARE(changed.takeFirst().first().toStringList(), QStringList{place});
        }
        // The one before is left alone.
        write("sub/later.jpg");
        QVERIFY(!changed.wait(600));
    }

    void forgetsOnlyWhenTold()
    {
        const QString name = QStringLiteral("a.jpg");
        m_place->label(name, QStringLiteral("gone with it"));
        const qint64 nId = m_place->id(name);
        QSignalSpy removed(library(), &Library::signalRemoved);
        library()->forgetFiles({nId, 12345});
        QTRY_COMPARE(removed.size(), 1);
        QCOMPARE(removed.first().first().value<QVector<qint64>>(), QVector<qint64>{nId});
        QVERIFY(library()->record(nId) == nullptr);
        // The disk is not touched; looked at again it is a new file.
        QVERIFY(QFile::exists(m_place->files(name)));
        library()->rescan();
        QTRY_VERIFY(m_place->id(name) != 0);
        QVERIFY(m_place->id(name) != nId);
        QVERIFY(m_place->record(name)->tags().isEmpty());
    }
};

BIGIMGPREVIEW_TEST_MAIN(HostWatchTest)
#include "tst_host_watch.moc"
