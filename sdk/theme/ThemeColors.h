#pragma once

#include "theme/TSSkinSetting.h"

#include <QColor>
#include <QString>

/** Every colour of one theme by role: the single table behind TSSkinSetting. */
struct ThemeColors {
    QColor text;
    QColor secondaryText;
    QColor disabledText;
    QColor textOnMain;
    QColor icon;
    QColor main;
    QColor hoverFrame;
    QColor separator;
    QColor window;
    QColor leftColumn;
    QColor rightColumn;
    QColor titleBar;
    QColor popupBackground;
    QColor popupBorder;
    QColor inputAndButton;
    QColor hover;
    QColor notification1;
    QColor notification2;
    QColor sideMain;
    QColor sideArrow;
    QColor slider;
    QColor highlight;
    QColor badge;
    QColor placeholderBackground;
    QColor placeholderText;
    QColor progressEmpty;
    QColor progressEmpty2;
    QColor progressFilled;
    QColor scrollHandle;
};

/** The colours of a theme. */
const ThemeColors &themeColors(TSSkinSetting::Theme theme);

/** Replaces each "@role@" of a style sheet by that colour, written #AARRGGBB. */
QString themeStyleSheet(TSSkinSetting::Theme theme, QString styleSheet);
