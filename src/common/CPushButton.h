#pragma once

#include <QPushButton>

/** The buttons of the preview family: never take the keyboard focus away from the preview's keys. */
class CPushButton : public QPushButton {
    Q_OBJECT

public:
    explicit CPushButton(QWidget *pParent)
        : QPushButton(pParent)
    {
        setFocusPolicy(Qt::NoFocus);
    }
};
