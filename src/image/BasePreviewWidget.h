#pragma once

#include <QString>
#include <QWidget>

#include <functional>

class QShortcut;

/**
 * What the type widgets have in common: the double click, which asks to leave or tells to wait, and the host's
 * shortcut for the recycle bin. The hub knows each type widget by its own class.
 *
 * Owner: the hub.
 */
class BasePreviewWidget : public QWidget {
    Q_OBJECT

public:
    explicit BasePreviewWidget(QWidget *pParent);

    void setDoubleClickEnabled(bool bEnabled) { m_bDoubleClickEnabled = bEnabled; }
    /** While false, a right click does nothing. */
    void setContextMenuEnabled(bool bEnabled) { m_bContextMenuEnabled = bEnabled; }

Q_SIGNALS:
    void signal_PreviewWidgetDoubleClicked();
    void signal_deleteFile();

protected:
    void mouseDoubleClickEvent(QMouseEvent *pEvent) override;

    /** Calls on the delete key, and, where it is wanted, on the host's key for the recycle bin. */
    void connectRecycleKeys(const std::function<void()> &call, bool bHostKey = true);

    QShortcut *m_shortcut = nullptr;
    QString m_filePath;
    bool m_bDoubleClickEnabled = true;
    bool m_bContextMenuEnabled = true;
};
