#include "files/SafeRename.h"

#include "files/NativePath.h"

#include <QCoreApplication>
#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>
#ifdef Q_OS_LINUX
#include <fcntl.h>
#endif

namespace {

constexpr int k_nLongestNameBytes = 255;

/** What the user reads. */
struct Words {
    Q_DECLARE_TR_FUNCTIONS(SafeRename)
};

/** 0, or the system's error number. */
int renameNative(const QByteArray &from, const QByteArray &to)
{
#ifdef Q_OS_LINUX
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
#endif
    // File systems that cannot refuse to replace: a second name fails where there is one already.
    if (::link(from.constData(), to.constData()) != 0)
        return errno;
    return ::unlink(from.constData()) == 0 ? 0 : errno;
}

} // namespace

QString fileNameFault(const QString &name)
{
    if (name.trimmed().isEmpty())
        return Words::tr("A file needs a name.");
    if (name == QLatin1String(".") || name == QLatin1String(".."))
        return Words::tr("This name stands for a folder.");
    if (name.contains(QLatin1Char('/')) || name.contains(QChar::Null))
        return Words::tr("A name cannot contain \"/\".");
    if (QFile::encodeName(name).size() > k_nLongestNameBytes)
        return Words::tr("The name is too long.");
    return {};
}

bool renameWithoutReplacing(const QString &from, const QString &to, QString *pError)
{
    const int nError = renameNative(nativePath(from), QFile::encodeName(to));
    switch (nError) {
    case 0:
        return true;
    case EEXIST:
        *pError = Words::tr("There is another file of this name.");
        break;
    case ENOENT:
        *pError = Words::tr("The file is not there any more.");
        break;
    case EACCES:
    case EPERM:
    case EROFS:
        *pError = Words::tr("The folder may not be changed.");
        break;
    default:
        *pError = QString::fromLocal8Bit(std::strerror(nError));
    }
    return false;
}
