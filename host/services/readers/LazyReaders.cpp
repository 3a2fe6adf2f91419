// The readers' stand-ins: they load the readers' library when the first of them is called. Without it there is nothing
// to read, which is what a file that cannot be read gives, too.
#include "services/readers/ReaderTable.h"

#include <QFileInfo>
#include <QLibrary>
#include <QLoggingCategory>

#include <dlfcn.h>

namespace {

Q_LOGGING_CATEGORY(readersLog, "bigimgpreview.readers")

/** The library stands in a folder beside the module that this is part of. */
QString libraryPath()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void *>(&libraryPath), &info) == 0)
        return {};
    const QFileInfo module(QFileInfo(QString::fromLocal8Bit(info.dli_fname)).canonicalFilePath());
    return module.path() + QStringLiteral("/readers/hostreaders");
}

const ReaderTable *load()
{
    QLibrary library(libraryPath());
    const auto table = reinterpret_cast<decltype(&readerTable)>(library.resolve("readerTable"));
    if (table == nullptr)
        qCWarning(readersLog).noquote() << library.errorString();
    return table != nullptr ? table() : nullptr;
}

/** Null without the library. Waits while another thread loads it. */
const ReaderTable *readers()
{
    static const ReaderTable *const pTable = load();
    return pTable;
}

/** Calls a reader; without it the answer is that of a file that holds nothing. */
template <typename Result, typename... Parameters, typename... Arguments>
Result call(Result (*ReaderTable::*pReader)(Parameters...), Arguments &&...arguments)
{
    const ReaderTable *pTable = readers();
    return pTable != nullptr ? (pTable->*pReader)(std::forward<Arguments>(arguments)...) : Result();
}

} // namespace

basemodule::DecodeResult basemodule::readWithVips(const QByteArray &nativePath, PictureFormat format,
                                                  const DecodeRequest &request)
{
    return call(&ReaderTable::readWithVips, nativePath, format, request);
}

basemodule::DecodeResult basemodule::readMedia(const QByteArray &nativePath, const DecodeRequest &request)
{
    return call(&ReaderTable::readMedia, nativePath, request);
}

basemodule::DecodedPicture basemodule::scaledPicture(const DecodedPicture &picture, const QSize &size)
{
    // No reason to load anything: the usual case of a picture in its own size.
    if (picture.isNull() || QSize(picture.width, picture.height) == size)
        return picture;
    return call(&ReaderTable::scaledPicture, picture, size);
}

QByteArray basemodule::inkProfile()
{
    return call(&ReaderTable::inkProfile);
}

void readMediaMetadata(const QByteArray &native, FileMetadata *pMetadata)
{
    call(&ReaderTable::readMediaMetadata, native, pMetadata);
}

media::Peaks media::readPeaks(const QByteArray &native, const Cancelled &cancelled,
                              const std::function<void(const Peaks &)> &report)
{
    return call(&ReaderTable::readPeaks, native, cancelled, report);
}

media::VideoTraits media::videoTraits(const QByteArray &native, const Cancelled &cancelled)
{
    return call(&ReaderTable::videoTraits, native, cancelled);
}
