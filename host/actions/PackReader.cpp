#include "actions/PackReader.h"

#include "actions/PackArchive.h"
#include "actions/TargetNames.h"
#include "files/NativePath.h"

#include <QCoreApplication>

#include <archive.h>
#include <archive_entry.h>

namespace {

constexpr size_t k_nBlock = size_t(256) << 10;
// What unpacks to more than this many times its size is a trap, unless it is small.
constexpr qint64 k_nMostGrowth = 200;
constexpr qint64 k_nHarmlessBytes = qint64(1) << 30;
constexpr qint64 k_nMostPreviewBytes = qint64(64) << 20;
constexpr int k_nMostEntries = 2 * PackManifest::k_nMostFiles + 10;

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(PackReader)
};

/** What is wrong with an entry's name; empty: nothing. */
QString nameFault(const QString &name)
{
    const bool bDrive = name.size() >= 2 && name.at(1) == QLatin1Char(':');
    if (name.startsWith(QLatin1Char('/')) || name.startsWith(QLatin1Char('\\')) || bDrive)
        return Words::tr("it holds a file with an absolute name: %1").arg(name);
    for (const QString &part : name.split(QLatin1Char('/'))) {
        if (part == QLatin1String("..") || part.contains(QLatin1Char('\\')))
            return Words::tr("it holds a file that leads out of it: %1").arg(name);
        if (TargetNames::isDevice(part))
            return Words::tr("it holds a file with the name of a device: %1").arg(name);
    }
    return {};
}

QString entryFault(struct archive_entry *pEntry, const QString &name)
{
    if (::archive_entry_pathname(pEntry) == nullptr || name.isEmpty() || name.contains(QChar::ReplacementCharacter))
        return Words::tr("it holds a file whose name cannot be read");
    if (::archive_entry_symlink(pEntry) != nullptr || ::archive_entry_hardlink(pEntry) != nullptr)
        return Words::tr("it holds a link: %1").arg(name);
    const auto nType = ::archive_entry_filetype(pEntry);
    if (nType != AE_IFREG && nType != AE_IFDIR)
        return Words::tr("it holds something that is no file: %1").arg(name);
    if (::archive_entry_is_encrypted(pEntry) != 0)
        return Words::tr("it is encrypted");
    return nameFault(name);
}

} // namespace

PackReader::PackReader(const QString &path)
    : m_path(nativePath(path))
{
}

PackReader::Archive PackReader::open(QString *pError) const
{
    Archive pArchive(::archive_read_new(), &::archive_read_free);
    // By its directory, which tells everything before anything is unpacked.
    ::archive_read_support_format_zip_seekable(pArchive.get());
    if (::archive_read_open_filename(pArchive.get(), m_path.constData(), k_nBlock) == ARCHIVE_OK)
        return pArchive;
    *pError = Words::tr("it cannot be opened: %1").arg(QString::fromUtf8(::archive_error_string(pArchive.get())));
    return Archive(nullptr, &::archive_read_free);
}

bool PackReader::forEachEntry(const EntryHandler &handle, QString *pError) const
{
    const Utf8Locale locale;
    const Archive pArchive = open(pError);
    if (pArchive == nullptr)
        return false;
    for (int nEntries = 0;; ++nEntries) {
        struct archive_entry *pEntry = nullptr;
        const int nStatus = ::archive_read_next_header(pArchive.get(), &pEntry);
        if (nStatus == ARCHIVE_EOF)
            return true;
        if (nStatus < ARCHIVE_WARN || nEntries >= k_nMostEntries) {
            *pError = nEntries < k_nMostEntries ? Words::tr("it is damaged") : Words::tr("it holds too many files");
            return false;
        }
        const QString name = QString::fromUtf8(::archive_entry_pathname(pEntry));
        *pError = entryFault(pEntry, name);
        if (!pError->isEmpty())
            return false;
        if (::archive_entry_filetype(pEntry) == AE_IFDIR)
            continue;
        const qint64 nSize = ::archive_entry_size_is_set(pEntry) != 0 ? ::archive_entry_size(pEntry) : -1;
        if (!handle(pArchive.get(), name, nSize, pError))
            return false;
    }
}

