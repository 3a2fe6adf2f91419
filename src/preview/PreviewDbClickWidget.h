#pragma once

#include "interfaces/surfaces/IPreviewDbClickWidget.h"

class MiddleResourcePreviewWidget;

/**
 * The full preview in the host's main area.
 *
 * Owner: the host, which deletes it after signalBackBtnClicked. Thread: GUI thread.
 */
class PreviewDbClickWidget : public IPreviewDbClickWidget {
    Q_OBJECT

public:
    explicit PreviewDbClickWidget(QWidget *pParent);

    bool canClosePreview() override;
    void stopPreview() override;
    void setRightPanelHidden(bool bHidden) override;
    QWidget *previewWidget() override;

public Q_SLOTS:
    void slot_close_hide();

protected:
    void showEvent(QShowEvent *pEvent) override;

private:
    void step(int nOffset);

    MiddleResourcePreviewWidget *m_pHub;
    bool m_bShownOnce = false;
};
