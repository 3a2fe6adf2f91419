#pragma once

#include <QAtomicInt>
#include <QByteArray>
#include <QObject>
#include <QRunnable>
#include <QSharedPointer>
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
    /** The task gives up where the shared flag is no longer 0. */
    AnimationFileTask(qint64 nFileId, const QString &path, const QSharedPointer<QAtomicInt> &pCancel);

    /** Whether files with this extension can be animations at all; others need not be read. */
    static bool canBeAnimated(const QString &extension);

    void run() override;

Q_SIGNALS:
    void signal_animationRead(qint64 nFileId, QString path, QByteArray fileData);

private:
    qint64 m_nFileId;
    QString m_path;
    QSharedPointer<QAtomicInt> m_pCancel;
};
