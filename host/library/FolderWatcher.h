#pragma once

#include <QHash>
#include <QMutex>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTimer>

/**
 * Notices changes in folders: files that appear, are written, move or vanish. Folders that the system cannot watch, or
 * not so many of, are looked at now and then instead; without any of these no timer runs.
 *
 * Owner: LibraryWorker. Thread: the worker's; `add`, `contains` and `clear` any.
 */
class FolderWatcher : public QObject {
    Q_OBJECT

public:
    explicit FolderWatcher(QObject *pParent = nullptr);
    ~FolderWatcher() override;

    /** Watches a folder from now on: once is enough until another drive takes the folder's place. */
    void add(const QString &folder);
    bool contains(const QString &folder) const;

    /** Forgets every folder. */
    void clear();

    /** For tests: at most this many folders are left to the system, and the others looked at so often. */
    void setSystemLimit(int nFolders, int nPollMsec)
    {
        m_nSystemLimit = nFolders;
        m_pollTimer.setInterval(nPollMsec);
    }

Q_SIGNALS:
    /** Something changed in these folders; gathered, so that a copy of a thousand files comes as a few signals. */
    void signalChanged(const QStringList &folders);

private:
    int addToSystem(const QString &folder);
    void removeFromSystem(int nWatch);
    void readEvents();
    void leave(const QString &folder);
    void report(const QString &folder);
    void poll();
    static qint64 stateOf(const QString &folder);

    int m_nSystem = -1; ///< The system's handle; -1: it cannot watch.
    int m_nSystemLimit = 100000;
    mutable QMutex m_mutex;
    QHash<QString, int> m_watches; ///< By folder; -1: looked at now and then.
    QHash<int, QString> m_folders;
    QHash<QString, qint64> m_polled; ///< With the state seen last.
    QSet<QString> m_changed;
    QTimer m_reportTimer;
    QTimer m_pollTimer;
    int m_nPolls = 0;
};
