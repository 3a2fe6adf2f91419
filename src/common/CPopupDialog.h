#pragma once

#include <QDialog>

class CPopupTitleBarWidget;
class QVBoxLayout;

/**
 * The frame of themed pop-ups: a rounded panel with a title bar of its own and room for content below it.
 *
 * Owner: the parent widget, or itself where it deletes itself on close.
 */
class CPopupDialog : public QDialog {
    Q_OBJECT

public:
    /** What the title bar has, see CPopupTitleBarWidget, and whether closing deletes. */
    CPopupDialog(QWidget *pParent, bool bClosable, bool bMovable, bool bTitle, bool bDeleteOnClose, bool bIcon);

    /** Opens over the parent's window and returns at once. */
    void showPopup();

    void setTitleBarHeight(int nHeight);
    void setTitleVisible(bool bVisible);
    void setCloseButtonVisible(bool bVisible);

public Q_SLOTS:
    virtual void slotCloseBtnClicked(bool val);

protected:
    /** Where subclasses may put their content. */
    QVBoxLayout *contentLayout() const { return m_pContentLayout; }

private:
    void applyStyle();

    CPopupTitleBarWidget *m_pTitleBar = nullptr;
    QVBoxLayout *m_pContentLayout = nullptr;
    QWidget *m_pMainPanel = nullptr;
};
