#pragma once

#include "media/PeakReader.h"

#include <QImage>
#include <QObject>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <memory>

class WaveStore;

/**
 * Reads what is shown of a sound while it plays, in the background: its waveform and its embedded cover. A new source
 * gives up what was being read of the last one.
 *
 * Owner: MediaPlayer, one for each player and kind. Thread: GUI thread; the pool's threads see values only.
 */
class SoundReader final : public QObject {
    Q_OBJECT

public:
    using CoverSource = std::function<QImage(const QString &path, int nSide, const std::atomic_bool &cancelled)>;

    SoundReader(QThreadPool *pPool, QObject *pParent);
    ~SoundReader() override;

    /** The store must outlive the pool's work. */
    void readWave(const QString &path, WaveStore *pStore);

    /** The source is called in a thread of the pool. */
    void readCover(const QString &path, int nSide, const CoverSource &source);

    void cancel();

Q_SIGNALS:
    /** What there is so far; null at the end when there is no sound in the file. */
    void signalWave(const media::Peaks &peaks);
    /** Null when the file has no cover. */
    void signalCover(const QImage &cover);

private:
    std::shared_ptr<std::atomic_bool> restart();

    QThreadPool *m_pPool;
    std::shared_ptr<std::atomic_bool> m_pCancelled;
};
