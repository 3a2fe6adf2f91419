#pragma once

#include "library/LabelRecord.h"

#include <QAbstractButton>

/**
 * One label of a file: its colour, its name and a cross that takes it away. Delete and Backspace do so too; a click on
 * the colour offers others.
 *
 * Owner: LabelEditor. Thread: GUI thread only.
 */
class LabelChip : public QAbstractButton {
    Q_OBJECT

public:
    LabelChip(const LabelRecord &label, QWidget *pParent);

    const LabelRecord &label() const { return m_label; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void signalRemove(quint64 nLabelId);
    void signalColor(quint64 nLabelId, quint32 nColor);

protected:
    void paintEvent(QPaintEvent *pEvent) override;
    void mouseReleaseEvent(QMouseEvent *pEvent) override;
    void mouseMoveEvent(QMouseEvent *pEvent) override;
    void leaveEvent(QEvent *pEvent) override;
    void keyPressEvent(QKeyEvent *pEvent) override;

private:
    QRect crossRect() const;
    QRect spotRect() const;
    QFont chipFont() const;
    void offerColors();

    const LabelRecord m_label;
    bool m_bOverCross = false;
};
