#include "library/LibraryDataSource.h"

#include "interfaces/actions/IExportAction.h"
#include "interfaces/actions/IFileAction.h"
#include "interfaces/actions/IRecycleAction.h"
#include "interfaces/actions/IRemoveAction.h"
#include "library/Library.h"
#include "library/LibraryActions.h"

LibraryDataSource::LibraryDataSource(Library *pLibrary)
    : m_pLibrary(pLibrary)
{
    for (const auto gone : {&Library::signalRemoved, &Library::signalMissing})
        QObject::connect(pLibrary, gone, &m_fileList, &IFileListProvider::signalRemoveFiles);
}

FileInfoPtr LibraryDataSource::fileInfo(qint64 nFileId, TagRecordList *pTags)
{
    if (m_pLibrary == nullptr)
        return {};
    const FileRecordPtr pRecord = m_pLibrary->record(nFileId);
    if (pRecord != nullptr && pTags != nullptr)
        pTags->append(pRecord->tags());
    return pRecord;
}

void LibraryDataSource::fillFileInformation(const QVector<qint64> &fileIds, QVector<FileInfoPtr> *pList)
{
    if (m_pLibrary == nullptr || pList == nullptr)
        return;
    pList->reserve(pList->size() + fileIds.size());
    for (const qint64 nFileId : fileIds) {
        const FileRecordPtr pRecord = m_pLibrary->record(nFileId);
        if (pRecord != nullptr)
            pList->append(pRecord);
    }
}

QSharedPointer<IExportAction> LibraryDataSource::exportAction()
{
    return {};
}

QSharedPointer<IRemoveAction> LibraryDataSource::removeAction()
{
    return {};
}

QSharedPointer<IRecycleAction> LibraryDataSource::recycleAction()
{
    return {};
}

QSharedPointer<IFileAction> LibraryDataSource::fileAction()
{
    return {};
}

QSharedPointer<ICommentAction> LibraryDataSource::commentAction()
{
    if (m_pLibrary == nullptr)
        return {};
    return QSharedPointer<LibraryCommentAction>::create(m_pLibrary.data());
}

QSharedPointer<ITagAction> LibraryDataSource::tagAction()
{
    if (m_pLibrary == nullptr)
        return {};
    return QSharedPointer<LibraryTagAction>::create(m_pLibrary.data());
}
