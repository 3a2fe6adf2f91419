#include "app/panel/NameEdit.h"

#include <QKeyEvent>
#include <QTimer>
#include <QVariant>

NameEdit::NameEdit(QWidget *pParent)
    : QLineEdit(pParent)
{
    setObjectName(QStringLiteral("hostFileName"));
    setProperty("role", QStringLiteral("title"));
    setAccessibleName(tr("Name of the file"));
    setToolTip(tr("Click to rename (F2)"));
    setFocusPolicy(Qt::ClickFocus);
    connect(this, &QLineEdit::editingFinished, this, &NameEdit::finish);
}

void NameEdit::setName(const QString &name, bool bEditable)
{
    // What the user is typing is not taken away by news of the same file.
    if (name == m_name && hasFocus() && bEditable)
        return;
    m_name = name;
    setReadOnly(!bEditable);
    reset();
}

void NameEdit::reset()
{
    m_wanted.clear();
    setText(m_name);
    setCursorPosition(0);
}

void NameEdit::finish()
{
    const QString wanted = text();
    if (wanted == m_name || wanted == m_wanted || isReadOnly())
        return;
    m_wanted = wanted;
    Q_EMIT signalRename(wanted);
}

void NameEdit::focusInEvent(QFocusEvent *pEvent)
{
    QLineEdit::focusInEvent(pEvent);
    if (pEvent->reason() == Qt::PopupFocusReason || pEvent->reason() == Qt::ActiveWindowFocusReason)
        return;
    // After the press that gave the focus has set the cursor.
    QTimer::singleShot(0, this, [this] {
        if (!hasSelectedText())
            selectName();
    });
}

void NameEdit::beginEdit()
{
    setFocus(Qt::OtherFocusReason);
    selectName();
}

void NameEdit::selectName()
{
    const int nDot = text().lastIndexOf(QLatin1Char('.'));
    setSelection(0, nDot > 0 ? nDot : text().size());
}

void NameEdit::keyPressEvent(QKeyEvent *pEvent)
{
    switch (pEvent->key()) {
    case Qt::Key_Escape:
        reset();
        Q_EMIT signalLeft();
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        finish();
        Q_EMIT signalLeft();
        return;
    default:
        QLineEdit::keyPressEvent(pEvent);
    }
}
