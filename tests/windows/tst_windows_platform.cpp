#include "FileActionTest.h"
#include "actions/TsQtUtils.h"
#include "common/Platform.h"

#include <QClipboard>
#include <QStandardPaths>

// These need the first one before them.
// clang-format off
#include <windows.h>
#include <shellapi.h>
#include <oleidl.h>
// clang-format on

namespace {

constexpr int LongestShellPath = 256;

/** A path on drive C: of exactly so many characters. */
QString pathOfLength(int nLength)
{
    const QString path = QStringLiteral("C:/folder/") + QString(nLength, QLatin1Char('n'));
    return path.left(nLength - 4) + QStringLiteral(".png");
}

/** The files on Windows' own clipboard, as other programs get them. */
QStringList filesOnClipboard()
{
    QStringList files;
    if (OpenClipboard(nullptr) == 0)
        return files;
    const auto drop = static_cast<HDROP>(GetClipboardData(CF_HDROP));
    const UINT nFiles = drop != nullptr ? DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0) : 0;
    for (UINT i = 0; i < nFiles; ++i) {
        std::wstring path(DragQueryFileW(drop, i, nullptr, 0), L'\0');
        DragQueryFileW(drop, i, &path[0], UINT(path.size() + 1));
        files.append(QString::fromStdWString(path));
    }
    CloseClipboard();
    return files;
}

/** What the clipboard says is to be done with its files; 0 where it says nothing. */
DWORD effectOnClipboard()
{
    DWORD nEffect = 0;
    if (OpenClipboard(nullptr) == 0)
        return nEffect;
    const HANDLE data = GetClipboardData(RegisterClipboardFormatW(L"Preferred DropEffect"));
    if (data != nullptr && GlobalSize(data) >= sizeof nEffect) {
        nEffect = *static_cast<const DWORD *>(GlobalLock(data));
        GlobalUnlock(data);
    }
    CloseClipboard();
    return nEffect;
}

} // namespace

/** The platform seam on Windows: temporary names, the file manager, the clipboard. */
class tst_windows_platform : public PluginTest {
    Q_OBJECT

private Q_SLOTS:
    void temporaryNames_data()
    {
        const auto row = columns<QString, bool>("name", "bNative");
        row("forward slashes", "plain", false);
        row("back slashes", "plain", true);
        row("spaces and percent", "a b %TEMP% c", true);
        row("other alphabets", "Bilder ä 图片", false);
        row("longest", "…", true); // filled up below
    }

    void temporaryNames()
    {
        const auto [name, bNative] = currentRow<QString, bool>();
        constexpr int LongestFolder = MAX_PATH - 14; // as the system's documentation has it
        QString folder = m_pFolder->filePath(name);
        if (name == QString::fromUtf8("…"))
            folder = folder.chopped(1) + QString(LongestFolder - folder.size() + 1, QLatin1Char('l'));
        QVERIFY(QDir().mkpath(folder));
        const QString native = QDir::toNativeSeparators(folder);
        const QString given = bNative ? native : folder;

        const QString first = TsQtUtils::makeTempFilePath(given, QStringLiteral(".webp"));
        QVERIFY2(first.startsWith(native + QLatin1Char('\\')), qPrintable(first));
        QVERIFY2(first.endsWith(QStringLiteral(".tmp.webp"), Qt::CaseInsensitive), qPrintable(first));
        // What the system made to find the name is gone again.
        QVERIFY(QDir(folder).isEmpty());
        // Names that are taken are not given out, whether the file has the extension or not.
        QVERIFY(writeFile(first.chopped(5)));
        QVERIFY(TsQtUtils::makeTempFilePath(given, QStringLiteral(".webp")) != first);
        QVERIFY(QFile::remove(first.chopped(5)));
        QVERIFY(QImage(3, 2, QImage::Format_RGB32).save(first, "png"));
        for (int i = 0; i < 20; ++i)
            QVERIFY(TsQtUtils::makeTempFilePath(given, QStringLiteral(".webp")) != first);
    }

