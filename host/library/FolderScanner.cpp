#include "library/FolderScanner.h"

#include "files/NativePath.h"
#include "library/FileTypes.h"

#include <QDir>
#include <QFile>

#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

namespace {

// Large enough to make one transaction of it cheap, small enough to show the first files of a folder at once.
constexpr int k_nBatchSize = 500;

/**
 * The name as text; one that is no valid text has replacement characters, by which nativePath finds it again. Null
 * when it could not be found again.
 */
QString textName(const QByteArray &bytes)
{
    const QString text = QFile::decodeName(bytes);
    const bool bFound = text.contains(QChar::ReplacementCharacter) || QFile::encodeName(text) == bytes;
    return bFound ? text : QString();
}

/** Whether an Ogg container begins with a Theora stream: its stream headers stand within the first pages. */
bool hasOggVideo(const QByteArray &native)
{
    constexpr int k_nHeaderBytes = 4096;
    QByteArray header(k_nHeaderBytes, '\0');
    std::ifstream(native.constData(), std::ios::binary).read(header.data(), header.size());
    return header.contains("\x80theora");
}

FileRow makeRow(const QString &folder, const QString &name, const QByteArray &native)
{
    const FileState state = fileState(native);
    FileRow row;
    row.folder = folder;
    row.name = name;
    row.bAvailable = state.bFile;
    row.nSize = state.nSize;
    row.nModifiedMsec = state.nModifiedMsec;
    row.nInode = state.nInode;
    row.nType = FileTypes::typeOfSuffix(FileTypes::suffixOfName(name));
    row.bHasVideo = row.nType == FileTypes::Ogg && state.bFile && hasOggVideo(native);
    return row;
}

} // namespace

FileRow readFileRow(const QString &folder, const QString &name)
{
    return makeRow(folder, name, nativePath(QDir(folder).filePath(name)));
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
    const std::filesystem::path native(nativePath(folder).toStdString());
    std::error_code error;
    const QByteArray canonical = QByteArray::fromStdString(std::filesystem::canonical(native, error).native());
    if (error) {
        ++pReport->nUnreadableFolders;
        return;
    }
    if (m_visited.contains(canonical))
        return;
    m_visited.insert(canonical);
    if (m_filter && !m_filter(folder))
        return;

    std::filesystem::directory_iterator entry(native, error);
    QSet<QString> oddNames;
    for (const std::filesystem::directory_iterator end; !error && entry != end && !*m_pCancelled;
         entry.increment(error)) {
        const QByteArray nativeName = QByteArray::fromStdString(entry->path().filename().native());
        if (nativeName.startsWith('.'))
            continue;
        const QString name = textName(nativeName);
        const bool bOdd = name.isEmpty() || name.contains(QChar::ReplacementCharacter);
        if (name.isEmpty() || (bOdd && oddNames.contains(name))) {
            ++pReport->nUnrepresentable;
            continue;
        }
        if (bOdd)
            oddNames.insert(name);
        std::error_code statusError;
        if (entry->is_directory(statusError))
            pSubFolders->append(QDir(folder).filePath(name));
        else if (entry->is_regular_file(statusError))
            addFile(makeRow(folder, name, QByteArray::fromStdString(entry->path().native())), pReport);
    }
    if (error)
        ++pReport->nUnreadableFolders;
}

void FolderScanner::addFile(const FileRow &row, ScanReport *pReport)
{
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
