#include "actions/FileCopy.h"

#include <QCoreApplication>
#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/xattr.h>
#include <vector>

namespace {

constexpr qint64 k_nChunk = qint64(1) << 20;
constexpr qint64 k_nWindow = qint64(32) << 20;
constexpr qint64 k_nSmall = qint64(64) << 10;

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(FileCopy)
};

QString nameOf(const QByteArray &path)
{
    return QFile::decodeName(path.mid(path.lastIndexOf('/') + 1));
}

IoStatus cancelled()
{
    return {IoStatus::Cancelled, Words::tr("Cancelled")};
}

bool writeAll(int nFd, const char *pData, qint64 nBytes)
{
    while (nBytes > 0) {
        const ssize_t nWritten = ::write(nFd, pData, size_t(nBytes));
        if (nWritten < 0 && errno == EINTR)
            continue;
        if (nWritten <= 0)
            return false;
        pData += nWritten;
        nBytes -= nWritten;
    }
    return true;
}

/** Attributes in the user's own space, such as a desktop's tags and ratings; as many as the target takes. */
void copyAttributes(int nFrom, int nTo)
{
    const ssize_t nLength = ::flistxattr(nFrom, nullptr, 0);
    if (nLength <= 0)
        return;
    QByteArray names(int(nLength), '\0');
    names.resize(int(qMax<ssize_t>(0, ::flistxattr(nFrom, names.data(), size_t(names.size())))));
    const QList<QByteArray> list = names.split('\0');
    for (const QByteArray &name : list) {
        const ssize_t nSize = name.startsWith("user.") ? ::fgetxattr(nFrom, name.constData(), nullptr, 0) : -1;
        if (nSize < 0)
            continue;
        std::vector<char> value(size_t(nSize) + 1);
        const ssize_t nRead = ::fgetxattr(nFrom, name.constData(), value.data(), size_t(nSize));
        if (nRead >= 0)
            ::fsetxattr(nTo, name.constData(), value.data(), size_t(nRead), 0);
    }
}

/** One copy of one open file into another. */
class Copier {
public:
    Copier(int nFrom, int nTo, const struct stat &state, const BytesHandler &onBytes)
        : m_nFrom(nFrom)
        , m_nTo(nTo)
        , m_state(state)
        , m_onBytes(onBytes)
        , m_behind(nTo)
    {
    }

    IoStatus copy(const QString &what)
    {
        errno = 0;
        if (m_state.st_size <= k_nSmall)
            return finish(copyBuffered(), what);
        if (::ioctl(m_nTo, FICLONE, m_nFrom) == 0)
            return m_onBytes(m_state.st_size) ? IoStatus() : cancelled();
        struct statvfs space = {};
        // Told before the disk is filled up for nothing.
        if (::fstatvfs(m_nTo, &space) == 0 &&
            qint64(m_state.st_blocks) / 8 > qint64(space.f_bavail) * qint64(space.f_frsize) / 4096)
            return IoStatus::ofErrno(ENOSPC, what);
        const bool bHoles = qint64(m_state.st_blocks) * 512 < m_state.st_size;
        // No further than to where it ended when it was opened: one that grows is not run after.
        return finish(bHoles ? copyData() : copyRange(0, m_state.st_size), what);
    }

private:
    IoStatus finish(bool bDone, const QString &what) const
    {
        if (m_bStopped)
            return cancelled();
        return bDone ? IoStatus() : IoStatus::ofErrno(errno, what);
    }

    bool tell(qint64 nBytes)
    {
        m_bStopped = !m_onBytes(nBytes);
        return !m_bStopped;
    }

    /** The stretches that hold data; what lies between stays a hole. */
    bool copyData()
    {
        off_t nStart = 0;
        while ((nStart = ::lseek(m_nFrom, nStart, SEEK_DATA)) >= 0) {
            const off_t nEnd = ::lseek(m_nFrom, nStart, SEEK_HOLE);
            if (nEnd < 0 || !copyRange(nStart, nEnd))
                return false;
            nStart = nEnd;
        }
        return errno == ENXIO && ::ftruncate(m_nTo, m_state.st_size) == 0;
    }

    bool copyRange(off_t nStart, off_t nEnd)
    {
        off_t nFromPosition = nStart;
        off_t nToPosition = nStart;
        while (nFromPosition < nEnd) {
            const qint64 nWanted = qMin<qint64>(k_nChunk, nEnd - nFromPosition);
            const ssize_t nCopied = ::copy_file_range(m_nFrom, &nFromPosition, m_nTo, &nToPosition, size_t(nWanted), 0);
            if (nCopied == 0)
                return true;
            if (nCopied < 0) {
                const bool bUnable = errno == EXDEV || errno == ENOSYS || errno == EINVAL || errno == EOPNOTSUPP;
                return bUnable && ::lseek(m_nFrom, nFromPosition, SEEK_SET) >= 0 &&
                       ::lseek(m_nTo, nToPosition, SEEK_SET) >= 0 && copyBuffered(nEnd - nFromPosition);
            }
            m_behind.written(nToPosition);
            if (!tell(nCopied))
                return false;
        }
        return true;
    }

