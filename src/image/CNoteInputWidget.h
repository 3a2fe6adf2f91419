#pragma once

#include "image/NoteInfoEditWidget.h"

#include <QStackedWidget>

class NoteInfoShowWidget;

/**
 * The card beside a region: a page to write its note and one to read it. Keys typed in it are its own, not commands of
 * the preview.
 *
 * Owner: the overlay.
 */
class CNoteInputWidget : public QStackedWidget {
    Q_OBJECT

public:
    explicit CNoteInputWidget(QWidget *pParent);

    /** Opens the card to write, or to read. */
    void openToEdit(const NoteDescription &note);
    void openToShow(const NoteDescription &note);
    bool isEditing() const;
    /** A text was typed that would be lost. */
    bool hasUnsavedText() const;
    /** The text may be written, and there is one to save. */
    bool canSave() const;
    QString text() const { return m_pEditPage->text(); }
    void applyStyle();
    /** The focus, for what one does on the page that is open. */
    void takeFocus();

Q_SIGNALS:
    void signal_saveNoteInfo(QString strNoteText);
    void signal_deleteNote();
    void signal_changeRegionColor(QColor color);

public Q_SLOTS:
    void slot_saveNoteInfo();
    void slot_deletNote();
    void slot_switchToEdit();
    void slot_changeRegionColor(QColor color);

protected:
    bool event(QEvent *pEvent) override;
    void keyPressEvent(QKeyEvent *pEvent) override;
    void wheelEvent(QWheelEvent *pEvent) override;
    bool focusNextPrevChild(bool bNext) override;

private:
    void turnTo(QWidget *pPage);

    NoteInfoEditWidget *m_pEditPage;
    NoteInfoShowWidget *m_pShowPage;
    NoteDescription m_note;
};
