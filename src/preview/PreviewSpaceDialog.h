#pragma once

#include "interfaces/surfaces/IPreviewSpaceDialog.h"

class MiddleResourcePreviewWidget;
class QHBoxLayout;
class QPushButton;

/**
 * The quick preview: a frameless dialog with a dark veil over the host's window, one hub and a close button.
 *
 * Owner: the host, which deletes it after signalSpacePreviewClosed. Thread: GUI thread.
 */
class PreviewSpaceDialog : public IPreviewSpaceDialog {
    Q_OBJECT

public:
    explicit PreviewSpaceDialog(QWidget *pParent);

    void showPreview() override;
    bool canClosePreview() override;

public Q_SLOTS:
    void slot_close_hide();
    void slot_show_left_source();
    void slot_show_right_source();
    void slot_show_up_source();
    void slot_show_down_source();
    void onProviderRemoveFiles(QVector<qint64> fileIds);

protected:
    void paintEvent(QPaintEvent *pEvent) override;
    void resizeEvent(QResizeEvent *pEvent) override;
    void closeEvent(QCloseEvent *pEvent) override;
    void keyPressEvent(QKeyEvent *pEvent) override;
    void reject() override;
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;

private:
    void buildCloseButton();
    void connectHub();
    void connectProvider();
    void showNext();
    void showPrevious();
    void showFileAt(int nIndex);
    int currentPosition() const;
    void closeNow();
    void coverHostWindow();

    QHBoxLayout *m_pLayout;
    QPushButton *m_pCloseBtn;
    MiddleResourcePreviewWidget *m_pHub;
    bool m_bOpen = true; ///< False from signalSpacePreviewClosed until showPreview.
};
