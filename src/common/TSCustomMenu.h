#pragma once

#include <QMenu>

/** A menu in the theme's look: frameless, translucent, with the theme's menu style, which its sub-menus inherit. */
class TSCustomMenu : public QMenu {
    Q_OBJECT

public:
    explicit TSCustomMenu(QWidget *pParent);
};
