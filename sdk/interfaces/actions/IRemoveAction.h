#pragma once

#include "interfaces/BigImgPreviewSdkExport.h"
#include "interfaces/data/IResponseInfo.h"

#include <QObject>

/**
 * Deletes files permanently.
 *
 * Owner: shared; the plug-in keeps the object from the request until its result was handled. Thread: requests come
 * from the GUI thread and return at once; signals are emitted in the GUI thread (work elsewhere and queue them).
 */
class BIGIMGPREVIEW_SDK_EXPORT IRemoveAction : public QObject {
    Q_OBJECT

public:
    explicit IRemoveAction(QObject *pParent = nullptr);
    ~IRemoveAction() override;

    /** Starts deleting; returns the action id, greater than 0, or 0 and below when the request is refused. */
    virtual qint64 requestRemove(const QVector<qint64> &fileIds) = 0;

    /** Asks to stop a running request; the result still comes. An id that is not running is ignored. */
    virtual void requestCancel(qint64 nActionId) = 0;

Q_SIGNALS:
    /** nProgress is a percentage from 0 to 100; nTotal and nAlready count files. At most 20 times a second. */
    void signalRemoveProgress(qint64 nActionId, double nProgress, int nTotal, int nAlready);

    /** Comes once for each accepted request, after its last progress, also when it was cancelled. */
    void signalRemoveResult(qint64 nActionId, QSharedPointer<const IResponseInfo> pInfo);
};
