#include "actions/PackWriter.h"

#include "actions/PackArchive.h"
#include "files/NativePath.h"
#include "library/FileTypes.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <archive.h>
#include <archive_entry.h>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace {

constexpr int k_nBuffer = 1 << 20;
// Deflating more than this keeps the user waiting for longer than the space is worth.
constexpr qint64 k_nMostDeflated = qint64(64) << 20;
constexpr int k_nPrivateMode = 0644;

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(PackWriter)
};

/** Whether files of this suffix shrink: most pictures, sounds and videos are compressed already. */
bool isCompressible(const QString &suffix)
{
    static const QSet<QString> compressible = {
        QStringLiteral("bmp"), QStringLiteral("svg"), QStringLiteral("txt"), QStringLiteral("tga"),
        QStringLiteral("ppm"), QStringLiteral("pgm"), QStringLiteral("pbm"), QStringLiteral("xcf"),
        QStringLiteral("psd"), QStringLiteral("psb"), QStringLiteral("tif"), QStringLiteral("tiff"),
        QStringLiteral("ai"),  QStringLiteral("eps"), QStringLiteral("ico"), QStringLiteral("wav"),
        QStringLiteral("aif"), QStringLiteral("ttf"), QStringLiteral("otf"), QStringLiteral("doc"),
        QStringLiteral("xls"), QStringLiteral("ppt"), QStringLiteral("hdr"), QStringLiteral("obj")};
    return compressible.contains(suffix.toLower());
}

} // namespace

PackWriter::PackWriter(const QString &path, FileRecordList files, const Leftovers &leftovers)
    : m_path(path)
    , m_files(std::move(files))
    , m_leftovers(leftovers)
    , m_buffer(k_nBuffer, Qt::Uninitialized)
{
    if (!PackFormat::isPackName(m_path)) {
        // The user was not asked about the name that comes of it.
        m_path += PackFormat::suffix();
        m_bMayReplace = false;
    }
}

PackWriter::~PackWriter()
{
    if (m_pArchive == nullptr)
        return;
    // What freeing it still writes is not for the file.
    if (m_nWriteError == 0)
        m_nWriteError = ECANCELED;
    ::archive_write_free(m_pArchive);
}

void PackWriter::fail(const IoStatus &status, qint64 nFileId)
{
    m_outcome.addError(status.outcomeCode(), status.error, nFileId);
    if (status.kind == IoStatus::Missing && nFileId != 0)
        m_outcome.missing.append(nFileId);
}

IoStatus PackWriter::archiveError() const
{
    const int nError = m_nWriteError != 0 ? m_nWriteError : ::archive_errno(m_pArchive);
    const IoStatus status = IoStatus::ofErrno(nError, QFileInfo(m_path).fileName());
    return {status.kind == IoStatus::Missing ? IoStatus::Failed : status.kind, status.error};
}

// An archive that was told of an error would never give its buffer back, so it is told of none and asked no more.
ssize_t PackWriter::writeBytes(struct archive *, void *pThis, const void *pBytes, size_t nBytes)
{
    auto *pWriter = static_cast<PackWriter *>(pThis);
    const char *pNext = static_cast<const char *>(pBytes);
    for (size_t nLeft = nBytes; nLeft > 0 && pWriter->m_nWriteError == 0;) {
        const ssize_t nWritten = ::write(pWriter->m_pack.get(), pNext, nLeft);
        if (nWritten < 0 && errno == EINTR)
            continue;
        if (nWritten <= 0) {
            pWriter->m_nWriteError = nWritten < 0 ? errno : EIO;
            break;
        }
        pNext += nWritten;
        nLeft -= size_t(nWritten);
    }
    return ssize_t(nBytes);
}

bool PackWriter::isWhole(int nResult) const
{
    return nResult >= ARCHIVE_WARN && m_nWriteError == 0;
}

