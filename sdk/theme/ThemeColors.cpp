#include "theme/ThemeColors.h"

namespace {

ThemeColors darkColors()
{
    ThemeColors c;
#define THEME_COLOR(role, dark, light) c.role = QColor::fromRgba(dark);
#include "theme/ThemeColorTable.inc"
#undef THEME_COLOR
    return c;
}

ThemeColors lightColors()
{
    ThemeColors c;
#define THEME_COLOR(role, dark, light) c.role = QColor::fromRgba(light);
#include "theme/ThemeColorTable.inc"
#undef THEME_COLOR
    return c;
}

} // namespace

const ThemeColors &themeColors(TSSkinSetting::Theme theme)
{
    static const ThemeColors dark = darkColors();
    static const ThemeColors light = lightColors();
    return theme == TSSkinSetting::LightTheme ? light : dark;
}

QLatin1String themeFolder(TSSkinSetting::Theme theme)
{
    return QLatin1String(theme == TSSkinSetting::LightTheme ? "light" : "dark");
}

QString themeStyleSheet(TSSkinSetting::Theme theme, QString styleSheet)
{
    const ThemeColors &c = themeColors(theme);
    styleSheet.replace(QLatin1String("@icons@"), QStringLiteral(":/bigimgpreview/%1").arg(themeFolder(theme)));
#define THEME_COLOR(role, dark, light) styleSheet.replace(QLatin1String("@" #role "@"), c.role.name(QColor::HexArgb));
#include "theme/ThemeColorTable.inc"
#undef THEME_COLOR
    return styleSheet;
}
