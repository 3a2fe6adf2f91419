#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

/**
 * The title bar of frameless pop-ups: the window's icon and title, a close button, and a handle to move the window by.
 *
 * Owner: the pop-up's main panel.
 */
class CPopupTitleBarWidget : public QWidget {
    Q_OBJECT

public:
    /**
     * @param pDialog    the window whose title is shown and that is moved.
     * @param pParent    the panel that the bar lies on.
     * @param bClosable  with a close button.
     * @param bMovable   the window follows a drag of the bar.
     * @param bTitle     with the window's title.
     * @param bIcon      with the window's icon.
     * @param nMargin    distance of icon and button from the sides.
     */
    CPopupTitleBarWidget(QWidget *pDialog, QWidget *pParent, bool bClosable, bool bMovable, bool bTitle, bool bIcon,
                         int nMargin);

    void setTitleVisible(bool bVisible);
    void setCloseButtonVisible(bool bVisible);

Q_SIGNALS:
    void signalCloseBtnClicked(bool bChecked);

protected:
    void mousePressEvent(QMouseEvent *pEvent) override;

private:
    void applyStyle();

    QWidget *m_pDialog;
    QLabel *m_pIconLabel = nullptr;
    QLabel *m_pTitleLabel = nullptr;
    QPushButton *m_pCloseBtn = nullptr;
    bool m_bMovable;
};
