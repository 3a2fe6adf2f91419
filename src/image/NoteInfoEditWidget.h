#pragma once

#include <QColor>
#include <QVector>
#include <QWidget>

class CColorPntBtn;
class QLabel;
class QPushButton;
class QTextEdit;

/** What a card shows of a region. */
struct NoteDescription {
    int nNumber = 0; ///< As users count, from 1.
    QString text;
    QSize size; ///< In pixels of the picture.
    QColor color;
};

/**
 * The page of a note's card on which its text is written and its colour chosen.
 *
 * Owner: the card.
 */
class NoteInfoEditWidget : public QWidget {
    Q_OBJECT

public:
    explicit NoteInfoEditWidget(QWidget *pParent);

    void setNote(const NoteDescription &note);
    /** What stands in the box; exactly what was set where nothing was typed. */
    QString text() const;
    /** The user changed the text. */
    bool isTextModified() const;
    /** There is something to save. */
    bool canSave() const;
    void focusText();
    void applyStyle();

Q_SIGNALS:
    void signal_OKBtnClicked();
    void signal_changeRegionColor(QColor color);

public Q_SLOTS:
    void slot_textEditChanged();
    void slot_ColorBtnClicked(QColor color);

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;
    void paintEvent(QPaintEvent *pEvent) override;

private:
    void buildLayout();

    QLabel *m_pTitle;
    QLabel *m_pSize;
    QTextEdit *m_pTextEdit;
    QVector<CColorPntBtn *> m_colorBtns;
    QPushButton *m_pSaveBtn;
    QString m_originalText;
};
