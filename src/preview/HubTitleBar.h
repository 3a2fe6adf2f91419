#pragma once

#include <QObject>

class CircleBtn;
class CPushButton;
class QWidget;

/**
 * The buttons along the hub's top edge: back and column toggle on the left, the window's own on the right. They lie
 * over the pages; the space dialog has none of them.
 *
 * Owner: the hub.
 */
class HubTitleBar : public QObject {
    Q_OBJECT

public:
    explicit HubTitleBar(QWidget *pHub);

    CircleBtn *backButton() const { return m_pBackBtn; }
    CircleBtn *columnButton() const { return m_pColumnBtn; }

    /** Puts a page that has buttons in its own corner below those of the surface, which has its close button there. */
    static QWidget *makePageBelow(QWidget *pPage);

    void setVisible(bool bVisible);
    /** The show form offers to show the columns again, the hide form to hide them. */
    void setColumnTextShow(bool bShow);
    /** Asks the main window for its state and shows the maximise or restore icon. */
    void refresh();
    /** Places the buttons along the hub's edge and above its pages. */
    void relayout();

private:
    void connectWindowButtons();

    QWidget *m_pHub;
    CircleBtn *m_pBackBtn;
    CircleBtn *m_pColumnBtn;
    CPushButton *m_pMinimizeBtn;
    CPushButton *m_pMaximizeBtn;
    CPushButton *m_pCloseBtn;
};
