#pragma once

#include "interfaces/surfaces/IPreviewDbClickWidget.h"

#include <QObject>
#include <QPointer>
#include <QSize>
#include <QTimer>
#include <QVector>

class QStackedWidget;
class QWidget;

/**
 * Where the full preview stands in the main window: it takes the files' place, and the window's own title bar and left
 * column make room. The window keeps the size that the preview's parts need. The information panel follows the user's
 * wish for the files, and the preview's while one is open.
 *
 * Owner: MainWindow. Thread: GUI thread only.
 */
class FullPreviewPlace : public QObject {
    Q_OBJECT

public:
    FullPreviewPlace(QStackedWidget *pCenter, QWidget *pPanel, const QVector<QWidget *> &makingRoom, QObject *pParent);

    void enter(IPreviewDbClickWidget *pPreview, bool bPanelHidden);
    /** Gives everything back as it was. */
    void leave();
    bool isOpen() const { return m_pPreview != nullptr; }

    /** Whether the user wants the panel beside the files. */
    bool isPanelWanted() const { return m_bPanelWanted; }
    void setPanelWanted(bool bWanted);

Q_SIGNALS:
    /** The user hid the panel beside the preview, or took it back. */
    void signalPanelHidden(bool bHidden);

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;

private:
    /** Where there is no room for the panel, it shows only when it is asked for: the window grows then. */
    void showPanel(bool bAskedFor = false);
    /** The window is never so small that parts of the preview lie outside of it. */
    void keepPreviewWhole();

    QStackedWidget *m_pCenter;
    QWidget *m_pPanel;
    const QVector<QWidget *> m_makingRoom;
    QVector<QPointer<QWidget>> m_hidden; ///< Those of them that are to come back.
    QPointer<IPreviewDbClickWidget> m_pPreview;
    QSize m_leastWindow; ///< The window's own, while a preview is open.
    QTimer m_forbidTimer;
    bool m_bPanelWanted = true;
    bool m_bPanelHidden = false;
    bool m_bPanelForbidden = false;
    bool m_bNearEdge = false;
};
