#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class QTimer;

/**
 * Tells for some seconds that a comment was deleted and takes it back on demand: quicker than a question before each
 * deletion.
 *
 * Owner: the picture widget. Reused.
 */
class NoteUndoNotice : public QWidget {
    Q_OBJECT

public:
    explicit NoteUndoNotice(QWidget *pParent);

    /** Shows itself centred above this line of the parent. */
    void showAbove(int nBottom);

Q_SIGNALS:
    void signal_undo();

private:
    void applyStyle();

    QLabel *m_pLabel;
    QPushButton *m_pUndoBtn;
    QTimer *m_pTimer;
};
