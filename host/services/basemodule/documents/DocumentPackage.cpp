#include "services/basemodule/documents/DocumentPackage.h"

#include <QFile>
#include <QFileInfo>

#include <archive.h>
#include <archive_entry.h>
#include <memory>

namespace basemodule {

namespace {

// What unpacks to more than this many times its size is a trap, unless it is small.
constexpr qint64 kMostGrowth = 100;
constexpr qint64 kHarmlessBytes = qint64(128) << 20;
constexpr qint64 kMostBytes = qint64(4) << 30;
constexpr int kMostEntries = 200000;
constexpr size_t kBlock = size_t(64) << 10;

struct Closer {
    void operator()(struct archive *pArchive) const { ::archive_read_free(pArchive); }
};

} // namespace

bool isSoundPackage(const QByteArray &nativePath)
{
    QFile file(QFile::decodeName(nativePath));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    if (file.read(4) != QByteArrayLiteral("PK\x03\x04"))
        return true;
    const std::unique_ptr<struct archive, Closer> package(::archive_read_new());
    ::archive_read_support_format_zip_seekable(package.get());
    if (::archive_read_open_filename(package.get(), nativePath.constData(), kBlock) != ARCHIVE_OK)
        return false;
    const qint64 nSize = file.size();
    qint64 nTotal = 0;
    struct archive_entry *pEntry = nullptr;
    for (int nEntries = 0; nEntries < kMostEntries; ++nEntries) {
        const int nState = ::archive_read_next_header(package.get(), &pEntry);
        if (nState == ARCHIVE_EOF)
            return nEntries > 0;
        if (nState != ARCHIVE_OK && nState != ARCHIVE_WARN)
            return false;
        const qint64 nBytes = ::archive_entry_size(pEntry);
        if (nBytes < 0 || nBytes > kMostBytes)
            return false;
        nTotal += nBytes;
        if (nTotal > kMostBytes || (nTotal > kHarmlessBytes && nTotal > kMostGrowth * nSize))
            return false;
    }
    return false;
}

} // namespace basemodule
