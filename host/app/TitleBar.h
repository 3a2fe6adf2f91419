#pragma once

#include <QPoint>
#include <QWidget>

class LanguageMenu;
class QLabel;
class QPushButton;
class QToolButton;

/**
 * The main window's own title bar: logo, title, buttons for language and theme, the window buttons. Moves the window
 * when it is dragged, by the window system where it can.
 *
 * Owner: MainWindow. Thread: GUI thread only.
 */
class TitleBar : public QWidget {
    Q_OBJECT

public:
    TitleBar(QWidget *pWindow, QWidget *pParent);

    LanguageMenu *languageMenu() const { return m_pLanguageMenu; }

Q_SIGNALS:
    void signalThemeToggled();
    void signalMaximizeToggled();

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;
    void mousePressEvent(QMouseEvent *pEvent) override;
    void mouseMoveEvent(QMouseEvent *pEvent) override;
    void mouseReleaseEvent(QMouseEvent *pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent *pEvent) override;

private:
    QPushButton *addButton(const QString &objectName, const QString &toolTip);
    void applyTheme();
    void showWindowState();

    QLabel *m_pLogo;
    QLabel *m_pTitle;
    QToolButton *m_pLanguageButton;
    LanguageMenu *m_pLanguageMenu;
    QToolButton *m_pThemeButton;
    QPushButton *m_pMinimizeButton;
    QPushButton *m_pMaximizeButton;
    QPushButton *m_pCloseButton;
    QPoint m_pressPosition;
    bool m_bPressed = false;
    bool m_bOwnMove = false;
};