    void noTemporaryName_data()
    {
        const auto row = columns<QString>("name");
        row("missing", "none");
        row("a file", "file");
        row("too long", QStringLiteral("%1/%1").arg(QString(200, QLatin1Char('x'))));
    }

    void noTemporaryName()
    {
        const auto [name] = currentRow<QString>();
        const QString path = m_pFolder->filePath(name);
        if (name == QLatin1String("file"))
            QVERIFY(writeFile(path));
        else if (name.size() > MAX_PATH)
            QVERIFY(QDir().mkpath(path));
        QCOMPARE(TsQtUtils::makeTempFilePath(path, QStringLiteral(".png")), QString());
    }

    void systemsTemporaryFolder()
    {
        std::wstring folder(MAX_PATH + 1, L'\0');
        folder.resize(GetTempPathW(MAX_PATH, &folder[0])); // ends in a back slash
        for (const QString &path : {TsQtUtils::makeTempFilePath(QString(), QStringLiteral(".webp")),
                                    TsQtUtils::makeTempPicturePath(QStringLiteral(".webp"))}) {
            QVERIFY2(path.startsWith(QString::fromStdWString(folder), Qt::CaseInsensitive), qPrintable(path));
            QVERIFY2(!path.contains(QLatin1Char('/')), qPrintable(path));
        }
    }

    void revealed_data()
    {
        const auto row = columns<QString, QString>("path", "asked");
        const auto file = [&row](const char *pName, const char *pPath, const char *pNative) {
            row(pName, pPath, QStringLiteral("/select,\"%1\"").arg(QString::fromUtf8(pNative)));
        };
        file("file", "C:/pictures/file.png", "C:\\pictures\\file.png");
        file("back slashes", "C:\\pictures\\file.png", "C:\\pictures\\file.png");
        file("small drive letter", "c:/file.png", "C:\\file.png"); // as Qt writes drives
        file("spaces and commas", "C:/my pictures, all/a  b.png", "C:\\my pictures, all\\a  b.png");
        file("percent", "C:/100 %/%TEMP%.png", "C:\\100 %\\%TEMP%.png");
        file("quotes", "C:/it's/a\"b\".png", "C:\\it's\\a\"b\".png");
        file("other alphabets", "C:/ä/图片 😀.png", "C:\\ä\\图片 😀.png");
        file("no extension, dots", "C:/a/../b/./c", "C:\\b\\c");
        file("network", "//server/the share/a b.png", "\\\\server\\the share\\a b.png");
        file("device, as the menu asks", "//?/C:/pictures/file.png", "C:\\pictures\\file.png");
        file("network device", "//?/UNC/server/share/a b.png", "\\\\server\\share\\a b.png");
        file("device", "\\\\?\\C:\\pictures\\file.png", "C:\\pictures\\file.png"); // Qt needs no prefix
        row("longest", pathOfLength(LongestShellPath),
            QStringLiteral("/select,\"%1\"").arg(QDir::toNativeSeparators(pathOfLength(LongestShellPath))));
        row("folder", "C:/windows", "\"C:\\windows\"");
        row("drive", "C:/", "\"C:\\\"");
    }

    void revealed()
    {
        const auto [path, asked] = currentRow<QString, QString>();
        const UrlCatcher catcher;
        TsQtUtils::showInGraphicalShell(path);
        QCOMPARE(askedOfExplorer(), asked);
        QVERIFY(catcher.urls.isEmpty());
    }