bool PackReader::copyData(struct archive *pArchive, qint64 nMost, const std::function<bool(const char *, qint64)> &take,
                          QString *pError)
{
    std::vector<char> buffer(k_nBlock);
    qint64 nTaken = 0;
    for (;;) {
        const la_ssize_t nRead = ::archive_read_data(pArchive, buffer.data(), buffer.size());
        if (nRead < 0) {
            *pError = Words::tr("it is damaged: %1").arg(QString::fromUtf8(::archive_error_string(pArchive)));
            return false;
        }
        nTaken += nRead;
        if (nTaken > nMost) {
            *pError = Words::tr("it unpacks to more than it says");
            return false;
        }
        if (nRead == 0)
            return true;
        if (!take(buffer.data(), nRead))
            return false;
    }
}

bool PackReader::takeEntry(struct archive *pArchive, const QString &entry, qint64 nSize, QString *pError)
{
    const QString folded = entry.toCaseFolded();
    if (m_folded.contains(folded)) {
        *pError = Words::tr("it holds two files called %1").arg(entry);
        return false;
    }
    m_folded.insert(folded);
    if (nSize < 0) {
        *pError = Words::tr("it does not tell the size of %1").arg(entry);
        return false;
    }
    m_nTotal += nSize;
    const qint64 nPackBytes = fileState(m_path).nSize;
    if (m_nTotal > k_nHarmlessBytes && m_nTotal / k_nMostGrowth > nPackBytes) {
        *pError = Words::tr("it would unpack to far more than it can honestly hold");
        return false;
    }
    if (entry != QLatin1String(PackFormat::k_szManifest)) {
        m_sizes.insert(entry, nSize);
        return true;
    }
    const auto append = [this](const char *pData, qint64 nBytes) {
        m_manifest.append(pData, int(nBytes));
        return true;
    };
    return copyData(pArchive, PackManifest::k_nMostBytes, append, pError);
}

bool PackReader::compare(QString *pError) const
{
    QHash<QString, qint64> unlisted = m_sizes;
    for (const PackedFile &file : m_files) {
        if (!unlisted.contains(file.entry) || unlisted.take(file.entry) != file.nSize) {
            *pError = Words::tr("%1 is missing or is not what its list says").arg(file.entry);
            return false;
        }
        if (file.previewEntry.isEmpty())
            continue;
        if (!unlisted.contains(file.previewEntry) || unlisted.take(file.previewEntry) > k_nMostPreviewBytes) {
            *pError = Words::tr("%1 is missing or too large").arg(file.previewEntry);
            return false;
        }
    }
    if (!unlisted.isEmpty())
        *pError = Words::tr("it holds a file that its list does not name: %1").arg(unlisted.cbegin().key());
    return unlisted.isEmpty();
}

bool PackReader::check(QString *pError)
{
    const auto take = [this](struct archive *pArchive, const QString &entry, qint64 nSize, QString *pFault) {
        return takeEntry(pArchive, entry, nSize, pFault);
    };
    if (!forEachEntry(take, pError))
        return false;
    if (m_manifest.isEmpty()) {
        *pError = Words::tr("it has no list of its files");
        return false;
    }
    return PackManifest::read(m_manifest, &m_files, pError) && compare(pError);
}

bool PackReader::unpack(const Sink &sink, QString *pError)
{
    const auto handle = [this, &sink](struct archive *pArchive, const QString &entry, qint64 /*nSize*/,
                                      QString *pFault) {
        if (!m_sizes.contains(entry))
            return true;
        return sink.begin(entry) && copyData(pArchive, m_sizes.value(entry), sink.data, pFault) && sink.end();
    };
    return forEachEntry(handle, pError);
}
