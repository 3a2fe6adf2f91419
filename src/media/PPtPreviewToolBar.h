#pragma once

#include "image/PreviewToolBar.h"

/**
 * The bar of buttons under a page: fit on the left, pages and zoom on the right.
 *
 * Owner: the presentation widget, which places it and connects its buttons.
 */
class PPtPreviewToolBar : public PreviewToolBar {
    Q_OBJECT

public:
    enum Button {
        FitToWindowButton,
        FitToWidthButton,
        ActualSizeButton,
        PreviousButton,
        NextButton,
        ZoomOutButton,
        ZoomInButton,
        ButtonCount
    };

    explicit PPtPreviewToolBar(QWidget *pParent);

    CircleBtn *button(Button button) const { return buttonAt(button); }

    /** Shows which page of how many is seen, counted from 0. */
    void setPage(int nPageIndex, int nPageCount);
    /** Where there are no pages, or none is shown yet, there is nothing to turn. */
    void setPagesVisible(bool bVisible);

private:
    void buildLayout();

    QLabel *m_pPageLabel;
};
