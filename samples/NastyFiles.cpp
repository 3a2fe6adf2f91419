#include "NastyFiles.h"

#include "Encoders.h"
#include "Scenes.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QtEndian>

#include <array>
#include <fcntl.h>
#include <unistd.h>

namespace {

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// The name is bytes, not text: it cannot be given through Qt.
bool writeNative(const QByteArray &path, const QByteArray &bytes)
{
    const int nHandle = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (nHandle < 0)
        return false;
    const bool bWritten = ::write(nHandle, bytes.constData(), size_t(bytes.size())) == bytes.size();
    return ::close(nHandle) == 0 && bWritten;
}

QByteArray flipped(QByteArray bytes, quint32 nSeed)
{
    QRandomGenerator random(nSeed);
    const int nFlips = 10 + bytes.size() / 2000;
    for (int i = 0; i < nFlips; ++i) {
        const int nAt = random.bounded(32, bytes.size());
        bytes[nAt] = char(bytes.at(nAt) ^ (1 << random.bounded(8)));
    }
    return bytes;
}

quint32 crc(const QByteArray &bytes)
{
    quint32 nCrc = 0xffffffffU;
    for (const char c : bytes) {
        nCrc ^= uchar(c);
        for (int i = 0; i < 8; ++i)
            nCrc = (nCrc >> 1) ^ ((nCrc & 1U) != 0 ? 0xedb88320U : 0U);
    }
    return ~nCrc;
}

void putBigEndian(QByteArray &bytes, quint32 nValue)
{
    const quint32 nBig = qToBigEndian(nValue);
    bytes.append(reinterpret_cast<const char *>(&nBig), 4);
}

QByteArray chunk(const QByteArray &type, const QByteArray &data)
{
    QByteArray result;
    putBigEndian(result, quint32(data.size()));
    result += type + data;
    putBigEndian(result, crc(type + data));
    return result;
}

// Ten gigabytes of black in a few kilobytes.
QByteArray hugePng(quint32 nSide)
{
    QByteArray header;
    putBigEndian(header, nSide);
    putBigEndian(header, nSide);
    header.append("\x08\x02\0\0\0", 5);
    const QByteArray zeros = qCompress(QByteArray(2 << 20, '\0'), 9).mid(4);
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + chunk("IHDR", header) + chunk("IDAT", zeros) +
           chunk("IEND", QByteArray());
}

bool makeDamaged(const QString &samples, const QDir &nasty)
{
    static const std::array<const char *, 17> victims{
        "landscape.jpg", "progressive.jpg", "landscape.png", "interlaced.png", "anim.gif",    "tiled.tif",
        "picture.webp",  "picture.heic",    "picture.avif",  "picture.jxl",    "picture.jp2", "layers.psd",
        "texture.dds",   "light.exr",       "light.hdr",     "camera.dng",     "page.pdf"};
    bool bOk = true;
    for (const char *pVictim : victims) {
        const QString name = QString::fromLatin1(pVictim);
        const QByteArray bytes = read(samples + QLatin1Char('/') + name);
        if (bytes.isEmpty())
            continue;
        bOk &= write(nasty.filePath(QStringLiteral("truncated_") + name), bytes.left(bytes.size() * 6 / 10));
        bOk &= write(nasty.filePath(QStringLiteral("stub_") + name), bytes.left(40));
        for (quint32 nSeed = 1; nSeed <= 3; ++nSeed) {
            bOk &= write(nasty.filePath(QStringLiteral("flipped%1_").arg(nSeed) + name), flipped(bytes, nSeed));
        }
        bOk &= write(nasty.filePath(QStringLiteral("zero_") + name), QByteArray());
    }
    return bOk;
}

bool makeLying(const QString &samples, const QDir &nasty)
{
    const QByteArray jpeg = read(samples + QStringLiteral("/landscape.jpg"));
    const QByteArray png = read(samples + QStringLiteral("/landscape.png"));
    bool bOk = write(nasty.filePath(QStringLiteral("jpeg_named.png")), jpeg);
    bOk &= write(nasty.filePath(QStringLiteral("png_named.jpg")), png);
    bOk &= write(nasty.filePath(QStringLiteral("jpeg_without_suffix")), jpeg);
    bOk &= write(nasty.filePath(QStringLiteral("text_named.jpg")), QByteArrayLiteral("This is no picture.\n"));
    bOk &= write(nasty.filePath(QStringLiteral("text_named.tga")), QByteArrayLiteral("This is no picture either.\n"));
    bOk &= write(nasty.filePath(QStringLiteral("script_named.svg")), QByteArrayLiteral("#!/bin/sh\necho no picture\n"));
    bOk &= write(nasty.filePath(QStringLiteral("huge.png")), hugePng(60000));
    return bOk;
}

bool makeOddlyNamed(const QString &samples, const QDir &nasty)
{
    const QByteArray jpeg = read(samples + QStringLiteral("/orientation_6.jpg"));
    bool bOk = write(nasty.filePath(QString::fromUtf8("\xe5\xb1\xb1\xe6\xb0\xb4\xe7\x94\xbb.jpg")), jpeg);
    bOk &= write(nasty.filePath(QString::fromUtf8("sunset \xf0\x9f\x8c\x85 [1] 100%.jpg")), jpeg);
    bOk &= write(nasty.filePath(QStringLiteral("two\nlines.jpg")), jpeg);
    bOk &= writeNative(QFile::encodeName(nasty.path()) + "/caf\xe9.jpg", jpeg);
    nasty.mkdir(QStringLiteral("loop"));
    QFile::link(QStringLiteral(".."), nasty.filePath(QStringLiteral("loop/again")));
    QFile::link(QStringLiteral("itself.jpg"), nasty.filePath(QStringLiteral("itself.jpg")));
    return bOk;
}

bool makeOddSizes(const QDir &nasty)
{
    encoders::Options options;
    bool bOk = encoders::withVips(scenes::quarters(QSize(1, 1)), nasty.filePath(QStringLiteral("1x1.png")), options);
    bOk &= encoders::withVips(scenes::quarters(QSize(1, 1)), nasty.filePath(QStringLiteral("1x1.jpg")), options);
    bOk &=
        encoders::withVips(scenes::quarters(QSize(1, 20000)), nasty.filePath(QStringLiteral("1x20000.png")), options);
    bOk &=
        encoders::withVips(scenes::quarters(QSize(20000, 1)), nasty.filePath(QStringLiteral("20000x1.jpg")), options);
    return bOk;
}

} // namespace

bool makeNastyFiles(const QString &samples, const QString &folder)
{
    const QDir nasty(folder);
    if (!nasty.mkpath(QStringLiteral(".")))
        return false;
    bool bOk = makeDamaged(samples, nasty);
    bOk &= makeLying(samples, nasty);
    bOk &= makeOddlyNamed(samples, nasty);
    bOk &= makeOddSizes(nasty);
    return bOk;
}
