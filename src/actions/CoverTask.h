#pragma once

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

    void run() override;

Q_SIGNALS:
    /** The picture to hand to the host; empty when there is none. */
    void signal_coverReady(QString path);

private:
    QString m_path;
    bool m_bSquare;
};
