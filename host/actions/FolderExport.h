#pragma once

#include "actions/FileCopy.h"
#include "actions/Leftovers.h"
#include "actions/TargetNames.h"
#include "library/FileRecord.h"

/** Counts files and bytes of one action and turns them into reports. Worker thread of the action. */
class ByteMeter {
public:
    ByteMeter(ActionTask &task, const FileRecordList &files);

    /** False when the action was cancelled. */
    bool add(qint64 nBytes);
    void fileDone();
    /** Everything is where it belongs. */
    void finish();

private:
    void report(double fPercent);

    ActionTask &m_task;
    qint64 m_nTotalBytes = 0;
    qint64 m_nBytes = 0;
    int m_nTotalFiles;
    int m_nFiles = 0;
};

/**
 * Copies files of the library into a folder. They are written into a hidden folder beside their place, put on the disk
 * and only then given their names: what is seen in the target is always whole.
 *
 * Owner: the action's work. Thread: the action's worker.
 */
class FolderExport {
public:
    FolderExport(const QString &folder, FileRecordList files, const Leftovers &leftovers);

    ActionOutcome run(ActionTask &task);

private:
    struct Written {
        FileRecordPtr pRecord;
        QByteArray stagedName;
        QByteArray finalName;
    };

    bool prepare();
    bool copyNext(int nIndex, ByteMeter *pMeter);
    bool publish(ByteMeter *pMeter);
    void fail(const IoStatus &status, const FileRecordPtr &pRecord = {});
    bool isTargetStillThere() const;

    const QByteArray m_folder;
    const FileRecordList m_files;
    const Leftovers &m_leftovers;
    ActionOutcome m_outcome;
    UniqueFd m_target;
    std::unique_ptr<Leftover> m_pStaging;
    UniqueFd m_staging;
    std::unique_ptr<TargetNames::Publisher> m_pPublisher;
    QVector<Written> m_written;
    qint64 m_nWrittenBytes = 0;
    bool m_bUnsynced = false;
};
