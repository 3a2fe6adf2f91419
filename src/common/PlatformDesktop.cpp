#include "common/Platform.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QProcess>
#include <QTemporaryFile>
#include <QUrl>

#include <limits>
#include <sys/mman.h>

namespace {

void openFolder(const QString &absolutePath)
{
    const QFileInfo info(absolutePath);
    const QString folder = info.isDir() ? absolutePath : info.absolutePath();
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}

/** Asks the file manager over the session bus; `onFailure` runs when there is none. */
void selectInFileManager(const QString &absolutePath)
{
    // A comma would end the array's element in the command's own syntax.
    QByteArray url = QUrl::fromLocalFile(absolutePath).toEncoded();
    url.replace(',', "%2C");
    auto *pCall = new QProcess(QCoreApplication::instance());
    const auto fallBack = [pCall, absolutePath] {
        openFolder(absolutePath);
        pCall->deleteLater();
    };
    QObject::connect(pCall, &QProcess::errorOccurred, pCall, [fallBack](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            fallBack();
    });
    QObject::connect(pCall, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), pCall,
                     [pCall, fallBack](int nExitCode, QProcess::ExitStatus status) {
                         if (nExitCode == 0 && status == QProcess::NormalExit)
                             pCall->deleteLater();
                         else
                             fallBack();
                     });
    pCall->start(QStringLiteral("dbus-send"),
                 {QStringLiteral("--session"), QStringLiteral("--print-reply"), QStringLiteral("--reply-timeout=5000"),
                  QStringLiteral("--dest=org.freedesktop.FileManager1"),
                  QStringLiteral("/org/freedesktop/FileManager1"),
                  QStringLiteral("org.freedesktop.FileManager1.ShowItems"),
                  QStringLiteral("array:string:") + QString::fromLatin1(url), QStringLiteral("string:")});
}

} // namespace

int Platform::longestRevealPath()
{
    return std::numeric_limits<int>::max();
}

void Platform::revealInFileManager(const QString &absolutePath)
{
    if (QFileInfo(absolutePath).isDir())
        openFolder(absolutePath);
    else
        selectInFileManager(absolutePath);
}

QString Platform::uniqueTemporaryName(const QString &folder)
{
    const QString base = folder.isEmpty() ? QDir::tempPath() : QDir::fromNativeSeparators(folder);
    QTemporaryFile file(base + QStringLiteral("/preview-XXXXXX"));
    return file.open() ? file.fileName() : QString();
}

bool Platform::openForReading(QFile *pFile, const QString &path)
{
    pFile->setFileName(path);
    return pFile->open(QIODevice::ReadOnly);
}

void Platform::addCopyFormats(QMimeData *pMimeData)
{
    QByteArray files("copy");
    for (const QUrl &url : pMimeData->urls())
        files += '\n' + url.toEncoded();
    pMimeData->setData(QStringLiteral("x-special/gnome-copied-files"), files);
    pMimeData->setData(QStringLiteral("application/x-kde-cutselection"), QByteArray("0"));
}

void *Platform::allocateLargeMemory(size_t nBytes)
{
    void *pMemory = mmap(nullptr, nBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pMemory == MAP_FAILED)
        return nullptr;
#if defined(MADV_HUGEPAGE)
    madvise(pMemory, nBytes, MADV_HUGEPAGE);
#endif
    return pMemory;
}

void Platform::freeLargeMemory(void *pMemory, size_t nBytes)
{
    if (pMemory != nullptr)
        munmap(pMemory, nBytes);
}
