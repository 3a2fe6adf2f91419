#pragma once

#include "library/FileRecord.h"

/** A record of a file that exists in the library only. */
inline FileRecordPtr makeRecord(qint64 nId, const QString &name, qint64 nModifiedMsec = 0)
{
    FileRow row;
    row.id = nId;
    row.folder = QStringLiteral("/pictures");
    row.name = name;
    row.nType = 20;
    row.nModifiedMsec = nModifiedMsec;
    return FileRecordPtr(new FileRecord(row, {}, fileNameCollator().sortKey(name), {}));
}