    /** From where both files stand. */
    bool copyBuffered(qint64 nLeft = -1)
    {
        std::vector<char> buffer(size_t(m_state.st_size <= k_nSmall ? k_nSmall : k_nChunk));
        qint64 nPosition = ::lseek(m_nTo, 0, SEEK_CUR);
        while (nLeft != 0) {
            const qint64 nWanted = nLeft < 0 ? qint64(buffer.size()) : qMin<qint64>(nLeft, qint64(buffer.size()));
            const ssize_t nRead = ::read(m_nFrom, buffer.data(), size_t(nWanted));
            if (nRead < 0 && errno == EINTR)
                continue;
            if (nRead <= 0)
                return nRead == 0;
            if (!writeAll(m_nTo, buffer.data(), nRead))
                return false;
            nPosition += nRead;
            nLeft -= nLeft < 0 ? 0 : nRead;
            m_behind.written(nPosition);
            if (!tell(nRead))
                return false;
        }
        return true;
    }

    const int m_nFrom;
    const int m_nTo;
    const struct stat &m_state;
    const BytesHandler &m_onBytes;
    WriteBehind m_behind;
    bool m_bStopped = false;
};

IoStatus copyOnce(int nFrom, const struct stat &state, int nTo, bool bSync, const QString &what,
                  const BytesHandler &onBytes)
{
    IoStatus status = Copier(nFrom, nTo, state, onBytes).copy(what);
    if (!status.isDone())
        return status;
    copyAttributes(nFrom, nTo);
    // A file system without permissions or times refuses: then there is nothing to keep.
    const struct timespec times[] = {state.st_atim, state.st_mtim};
    if (::fchmod(nTo, state.st_mode & 01777) != 0 || ::futimens(nTo, times) != 0)
        errno = 0;
    return bSync && ::fsync(nTo) != 0 ? IoStatus::ofErrno(errno, what) : IoStatus();
}

} // namespace

int IoStatus::outcomeCode() const
{
    switch (kind) {
    case Done:
        return ActionOutcome::Done;
    case Cancelled:
        return ActionOutcome::Cancelled;
    case NoSpace:
        return ActionOutcome::NoSpace;
    default:
        return ActionOutcome::Failed;
    }
}

IoStatus IoStatus::ofErrno(int nError, const QString &what)
{
    switch (nError) {
    case ENOSPC:
    case EDQUOT:
        return {NoSpace, Words::tr("There is not enough space for %1").arg(what)};
    case ENOENT:
    case ENOTDIR:
        return {Missing, Words::tr("%1 is not there any more").arg(what)};
    default:
        return {Failed, QStringLiteral("%1: %2").arg(what, qt_error_string(nError))};
    }
}

UniqueFd openSource(const QByteArray &path, struct stat *pState, IoStatus *pStatus)
{
    // Without waiting: what stood here may have become a pipe that nobody writes to.
    UniqueFd source(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!source.isValid() || ::fstat(source.get(), pState) != 0) {
        *pStatus = IoStatus::ofErrno(errno, nameOf(path));
        return UniqueFd();
    }
    if (!S_ISREG(pState->st_mode)) {
        *pStatus = {IoStatus::Failed, Words::tr("%1 is no file").arg(nameOf(path))};
        return UniqueFd();
    }
    return source;
}

bool isUnchanged(int nFd, const struct stat &before)
{
    struct stat now = {};
    return ::fstat(nFd, &now) == 0 && now.st_size == before.st_size && now.st_mtim.tv_sec == before.st_mtim.tv_sec &&
           now.st_mtim.tv_nsec == before.st_mtim.tv_nsec;
}

IoStatus copyFile(const QByteArray &source, int nFolder, const QByteArray &name, bool bSync,
                  const BytesHandler &onBytes)
{
    constexpr int k_nTries = 3;
    qint64 nTold = 0;
    const BytesHandler count = [&](qint64 nBytes) {
        nTold += nBytes;
        return onBytes(nBytes);
    };
    for (int nTry = 0; nTry < k_nTries; ++nTry) {
        struct stat state = {};
        IoStatus status;
        const UniqueFd from = openSource(source, &state, &status);
        if (!from.isValid())
            return status;
        const UniqueFd to(
            ::openat(nFolder, name.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600));
        if (!to.isValid())
            return IoStatus::ofErrno(errno == ENOENT ? EIO : errno, nameOf(source));
        status = copyOnce(from.get(), state, to.get(), bSync, nameOf(source), count);
        if (!status.isDone())
            return status;
        if (isUnchanged(from.get(), state))
            return status;
        onBytes(-nTold);
        nTold = 0;
    }
    return {IoStatus::Failed, Words::tr("%1 keeps changing while it is copied").arg(nameOf(source))};
}

void WriteBehind::written(qint64 nEnd)
{
    if (nEnd - m_nStarted < k_nWindow)
        return;
    // The next stretch is on its way while the one before must have arrived.
    ::sync_file_range(m_nFd, m_nStarted, nEnd - m_nStarted, SYNC_FILE_RANGE_WRITE);
    if (m_nStarted > m_nPrevious)
        ::sync_file_range(m_nFd, m_nPrevious, m_nStarted - m_nPrevious,
                          SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER);
    m_nPrevious = m_nStarted;
    m_nStarted = nEnd;
}
