#pragma once

#include <QColor>
#include <QFont>
#include <QWidget>

class QLabel;
class QTimer;

/**
 * A small pill-shaped notice over its parent widget: an icon and one line of text. Closes and deletes itself after a
 * time; never reused.
 *
 * Owner: the parent, until it deletes itself.
 */
class CNotificationFloatingWidget : public QWidget {
    Q_OBJECT

public:
    explicit CNotificationFloatingWidget(QWidget *pParent);

    /** Icon file of the theme and translated text; sizes the notice to the text. */
    void setContent(const QString &iconName, const QString &text);

    /** Distance from the parent's top edge in pixels. */
    void setTop(int nY);

    void setBackgroundColor(const QColor &color);

protected:
    void showEvent(QShowEvent *pEvent) override;

private:
    void buildChildren();

    QLabel *m_pTextLabel;
    QLabel *m_pIconLabel;
    QTimer *m_pCloseTimer;
    QFont m_font;
    int m_nX = -1;
    int m_nY = -1;
    int m_nDuration = 0;
    bool m_bShowIcon = true;
};
