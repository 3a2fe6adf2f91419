#pragma once

#include <QHash>
#include <QObject>
#include <QSet>
#include <QSharedPointer>
#include <QTimer>

class PictureLoad;
class PreviewResourceThread;

/**
 * The presentations that a hub is having opened. One that nobody waits for any more is cancelled, and again until its
 * load has ended: a cancellation that comes before the renderer has begun is lost on it.
 *
 * Owner: the hub. Thread: GUI thread.
 */
class HubOpenings : public QObject {
    Q_OBJECT

public:
    explicit HubOpenings(QObject *pParent);
    ~HubOpenings() override;

    /** A task that opens the document. The caller connects and starts it, and calls end when it has ended. */
    PreviewResourceThread *begin(qint64 nFileId, const QString &path);
    /** False when the opening was cancelled. */
    bool end(qint64 nFileId);
    bool isOpening(qint64 nFileId) const { return m_loads.contains(nFileId); }
    bool isCancelled(qint64 nFileId) const;

    void cancelAll() { cancelOthers(-1); }
    void cancelOthers(qint64 nKeptFileId);
    /** Nothing will be shown for a while: what was opened is closed as well. */
    void closeAll();

private:
    void cancelAgain();

    QHash<qint64, QSharedPointer<PictureLoad>> m_loads;
    QSet<qint64> m_opened;
    QTimer m_cancelTimer;
};
