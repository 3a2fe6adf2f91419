#pragma once

#include "interfaces/BigImgPreviewSdkExport.h"

#include <QVector>
#include <QWidget>

/**
 * The full preview, which the host places in its main window.
 *
 * Owner: the host or the Qt parent; the host deletes it after signalBackBtnClicked. Thread: GUI thread only.
 */
class BIGIMGPREVIEW_SDK_EXPORT IPreviewDbClickWidget : public QWidget {
    Q_OBJECT

public:
    explicit IPreviewDbClickWidget(QWidget *pParent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    ~IPreviewDbClickWidget() override;

    /** True when the preview may be closed now; while a file loads the user is told to wait and it is false. */
    virtual bool canClosePreview() = 0;

    /** Stops whatever plays or loads in the preview. */
    virtual void stopPreview() = 0;

    /** Tells the preview whether the host's right panel is hidden. */
    virtual void setRightPanelHidden(bool bHidden) = 0;

    /** The widget to place in the host's layout: this object. */
    virtual QWidget *previewWidget() = 0;

Q_SIGNALS:
    /** The user left the preview while it showed this file. */
    void signalBackBtnClicked(qint64 nFileId);

    /** Another file is shown, or the information of the shown file changed. */
    void signalPreviewFileIdChanged(qint64 nFileId);

    /** Asks the host to hide its right panel, or to show it again: a toggle. */
    void signalHideRightView();

    /** While true the host keeps its right panel away, because there is nothing to tell yet. */
    void signalRightViewIsForbidden(bool bForbidden);

    /** Emitted by the host when the mouse comes near the right edge. */
    void signalStartSideTimer();

    /** Asks the host to analyse these files before the others. */
    void sigRaiseAnalysisPriority(QVector<qint64> &fileIds);
};
