#pragma once

#include <QColor>
#include <QPushButton>

/** A round colour to choose; a ring marks the chosen one. */
class CColorPntBtn : public QPushButton {
    Q_OBJECT

public:
    /** The size is the radius of the circle. */
    CColorPntBtn(int nSize, const QColor &color, QWidget *pParent);

    QColor color() const { return m_color; }

Q_SIGNALS:
    void signal_ColorBtnClicked(QColor color);

public Q_SLOTS:
    void slot_Clicked();

protected:
    void paintEvent(QPaintEvent *pEvent) override;

private:
    int m_nSize;
    QColor m_color;
};
