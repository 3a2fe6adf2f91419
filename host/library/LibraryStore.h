#pragma once

#include "interfaces/data/TagRecord.h"
#include "library/FileRecord.h"
#include "library/LabelRecord.h"
#include "library/LibraryKeeping.h"

#include <QHash>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <functional>
#include <memory>

/**
 * The library file: SQLite with one connection.
 *
 * Owner: LibraryWorker. Thread: the one that opens it. Operations that fail return false or nothing and leave the
 * reason in lastError; nothing of a failed operation is kept.
 */
class LibraryStore {
public:
    LibraryStore();
    ~LibraryStore();
    Q_DISABLE_COPY(LibraryStore)

    /** Opens or creates the file; ":memory:" keeps nothing. False with a readable reason. */
    bool open(const QString &path, QString *pError);

    /** An empty library in memory, with what can be read of this file. */
    bool openCopy(const QString &path, QString *pError);
    void close();
    QString lastError() const { return m_lastError; }

    /**
     * Stores the state of these files; the same with their ids, nothing when it fails. A new place of a file that is
     * gone from its old one is the same file, with everything that was added to it.
     */
    QVector<FileRow> takeIn(const QVector<FileRow> &files);

    /** The files known in these folders, with or without their sub-folders, the missing ones too. */
    QVector<FileRow> filesUnder(const QStringList &folders, bool bRecursive);

    /** This folder and those below it that ever held files. */
    QStringList foldersUnder(const QString &folder);

    bool setUnavailable(const QVector<qint64> &fileIds);

    /** Gives a file another name, on disk by the call, here only where that succeeds. */
    bool renameFile(const FileRow &file, const QString &newName, qint64 nNewType,
                    const std::function<bool()> &renameOnDisk);

    /** Keeps how far these files are analysed, where they are still in the state that the rows tell. */
    bool setAnalysis(const QVector<FileRow> &files);

    QHash<qint64, QVector<NoteRecord>> allNotes();
    bool setNotes(qint64 nFileId, const QVector<NoteRecord> &notes);

    QHash<qint64, TagRecordList> allLabels();

    /** Adds the labels to the files: named ones are found or made by name, others must be known by id. */
    bool addLabels(const QVector<qint64> &fileIds, const TagRecordList &labels);

    /** Every label, by name. */
    QVector<LabelRecord> labelRecords();
    bool removeLabels(const QVector<qint64> &fileIds, const QVector<quint64> &labelIds);
    bool setLabelColor(quint64 nLabelId, quint32 nColor);
    bool deleteLabel(quint64 nLabelId);

    /** Drops files with everything that was added to them. */
    bool forget(const QVector<qint64> &fileIds);

    /** Files in the recycle bin: not shown, but known should they come back. */
    bool setRecycled(const QVector<qint64> &fileIds);

    /** Names of preview pictures by file. */
    QHash<qint64, QString> allCovers();

    /** Moves a finished picture into the folder as the file's preview picture; an empty one takes the old away. */
    bool setCover(qint64 nFileId, const QString &folder, const QString &file, const QString &suffix, QString *pName);

    /** Removes pictures that no file uses, as an end at the wrong moment leaves them. */
    void removeStrayCovers(const QString &folder);

    QStringList protectedFolders();
    bool setFolderProtected(const QString &folder, bool bProtected);

    /** Stores files with all that comes with them; the names of their preview pictures in the same order. */
    bool import(QVector<ImportedFile> *pFiles, const QString &coverFolder, QStringList *pCoverNames);

private:
    bool writeCover(qint64 nFileId, const QString &name);
    QString takeCoverFile(const QString &folder, const QString &file, const QString &suffix);
    qint64 folderId(const QString &folder);
    bool takeInFile(FileRow *pFile);
    bool claimMoved(FileRow *pFile, qint64 nFolderId);
    void prepareTakeIn();
    bool writeNotes(qint64 nFileId, const QVector<NoteRecord> &notes);
    bool writeLabels(const QVector<qint64> &fileIds, const TagRecordList &labels);
    quint64 labelId(const TagRecord &label);
    bool isWritable(QString *pError);
    bool exec(QSqlQuery *pQuery);
    bool beginTransaction();
    bool finishTransaction(bool bDone);
    QSqlQuery prepared(const QString &statement);

    const QString m_connectionName;
    QSqlDatabase m_database;
    QHash<QString, qint64> m_folderIds;
    std::unique_ptr<QSqlQuery> m_pFindFile;
    std::unique_ptr<QSqlQuery> m_pAddFile;
    std::unique_ptr<QSqlQuery> m_pFindMoved;
    std::unique_ptr<QSqlQuery> m_pMoveFile;
    QString m_lastError;
};
