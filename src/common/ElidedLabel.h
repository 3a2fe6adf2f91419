#pragma once

#include <QLabel>

/** A label of plain text that ends in an ellipsis where there is no room for it; the tool tip has the whole text. */
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *pParent);

    void showText(const QString &text);

protected:
    void paintEvent(QPaintEvent *pEvent) override;
};
