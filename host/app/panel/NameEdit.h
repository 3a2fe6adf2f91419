#pragma once

#include <QLineEdit>

/**
 * A file's name, to be changed in place: Enter or leaving the line asks for the new name, Escape gives the old one
 * back. The suffix is not selected, so that it is not lost by accident.
 *
 * Owner: InfoPanel. Thread: GUI thread only.
 */
class NameEdit : public QLineEdit {
    Q_OBJECT

public:
    explicit NameEdit(QWidget *pParent);

    /** Takes the focus and selects the name without its suffix. */
    void beginEdit();

    /** Gives the present name back, instead of what was typed. */
    void reset();

    void setName(const QString &name, bool bEditable);

Q_SIGNALS:
    void signalRename(const QString &name);
    /** The user is done here. */
    void signalLeft();

protected:
    void focusInEvent(QFocusEvent *pEvent) override;
    void keyPressEvent(QKeyEvent *pEvent) override;

private:
    void selectName();
    void finish();

    QString m_name;
    QString m_wanted; ///< Asked for and not answered yet.
};
