#pragma once

#include <QImage>
#include <QObject>
#include <QRunnable>
#include <QSize>
#include <QStringList>

/**
 * Reads the picture that stands for an audio file: for the cover, and small for the label beside the waveform. Takes
 * the first of the files that can be read, else the picture given. Emits once, always.
 *
 * Owner: the thread pool.
 */
class AudioCoverTask : public QObject, public QRunnable {
    Q_OBJECT

public:
    AudioCoverTask(const QStringList &paths, const QImage &picture, const QSize &labelSize);

    void run() override;

    /** The middle of a picture, as large as the cover. Any thread. */
    static QImage coverOf(const QImage &picture);

Q_SIGNALS:
    /** Both are null when there is no picture. */
    void signal_audioCoverReady(QImage cover, QImage label);

private:
    QImage readPicture(const QString &path) const;

    QStringList m_paths;
    QImage m_picture;
    QSize m_labelSize;
};
