#include "TestMain.h"
#include "files/NativePath.h"
#include "library/FileTypes.h"
#include "library/FolderScanner.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

/** The scanner on real folders, and the numbers it gives to files. */
class HostScannerTest : public LoggedTest {
    Q_OBJECT

private Q_SLOTS:
    void findsFilesOnce()
    {
        QTemporaryDir folder;
        QVERIFY(writeFile(folder.filePath(QStringLiteral("a.jpg"))));
        QVERIFY(writeFile(folder.filePath(QStringLiteral("sub/b.png"))));
        QVERIFY(writeFile(folder.filePath(QStringLiteral("sub/.hidden.png"))));
        QVERIFY(writeFile(folder.filePath(QStringLiteral(".hidden/c.png"))));
        QVERIFY(QFile::link(folder.path(), folder.filePath(QStringLiteral("sub/loop"))));
        QVERIFY(QFile::link(folder.filePath(QStringLiteral("sub")), folder.filePath(QStringLiteral("other"))));
        QVERIFY(QFile::link(QStringLiteral("nowhere.jpg"), folder.filePath(QStringLiteral("dangling.jpg"))));

        // The folder below is named as well: its files still come once.
        const ScanReport report = scan({folder.path(), folder.filePath(QStringLiteral("sub"))});
        QCOMPARE(names(), QStringList({QStringLiteral("a.jpg"), QStringLiteral("b.png")}));
        QCOMPARE(report.nFiles, 2);
        QVERIFY(!report.bCancelled);
        scan({folder.path()}, false);
        QCOMPARE(names(), QStringList{QStringLiteral("a.jpg")});
    }

    void copesWithOddNames()
    {
        QTemporaryDir folder;
        const QStringList odd = {QStringLiteral("new\nline.png"), QString::fromUtf8("日本 ü.png"),
                                 QStringLiteral(" .png"), QStringLiteral("%s'\"\\.png"),
                                 QStringLiteral("a.") + QString(200, QLatin1Char('b'))};
        for (const QString &name : odd)
            QVERIFY(writeFile(folder.filePath(name)));
        // Names that are no text are spelt with replacement characters; two that look alike then are one too many.
        const std::string noText = folder.path().toStdString() + "/bad\xff";
        std::filesystem::create_directory(noText);
        std::ofstream(noText + "/in\xe9.png") << "four";
        std::ofstream(noText + "/in\xe8.png") << "four";

        const ScanReport report = scan({folder.path()});
        QStringList expected = odd;
        expected.append(QStringLiteral("in\uFFFD.png"));
        expected.sort();
        QCOMPARE(names(), expected);
        QCOMPARE(report.nUnrepresentable, 1);
        for (const FileRow &row : qAsConst(m_rows)) {
            const FileState state = fileState(nativePath(QDir(row.folder).filePath(row.name)));
            QVERIFY(state.bFile);
            QCOMPARE(row.nSize, state.nSize);
        }
        std::filesystem::remove_all(noText); // the temporary folder could not
    }

    void reportsUnreadableFolder()
    {
        QTemporaryDir folder;
        QVERIFY(writeFile(folder.filePath(QStringLiteral("a.jpg"))));
        const ScanReport report = scan({folder.filePath(QStringLiteral("missing")), folder.path()});
        QCOMPARE(report.nUnreadableFolders, 1);
        QCOMPARE(report.nFiles, 1);
    }

    void takesManyFiles()
    {
        constexpr int k_nFolders = 20;
        constexpr int k_nFilesEach = 1000;
        QTemporaryDir folder;
        for (int i = 0; i < k_nFolders; ++i) {
            const std::string path = folder.path().toStdString() + "/" + std::to_string(i);
            std::filesystem::create_directory(path);
            for (int k = 0; k < k_nFilesEach; ++k)
                std::ofstream(path + "/" + std::to_string(k) + ".jpg");
        }
        const ScanReport report = scan({folder.path()});
        QCOMPARE(report.nFiles, k_nFolders * k_nFilesEach);
        QCOMPARE(m_rows.size(), report.nFiles);
        QVERIFY(m_nBatches > 1);

        m_nCancelAfterBatch = 1;
        const ScanReport cancelled = scan({folder.path()});
        QVERIFY(cancelled.bCancelled);
        QVERIFY(cancelled.nFiles < report.nFiles);
        m_nCancelAfterBatch = 0;
        *m_pCancelled = false;
    }

    void typesFiles()
    {
        const std::tuple<const char *, qint64, bool> rows[] = {
            {"A.JPeG", 21, true},  {"a.png.gif", 30, true}, {"a.NEF", 390, true},
            {"a.avif", 170, true}, {"a.pptx", 193, false},  {"a.mp4", 220, false},
            {"a.xyz", 0, false},   {"readme", 0, false},    {".jpg", 0, false}};
        for (const auto &[pName, nType, bPicture] : rows) {
            const qint64 nFound = FileTypes::typeOfSuffix(FileTypes::suffixOfName(QLatin1String(pName)));
            QVERIFY2(nFound == nType && FileTypes::isPicture(nFound) == bPicture, pName);
        }
    }

    void looksForVideoInOgg()
    {
        QTemporaryDir folder;
        QVERIFY(writeFile(folder.filePath(QStringLiteral("film.ogg")),
                          QByteArray("OggS") + QByteArray(24, '\0') + "\x80theora"));
        QVERIFY(writeFile(folder.filePath(QStringLiteral("song.ogg")),
                          QByteArray("OggS") + QByteArray(24, '\0') + "\x01vorbis"));
        QVERIFY(readFileRow(folder.path(), QStringLiteral("film.ogg")).bHasVideo);
        QVERIFY(!readFileRow(folder.path(), QStringLiteral("song.ogg")).bHasVideo);
        QVERIFY(!readFileRow(folder.path(), QStringLiteral("gone.ogg")).bAvailable);
    }

private:
    ScanReport scan(const QStringList &roots, bool bRecursive = true)
    {
        m_rows.clear();
        m_nBatches = 0;
        FolderScanner scanner(m_pCancelled, [this](const FolderScanner::Batch &batch) {
            m_rows += batch;
            ++m_nBatches;
            if (m_nCancelAfterBatch == m_nBatches)
                *m_pCancelled = true;
        });
        return scanner.scan(roots, bRecursive);
    }

    QStringList names() const
    {
        QStringList all;
        for (const FileRow &row : m_rows)
            all.append(row.name);
        all.sort();
        return all;
    }

    std::shared_ptr<std::atomic_bool> m_pCancelled = std::make_shared<std::atomic_bool>(false);
    QVector<FileRow> m_rows;
    int m_nBatches = 0;
    int m_nCancelAfterBatch = 0;
};

BIGIMGPREVIEW_TEST_MAIN(HostScannerTest)
#include "tst_host_scanner.moc"
