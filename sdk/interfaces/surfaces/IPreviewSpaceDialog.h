#pragma once

#include "interfaces/BigImgPreviewSdkExport.h"

#include <QDialog>
#include <QVector>

/**
 * The quick preview: a dialog over a dark veil that shows one file and steps through the host's list.
 *
 * Owner: the host or the Qt parent; closing does not destroy it, the host deletes it (deleteLater) after
 * signalSpacePreviewClosed. Thread: GUI thread only.
 */
class BIGIMGPREVIEW_SDK_EXPORT IPreviewSpaceDialog : public QDialog {
    Q_OBJECT

public:
    explicit IPreviewSpaceDialog(QWidget *pParent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    ~IPreviewSpaceDialog() override;

    /** Shows the current file and opens the dialog modally over the parent's window; returns at once. */
    virtual void showPreview() = 0;

    /** True when the preview may be closed now; while a file loads the user is told to wait and it is false. */
    virtual bool canClosePreview() = 0;

Q_SIGNALS:
    /** The user stepped to another file. */
    void signalPreviewFileIdChanged(qint64 nFileId);

    /** The dialog was closed while it showed this file. */
    void signalSpacePreviewClosed(qint64 nFileId);

    /** Asks the host to analyse these files before the others. */
    void sigRaiseAnalysisPriority(QVector<qint64> &fileIds);
};
