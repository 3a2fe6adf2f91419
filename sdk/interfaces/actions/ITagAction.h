#pragma once

#include "interfaces/BigImgPreviewSdkExport.h"
#include "interfaces/data/IResponseInfo.h"
#include "interfaces/data/TagRecord.h"

#include <QObject>

/**
 * Links labels with files.
 *
 * Owner: shared; the plug-in keeps the object from the request until its result was handled. Thread: requests come
 * from the GUI thread and return at once; signals are emitted in the GUI thread (work elsewhere and queue them).
 */
class BIGIMGPREVIEW_SDK_EXPORT ITagAction : public QObject {
    Q_OBJECT

public:
    explicit ITagAction(QObject *pParent = nullptr);
    ~ITagAction() override;

    /**
     * Adds the labels to the files; labels with an empty name are known by their id alone. Returns the action id,
     * greater than 0, or 0 and below when the request is refused.
     */
    virtual qint64 associateTagsWithFiles(const QVector<qint64> &fileIds, const TagRecordList &tags) = 0;

Q_SIGNALS:
    /** Comes once for each accepted request, after its last progress, also when it was cancelled. */
    void signalTagResult(qint64 nActionId, QSharedPointer<const IResponseInfo> pInfo);
};
