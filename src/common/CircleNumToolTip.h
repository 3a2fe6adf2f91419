#pragma once

#include <QWidget>

class QLabel;

/** A round badge of 16 x 16 pixels with a number. */
class CircleNumToolTip : public QWidget {
    Q_OBJECT

public:
    explicit CircleNumToolTip(QWidget *pParent);

    void setText(const QString &text);

private:
    void applyStyle();

    QLabel *m_pLabel;
};