    void tooLongForTheShell()
    {
        const UrlCatcher catcher;
        const QString path = pathOfLength(LongestShellPath + 1);
        TsQtUtils::showInGraphicalShell(path);
        QCOMPARE(catcher.urls, QList<QUrl>{QUrl::fromLocalFile(path)});
        QCOMPARE(log().lines(QtInfoMsg),
                 QStringList{QStringLiteral("TsQtUtils::showInGraphicalShell org_path %1 type2 cmd %2")
                                 .arg(path, QUrl::fromLocalFile(path).toString())});
        // The next question is the only one that the file manager gets.
        TsQtUtils::showInGraphicalShell(QStringLiteral("C:/next.png"));
        QCOMPARE(askedOfExplorer(), QStringLiteral("/select,\"C:\\next.png\""));
    }

    void readersLeaveFilesFree_data() { namedRows({"plain.gif", "ä 图片.gif", "long"}); }

    void readersLeaveFilesFree()
    {
        QString path = m_pFolder->filePath(rowName());
        if (rowName() == QLatin1String("long"))
            path = m_pFolder->filePath(QStringLiteral("%1/%1/%1/a.gif").arg(QString(120, QLatin1Char('p'))));
        QVERIFY(QDir().mkpath(QFileInfo(path).path()) && writeFile(path, "content"));
        QFile file;
        QVERIFY(Platform::openForReading(&file, QDir::toNativeSeparators(path)));
        QVERIFY(QFile::rename(path, path + QStringLiteral(".moved")));
        QVERIFY(QFile::remove(path + QStringLiteral(".moved")));
        QCOMPARE(file.readAll(), QByteArray("content"));
        file.close();
        QVERIFY(!Platform::openForReading(&file, path));
        // Another program keeps this one to itself.
        QVERIFY(writeFile(path, "content"));
        const QString extended = QStringLiteral("\\\\?\\") + QDir::toNativeSeparators(path);
        const HANDLE held = CreateFileW(reinterpret_cast<const wchar_t *>(extended.utf16()), GENERIC_READ, 0, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        QVERIFY(held != INVALID_HANDLE_VALUE);
        QVERIFY(!Platform::openForReading(&file, path));
        CloseHandle(held);
        QVERIFY(Platform::openForReading(&file, path));
    }

    void copiedFile_data()
    {
        const auto row = columns<QString, QString>("path", "native");
        row("file", "C:/a b/c.png", "C:\\a b\\c.png");
        row("back slashes", "C:\\a b\\c.png", "C:\\a b\\c.png");
        row("special", "D:/ü%41#?&/图片.png", "D:\\ü%41#?&\\图片.png");
        row("network", "//server/share/c.png", "\\\\server\\share\\c.png");
        row("long", pathOfLength(400), QDir::toNativeSeparators(pathOfLength(400)));
    }

    void copiedFile()
    {
        const auto [path, native] = currentRow<QString, QString>();
        host().addFile(1, 10, path);
        openFiles({1}, 1);
        data()->copyFile();
        QCOMPARE(filesOnClipboard(), QStringList{native});
        QCOMPARE(effectOnClipboard(), DWORD(DROPEFFECT_COPY));
        data()->copyFilePath();
        QCOMPARE(filesOnClipboard(), QStringList());
        QCOMPARE(QApplication::clipboard()->text(), path);
    }

protected:
    void init() override
    {
        PluginTest::init();
        m_pFolder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_pFolder->isValid());
        qputenv("BIGIMGPREVIEW_EXPLORER_RECORD", QDir::toNativeSeparators(record()).toLocal8Bit());
    }

private:
    QString record() const { return m_pFolder->filePath(QStringLiteral("asked")); }

    /** Waits for the stand-in to be asked; nothing when it never is. */
    QString askedOfExplorer() const
    {
        if (!QTest::qWaitFor([this] { return QFile::exists(record()); }, 20000))
            return {};
        const QByteArray text = readFile(record());
        return QString::fromUtf16(reinterpret_cast<const ushort *>(text.constData()), text.size() / 2);
    }

    std::unique_ptr<QTemporaryDir> m_pFolder;
};

BIGIMGPREVIEW_TEST_MAIN(tst_windows_platform)
#include "tst_windows_platform.moc"
