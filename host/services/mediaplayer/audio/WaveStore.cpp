#include "services/mediaplayer/audio/WaveStore.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

#include <cmath>

namespace {

constexpr quint32 kMagic = 0x42574156;
constexpr int kMostInMemory = 64;
constexpr int kMostOnDisk = 2000;
constexpr int kMostLevels = 1 << 16;
constexpr qint64 kBlock = 64 << 10;

} // namespace

WaveStore::WaveStore(const QString &folder)
    : m_folder(folder)
    , m_recent(kMostInMemory)
{
}

QString WaveStore::standardFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/bigimgpreview/waveforms");
}

QByteArray WaveStore::contentKey(const QByteArray &native)
{
    QFile file(QFile::decodeName(native));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    // Reading all of a long file would take as long as decoding it: its size and three places of it are enough.
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(QByteArray::number(file.size()));
    for (const qint64 nAt : {qint64(0), file.size() / 2, qMax<qint64>(0, file.size() - kBlock)}) {
        if (!file.seek(nAt))
            return {};
        hash.addData(file.read(kBlock));
    }
    return hash.result().toHex();
}

QString WaveStore::pathOf(const QByteArray &key) const
{
    return m_folder + QLatin1Char('/') + QString::fromLatin1(key) + QStringLiteral(".wave");
}

media::Peaks WaveStore::find(const QByteArray &key)
{
    if (key.isEmpty())
        return {};
    {
        const QMutexLocker lock(&m_mutex);
        if (const media::Peaks *pPeaks = m_recent.object(key))
            return *pPeaks;
    }
    const media::Peaks peaks = load(key);
    if (!peaks.isNull()) {
        const QMutexLocker lock(&m_mutex);
        m_recent.insert(key, new media::Peaks(peaks));
    }
    return peaks;
}

void WaveStore::keep(const QByteArray &key, const media::Peaks &peaks)
{
    if (key.isEmpty() || peaks.isNull() || !peaks.bComplete)
        return;
    {
        const QMutexLocker lock(&m_mutex);
        m_recent.insert(key, new media::Peaks(peaks));
    }
    save(key, peaks);
}

media::Peaks WaveStore::load(const QByteArray &key) const
{
    QFile file(pathOf(key));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QDataStream stream(&file);
    stream.setVersion(QDataStream::Qt_5_15);
    quint32 nMagic = 0;
    QByteArray levels;
    media::Peaks peaks;
    stream >> nMagic >> peaks.fStretchMsec >> peaks.nDurationMsec >> levels;
    const bool bSound = stream.status() == QDataStream::Ok && nMagic == kMagic && levels.size() <= kMostLevels &&
                        std::isfinite(peaks.fStretchMsec) && peaks.fStretchMsec > 0.0 && peaks.nDurationMsec >= 0;
    if (!bSound)
        return {};
    peaks.levels.reserve(levels.size());
    for (const char nLevel : qAsConst(levels))
        peaks.levels.append(quint8(nLevel));
    peaks.bComplete = true;
    return peaks;
}

void WaveStore::save(const QByteArray &key, const media::Peaks &peaks) const
{
    if (!QDir().mkpath(m_folder))
        return;
    prune();
    QSaveFile file(pathOf(key));
    if (!file.open(QIODevice::WriteOnly))
        return;
    QDataStream stream(&file);
    stream.setVersion(QDataStream::Qt_5_15);
    const QByteArray levels(reinterpret_cast<const char *>(peaks.levels.constData()), peaks.levels.size());
    stream << kMagic << peaks.fStretchMsec << peaks.nDurationMsec << levels;
    // A waveform that was not written is read again the next time.
    if (stream.status() == QDataStream::Ok)
        file.commit();
}

void WaveStore::prune() const
{
    const QFileInfoList files = QDir(m_folder).entryInfoList({QStringLiteral("*.wave")}, QDir::Files, QDir::Time);
    for (int i = kMostOnDisk; i < files.size(); ++i)
        QFile::remove(files.at(i).filePath());
}
