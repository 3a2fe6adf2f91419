#include "common/Platform.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>

#include <array>
#include <fcntl.h>
#include <io.h>
#include <string>

// The shell's header needs the other one before it.
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

namespace {

constexpr int ShellPathLimit = 256;
constexpr DWORD TempPathLength = 260;
// Longer ones must not be handed to GetTempFileNameW, which has room for MAX_PATH characters alone.
constexpr size_t LongestTempFolder = MAX_PATH - 14;

std::wstring wide(const QString &text)
{
    return text.toStdWString();
}

/** The path as people write it: the file manager knows no device paths. */
QString withoutDevice(QString path)
{
    const QLatin1String device("//?/");
    // Qt has taken the beginning away from some already.
    for (const QLatin1String share : {QLatin1String("//?/UNC/"), QLatin1String("UNC/")}) {
        if (path.startsWith(share))
            return path.replace(0, share.size(), QStringLiteral("//"));
    }
    return path.startsWith(device) ? path.mid(device.size()) : path;
}

/** The path as the system's own calls take it at any length. */
QString withDevice(const QString &path)
{
    const QString native = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
    if (native.startsWith(QLatin1String("\\\\?\\")))
        return native;
    if (native.startsWith(QLatin1String("\\\\")))
        return QStringLiteral("\\\\?\\UNC\\") + native.mid(2);
    return QStringLiteral("\\\\?\\") + native;
}

} // namespace

int Platform::longestRevealPath()
{
    return ShellPathLimit;
}

void Platform::revealInFileManager(const QString &absolutePath)
{
    QString parameters;
    if (!QFileInfo(absolutePath).isDir())
        parameters = QStringLiteral("/select,");
    parameters += QLatin1Char('"') + QDir::toNativeSeparators(withoutDevice(absolutePath)) + QLatin1Char('"');
    ShellExecuteW(nullptr, L"open", L"Explorer.exe", wide(parameters).c_str(), nullptr, SW_SHOWNORMAL);
}

QString Platform::uniqueTemporaryName(const QString &folder)
{
    std::wstring base = wide(QDir::toNativeSeparators(folder));
    if (base.empty()) {
        std::array<wchar_t, TempPathLength> buffer{};
        const DWORD nLength = GetTempPathW(TempPathLength, buffer.data());
        if (nLength == 0 || nLength >= TempPathLength)
            return {};
        base.assign(buffer.data(), nLength);
    }
    if (base.size() > LongestTempFolder)
        return {};
    std::array<wchar_t, MAX_PATH> name{};
    if (GetTempFileNameW(base.c_str(), L"", 0, name.data()) == 0)
        return {};
    DeleteFileW(name.data());
    return QString::fromWCharArray(name.data());
}

bool Platform::openForReading(QFile *pFile, const QString &path)
{
    // QFile itself keeps others from renaming and deleting what it reads.
    const HANDLE handle = CreateFileW(wide(withDevice(path)).c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return false;
    const int nDescriptor = _open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_RDONLY | _O_BINARY);
    if (nDescriptor == -1) {
        CloseHandle(handle);
        return false;
    }
    if (pFile->open(nDescriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return true;
    _close(nDescriptor);
    return false;
}

void Platform::addCopyFormats(QMimeData *pMimeData)
{
    // DROPEFFECT_COPY, as a 32-bit number. The list of files itself becomes CF_HDROP in Qt.
    // Qt registers names that it does not know as they stand.
    pMimeData->setData(QStringLiteral("Preferred DropEffect"), QByteArray("\x01\x00\x00\x00", 4));
}

void *Platform::allocateLargeMemory(size_t nBytes)
{
    return VirtualAlloc(nullptr, nBytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

void Platform::freeLargeMemory(void *pMemory, size_t nBytes)
{
    Q_UNUSED(nBytes)
    if (pMemory != nullptr)
        VirtualFree(pMemory, 0, MEM_RELEASE);
}
