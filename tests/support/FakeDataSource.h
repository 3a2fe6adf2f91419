#pragma once

#include "FakeActions.h"
#include "interfaces/data/IFileInformationProvider.h"
#include "interfaces/data/IFileListProvider.h"
#include "interfaces/data/IPreviewDataSource.h"

#include <QHash>
#include <QSet>

/** Announces removals when the test says so. */
class FakeFileList : public IFileListProvider {
    Q_OBJECT

public:
    void announceRemoved(const QVector<qint64> &fileIds) { Q_EMIT signalRemoveFiles(fileIds); }
};

/** Parts of the data source that a test may leave out. */
enum class SourcePart {
    FileList,
    FileInformation,
    Records,
    ExportAction,
    RemoveAction,
    RecycleAction,
    FileAction,
    CommentAction,
    TagAction
};

inline uint qHash(SourcePart part, uint nSeed = 0)
{
    return ::qHash(int(part), nSeed);
}

/** A library in memory. Owner: FakeHost and, while it is handed in, the plug-in. GUI thread only. */
class FakeDataSource final : public IPreviewDataSource, public IFileInformationProvider {
public:
    explicit FakeDataSource(ActionDesk &desk)
        : m_desk(desk)
    {
    }

    /** Puts a record in place of the one with its id, or adds it. */
    void putFile(const QSharedPointer<FakeFileInfo> &pFile);
    void removeFile(qint64 nFileId);

    IFileListProvider *fileListProvider() override;
    IFileInformationProvider *fileInformationProvider() override;
    FileInfoPtr fileInfo(qint64 nFileId, TagRecordList *pTags) override;
    bool isDeletingBlocked() override { return deletingBlocked; }
    QSharedPointer<IExportAction> exportAction() override;
    QSharedPointer<IRemoveAction> removeAction() override;
    QSharedPointer<IRecycleAction> recycleAction() override;
    QSharedPointer<IFileAction> fileAction() override;
    QSharedPointer<ICommentAction> commentAction() override;
    QSharedPointer<ITagAction> tagAction() override;
    void fillFileInformation(const QVector<qint64> &fileIds, QVector<FileInfoPtr> *pList) override;

    QSet<SourcePart> absent; ///< These answer null or leave the list as it is.
    bool deletingBlocked = false;
    FakeFileList files; ///< Emits the removals.

private:
    ActionDesk &m_desk;
    QHash<qint64, QSharedPointer<FakeFileInfo>> m_records;
};
