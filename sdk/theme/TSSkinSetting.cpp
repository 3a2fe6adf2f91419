#include "theme/TSSkinSetting.h"

#include "theme/ThemeColors.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace {

QColor entryOr0(const QVector<QColor> &colors, int nIndex)
{
    return colors.value(nIndex, colors.first());
}

} // namespace

TSSkinSetting *TSSkinSetting::GetInstance()
{
    static TSSkinSetting instance;
    return &instance;
}

TSSkinSetting::Theme TSSkinSetting::GetTheme() const
{
    return m_theme;
}

void TSSkinSetting::SetTheme(Theme theme)
{
    if (theme == m_theme)
        return;
    m_theme = theme;
    Q_EMIT signalThemeChanged();
}

double TSSkinSetting::GetDpi() const
{
    if (m_fDpi > 0.0)
        return m_fDpi;
    const QScreen *pScreen = QGuiApplication::primaryScreen();
    return pScreen != nullptr ? qMax(1.0, pScreen->devicePixelRatio()) : 1.0;
}

void TSSkinSetting::SetDpi(double fDpi)
{
    const double fNew = qMax(0.0, fDpi);
    if (qFuzzyCompare(1.0 + fNew, 1.0 + m_fDpi))
        return;
    m_fDpi = fNew;
    Q_EMIT signalThemeChanged();
}

QColor TSSkinSetting::GetTextColor(int nIndex) const
{
    const ThemeColors &colors = themeColors(m_theme);
    return entryOr0({colors.text, colors.secondaryText, colors.disabledText, colors.textOnMain}, nIndex);
}

QVector<QColor> TSSkinSetting::GetColorList() const
{
    const ThemeColors &colors = themeColors(m_theme);
    return {colors.text, colors.secondaryText, colors.icon, colors.popupBackground};
}

QVector<QColor> TSSkinSetting::GetMediaColorList() const
{
    const ThemeColors &colors = themeColors(m_theme);
    return {colors.mediaText, colors.mediaSecondaryText, colors.mediaIcon, colors.mediaPopup};
}

QColor TSSkinSetting::GetCommonColor(int nIndex) const
{
    const ThemeColors &colors = themeColors(m_theme);
    return entryOr0({colors.main, colors.hoverFrame, colors.separator}, nIndex);
}

// One line a role: the getters are the theme's public vocabulary, the table beside this file holds the values.
#define THEME_COLOR_GETTER(Getter, field)                                                                              \
    QColor TSSkinSetting::Getter() const                                                                               \
    {                                                                                                                  \
        return themeColors(m_theme).field;                                                                             \
    }

THEME_COLOR_GETTER(GetMainColor, main)
THEME_COLOR_GETTER(GetWindowBackgroundColor, window)
THEME_COLOR_GETTER(GetLeftWinBackgroundColor, leftColumn)
THEME_COLOR_GETTER(GetRightWinBackgroundColor, rightColumn)
THEME_COLOR_GETTER(GetTitleBarBackgroundColor, titleBar)
THEME_COLOR_GETTER(GetPopupWinBackgroundColor, popupBackground)
THEME_COLOR_GETTER(GetPopupWinBorderColor, popupBorder)
THEME_COLOR_GETTER(GetInputAndButtonColor, inputAndButton)
THEME_COLOR_GETTER(GetHoverColor, hover)
THEME_COLOR_GETTER(GetNotificationBackColor1, notification1)
THEME_COLOR_GETTER(GetNotificationBackColor2, notification2)
THEME_COLOR_GETTER(GetSideMainColor, sideMain)
THEME_COLOR_GETTER(GetSideArrowColor, sideArrow)
THEME_COLOR_GETTER(GetSliderColor, slider)
THEME_COLOR_GETTER(GetHighlightColor, highlight)
THEME_COLOR_GETTER(GetMediaSliderColor, mediaSlider)
THEME_COLOR_GETTER(GetMediaHighlightColor, mediaHighlight)
THEME_COLOR_GETTER(GetBadgeColor, badge)
THEME_COLOR_GETTER(GetPlaceholderBackgroundColor, placeholderBackground)
THEME_COLOR_GETTER(GetPlaceholderTextColor, placeholderText)
THEME_COLOR_GETTER(GetPopupProgressBarUnSelectColor, progressEmpty)
THEME_COLOR_GETTER(GetPopupProgressBarUnSelectColor2, progressEmpty2)
THEME_COLOR_GETTER(GetPopupProgressBarSelectColor, progressFilled)
THEME_COLOR_GETTER(GetTreeScrollHandleColor, scrollHandle)
#undef THEME_COLOR_GETTER

QString TSSkinSetting::GetResourcePath(const QString &name) const
{
    const QString path = GetResourceAbsolutePath(name);
    return path.isEmpty() ? QString() : QStringLiteral("image:url(%1);").arg(path);
}

QString TSSkinSetting::GetResourceAbsolutePath(const QString &name) const
{
    const QString path = QStringLiteral(":/bigimgpreview/%1/%2").arg(themeFolder(m_theme), name);
    return QFileInfo(path).isFile() ? path : QString();
}

QString TSSkinSetting::GetStyleSheet(const QString &name) const
{
    QFile file(QStringLiteral(":/bigimgpreview/qss/%1.qss").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return themeStyleSheet(m_theme, QString::fromUtf8(file.readAll()));
}

void TSSkinSetting::SetWidgetStyleSheetWithQssName(QWidget *pWidget, const QString &name) const
{
    const QString styleSheet = GetStyleSheet(name);
    if (pWidget != nullptr && !styleSheet.isEmpty())
        pWidget->setStyleSheet(styleSheet);
}
