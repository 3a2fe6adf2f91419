#pragma once

#include "theme/TSSkinSetting.h"

#include <QColor>
#include <QString>

/** Every colour of one theme by role; the values stand in ThemeColorTable.inc. */
struct ThemeColors {
#define THEME_COLOR(role, dark, light) QColor role;
#include "theme/ThemeColorTable.inc"
#undef THEME_COLOR
};

/** The colours of a theme. */
const ThemeColors &themeColors(TSSkinSetting::Theme theme);

/** The folder of a theme's icons below ":/bigimgpreview/". */
QLatin1String themeFolder(TSSkinSetting::Theme theme);

/**
 * Replaces each "@role@" of a style sheet by that colour, written #AARRGGBB, and "@icons@" by the path of the theme's
 * icons.
 */
QString themeStyleSheet(TSSkinSetting::Theme theme, QString styleSheet);
