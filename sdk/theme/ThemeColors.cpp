#include "theme/ThemeColors.h"

#include <utility>

namespace {

ThemeColors darkColors()
{
    ThemeColors c;
    c.text = QColor(0xE8, 0xEA, 0xF0);
    c.secondaryText = QColor(0xA6, 0xAC, 0xBA);
    c.disabledText = QColor(0x6B, 0x71, 0x80);
    c.textOnMain = QColor(0xFF, 0xFF, 0xFF);
    c.icon = QColor(0xD5, 0xD9, 0xE3);
    c.main = QColor(0x4F, 0x84, 0xFA);
    c.hoverFrame = QColor(0x5A, 0x61, 0x72);
    c.separator = QColor(0x33, 0x37, 0x41);
    c.window = QColor(0x1B, 0x1D, 0x22);
    c.leftColumn = QColor(0x20, 0x23, 0x29);
    c.rightColumn = QColor(0x20, 0x23, 0x29);
    c.titleBar = QColor(0x24, 0x27, 0x2E);
    c.popupBackground = QColor(0x2A, 0x2E, 0x36);
    c.popupBorder = QColor(0x3C, 0x41, 0x4C);
    c.inputAndButton = QColor(0x33, 0x38, 0x42);
    c.hover = QColor(0x2D, 0x31, 0x3A);
    c.notification1 = QColor(0x2A, 0x2E, 0x36, 0xF0);
    c.notification2 = QColor(0x5A, 0x34, 0x1E, 0xF5);
    c.sideMain = QColor(0x3C, 0x41, 0x4C);
    c.sideArrow = QColor(0xE8, 0xEA, 0xF0);
    c.slider = QColor(0xA6, 0xAC, 0xBA);
    c.highlight = QColor(0x4F, 0x84, 0xFA);
    c.badge = QColor(0xE5, 0x4D, 0x42);
    c.placeholderBackground = QColor(0x2A, 0x2E, 0x36);
    c.placeholderText = QColor(0xA6, 0xAC, 0xBA);
    c.progressEmpty = QColor(0x33, 0x38, 0x42);
    c.progressEmpty2 = QColor(0x3C, 0x41, 0x4C);
    c.progressFilled = QColor(0x4F, 0x84, 0xFA);
    c.scrollHandle = QColor(0x8A, 0x91, 0xA1, 0xB0);
    return c;
}

ThemeColors lightColors()
{
    ThemeColors c;
    c.text = QColor(0x1F, 0x23, 0x2B);
    c.secondaryText = QColor(0x5A, 0x62, 0x70);
    c.disabledText = QColor(0x9A, 0xA1, 0xAE);
    c.textOnMain = QColor(0xFF, 0xFF, 0xFF);
    c.icon = QColor(0x3A, 0x40, 0x4C);
    c.main = QColor(0x2A, 0x62, 0xE0);
    c.hoverFrame = QColor(0xB9, 0xC0, 0xCC);
    c.separator = QColor(0xDD, 0xE1, 0xE8);
    c.window = QColor(0xF6, 0xF7, 0xF9);
    c.leftColumn = QColor(0xEE, 0xF0, 0xF4);
    c.rightColumn = QColor(0xEE, 0xF0, 0xF4);
    c.titleBar = QColor(0xE8, 0xEB, 0xF0);
    c.popupBackground = QColor(0xFF, 0xFF, 0xFF);
    c.popupBorder = QColor(0xD0, 0xD6, 0xDF);
    c.inputAndButton = QColor(0xE4, 0xE8, 0xEE);
    c.hover = QColor(0xE4, 0xE9, 0xF2);
    c.notification1 = QColor(0xFF, 0xFF, 0xFF, 0xF5);
    c.notification2 = QColor(0xFF, 0xE9, 0xD6, 0xFA);
    c.sideMain = QColor(0xD0, 0xD6, 0xDF);
    c.sideArrow = QColor(0x3A, 0x40, 0x4C);
    c.slider = QColor(0x5A, 0x62, 0x70);
    c.highlight = QColor(0x2A, 0x62, 0xE0);
    c.badge = QColor(0xD6, 0x3B, 0x30);
    c.placeholderBackground = QColor(0xE4, 0xE8, 0xEE);
    c.placeholderText = QColor(0x5A, 0x62, 0x70);
    c.progressEmpty = QColor(0xDD, 0xE1, 0xE8);
    c.progressEmpty2 = QColor(0xD0, 0xD6, 0xDF);
    c.progressFilled = QColor(0x2A, 0x62, 0xE0);
    c.scrollHandle = QColor(0x70, 0x78, 0x88, 0xB0);
    return c;
}

} // namespace

const ThemeColors &themeColors(TSSkinSetting::Theme theme)
{
    static const ThemeColors dark = darkColors();
    static const ThemeColors light = lightColors();
    return theme == TSSkinSetting::LightTheme ? light : dark;
}

QString themeStyleSheet(TSSkinSetting::Theme theme, QString styleSheet)
{
    const ThemeColors &c = themeColors(theme);
    const std::pair<const char *, QColor> roles[] = {
        {"@text@", c.text},
        {"@secondaryText@", c.secondaryText},
        {"@disabledText@", c.disabledText},
        {"@textOnMain@", c.textOnMain},
        {"@main@", c.main},
        {"@hoverFrame@", c.hoverFrame},
        {"@separator@", c.separator},
        {"@window@", c.window},
        {"@leftColumn@", c.leftColumn},
        {"@rightColumn@", c.rightColumn},
        {"@titleBar@", c.titleBar},
        {"@popupBackground@", c.popupBackground},
        {"@popupBorder@", c.popupBorder},
        {"@inputAndButton@", c.inputAndButton},
        {"@hover@", c.hover},
        {"@progressEmpty@", c.progressEmpty},
        {"@progressFilled@", c.progressFilled},
        {"@scrollHandle@", c.scrollHandle},
    };
    for (const auto &role : roles)
        styleSheet.replace(QLatin1String(role.first), role.second.name(QColor::HexArgb));
    return styleSheet;
}
