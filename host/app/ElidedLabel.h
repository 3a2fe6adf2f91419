#pragma once

#include <QLabel>

/**
 * One line of text that is shortened to the room there is, with the whole of it in the tool tip.
 *
 * Owner: its parent. Thread: GUI thread only.
 */
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    ElidedLabel(Qt::TextElideMode mode, QWidget *pParent);

    /** The text, and more for the tool tip; without more the tool tip shows the text where it was shortened. */
    void setFullText(const QString &text, const QString &toolTip = QString());

protected:
    void resizeEvent(QResizeEvent *pEvent) override;
    void changeEvent(QEvent *pEvent) override;

private:
    void shorten();

    const Qt::TextElideMode m_mode;
    QString m_text;
    QString m_toolTip;
};
