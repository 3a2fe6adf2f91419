#pragma once

#include "interfaces/BigImgPreviewSdkExport.h"
#include "interfaces/data/IResponseInfo.h"
#include "interfaces/data/NoteRecord.h"

#include <QObject>

/**
 * Stores the region notes of a file.
 *
 * Owner: shared; the plug-in keeps the object from the request until its result was handled. Thread: requests come
 * from the GUI thread and return at once; signals are emitted in the GUI thread (work elsewhere and queue them).
 */
class BIGIMGPREVIEW_SDK_EXPORT ICommentAction : public QObject {
    Q_OBJECT

public:
    explicit ICommentAction(QObject *pParent = nullptr);
    ~ICommentAction() override;

    /**
     * Replaces all notes of the file by these, in this order. Returns the action id, greater than 0, or 0 and below
     * when the request is refused.
     */
    virtual qint64 setCommentsOfFile(qint64 nFileId, const QVector<NoteRecord> &notes) = 0;

Q_SIGNALS:
    /** Comes once for each accepted request, after its last progress, also when it was cancelled. */
    void signalCommentResult(qint64 nActionId, QSharedPointer<const IResponseInfo> pInfo);
};
