#include "image/CNoteInputWidget.h"

#include "image/NoteInfoShowWidget.h"
#include "theme/TSSkinSetting.h"

#include <QKeyEvent>
#include <QLayout>

namespace {

constexpr double BorderOpacity = 0.2;
constexpr int BorderWidth = 1;

bool isEnter(const QKeyEvent *pEvent)
{
    return pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter;
}

} // namespace

CNoteInputWidget::CNoteInputWidget(QWidget *pParent)
    : QStackedWidget(pParent)
    , m_pEditPage(new NoteInfoEditWidget(this))
    , m_pShowPage(new NoteInfoShowWidget(this))
{
    setAttribute(Qt::WA_NoMousePropagation);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::ArrowCursor);
    addWidget(m_pEditPage);
    addWidget(m_pShowPage);
    connect(m_pEditPage, &NoteInfoEditWidget::signal_OKBtnClicked, this, &CNoteInputWidget::slot_saveNoteInfo);
    connect(m_pEditPage, &NoteInfoEditWidget::signal_changeRegionColor, this,
            &CNoteInputWidget::slot_changeRegionColor);
    connect(m_pShowPage, &NoteInfoShowWidget::signal_DelBtnClicked, this, &CNoteInputWidget::slot_deletNote);
    connect(m_pShowPage, &NoteInfoShowWidget::signal_EditBtnClicked, this, &CNoteInputWidget::slot_switchToEdit);
    applyStyle();
}

void CNoteInputWidget::applyStyle()
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    QColor border = pSkin->GetMainColor();
    border.setAlphaF(BorderOpacity);
    setStyleSheet(QStringLiteral("QStackedWidget{background:%1;border:1px solid;border-color:%2;border-radius:2px;}")
                      .arg(pSkin->GetPopupWinBackgroundColor().name(), border.name(QColor::HexArgb)));
    m_pEditPage->applyStyle();
    m_pShowPage->applyStyle();
}

void CNoteInputWidget::turnTo(QWidget *pPage)
{
    setCurrentWidget(pPage);
    pPage->layout()->activate();
    setFixedSize(pPage->sizeHint() + QSize(2 * BorderWidth, 2 * BorderWidth));
    show();
    raise();
}

void CNoteInputWidget::openToEdit(const NoteDescription &note)
{
    m_note = note;
    m_pEditPage->setNote(note);
    turnTo(m_pEditPage);
    takeFocus();
}

void CNoteInputWidget::openToShow(const NoteDescription &note)
{
    m_note = note;
    m_pShowPage->setNote(note);
    turnTo(m_pShowPage);
    takeFocus();
}

void CNoteInputWidget::takeFocus()
{
    if (currentWidget() == m_pEditPage)
        m_pEditPage->focusText();
    else
        setFocus();
}

bool CNoteInputWidget::isEditing() const
{
    return isVisible() && currentWidget() == m_pEditPage;
}

bool CNoteInputWidget::hasUnsavedText() const
{
    return canSave() && m_pEditPage->isTextModified();
}

bool CNoteInputWidget::canSave() const
{
    return !isHidden() && currentWidget() == m_pEditPage && m_pEditPage->canSave();
}

void CNoteInputWidget::slot_saveNoteInfo()
{
    if (m_pEditPage->canSave())
        Q_EMIT signal_saveNoteInfo(m_pEditPage->text());
}

void CNoteInputWidget::slot_deletNote()
{
    Q_EMIT signal_deleteNote();
}

void CNoteInputWidget::slot_switchToEdit()
{
    openToEdit(m_note);
}

void CNoteInputWidget::slot_changeRegionColor(QColor color)
{
    m_note.color = color;
    Q_EMIT signal_changeRegionColor(color);
}

bool CNoteInputWidget::event(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::ShortcutOverride) {
        const auto *pKey = static_cast<QKeyEvent *>(pEvent);
        const bool bCommand = pKey->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
        // An arrow moves the cursor and not to the next file, Delete takes a letter and not the file.
        if (!bCommand || isEnter(pKey)) {
            pEvent->accept();
            return true;
        }
    }
    return QStackedWidget::event(pEvent);
}

void CNoteInputWidget::keyPressEvent(QKeyEvent *pEvent)
{
    const bool bShown = currentWidget() == m_pShowPage;
    if (isEnter(pEvent) && pEvent->modifiers().testFlag(Qt::ControlModifier)) {
        slot_saveNoteInfo();
    } else if (isEnter(pEvent) && bShown) {
        slot_switchToEdit();
    } else if (pEvent->key() == Qt::Key_Delete && bShown) {
        slot_deletNote();
    } else if (pEvent->key() == Qt::Key_Escape) {
        pEvent->ignore(); // for the overlay, which closes the card
        return;
    }
    pEvent->accept();
}

void CNoteInputWidget::wheelEvent(QWheelEvent *pEvent)
{
    // A text that is scrolled to its end does not begin to zoom the picture.
    pEvent->accept();
}

bool CNoteInputWidget::focusNextPrevChild(bool bNext)
{
    // Round and round in the card, in the order in which its controls were made.
    QVector<QWidget *> stops;
    const auto widgets = currentWidget()->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *pWidget : widgets) {
        if ((pWidget->focusPolicy() & Qt::TabFocus) && pWidget->isEnabled() && pWidget->isVisible())
            stops.append(pWidget);
    }
    if (stops.isEmpty())
        return false;
    const int nCurrent = stops.indexOf(focusWidget());
    const int nFrom = nCurrent < 0 ? (bNext ? -1 : 0) : nCurrent;
    stops.at((nFrom + (bNext ? 1 : stops.size() - 1)) % stops.size())
        ->setFocus(bNext ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}
