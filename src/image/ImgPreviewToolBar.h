#pragma once

#include "image/PreviewToolBar.h"

class CircleNumToolTip;
class QPushButton;

/**
 * The bar of buttons under a picture: fit, turn, crop and note buttons on the left, zoom on the right.
 *
 * Owner: the picture widget, which places it and connects its buttons.
 */
class ImgPreviewToolBar : public PreviewToolBar {
    Q_OBJECT

public:
    enum Button {
        FitToWindowButton,
        FitToWidthButton,
        ActualSizeButton,
        RotateButton,
        FlipButton,
        CropButton,
        CommentButton,
        ZoomOutButton,
        ZoomInButton,
        ButtonCount
    };

    explicit ImgPreviewToolBar(QWidget *pParent);

    CircleBtn *button(Button button) const { return buttonAt(button); }
    QPushButton *cancelButton() const { return m_pCancelBtn; }

    /** The reduced row has no turn, crop and note buttons, for files that are only shown. */
    void setReduced(bool bReduced);
    /** Number of notes on the badge beside the comment button; no badge for 0. */
    void setNoteCount(int nCount);

protected:
    void resizeEvent(QResizeEvent *pEvent) override;

private:
    void buildLayout();
    void placeBadge();

    QPushButton *m_pCancelBtn;
    CircleNumToolTip *m_pNoteBadge;
};
