#pragma once

#include <QWidget>

class ElidedLabel;
class FileGridModel;
class QComboBox;
class QLineEdit;
class QToolButton;

/**
 * The row above the files: where they are, search, kind, order, and the buttons for folders and the panel.
 *
 * Owner: MainWindow. Thread: GUI thread only.
 */
class ToolRow : public QWidget {
    Q_OBJECT

public:
    ToolRow(FileGridModel *pModel, QWidget *pParent);

    void setPlace(const QString &text, const QString &toolTip);
    void setPanelShown(bool bShown);

    /** Puts the cursor into the search line. */
    void search();
    /** Takes text and kind away. */
    void clearFilter();

    QString order() const;
    void setOrder(const QString &order);

Q_SIGNALS:
    void signalOpenFolder();
    void signalRefresh();
    void signalPanelToggled();
    /** Something else is wanted: the list starts over. */
    void signalFilterChanged();
    /** The user is done here. */
    void signalLeft();

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;
    void resizeEvent(QResizeEvent *pEvent) override;

private:
    void fillKinds();
    void fillOrders();
    void applyFilter();
    void applyTheme();

    FileGridModel *m_pModel;
    ElidedLabel *m_pPlace;
    QLineEdit *m_pSearch;
    QAction *m_pSearchIcon;
    QComboBox *m_pKind;
    QComboBox *m_pOrder;
    QToolButton *m_pFolderButton;
    QToolButton *m_pRefreshButton;
    QToolButton *m_pPanelButton;
};
