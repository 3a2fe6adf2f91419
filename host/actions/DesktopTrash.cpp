#include "actions/DesktopTrash.h"

#include "actions/TargetNames.h"
#include "actions/UniqueFd.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char k_szNoteSuffix[] = ".trashinfo";

struct Bin {
    QByteArray folder;
    QByteArray top; ///< Paths in notes count from here; empty: they are absolute.
};

/** A folder of the user's own, made where it is missing. Links are not followed: others may have made them. */
bool isOwnFolder(const QByteArray &path)
{
    struct stat state = {};
    if (::mkdir(path.constData(), 0700) != 0 && errno != EEXIST)
        return false;
    return ::lstat(path.constData(), &state) == 0 && S_ISDIR(state.st_mode) && state.st_uid == ::getuid();
}

int openFolder(const QByteArray &path)
{
    return ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

/** The highest folder above the file on its file system. */
QByteArray topOf(const QByteArray &path, dev_t nDevice)
{
    QByteArray top = path;
    for (QByteArray folder = path; folder.size() > 1;) {
        const int nSlash = folder.lastIndexOf('/');
        folder = nSlash > 0 ? folder.left(nSlash) : QByteArrayLiteral("/");
        struct stat state = {};
        if (::stat(folder.constData(), &state) != 0 || state.st_dev != nDevice)
            break;
        top = folder;
    }
    return top;
}

std::optional<Bin> binOn(const QByteArray &top)
{
    const QByteArray base = top.endsWith('/') ? top : QByteArray(top + '/');
    const QByteArray user = QByteArray::number(::getuid());
    struct stat state = {};
    // One set up for all users must keep them from touching each other's files.
    const QByteArray shared = base + ".Trash";
    const bool bShared =
        ::lstat(shared.constData(), &state) == 0 && S_ISDIR(state.st_mode) && (state.st_mode & S_ISVTX) != 0;
    if (bShared && isOwnFolder(shared + '/' + user))
        return Bin{shared + '/' + user, base};
    if (isOwnFolder(base + ".Trash-" + user))
        return Bin{base + ".Trash-" + user, base};
    return std::nullopt;
}

std::optional<Bin> binFor(const QByteArray &path, dev_t nDevice)
{
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    QDir().mkpath(data);
    const QByteArray home = QFile::encodeName(data) + "/Trash";
    struct stat state = {};
    if (::stat(QFile::encodeName(data).constData(), &state) == 0 && state.st_dev == nDevice) {
        const bool bThere = ::mkdir(home.constData(), 0700) == 0 || errno == EEXIST;
        if (bThere && ::stat(home.constData(), &state) == 0 && state.st_dev == nDevice)
            return Bin{home, QByteArray()};
    }
    return binOn(topOf(path, nDevice));
}

QByteArray noteFor(const QByteArray &path, const Bin &bin)
{
    const QByteArray from = bin.top.isEmpty() ? path : path.mid(bin.top.size());
    return "[Trash Info]\nPath=" + from.toPercentEncoding("/") +
           "\nDeletionDate=" + QDateTime::currentDateTime().toString(Qt::ISODate).toLatin1() + '\n';
}

bool writeNote(int nFolder, const QByteArray &name, const QByteArray &note)
{
    const UniqueFd file(::openat(nFolder, name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file.isValid())
        return false;
    if (::write(file.get(), note.constData(), size_t(note.size())) == note.size())
        return true;
    const int nError = errno;
    ::unlinkat(nFolder, name.constData(), 0);
    errno = nError != 0 ? nError : EIO;
    return false;
}

} // namespace

int DesktopTrash::moveToTrash(const QByteArray &path)
{
    constexpr int k_nLongest = TargetNames::k_nLongestName - int(sizeof(k_szNoteSuffix)) + 1;
    constexpr int k_nMostNumbers = 100000;
    struct stat state = {};
    if (::lstat(path.constData(), &state) != 0)
        return errno;
    const std::optional<Bin> bin = binFor(path, state.st_dev);
    if (!bin || !isOwnFolder(bin->folder + "/files") || !isOwnFolder(bin->folder + "/info"))
        return ENOTSUP;
    const UniqueFd files(openFolder(bin->folder + "/files"));
    const UniqueFd notes(openFolder(bin->folder + "/info"));
    const QByteArray wanted = path.mid(path.lastIndexOf('/') + 1);
    const QByteArray note = noteFor(path, *bin);
    for (int nNumber = 0; nNumber < k_nMostNumbers; ++nNumber) {
        const QByteArray name = nNumber == 0 && wanted.size() <= k_nLongest
                                    ? wanted
                                    : TargetNames::numbered(wanted, nNumber + 1, k_nLongest);
        const QByteArray noteName = name + k_szNoteSuffix;
        // The note first: it takes the name for all programs, and without its file it does no harm.
        if (!writeNote(notes.get(), noteName, note)) {
            if (errno == EEXIST)
                continue;
            return errno;
        }
        const int nError = TargetNames::renameWithoutReplacing(AT_FDCWD, path, files.get(), name);
        if (nError == 0)
            return 0;
        ::unlinkat(notes.get(), noteName.constData(), 0);
        if (nError != EEXIST)
            return nError;
    }
    return EEXIST;
}
