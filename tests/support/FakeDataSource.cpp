#include "FakeDataSource.h"

void FakeDataSource::putFile(const QSharedPointer<FakeFileInfo> &pFile)
{
    m_records.insert(pFile->id, pFile);
}

void FakeDataSource::removeFile(qint64 nFileId)
{
    m_records.remove(nFileId);
}

IFileListProvider *FakeDataSource::fileListProvider()
{
    return absent.contains(SourcePart::FileList) ? nullptr : &files;
}

IFileInformationProvider *FakeDataSource::fileInformationProvider()
{
    return absent.contains(SourcePart::FileInformation) ? nullptr : this;
}

FileInfoPtr FakeDataSource::fileInfo(qint64 nFileId, TagRecordList *pTags)
{
    const QSharedPointer<FakeFileInfo> pFile = m_records.value(nFileId);
    if (!pFile || absent.contains(SourcePart::Records)) {
        return {};
    }
    if (pTags != nullptr) {
        *pTags += pFile->tags;
    }
    return pFile;
}

void FakeDataSource::fillFileInformation(const QVector<qint64> &fileIds, QVector<FileInfoPtr> *pList)
{
    for (const qint64 nFileId : fileIds) {
        if (const QSharedPointer<FakeFileInfo> pFile = m_records.value(nFileId)) {
            pList->append(pFile);
        }
    }
}

QSharedPointer<IExportAction> FakeDataSource::exportAction()
{
    return absent.contains(SourcePart::ExportAction) ? nullptr : makeExportAction(m_desk);
}

QSharedPointer<IRemoveAction> FakeDataSource::removeAction()
{
    return absent.contains(SourcePart::RemoveAction) ? nullptr : makeRemoveAction(m_desk);
}

QSharedPointer<IRecycleAction> FakeDataSource::recycleAction()
{
    return absent.contains(SourcePart::RecycleAction) ? nullptr : makeRecycleAction(m_desk);
}

QSharedPointer<IFileAction> FakeDataSource::fileAction()
{
    return absent.contains(SourcePart::FileAction) ? nullptr : makeFileAction(m_desk);
}

QSharedPointer<ICommentAction> FakeDataSource::commentAction()
{
    return absent.contains(SourcePart::CommentAction) ? nullptr : makeCommentAction(m_desk);
}

QSharedPointer<ITagAction> FakeDataSource::tagAction()
{
    return absent.contains(SourcePart::TagAction) ? nullptr : makeTagAction(m_desk);
}
