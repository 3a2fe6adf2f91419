#include "RawFormats.h"

#include <QBuffer>
#include <QtEndian>

#include <cmath>
#include <cstring>

namespace rawformats {

namespace {

template <typename T>
void put(QByteArray &bytes, T value)
{
    const T little = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char *>(&little), int(sizeof little));
}

void putFloat(QByteArray &bytes, float value)
{
    quint32 nBits = 0;
    std::memcpy(&nBits, &value, sizeof nBits);
    put(bytes, nBits);
}

void putAttribute(QByteArray &bytes, const char *pName, const char *pType, const QByteArray &value)
{
    bytes.append(pName, int(std::strlen(pName)) + 1);
    bytes.append(pType, int(std::strlen(pType)) + 1);
    put<quint32>(bytes, quint32(value.size()));
    bytes.append(value);
}

QByteArray box(const QSize &size)
{
    QByteArray value;
    for (const int nEdge : {0, 0, size.width() - 1, size.height() - 1})
        put<qint32>(value, nEdge);
    return value;
}

QByteArray floats(std::initializer_list<float> values)
{
    QByteArray bytes;
    for (const float value : values)
        putFloat(bytes, value);
    return bytes;
}

QByteArray exrHeader(const QSize &size)
{
    QByteArray channels;
    for (const char *pName : {"B", "G", "R"}) {
        channels.append(pName, 2);
        put<quint32>(channels, 2); // 32-bit float
        put<quint32>(channels, 0);
        put<quint32>(channels, 1);
        put<quint32>(channels, 1);
    }
    channels.append('\0');
    QByteArray header("\x76\x2f\x31\x01\x02\0\0\0", 8);
    putAttribute(header, "channels", "chlist", channels);
    putAttribute(header, "compression", "compression", QByteArray(1, '\0'));
    putAttribute(header, "dataWindow", "box2i", box(size));
    putAttribute(header, "displayWindow", "box2i", box(size));
    putAttribute(header, "lineOrder", "lineOrder", QByteArray(1, '\0'));
    putAttribute(header, "pixelAspectRatio", "float", floats({1.0F}));
    putAttribute(header, "screenWindowCenter", "v2f", floats({0.0F, 0.0F}));
    putAttribute(header, "screenWindowWidth", "float", floats({1.0F}));
    header.append('\0');
    return header;
}

float light(int nValue, double fWhite)
{
    const double f = nValue / 255.0;
    return float(fWhite * (f <= 0.04045 ? f / 12.92 : std::pow((f + 0.055) / 1.055, 2.4)));
}

/** Entries of one TIFF directory, collected before the offsets are known. */
class Directory {
public:
    void add(quint16 nTag, quint16 nType, quint32 nCount, const QByteArray &value)
    {
        m_entries.append({nTag, nType, nCount, value});
    }
    void addShort(quint16 nTag, quint16 nValue) { addNumbers<quint16>(nTag, 3, {nValue}); }
    void addLong(quint16 nTag, quint32 nValue) { addNumbers<quint32>(nTag, 4, {nValue}); }
    void addText(quint16 nTag, const QByteArray &text) { add(nTag, 2, quint32(text.size()) + 1, text + '\0'); }
    template <typename T>
    void addNumbers(quint16 nTag, quint16 nType, std::initializer_list<T> values, int nPerValue = 1)
    {
        QByteArray bytes;
        for (const T value : values)
            put<T>(bytes, value);
        add(nTag, nType, quint32(int(values.size()) / nPerValue), bytes);
    }

    int size() const
    {
        int nSize = 6 + 12 * m_entries.size();
        for (const Entry &entry : m_entries)
            nSize += entry.value.size() > 4 ? (entry.value.size() + 1) / 2 * 2 : 0;
        return nSize;
    }

