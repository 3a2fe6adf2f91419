#pragma once

#include "interfaces/BigImgPreviewSdkExport.h"
#include "interfaces/data/IResponseInfo.h"

#include <QObject>

/**
 * Changes what the library keeps about one file.
 *
 * Owner: shared; the plug-in keeps the object from the request until its result was handled. Thread: requests come
 * from the GUI thread and return at once; signals are emitted in the GUI thread (work elsewhere and queue them).
 */
class BIGIMGPREVIEW_SDK_EXPORT IFileAction : public QObject {
    Q_OBJECT

public:
    explicit IFileAction(QObject *pParent = nullptr);
    ~IFileAction() override;

    /**
     * Makes the picture at `path` the file's preview picture; an empty path takes an earlier one away. The
     * path has the system's own separators. The host copies the picture before the result comes. Returns the action id,
     * greater than 0, or 0 and below when refused.
     */
    virtual qint64 setFileCover(qint64 nFileId, const QString &path) = 0;

    /** Asks to stop a running request; the result still comes. An id that is not running is ignored. */
    virtual void requestCancel(qint64 nActionId) = 0;

Q_SIGNALS:
    /** Comes once for each accepted request, after its last progress, also when it was cancelled. */
    void signalFileResult(qint64 nActionId, QSharedPointer<const IResponseInfo> pInfo);
};
