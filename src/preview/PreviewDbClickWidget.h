#pragma once

#include "interfaces/surfaces/IPreviewDbClickWidget.h"

#include <memory>

class MiddleResourcePreviewWidget;
class PreviewLeftNumWin;
class PreviewLeftWin;

namespace Ui {
class PreviewDbClickWidget;
}

/**
 * The full preview in the host's main area: the thumbnail strip with its counter on the left, the hub in the middle.
 * Joins strip, hub and host, and folds the columns; the right one belongs to the host, which is only told.
 *
 * Owner: the host, which deletes it after signalBackBtnClicked. Thread: GUI thread.
 */
class PreviewDbClickWidget : public IPreviewDbClickWidget {
    Q_OBJECT

public:
    explicit PreviewDbClickWidget(QWidget *pParent);
    ~PreviewDbClickWidget() override;

    bool canClosePreview() override;
    void stopPreview() override;
    void setRightPanelHidden(bool bHidden) override;
    QWidget *previewWidget() override;

Q_SIGNALS:
    void signal_showResource();

public Q_SLOTS:
    void SlotRecvShowSource(int cur, int total, qint64 fileId);
    void slot_close_hide();
    void slot_show_left_source();
    void slot_show_right_source();
    void slot_show_up_source();
    void slot_show_down_source();
    void slot_left_changed();
    void onProviderRemoveFiles(QVector<qint64> fileIds);

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;
    void showEvent(QShowEvent *pEvent) override;

private:
    void buildForm();
    void readColumnSettings();
    void connectHub();
    void connectColumns();
    void connectProvider();
    void showFirstFile();
    void toggleRightPanel();
    void toggleFullScreen();
    void updateColumnText();
    void queueRemoval();
    bool removeListed(const QVector<qint64> &fileIds);
    void leaveWhenEmpty();

    PreviewLeftWin *m_pStrip;
    PreviewLeftNumWin *m_pCounter;
    MiddleResourcePreviewWidget *m_pHub;
    std::unique_ptr<Ui::PreviewDbClickWidget> m_ui;
    bool m_bShownOnce = false;
    bool m_bClosed = false;      ///< Left by the user; the host will delete it.
    bool m_bOnlyListing = false; ///< The list changes, the file on show does not.
    bool m_bAnnouncing = false;  ///< The host is being told of a choice.
    bool m_bRemovalQueued = false;
    QVector<qint64> m_removedMeanwhile;
    bool m_bEmptied = false; ///< Every file was removed while the preview was open.
};
