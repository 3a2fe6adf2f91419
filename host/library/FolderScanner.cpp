#include "library/FolderScanner.h"

#include "library/FileTypes.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <system_error>
#include <utility>

namespace {

// Large enough to make one transaction of it cheap, small enough to show the first files of a folder at once.
constexpr int k_nBatchSize = 500;

std::filesystem::path nativePath(const QString &path)
{
#ifdef Q_OS_WIN
    return std::filesystem::path(path.toStdWString());
#else
    return std::filesystem::path(QFile::encodeName(path).toStdString());
#endif
}

/** The name as text; null when the bytes on disk do not survive the way to text and back. */
QString textName(const std::filesystem::path &name)
{
#ifdef Q_OS_WIN
    return QString::fromStdWString(name.wstring());
#else
    const QByteArray bytes = QByteArray::fromStdString(name.native());
    const QString text = QFile::decodeName(bytes);
    return QFile::encodeName(text) == bytes ? text : QString();
#endif
}

/** Whether an Ogg container begins with a Theora stream: its stream headers stand within the first pages. */
bool hasOggVideo(const QString &path)
{
    constexpr qint64 k_nHeaderBytes = 4096;
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(k_nHeaderBytes).contains("\x80theora");
}

} // namespace

FileRow readFileRow(const QString &folder, const QString &name)
{
    FileRow row;
    row.folder = folder;
    row.name = name;
    const QFileInfo info(QDir(folder).filePath(name));
    row.bAvailable = info.isFile();
    row.nSize = info.size();
    row.nModifiedMsec = info.lastModified().toMSecsSinceEpoch();
    row.nType = FileTypes::typeOfSuffix(FileTypes::suffixOfName(name));
    row.bHasVideo = row.nType == FileTypes::Ogg && hasOggVideo(info.filePath());
    return row;
}

FolderScanner::FolderScanner(std::shared_ptr<std::atomic_bool> pCancelled, BatchHandler handler)
    : m_pCancelled(std::move(pCancelled))
    , m_handler(std::move(handler))
{
}

ScanReport FolderScanner::scan(const QStringList &roots, bool bRecursive)
{
    ScanReport report;
    m_visited.clear();
    QStringList pending = roots;
    while (!pending.isEmpty() && !*m_pCancelled) {
        QStringList subFolders;
        const QString folder = pending.takeLast();
        scanFolder(folder, &subFolders, &report);
        if (bRecursive)
            pending += subFolders;
    }
    flush();
    report.bCancelled = *m_pCancelled;
    return report;
}

void FolderScanner::scanFolder(const QString &folder, QStringList *pSubFolders, ScanReport *pReport)
{
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    if (canonical.isEmpty() || m_visited.contains(canonical)) {
        pReport->nUnreadableFolders += canonical.isEmpty() ? 1 : 0;
        return;
    }
    m_visited.insert(canonical);

    std::error_code error;
    std::filesystem::directory_iterator entry(nativePath(folder), error);
    if (error) {
        ++pReport->nUnreadableFolders;
        return;
    }
    for (const std::filesystem::directory_iterator end; entry != end && !*m_pCancelled; entry.increment(error)) {
        if (error)
            break;
        const QString name = textName(entry->path().filename());
        if (name.isEmpty()) {
            ++pReport->nUnrepresentable;
            continue;
        }
        if (name.startsWith(QLatin1Char('.')))
            continue;
        std::error_code statusError;
        if (entry->is_directory(statusError))
            pSubFolders->append(QDir(folder).filePath(name));
        else if (entry->is_regular_file(statusError))
            addFile(folder, name, pReport);
    }
}

void FolderScanner::addFile(const QString &folder, const QString &name, ScanReport *pReport)
{
    const FileRow row = readFileRow(folder, name);
    if (!row.bAvailable)
        return;
    ++pReport->nFiles;
    m_batch.append(row);
    if (m_batch.size() >= k_nBatchSize)
        flush();
}

void FolderScanner::flush()
{
    if (m_batch.isEmpty())
        return;
    m_handler(m_batch);
    m_batch.clear();
}
