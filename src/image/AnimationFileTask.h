#pragma once

#include <QByteArray>
#include <QObject>
#include <QRunnable>
#include <QString>

/**
 * Finds out whether a picture file is animated and reads it into memory if so, so that it plays without a handle on
 * the file and without file access in the GUI thread. Emits at most once; nothing for a still picture.
 *
 * Owner: the thread pool.
 */
class AnimationFileTask : public QObject, public QRunnable {
    Q_OBJECT

public:
    AnimationFileTask(qint64 nFileId, const QString &path);

    void run() override;

Q_SIGNALS:
    void signal_animationRead(qint64 nFileId, QString path, QByteArray fileData);

private:
    qint64 m_nFileId;
    QString m_path;
};
