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
    void putFile(const QSharedPointer<FakeFileInfo> &pFile) { m_records.insert(pFile->id, pFile); }
    void removeFile(qint64 nFileId) { m_records.remove(nFileId); }

    IFileListProvider *fileListProvider() override { return has(SourcePart::FileList) ? &files : nullptr; }
    IFileInformationProvider *fileInformationProvider() override
    {
        return has(SourcePart::FileInformation) ? this : nullptr;
    }
    FileInfoPtr fileInfo(qint64 nFileId, TagRecordList *pTags) override;
    bool isDeletingBlocked() override { return deletingBlocked; }
    QSharedPointer<IExportAction> exportAction() override
    {
        return make<IExportAction>(SourcePart::ExportAction, &makeExportAction);
    }
    QSharedPointer<IRemoveAction> removeAction() override
    {
        return make<IRemoveAction>(SourcePart::RemoveAction, &makeRemoveAction);
    }
    QSharedPointer<IRecycleAction> recycleAction() override
    {
        return make<IRecycleAction>(SourcePart::RecycleAction, &makeRecycleAction);
    }
    QSharedPointer<IFileAction> fileAction() override
    {
        return make<IFileAction>(SourcePart::FileAction, &makeFileAction);
    }
    QSharedPointer<ICommentAction> commentAction() override
    {
        return make<ICommentAction>(SourcePart::CommentAction, &makeCommentAction);
    }
    QSharedPointer<ITagAction> tagAction() override { return make<ITagAction>(SourcePart::TagAction, &makeTagAction); }
    void fillFileInformation(const QVector<qint64> &fileIds, QVector<FileInfoPtr> *pList) override;

    QSet<SourcePart> absent; ///< These answer null or leave the list as it is.
    bool deletingBlocked = false;
    FakeFileList files; ///< Emits the removals.

private:
    bool has(SourcePart part) const { return !absent.contains(part); }

    template <class Interface>
    QSharedPointer<Interface> make(SourcePart part, QSharedPointer<Interface> (*create)(ActionDesk &)) const
    {
        return has(part) ? create(m_desk) : QSharedPointer<Interface>();
    }

    ActionDesk &m_desk;
    QHash<qint64, QSharedPointer<FakeFileInfo>> m_records;
};
