#pragma once

#include "interfaces/data/IFileInformationProvider.h"
#include "interfaces/data/IFileListProvider.h"
#include "interfaces/data/IPreviewDataSource.h"

#include <QPointer>

class Library;

/**
 * The library's records, notes and labels as previews see them, without actions on files; HostDataSource adds those.
 * Works on, empty, after the library is gone.
 *
 * Owner: shared between host and preview. Thread: GUI thread only.
 */
class LibraryDataSource : public IPreviewDataSource, public IFileInformationProvider {
public:
    explicit LibraryDataSource(Library *pLibrary);
    virtual ~LibraryDataSource() = default;
    Q_DISABLE_COPY(LibraryDataSource)

    IFileListProvider *fileListProvider() override { return &m_fileList; }
    IFileInformationProvider *fileInformationProvider() override { return this; }
    FileInfoPtr fileInfo(qint64 nFileId, TagRecordList *pTags) override;
    bool isDeletingBlocked() override { return false; }
    QSharedPointer<IExportAction> exportAction() override;
    QSharedPointer<IRemoveAction> removeAction() override;
    QSharedPointer<IRecycleAction> recycleAction() override;
    QSharedPointer<IFileAction> fileAction() override;
    QSharedPointer<ICommentAction> commentAction() override;
    QSharedPointer<ITagAction> tagAction() override;

    void fillFileInformation(const QVector<qint64> &fileIds, QVector<FileInfoPtr> *pList) override;

protected:
    Library *library() const { return m_pLibrary.data(); }

private:
    const QPointer<Library> m_pLibrary;
    IFileListProvider m_fileList;
};