    QByteArray bytes(quint32 nOffset) const
    {
        QByteArray head;
        QByteArray tail;
        put<quint16>(head, quint16(m_entries.size()));
        const quint32 nTail = nOffset + 6 + 12 * quint32(m_entries.size());
        for (const Entry &entry : m_entries) {
            put(head, entry.tag);
            put(head, entry.type);
            put(head, entry.count);
            if (entry.value.size() <= 4) {
                head.append(entry.value.leftJustified(4, '\0'));
                continue;
            }
            put<quint32>(head, nTail + quint32(tail.size()));
            tail.append(entry.value);
            if (tail.size() % 2 != 0)
                tail.append('\0');
        }
        put<quint32>(head, 0);
        return head + tail;
    }

private:
    struct Entry {
        quint16 tag;
        quint16 type;
        quint32 count;
        QByteArray value;
    };
    QVector<Entry> m_entries;
};

Directory previewDirectory(const QSize &size, quint32 nPreviewAt, quint32 nPreviewLength, quint32 nRawDirectoryAt,
                           int nOrientation)
{
    Directory d;
    d.addLong(254, 1);
    d.addLong(256, quint32(size.width()));
    d.addLong(257, quint32(size.height()));
    d.addNumbers<quint16>(258, 3, {8, 8, 8});
    d.addShort(259, 7);
    d.addShort(262, 6);
    d.addText(271, "Sample");
    d.addText(272, "Drawn Camera");
    d.addLong(273, nPreviewAt);
    d.addShort(274, quint16(nOrientation));
    d.addShort(277, 3);
    d.addLong(278, quint32(size.height()));
    d.addLong(279, nPreviewLength);
    d.addLong(330, nRawDirectoryAt);
    d.addNumbers<quint8>(50706, 1, {1, 4, 0, 0});
    d.addNumbers<quint8>(50707, 1, {1, 1, 0, 0});
    d.addText(50708, "Sample Drawn Camera");
    d.addNumbers<qint32>(50721, 10,
                         {3240970, 1000000, -1537138, 1000000, -498531, 1000000, -969266, 1000000, 1875992, 1000000,
                          41556, 1000000, 55643, 1000000, -204026, 1000000, 1057225, 1000000},
                         2);
    d.addNumbers<quint32>(50728, 5, {1, 1, 1, 1, 1, 1}, 2);
    d.addShort(50778, 21);
    return d;
}

Directory mosaicDirectory(const QSize &size, quint32 nDataAt)
{
    Directory d;
    d.addLong(254, 0);
    d.addLong(256, quint32(size.width()));
    d.addLong(257, quint32(size.height()));
    d.addShort(258, 16);
    d.addShort(259, 1);
    d.addShort(262, 32803);
    d.addLong(273, nDataAt);
    d.addShort(277, 1);
    d.addLong(278, quint32(size.height()));
    d.addLong(279, quint32(size.width() * size.height() * 2));
    d.addNumbers<quint16>(33421, 3, {2, 2});
    d.addNumbers<quint8>(33422, 1, {0, 1, 1, 2});
    d.addShort(50714, 0);
    d.addLong(50717, 65535);
    return d;
}

QByteArray mosaic(const QImage &scene)
{
    QByteArray bytes;
    for (int y = 0; y < scene.height(); ++y) {
        for (int x = 0; x < scene.width(); ++x) {
            const QRgb rgb = scene.pixel(x, y);
            const int nValue = (x + y) % 2 != 0 ? qGreen(rgb) : (y % 2 == 0 ? qRed(rgb) : qBlue(rgb));
            put<quint16>(bytes, quint16(nValue * 257));
        }
    }
    return bytes;
}

} // namespace

QByteArray exr(const QImage &image, double fWhite)
{
    const QSize size = image.size();
    QByteArray bytes = exrHeader(size);
    const int nRow = size.width() * 3 * 4;
    quint64 nAt = quint64(bytes.size()) + 8U * quint64(size.height());
    for (int y = 0; y < size.height(); ++y, nAt += quint64(nRow) + 8)
        put<quint64>(bytes, nAt);
    for (int y = 0; y < size.height(); ++y) {
        put<qint32>(bytes, y);
        put<qint32>(bytes, nRow);
        for (int c = 0; c < 3; ++c) {
            for (int x = 0; x < size.width(); ++x) {
                const QRgb rgb = image.pixel(x, y);
                putFloat(bytes, light(c == 0 ? qBlue(rgb) : (c == 1 ? qGreen(rgb) : qRed(rgb)), fWhite));
            }
        }
    }
    return bytes;
}

QByteArray dng(const QImage &mosaicScene, const QByteArray &previewJpeg, const QSize &previewSize, int nOrientation)
{
    const int nMain = previewDirectory(previewSize, 0, 0, 0, nOrientation).size();
    const int nRaw = mosaicDirectory(mosaicScene.size(), 0).size();
    const quint32 nRawAt = 8 + quint32(nMain);
    const quint32 nMosaicAt = nRawAt + quint32(nRaw);
    const QByteArray pixels = mosaic(mosaicScene);
    const quint32 nPreviewAt = nMosaicAt + quint32(pixels.size());
    QByteArray bytes("II*\0\x08\0\0\0", 8);
    bytes += previewDirectory(previewSize, nPreviewAt, quint32(previewJpeg.size()), nRawAt, nOrientation).bytes(8);
    bytes += mosaicDirectory(mosaicScene.size(), nMosaicAt).bytes(nRawAt);
    return bytes + pixels + previewJpeg;
}

QByteArray icon(const QVector<QImage> &images)
{
    QByteArray head("\0\0\x01\0", 4);
    QByteArray pictures;
    put<quint16>(head, quint16(images.size()));
    for (const QImage &image : images) {
        QBuffer png;
        png.open(QIODevice::WriteOnly);
        image.save(&png, "png");
        head.append(char(image.width() & 0xff));
        head.append(char(image.height() & 0xff));
        head.append("\0\0", 2);
        put<quint16>(head, 1);
        put<quint16>(head, 32);
        put<quint32>(head, quint32(png.data().size()));
        put<quint32>(head, quint32(6 + 16 * images.size() + pictures.size()));
        pictures.append(png.data());
    }
    return head + pictures;
}

} // namespace rawformats
