#pragma once

#include "interfaces/BigImgPreviewSdkExport.h"

#include <QObject>
#include <QVector>

/** Announces changes of the host's list of files. Owner: the data source. Thread: GUI thread only. */
class BIGIMGPREVIEW_SDK_EXPORT IFileListProvider : public QObject {
    Q_OBJECT

public:
    explicit IFileListProvider(QObject *pParent = nullptr);
    ~IFileListProvider() override;

Q_SIGNALS:
    /** These files left the library or the folder in view. Emitted in the GUI thread. */
    void signalRemoveFiles(QVector<qint64> fileIds);
};
