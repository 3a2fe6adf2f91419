#pragma once

#include "common/CPushButton.h"

/** Small round icon button with a normal and a selected icon, which it takes from the theme and follows. */
class CircleBtn : public CPushButton {
    Q_OBJECT

public:
    CircleBtn(QWidget *pParent, int nWidth, int nHeight);

    /** Icon files of the theme for the resting button, and for the hovered or pressed one. */
    void setIcons(const QString &normalIcon, const QString &selectedIcon);

    /** Tool tip and accessible name together: every icon button says what it does. */
    void setToolTipText(const QString &text);

protected:
    void paintEvent(QPaintEvent *pEvent) override;

private:
    void applyIcons();

    QString m_normalIcon;
    QString m_selectedIcon;
};
