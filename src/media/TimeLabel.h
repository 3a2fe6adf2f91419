#pragma once

#include <QLabel>

/** A time in a media bar: as wide as it is told, so that nothing beside it moves, and wider only for more than 99
 * minutes. */
class TimeLabel : public QLabel {
    Q_OBJECT

public:
    TimeLabel(int nWidth, QWidget *pParent);

    void showTime(const QString &text);

private:
    int m_nWidth;
};