bool PackWriter::openPack()
{
    const QByteArray folder = nativePath(QFileInfo(m_path).path());
    m_pUnfinished = m_leftovers.make(folder);
    m_pack.reset(::open(m_pUnfinished->path().constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!m_pack.isValid()) {
        fail(IoStatus::ofErrno(errno, QFile::decodeName(folder)));
        return false;
    }
    m_pBehind = std::make_unique<WriteBehind>(m_pack.get());
    m_pArchive = ::archive_write_new();
    ::archive_write_set_format_zip(m_pArchive);
    ::archive_write_set_format_option(m_pArchive, "zip", "hdrcharset", "UTF-8");
    ::archive_write_set_bytes_per_block(m_pArchive, k_nBuffer);
    ::archive_write_set_bytes_in_last_block(m_pArchive, 1);
    if (::archive_write_open(m_pArchive, this, nullptr, &PackWriter::writeBytes, nullptr) == ARCHIVE_OK)
        return true;
    fail(archiveError());
    return false;
}

ActionOutcome PackWriter::run(ActionTask &task)
{
    const Utf8Locale locale;
    if (!openPack())
        return m_outcome;
    ByteMeter meter(task, m_files);
    m_entries.insert(QLatin1String(PackFormat::k_szManifest));
    for (const FileRecordPtr &pRecord : m_files) {
        if (!addFile(pRecord, &meter))
            return m_outcome;
        meter.fileDone();
    }
    if (!m_packed.isEmpty() && finish(&meter) && m_outcome.nCode == ActionOutcome::Done)
        meter.finish();
    return m_outcome;
}

QString PackWriter::entryFor(const char *folder, const QByteArray &name)
{
    const QByteArray base = TargetNames::portable(name);
    QString entry = QLatin1String(folder) + QString::fromUtf8(base);
    for (int nNumber = 1; m_entries.contains(entry.toLower()); ++nNumber)
        entry = QLatin1String(folder) + QString::fromUtf8(TargetNames::numbered(base, nNumber));
    m_entries.insert(entry.toLower());
    return entry;
}

bool PackWriter::addFile(const FileRecordPtr &pRecord, ByteMeter *pMeter)
{
    const QByteArray source = nativePath(pRecord->filePath());
    struct stat state = {};
    IoStatus status;
    const UniqueFd file = openSource(source, &state, &status);
    if (!file.isValid()) {
        // The others are packed all the same; the answer tells of this one.
        fail(status, pRecord->fileId());
        return true;
    }
    PackedFile packed;
    packed.name = source.mid(source.lastIndexOf('/') + 1);
    packed.entry = entryFor(PackFormat::k_szFiles, packed.name);
    packed.nSize = state.st_size;
    packed.nModifiedMsec = qint64(state.st_mtim.tv_sec) * 1000 + state.st_mtim.tv_nsec / 1000000;
    packed.nMode = int(state.st_mode & 0777);
    packed.notes = pRecord->notes();
    const TagRecordList labels = pRecord->tags();
    for (const TagRecordPtr &pLabel : labels)
        packed.labels.append(pLabel->name);
    const bool bDeflate =
        state.st_size <= k_nMostDeflated && isCompressible(FileTypes::suffixOfName(pRecord->fileName()));
    status =
        addEntry(packed.entry, file.get(), state, bDeflate, [pMeter](qint64 nBytes) { return pMeter->add(nBytes); });
    if (status.isDone() && !isUnchanged(file.get(), state))
        status = {IoStatus::Failed, Words::tr("%1 changed while it was packed").arg(pRecord->fileName())};
    if (!status.isDone()) {
        fail(status, pRecord->fileId());
        return false;
    }
    addPreview(pRecord, &packed);
    m_packed.append(packed);
    return true;
}

void PackWriter::addPreview(const FileRecordPtr &pRecord, PackedFile *pFile)
{
    constexpr qint64 k_nMostBytes = qint64(32) << 20;
    const QString path = pRecord->coverPath();
    QFile picture(path);
    if (path.isEmpty() || !picture.open(QIODevice::ReadOnly))
        return;
    const QByteArray bytes = picture.read(k_nMostBytes);
    const QString entry = entryFor(PackFormat::k_szPreviews, QFile::encodeName(QFileInfo(path).fileName()));
    if (!bytes.isEmpty() && addBytes(entry, bytes))
        pFile->previewEntry = entry;
}

bool PackWriter::beginEntry(const QString &entry, qint64 nSize, qint64 nModifiedSec, int nMode, bool bDeflate)
{
    if (bDeflate)
        ::archive_write_zip_set_compression_deflate(m_pArchive);
    else
        ::archive_write_zip_set_compression_store(m_pArchive);
    const std::unique_ptr<struct archive_entry, decltype(&::archive_entry_free)> header(::archive_entry_new(),
                                                                                        &::archive_entry_free);
    ::archive_entry_set_pathname_utf8(header.get(), entry.toUtf8().constData());
    ::archive_entry_set_filetype(header.get(), AE_IFREG);
    ::archive_entry_set_perm(header.get(), mode_t(nMode));
    ::archive_entry_set_size(header.get(), nSize);
    ::archive_entry_set_mtime(header.get(), time_t(nModifiedSec), 0);
    return isWhole(::archive_write_header(m_pArchive, header.get()));
}

IoStatus PackWriter::addEntry(const QString &entry, int nFd, const struct stat &state, bool bDeflate,
                              const BytesHandler &onBytes)
{
    if (!beginEntry(entry, state.st_size, state.st_mtim.tv_sec, int(state.st_mode & 0777), bDeflate))
        return archiveError();
    ::posix_fadvise(nFd, 0, 0, POSIX_FADV_SEQUENTIAL);
    qint64 nLeft = state.st_size;
    while (nLeft > 0) {
        const ssize_t nRead = ::read(nFd, m_buffer.data(), size_t(qMin<qint64>(nLeft, m_buffer.size())));
        if (nRead < 0)
            return IoStatus::ofErrno(errno, entry.section(QLatin1Char('/'), -1));
        if (nRead == 0)
            break; // Shorter than it was: told by its state afterwards.
        if (::archive_write_data(m_pArchive, m_buffer.constData(), size_t(nRead)) != nRead || m_nWriteError != 0)
            return archiveError();
        m_pBehind->written(::lseek(m_pack.get(), 0, SEEK_CUR));
        nLeft -= nRead;
        if (!onBytes(nRead))
            return {IoStatus::Cancelled, Words::tr("Cancelled")};
    }
    return isWhole(::archive_write_finish_entry(m_pArchive)) ? IoStatus() : archiveError();
}

bool PackWriter::addBytes(const QString &entry, const QByteArray &bytes)
{
    return beginEntry(entry, bytes.size(), 0, k_nPrivateMode, false) &&
           ::archive_write_data(m_pArchive, bytes.constData(), size_t(bytes.size())) == bytes.size() &&
           isWhole(::archive_write_finish_entry(m_pArchive));
}

bool PackWriter::finish(ByteMeter *pMeter)
{
    if (!addBytes(QLatin1String(PackFormat::k_szManifest), PackManifest::write(m_packed)) ||
        ::archive_write_close(m_pArchive) != ARCHIVE_OK || m_nWriteError != 0) {
        fail(archiveError());
        return false;
    }
    const QString name = QFileInfo(m_path).fileName();
    if (::fchmod(m_pack.get(), k_nPrivateMode) != 0)
        errno = 0; // There are no permissions here.
    if (::fsync(m_pack.get()) != 0) {
        fail(IoStatus::ofErrno(errno, name));
        return false;
    }
    if (!pMeter->add(0)) {
        fail({IoStatus::Cancelled, Words::tr("Cancelled")});
        return false;
    }
    const QByteArray folderPath = nativePath(QFileInfo(m_path).path());
    const QByteArray wanted = QFile::encodeName(name);
    const UniqueFd folder(::open(folderPath.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    int nError = 0;
    QByteArray given;
    if (!m_bMayReplace)
        nError = TargetNames::Publisher(folder.get()).publish(folder.get(), m_pUnfinished->name(), wanted, &given);
    else if (::renameat(folder.get(), m_pUnfinished->name().constData(), folder.get(), wanted.constData()) != 0)
        nError = errno;
    if (nError != 0) {
        const IoStatus status = IoStatus::ofErrno(nError, name);
        fail({status.kind == IoStatus::Missing ? IoStatus::Failed : status.kind, status.error});
        return false;
    }
    ::fsync(folder.get());
    return true;
}
