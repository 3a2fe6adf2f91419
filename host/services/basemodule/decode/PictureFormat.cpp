#include "services/basemodule/decode/PictureFormat.h"

#include <QStringList>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>

namespace basemodule {

namespace {

struct Magic {
    const char *bytes;
    int length;
    PictureFormat format;
};

// The order does not matter: no entry is the start of another.
constexpr std::array<Magic, 25> kMagics{{
    {"\xff\xd8\xff", 3, PictureFormat::Jpeg},
    {"\x89PNG\r\n\x1a\n", 8, PictureFormat::Png},
    {"GIF87a", 6, PictureFormat::Gif},
    {"GIF89a", 6, PictureFormat::Gif},
    {"\xff\x0a", 2, PictureFormat::JpegXl},
    {"\0\0\0\x0cJXL \r\n\x87\n", 12, PictureFormat::JpegXl},
    {"\0\0\0\x0cjP  \r\n\x87\n", 12, PictureFormat::Jpeg2000},
    {"\xff\x4f\xff\x51", 4, PictureFormat::Jpeg2000},
    {"\x76\x2f\x31\x01", 4, PictureFormat::Exr},
    {"#?RADIANCE", 10, PictureFormat::Hdr},
    {"#?RGBE", 6, PictureFormat::Hdr},
    {"8BPS\0", 5, PictureFormat::Psd},
    {"DDS |\0\0\0", 8, PictureFormat::Dds},
    {"FUJIFILMCCD-RAW", 15, PictureFormat::Raw},
    {"IIU\0", 4, PictureFormat::Raw},
    {"IIRO", 4, PictureFormat::Raw},
    {"IIRS", 4, PictureFormat::Raw},
    {"MMOR", 4, PictureFormat::Raw},
    {"II\x1a\0\0\0HEAPCCDR", 14, PictureFormat::Raw},
    {"FOVb", 4, PictureFormat::Raw},
    {"\0MRM", 4, PictureFormat::Raw},
    {"II*\0", 4, PictureFormat::Tiff},
    {"MM\0*", 4, PictureFormat::Tiff},
    {"II+\0", 4, PictureFormat::Tiff},
    {"MM\0+", 4, PictureFormat::Tiff},
}};

uchar byteAt(const QByteArray &head, int nAt)
{
    return nAt < head.size() ? uchar(head.at(nAt)) : 0;
}

bool hasTiffTag(const QByteArray &head, quint16 nTag)
{
    const bool bBigEndian = head.startsWith("MM");
    const auto *pData = reinterpret_cast<const uchar *>(head.constData());
    const auto word = [&](qint64 nAt) {
        return bBigEndian ? qFromBigEndian<quint16>(pData + nAt) : qFromLittleEndian<quint16>(pData + nAt);
    };
    if (head.size() < 10)
        return false;
    const qint64 nIfd = bBigEndian ? qFromBigEndian<quint32>(pData + 4) : qFromLittleEndian<quint32>(pData + 4);
    if (nIfd + 2 > head.size())
        return false;
    const int nEntries = word(nIfd);
    for (int i = 0; i < nEntries && nIfd + 14 + 12 * i <= head.size(); ++i) {
        if (word(nIfd + 2 + 12 * i) == nTag)
            return true;
    }
    return false;
}

PictureFormat tiffKind(const QByteArray &head, const QString &suffix)
{
    static const QStringList otherRawSuffixes{QStringLiteral("nrw"), QStringLiteral("pef"), QStringLiteral("srw"),
                                              QStringLiteral("sr2"), QStringLiteral("srf"), QStringLiteral("3fr"),
                                              QStringLiteral("erf"), QStringLiteral("kdc"), QStringLiteral("mef"),
                                              QStringLiteral("mos"), QStringLiteral("iiq"), QStringLiteral("rwl")};
    constexpr quint16 kDngVersion = 0xc612;
    const bool bCr2 = head.mid(8, 2) == "CR";
    return bCr2 || isRawSuffix(suffix) || otherRawSuffixes.contains(suffix) || hasTiffTag(head, kDngVersion)
               ? PictureFormat::Raw
               : PictureFormat::Tiff;
}

PictureFormat boxKind(const QByteArray &head)
{
    if (head.mid(4, 4) != "ftyp")
        return PictureFormat::Unknown;
    if (head.mid(8, 4) == "crx ")
        return PictureFormat::Raw;
    const quint32 nBox = std::min<quint32>(qFromBigEndian<quint32>(head.constData()), 256);
    for (int nAt = 8; nAt + 4 <= int(nBox) && nAt + 4 <= head.size(); nAt += 4) {
        const QByteArray brand = head.mid(nAt, 4);
        for (const char *pKnown : {"heic", "heix", "hevc", "hevx", "heim", "heis", "mif1", "msf1", "avif", "avis"}) {
            if (brand == pKnown)
                return PictureFormat::Heif;
        }
    }
    return PictureFormat::Unknown;
}

bool isBitmapHeader(const QByteArray &head)
{
    if (!head.startsWith("BM") || head.size() < 18)
        return false;
    const quint32 nInfo = qFromLittleEndian<quint32>(head.constData() + 14);
    return nInfo == 12 || (nInfo >= 16 && nInfo <= 124);
}

bool isIconHeader(const QByteArray &head)
{
    return head.size() >= 22 && byteAt(head, 0) == 0 && byteAt(head, 1) == 0 &&
           (byteAt(head, 2) == 1 || byteAt(head, 2) == 2) && byteAt(head, 3) == 0 && byteAt(head, 4) != 0 &&
           byteAt(head, 5) == 0 && byteAt(head, 9) == 0;
}

bool isPcxHeader(const QByteArray &head)
{
    const uchar nBits = byteAt(head, 3);
    return head.size() >= 128 && byteAt(head, 0) == 0x0a && byteAt(head, 1) <= 5 && byteAt(head, 2) <= 1 &&
           (nBits == 1 || nBits == 2 || nBits == 4 || nBits == 8) && byteAt(head, 64) == 0;
}

bool isPnmHeader(const QByteArray &head)
{
    if (head.size() < 8 || head.at(0) != 'P' || !std::strchr("123456fF", head.at(1)))
        return false;
    return std::strchr(" \t\r\n#", head.at(2)) != nullptr;
}

// A Targa file has no mark at its start: its suffix must say so and its header must make sense.
bool isTargaHeader(const QByteArray &head, const QString &suffix)
{
    static const QStringList suffixes{QStringLiteral("tga"), QStringLiteral("icb"), QStringLiteral("vda"),
                                      QStringLiteral("vst"), QStringLiteral("targa")};
    if (head.size() < 18 || !suffixes.contains(suffix))
        return false;
    const uchar nType = byteAt(head, 2);
    const uchar nDepth = byteAt(head, 16);
    return byteAt(head, 1) <= 1 && ((nType >= 1 && nType <= 3) || (nType >= 9 && nType <= 11)) &&
           (nDepth == 8 || nDepth == 15 || nDepth == 16 || nDepth == 24 || nDepth == 32) &&
           (byteAt(head, 12) | byteAt(head, 13)) && (byteAt(head, 14) | byteAt(head, 15));
}

bool hasMediaMark(const QByteArray &head)
{
    struct Mark {
        int nAt;
        QByteArray bytes;
    };
    static const Mark marks[] = {
        {4, "ftyp"},
        {4, "moov"},
        {4, "mdat"},
        {4, "wide"},
        {0, QByteArrayLiteral("\x1a\x45\xdf\xa3")},
        {0, "OggS"},
        {0, "fLaC"},
        {0, "ID3"},
        {0, "FLV\x01"},
        {0, "MAC "},
        {0, "#!AMR"},
        {0, ".RMF"},
        {8, "AVI "},
        {8, "WAVE"},
        {8, "AIFF"},
        {8, "AIFC"},
        {0, QByteArrayLiteral("\x30\x26\xb2\x75\x8e\x66\xcf\x11")},
        {0, QByteArrayLiteral("\x06\x0e\x2b\x34")},
        {0, QByteArray("\0\0\x01\xba", 4)},
        {0, QByteArray("\0\0\x01\xb3", 4)},
    };
    return std::any_of(std::begin(marks), std::end(marks),
                       [&head](const Mark &mark) { return head.mid(mark.nAt, mark.bytes.size()) == mark.bytes; });
}

// Streams that begin with nothing in particular.
bool isStreamSuffix(const QString &suffix)
{
    static const QStringList suffixes{
        QStringLiteral("mp3"), QStringLiteral("aac"), QStringLiteral("ts"),  QStringLiteral("m2ts"),
        QStringLiteral("mts"), QStringLiteral("trp"), QStringLiteral("mpg"), QStringLiteral("mpeg"),
        QStringLiteral("vob"), QStringLiteral("dv"),  QStringLiteral("swf"), QStringLiteral("mxf"),
        QStringLiteral("amr"), QStringLiteral("ape"), QStringLiteral("rm"),  QStringLiteral("rmvb")};
    return suffixes.contains(suffix);
}

// The containers of office documents hold other things as well: the name must say so, or the first entry of a package.
bool isOfficeDocument(const QByteArray &head, const QString &suffix)
{
    if (head.startsWith(QByteArrayLiteral("PK\x03\x04")))
        return isOfficeSuffix(suffix) || head.mid(30, 19) == "[Content_Types].xml";
    if (head.startsWith(QByteArrayLiteral("\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1")))
        return isOfficeSuffix(suffix);
    const bool bDrawing = head.startsWith("RIFF") && head.mid(8, 3).toUpper() == "CDR";
    const bool bMetafile =
        head.startsWith(QByteArrayLiteral("\xd7\xcd\xc6\x9a")) || head.startsWith(QByteArray("\x01\0\x09\0", 4));
    return bDrawing || (bMetafile && suffix == QLatin1String("wmf"));
}

bool isPostScript(const QByteArray &head)
{
    return head.startsWith("%!PS") || head.startsWith(QByteArrayLiteral("\xc5\xd0\xd3\xc6"));
}

bool isFont(const QByteArray &head, const QString &suffix)
{
    static const QStringList suffixes{QStringLiteral("ttf"), QStringLiteral("otf"), QStringLiteral("ttc"),
                                      QStringLiteral("woff")};
    const QByteArray mark = head.left(4);
    return mark == "OTTO" || mark == "ttcf" || mark == "wOFF" ||
           ((mark == QByteArray("\0\x01\0\0", 4) || mark == "true") && suffixes.contains(suffix));
}

bool isSvgText(const QByteArray &head, const QString &suffix)
{
    if (head.startsWith("\x1f\x8b"))
        return suffix == QLatin1String("svgz") || suffix == QLatin1String("svg");
    const QByteArray text = head.startsWith("\xef\xbb\xbf") ? head.mid(3).trimmed() : head.trimmed();
    if (!text.startsWith('<'))
        return false;
    return text.contains("<svg") || text.contains(":svg");
}

} // namespace

PictureFormat sniffFormat(const QByteArray &head, const QString &rawSuffix)
{
    const QString suffix = rawSuffix.toLower();
    for (const Magic &magic : kMagics) {
        if (head.size() >= magic.length && std::memcmp(head.constData(), magic.bytes, size_t(magic.length)) == 0)
            return magic.format == PictureFormat::Tiff ? tiffKind(head, suffix) : magic.format;
    }
    if (head.startsWith("RIFF") && head.mid(8, 4) == "WEBP")
        return PictureFormat::WebP;
    if (const PictureFormat format = boxKind(head); format != PictureFormat::Unknown)
        return format;
    if (isOfficeDocument(head, suffix))
        return PictureFormat::Office;
    if (isPostScript(head))
        return PictureFormat::PostScript;
    if (isFont(head, suffix))
        return PictureFormat::Font;
    if (isBitmapHeader(head))
        return PictureFormat::Bmp;
    if (isTargaHeader(head, suffix))
        return PictureFormat::Tga;
    if (isIconHeader(head))
        return PictureFormat::Ico;
    if (isPcxHeader(head))
        return PictureFormat::Pcx;
    if (isPnmHeader(head))
        return PictureFormat::Pnm;
    if (head.left(1024).contains("%PDF-"))
        return PictureFormat::Pdf;
    if (isSvgText(head, suffix))
        return PictureFormat::Svg;
    return hasMediaMark(head) || isStreamSuffix(suffix) ? PictureFormat::Media : PictureFormat::Unknown;
}

bool isRawSuffix(const QString &suffix)
{
    static const QStringList suffixes{QStringLiteral("rw2"), QStringLiteral("nef"), QStringLiteral("dng"),
                                      QStringLiteral("dcr"), QStringLiteral("cr3"), QStringLiteral("cr2"),
                                      QStringLiteral("crw"), QStringLiteral("arw")};
    return suffixes.contains(suffix, Qt::CaseInsensitive);
}

bool isOfficeSuffix(const QString &suffix)
{
    static const QStringList suffixes{QStringLiteral("doc"),  QStringLiteral("docx"), QStringLiteral("ppt"),
                                      QStringLiteral("pptx"), QStringLiteral("xls"),  QStringLiteral("xlsx"),
                                      QStringLiteral("potx"), QStringLiteral("odp"),  QStringLiteral("cdr"),
                                      QStringLiteral("wmf")};
    return suffixes.contains(suffix, Qt::CaseInsensitive);
}

bool isPresentationSuffix(const QString &suffix)
{
    static const QStringList suffixes{QStringLiteral("ppt"), QStringLiteral("pptx"), QStringLiteral("odp")};
    return suffixes.contains(suffix, Qt::CaseInsensitive);
}

bool isConvertedSuffix(const QString &suffix)
{
    return isOfficeSuffix(suffix) || suffix.compare(QLatin1String("eps"), Qt::CaseInsensitive) == 0;
}

bool mayBeTransparent(const QString &suffix)
{
    static const QStringList suffixes{QStringLiteral("png"),  QStringLiteral("gif"),  QStringLiteral("svg"),
                                      QStringLiteral("svgz"), QStringLiteral("webp"), QStringLiteral("psd"),
                                      QStringLiteral("tga"),  QStringLiteral("tif"),  QStringLiteral("tiff"),
                                      QStringLiteral("dds"),  QStringLiteral("ico"),  QStringLiteral("jxl"),
                                      QStringLiteral("avif"), QStringLiteral("heic"), QStringLiteral("exr")};
    return suffixes.contains(suffix, Qt::CaseInsensitive);
}

} // namespace basemodule
