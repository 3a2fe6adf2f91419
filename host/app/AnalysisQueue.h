#pragma once

#include "library/FileRecord.h"

#include <QHash>
#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>

class Library;

/**
 * Has the base module make the pictures of all files in view, a few at a time and those first that are looked at;
 * documents one after the other, so that pictures do not wait for them. What was done is kept in the library, so that
 * the next start goes on where this one ended.
 *
 * Owner: HostSession. Thread: GUI thread; its workers see the waiting files only.
 */
class AnalysisQueue : public QObject {
    Q_OBJECT

public:
    explicit AnalysisQueue(Library *pLibrary, QObject *pParent = nullptr);
    ~AnalysisQueue() override;

    /** Begins; null ends it: running analyses are given up and waited for. */
    void setAnalysis(IHostAnalysis *pAnalysis);

    /** These files are next, the first one first; files that need no analysis do nothing. */
    void raise(const QVector<qint64> &fileIds);

    bool isBusy() const { return m_nOpen > 0; }

Q_SIGNALS:
    /** How much is done of what there is to do; both are 0 when nothing is left. */
    void signalProgress(int nDone, int nTotal);
    /** No picture can be made of this file. */
    void signalImpossible(qint64 nFileId);

private:
    void addRecords(const FileRecordList &records);
    void removeFiles(const QVector<qint64> &fileIds);
    void forgetAll();
    void startWorkers();
    void work();
    bool takeNext(FileRow *pFile);
    void endConversion();
    void takeOutcome(const FileRow &file, AnalysisOutcome outcome);
    void report();

    Library *m_pLibrary;
    IHostAnalysis *m_pAnalysis = nullptr;
    QThreadPool m_pool;
    std::atomic_bool m_bCancelled{false};

    std::mutex m_mutex; ///< Guards the next five.
    QHash<qint64, FileRow> m_waiting;
    std::deque<qint64> m_order;    ///< May name files that wait no more.
    std::deque<qint64> m_heldBack; ///< Documents that were next while another one was being converted.
    bool m_bConverting = false;
    int m_nWorkers = 0;

    QVector<FileRow> m_finished; ///< Not stored yet.
    QHash<qint64, qint64>
        m_analysed; ///< Time of change by file: records do not tell what was done since they were made.
    QTimer m_reportTimer;
    int m_nOpen = 0; ///< Waiting or under way.
    int m_nDone = 0;
};
