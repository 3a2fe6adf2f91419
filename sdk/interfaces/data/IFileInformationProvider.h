#pragma once

#include "interfaces/data/IFileInfo.h"

/** Gives many file records at once. Owner: the data source. Thread: GUI thread only. */
class IFileInformationProvider {
public:
    /**
     * Appends one record for each id, in the order of the ids, to the list; an id that the library does not hold is
     * left out. Must be quick for 100,000 ids (records may fetch what they need later).
     */
    virtual void fillFileInformation(const QVector<qint64> &fileIds, QVector<FileInfoPtr> *pList) = 0;

protected:
    ~IFileInformationProvider() = default;
};
