#pragma once

#include <QImage>
#include <QObject>
#include <QRunnable>
#include <QString>

/**
 * Makes a picture ready to be a file's preview picture, cut to a square where asked for. Emits once, always.
 *
 * Owner: the thread pool.
 */
class CoverTask : public QObject, public QRunnable {
    Q_OBJECT

public:
    CoverTask(const QString &path, bool bSquare);
    /** A picture that is on the screen: it is put into a temporary file first. */
    explicit CoverTask(const QImage &picture);

    void run() override;

Q_SIGNALS:
    /** The picture to hand to the host; empty when there is none. */
    void signal_coverReady(QString path);

private:
    QString m_path;
    QImage m_picture;
    bool m_bSquare = false;
};
