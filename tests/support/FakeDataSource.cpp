#include "FakeDataSource.h"

FileInfoPtr FakeDataSource::fileInfo(qint64 nFileId, TagRecordList *pTags)
{
    const QSharedPointer<FakeFileInfo> pFile = m_records.value(nFileId);
    if (!pFile || !has(SourcePart::Records))
        return {};
    if (pTags != nullptr)
        *pTags += pFile->tagList;
    return pFile;
}

void FakeDataSource::fillFileInformation(const QVector<qint64> &fileIds, QVector<FileInfoPtr> *pList)
{
    for (const qint64 nFileId : fileIds) {
        if (const QSharedPointer<FakeFileInfo> pFile = m_records.value(nFileId))
            pList->append(pFile);
    }
}
