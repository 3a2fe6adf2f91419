#pragma once

#include "media/PeakReader.h"

#include <QCache>
#include <QMutex>
#include <QString>

/**
 * Waveforms that were read once, in memory and on disk. They are kept by what is in the file, so that a file that was
 * renamed or copied has its waveform at once and a changed one gets a new one.
 *
 * Owner: MediaPlayer. Thread: any; touches the disk.
 */
class WaveStore {
public:
    explicit WaveStore(const QString &folder);

    /** In the user's cache folder. */
    static QString standardFolder();

    /** What stands for the file's content; empty for a file that cannot be read. */
    static QByteArray contentKey(const QByteArray &native);

    /** Null when it is not there. */
    media::Peaks find(const QByteArray &key);

    /** Complete ones only; others are not kept. */
    void keep(const QByteArray &key, const media::Peaks &peaks);

private:
    QString pathOf(const QByteArray &key) const;
    media::Peaks load(const QByteArray &key) const;
    void save(const QByteArray &key, const media::Peaks &peaks) const;
    void prune() const;

    const QString m_folder;
    QMutex m_mutex;
    QCache<QByteArray, media::Peaks> m_recent;
};
