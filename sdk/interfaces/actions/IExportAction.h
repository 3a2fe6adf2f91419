#pragma once

#include "interfaces/BigImgPreviewSdkExport.h"
#include "interfaces/data/IResponseInfo.h"

#include <QObject>

/**
 * Copies files out of the library: into a folder, or into one library pack.
 *
 * Owner: shared; the plug-in keeps the object from the request until its result was handled. Thread: requests come
 * from the GUI thread and return at once; signals are emitted in the GUI thread (work elsewhere and queue them).
 */
class BIGIMGPREVIEW_SDK_EXPORT IExportAction : public QObject {
    Q_OBJECT

public:
    explicit IExportAction(QObject *pParent = nullptr);
    ~IExportAction() override;

    /**
     * Starts an export.
     *
     * @param path      target folder, or the pack file to write.
     * @param fileIds   the files to export.
     * @param bPackage  true for a library pack.
     * @return the action id, greater than 0; 0 or below when the request is refused.
     */
    virtual qint64 requestExport(const QString &path, const QVector<qint64> &fileIds, bool bPackage) = 0;

    /** Asks to stop a running request; the result still comes. An id that is not running is ignored. */
    virtual void requestCancel(qint64 nActionId) = 0;

Q_SIGNALS:
    /** nProgress is a percentage from 0 to 100; nTotal and nAlready count files. At most 20 times a second. */
    void signalExportProgress(qint64 nActionId, double nProgress, int nTotal, int nAlready);

    /** Comes once for each accepted request, after its last progress, also when it was cancelled. */
    void signalExportResult(qint64 nActionId, QSharedPointer<const IResponseInfo> pInfo);
};
