#pragma once

#include <QColor>
#include <QWidget>

class QLabel;

/** A round badge of 16 x 16 pixels with a number; wider where the number has more than two digits. */
class CircleNumToolTip : public QWidget {
    Q_OBJECT

public:
    explicit CircleNumToolTip(QWidget *pParent);

    void setText(const QString &text);
    /** Colours of its own, in place of the theme's. */
    void setColors(const QColor &background, const QColor &text);

private:
    void applyStyle();

    QLabel *m_pLabel;
    QColor m_background;
    QColor m_textColor;
};
