#include "files/NativePath.h"

#include <QFile>
#include <QFileInfo>

#include <dirent.h>
#include <memory>
#include <sys/stat.h>

QByteArray nativePath(const QString &path)
{
    const QByteArray native = QFile::encodeName(path);
    if (!path.contains(QChar::ReplacementCharacter) || QFile::exists(path))
        return native;
    const QString folder = QFileInfo(path).path();
    const QString name = QFileInfo(path).fileName();
    const QByteArray nativeFolder = nativePath(folder);
    const std::unique_ptr<DIR, int (*)(DIR *)> entries(::opendir(nativeFolder.constData()), &::closedir);
    while (const dirent *pEntry = entries ? ::readdir(entries.get()) : nullptr) {
        if (QFile::decodeName(pEntry->d_name) == name)
            return nativeFolder + '/' + pEntry->d_name;
    }
    return native;
}

FileState fileState(const QByteArray &native)
{
    FileState result;
    struct stat state = {};
    if (::stat(native.constData(), &state) != 0)
        return result;
    result.bFile = S_ISREG(state.st_mode);
    result.bFolder = S_ISDIR(state.st_mode);
    result.nSize = state.st_size;
    result.nInode = qint64(state.st_ino);
    result.nModifiedMsec = qint64(state.st_mtim.tv_sec) * 1000 + state.st_mtim.tv_nsec / 1000000;
    return result;
}
