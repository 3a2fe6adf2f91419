#pragma once

#include <QColor>
#include <QObject>
#include <QString>
#include <QVector>

#if defined(BIGIMGPREVIEW_THEME_LIBRARY)
#define BIGIMGPREVIEW_THEME_EXPORT Q_DECL_EXPORT
#else
#define BIGIMGPREVIEW_THEME_EXPORT Q_DECL_IMPORT
#endif

class QWidget;

/**
 * The look of host and plug-ins: colours by role, icons and style sheets by name, in a dark and a light theme.
 *
 * Owner: the library. Thread: GUI thread only, except the colour getters, which workers may call while no theme is
 * being set.
 */
class BIGIMGPREVIEW_THEME_EXPORT TSSkinSetting : public QObject {
    Q_OBJECT

public:
    enum Theme { DarkTheme = 0, LightTheme = 1 };

    /** The one theme of the process. Never null; not to be deleted. */
    static TSSkinSetting *GetInstance();

    /** The theme in use; dark at start. */
    Theme GetTheme() const;

    /** Changes the theme and emits signalThemeChanged where it differs from the present one. */
    void SetTheme(Theme theme);

    /** Physical pixels for each device-independent pixel, at least 1.0: that of the primary screen, or as set. */
    double GetDpi() const;

    /** Overrides GetDpi, for a window on another screen; 0 goes back to the primary screen. */
    void SetDpi(double fDpi);

    /** Accent colour: selected and pressed controls, primary buttons. */
    QColor GetMainColor() const;

    /** Text colours: 0 primary, 1 secondary, 2 disabled, 3 text on the accent colour. Other numbers give 0's. */
    QColor GetTextColor(int nIndex) const;

    /**
     * The theme's list of common colours: 0 primary text, 1 secondary text, 2 icons, 3 background of small pop-ups.
     * Never shorter than four entries.
     */
    QVector<QColor> GetColorList() const;

    /**
     * Colours of the bars that control video and audio, which are black in both themes: 0 primary text, 1 secondary
     * text, 2 icons, 3 background of their small pop-ups. Never shorter than four entries.
     */
    QVector<QColor> GetMediaColorList() const;

    /** Common colours for frames and marks: 0 selection frame, 1 hover frame, 2 separator. Others give 0's. */
    QColor GetCommonColor(int nIndex) const;

    QColor GetWindowBackgroundColor() const;          ///< Windows and main areas.
    QColor GetLeftWinBackgroundColor() const;         ///< Left columns.
    QColor GetRightWinBackgroundColor() const;        ///< Right columns.
    QColor GetTitleBarBackgroundColor() const;        ///< Title bars.
    QColor GetPopupWinBackgroundColor() const;        ///< Dialogs and menus.
    QColor GetPopupWinBorderColor() const;            ///< Their border.
    QColor GetInputAndButtonColor() const;            ///< Text boxes and secondary buttons.
    QColor GetHoverColor() const;                     ///< Background of what the mouse rests on.
    QColor GetNotificationBackColor1() const;         ///< Floating notices of success.
    QColor GetNotificationBackColor2() const;         ///< Floating notices of warning.
    QColor GetSideMainColor() const;                  ///< Edge handles of folded columns.
    QColor GetSideArrowColor() const;                 ///< Their arrow.
    QColor GetSliderColor() const;                    ///< Grooves of sliders.
    QColor GetHighlightColor() const;                 ///< Handles and filled part of sliders.
    QColor GetMediaSliderColor() const;               ///< The same on the bars that control video and audio.
    QColor GetMediaHighlightColor() const;            ///< The same there.
    QColor GetBadgeColor() const;                     ///< Number badges.
    QColor GetPlaceholderBackgroundColor() const;     ///< Pictures drawn for files that cannot be shown.
    QColor GetPlaceholderTextColor() const;           ///< Their text.
    QColor GetPopupProgressBarUnSelectColor() const;  ///< Empty part of progress bars in windows.
    QColor GetPopupProgressBarUnSelectColor2() const; ///< Empty part of progress bars in dialogs.
    QColor GetPopupProgressBarSelectColor() const;    ///< Filled part of progress bars.
    QColor GetTreeScrollHandleColor() const;          ///< Handles of scroll bars.

    /**
     * The style-sheet text that shows an icon: "image:url(...);" for a name such as "preview_adapt_normal.svg". To be
     * put between the braces of a rule. An unknown name gives an empty text.
     */
    QString GetResourcePath(const QString &name) const;

    /** Path of an icon in the present theme, readable by QFile, QPixmap and QSvgRenderer; empty for an unknown name. */
    QString GetResourceAbsolutePath(const QString &name) const;

    /** Sets the theme's style sheet of this name ("menu", "host", …) on the widget; unknown names and null do nothing.
     */
    void SetWidgetStyleSheetWithQssName(QWidget *pWidget, const QString &name) const;

    /** The text of a named style sheet with the present theme's colours in place; empty for an unknown name. */
    QString GetStyleSheet(const QString &name) const;

Q_SIGNALS:
    /** The theme or the scale changed: widgets build their style sheets and icons again. */
    void signalThemeChanged();

private:
    TSSkinSetting() = default;
    ~TSSkinSetting() override = default;

    Theme m_theme = DarkTheme;
    double m_fDpi = 0.0;
};
