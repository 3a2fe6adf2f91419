#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class QScrollArea;
struct NoteDescription;

/** The page of a note's card on which its text is read. Owner: the card. */
class NoteInfoShowWidget : public QWidget {
    Q_OBJECT

public:
    explicit NoteInfoShowWidget(QWidget *pParent);

    void setNote(const NoteDescription &note);
    void applyStyle();

Q_SIGNALS:
    void signal_DelBtnClicked();
    void signal_EditBtnClicked();

private:
    QPushButton *makeButton(const QString &text);
    void buildLayout();

    QLabel *m_pTitle;
    QLabel *m_pSize;
    QLabel *m_pText;
    QScrollArea *m_pTextArea;
    QPushButton *m_pDeleteBtn;
    QPushButton *m_pModifyBtn;
};
