#include "actions/Leftovers.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QUuid>

#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>

namespace {

constexpr qint64 k_nKeptMsec = qint64(30) * 24 * 3600 * 1000;

/** Removes what an entry names; false when it may be there but cannot be reached. */
bool removeNamed(const QByteArray &path)
{
    const int nSlash = path.lastIndexOf('/');
    // Only what is surely ours, whatever the entry says.
    if (nSlash <= 0 || !path.mid(nSlash + 1).startsWith(leftoverPrefix()))
        return true;
    struct stat state = {};
    if (::lstat(path.constData(), &state) != 0)
        return ::stat(path.left(nSlash).constData(), &state) == 0;
    return removeTree(path);
}

} // namespace

QByteArray leftoverPrefix()
{
    return QByteArrayLiteral(".bigimgpreview-");
}

bool removeTree(const QByteArray &path)
{
    std::error_code error;
    std::filesystem::remove_all(std::filesystem::path(path.toStdString()), error);
    return !error;
}

Leftover::~Leftover()
{
    // What was renamed to its final name is not here any more. An entry stays for what cannot be removed now.
    if (removeNamed(m_path) && !m_entry.isEmpty())
        ::unlink(m_entry.constData());
}

Leftovers::Leftovers(const QString &journalFolder)
    : m_folder(QFile::encodeName(journalFolder))
{
}

std::unique_ptr<Leftover> Leftovers::make(const QByteArray &folder) const
{
    std::unique_ptr<Leftover> pLeftover(new Leftover);
    const QByteArray id = QUuid::createUuid().toByteArray(QUuid::Id128);
    pLeftover->m_path = folder + '/' + leftoverPrefix() + id;
    QDir().mkpath(QFile::decodeName(m_folder));
    // An entry is seen by others only when it is complete and locked.
    const QByteArray hidden = m_folder + "/." + id;
    const QByteArray entry = m_folder + '/' + id;
    UniqueFd lock(::open(hidden.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    const QByteArray &path = pLeftover->m_path;
    const bool bWritten = lock.isValid() && ::flock(lock.get(), LOCK_EX | LOCK_NB) == 0 &&
                          ::write(lock.get(), path.constData(), size_t(path.size())) == path.size() &&
                          ::rename(hidden.constData(), entry.constData()) == 0;
    if (bWritten) {
        pLeftover->m_entry = entry;
        pLeftover->m_lock = std::move(lock);
    } else if (lock.isValid()) {
        ::unlink(hidden.constData());
    }
    return pLeftover;
}

void Leftovers::cleanUp() const
{
    const QDir folder(QFile::decodeName(m_folder));
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : names) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
            continue;
        // A hidden one that is being written right now turns out to be unusable to its writer, who does without.
        if (::flock(file.handle(), LOCK_EX | LOCK_NB) != 0)
            continue;
        const qint64 nAge = file.fileTime(QFileDevice::FileModificationTime).msecsTo(QDateTime::currentDateTimeUtc());
        if (removeNamed(file.readAll()) || nAge > k_nKeptMsec)
            file.remove();
    }
}
