#pragma once

#include <QVector>
#include <QWidget>

class CircleBtn;
class CircleNumToolTip;
class QLabel;
class QPushButton;

/**
 * The bar of buttons under a picture: fit, turn, crop and note buttons on the left, zoom on the right.
 *
 * Owner: the picture widget, which places it and connects its buttons.
 */
class ImgPreviewToolBar : public QWidget {
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

    static constexpr int BarHeight = 50;

    explicit ImgPreviewToolBar(QWidget *pParent);

    CircleBtn *button(Button button) const { return m_buttons.at(button); }
    QPushButton *cancelButton() const { return m_pCancelBtn; }

    /** Shows the zoom. */
    void setPercent(int nPercent);
    /** Off while an animation runs. */
    void setButtonsEnabled(bool bEnabled);
    /** The reduced row has no turn, crop and note buttons, for files that are only shown. */
    void setReduced(bool bReduced);
    /** Number of notes on the badge beside the comment button; no badge for 0. */
    void setNoteCount(int nCount);
    /** Asks the host's shortcut setting for the keys that the tool tips name. */
    void updateToolTips();

protected:
    void resizeEvent(QResizeEvent *pEvent) override;

private:
    void buildLayout();
    void applyStyle();
    void placeBadge();

    QVector<CircleBtn *> m_buttons;
    QPushButton *m_pCancelBtn;
    QLabel *m_percentLabel;
    CircleNumToolTip *m_pNoteBadge;
};
