#include "FakeRecords.h"

FakeFileInfo::FakeFileInfo(qint64 nId, qint64 nType, const QString &filePath)
    : id(nId)
    , type(nType)
    , path(filePath)
{
}

ResponseInfoPtr FakeResponse::success()
{
    return QSharedPointer<FakeResponse>::create();
}

ResponseInfoPtr FakeResponse::failure(int nCode, const QStringList &errors)
{
    const auto pResponse = QSharedPointer<FakeResponse>::create();
    pResponse->code = nCode;
    pResponse->errors = errors;
    return pResponse;
}

TagRecordPtr makeTag(quint64 nId, const QString &name)
{
    const auto pTag = QSharedPointer<TagRecord>::create();
    pTag->id = nId;
    pTag->name = name;
    return pTag;
}
