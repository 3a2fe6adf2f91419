// The overlay's mouse and keys.
#include "image/CNoteInputWidget.h"
#include "image/CNoteWidget.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>

namespace {

constexpr int SmallestSide = 2;
const QColor DefaultColor(250, 100, 0); // #FA6400

QPoint keptIn(const QPoint &pos, const QRect &bounds)
{
    return {qBound(bounds.left(), pos.x(), bounds.left() + bounds.width()),
            qBound(bounds.top(), pos.y(), bounds.top() + bounds.height())};
}

bool isEnter(const QKeyEvent *pEvent)
{
    return pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter;
}

/** From note to note by Ctrl+Tab, as Tab alone is a key of the preview: 1, -1, or 0 for another key. */
int stepOf(const QKeyEvent *pEvent)
{
    if (!pEvent->modifiers().testFlag(Qt::ControlModifier))
        return 0;
    const bool bBack = pEvent->key() == Qt::Key_Backtab || pEvent->modifiers().testFlag(Qt::ShiftModifier);
    const bool bTab = pEvent->key() == Qt::Key_Tab || pEvent->key() == Qt::Key_Backtab;
    return bTab ? (bBack ? -1 : 1) : 0;
}

} // namespace

bool CNoteWidget::isHeld() const
{
    return m_pSelected != nullptr && (m_pSelected->nState == NoteMoving || m_pSelected->nState == NoteResizing);
}

int CNoteWidget::handleAt(int nIndex, const QPoint &pos) const
{
    return m_bDrawingAllowed ? NoteGeometry::handleAt(m_regions.at(size_t(nIndex))->handles, pos)
                             : int(NoteGeometry::NoHandle);
}

int CNoteWidget::regionAt(const QPoint &pos) const
{
    const auto isHit = [this, &pos](int i) {
        return m_regions.at(size_t(i))->rect.contains(pos) || badgeRect(i).contains(pos) || handleAt(i, pos) >= 0;
    };
    // The selected one and the one whose handles are shown come first, then the topmost.
    if (m_pSelected != nullptr && isHit(m_pSelected->nId))
        return m_pSelected->nId;
    for (int i = regionCount() - 1; i >= 0; --i) {
        const NoteRegin &region = *m_regions.at(size_t(i));
        if (region.rect.contains(pos) || badgeRect(i).contains(pos) || (i == m_nHovered && handleAt(i, pos) >= 0))
            return i;
    }
    // Handles reach out of their region: taken where nothing else lies.
    for (int i = regionCount() - 1; i >= 0; --i) {
        if (isHit(i))
            return i;
    }
    return -1;
}

bool CNoteWidget::event(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::ShortcutOverride) {
        const auto *pKey = static_cast<QKeyEvent *>(pEvent);
        // Delete also where no note is chosen: pressed once too often, it is not to remove the file.
        const bool bOwn = pKey->key() == Qt::Key_Escape ||
                          (pKey->key() == Qt::Key_Delete && pKey->modifiers() == Qt::NoModifier) ||
                          (m_pSelected != nullptr && isEnter(pKey)) || stepOf(pKey) != 0;
        if (bOwn) {
            pEvent->accept();
            return true;
        }
    }
    return QWidget::event(pEvent);
}

void CNoteWidget::focusInEvent(QFocusEvent *pEvent)
{
    QWidget::focusInEvent(pEvent);
    // Who clicked in the tool bar goes on writing.
    if (!m_pCard->isHidden())
        m_pCard->takeFocus();
}

void CNoteWidget::leaveCard()
{
    if (m_pCard->isHidden())
        return;
    // A click beside the card loses nothing that was typed, chosen or drawn: Escape is there for that.
    if (hasUnsaved())
        slot_saveNoteInfo(m_pCard->text());
    else
        cancelSelectedRect();
}

void CNoteWidget::mousePressEvent(QMouseEvent *pEvent)
{
    if (pEvent->button() != Qt::LeftButton) {
        pEvent->setAccepted(pEvent->button() != Qt::RightButton);
        return;
    }
    setFocus();
    leaveCard();
    const int nRegion = regionAt(pEvent->pos());
    if (nRegion >= 0) {
        hold(nRegion, pEvent->pos());
        return;
    }
    select(nullptr);
    m_bItemUnderMouse = false;
    Q_EMIT signal_sendMousePos(pEvent->pos());
    if (m_bItemUnderMouse && m_bDrawingAllowed && m_toView.isInvertible())
        startDrawing(pEvent->pos());
}

void CNoteWidget::startDrawing(const QPoint &pos)
{
    m_pDrawn = std::make_unique<NoteRegin>();
    m_pDrawn->nId = regionCount();
    m_pDrawn->nState = NotePressed;
    m_pDrawn->color = DefaultColor;
    m_pDrawn->ptStart = m_pDrawn->ptEnd = m_pDrawn->ptPress = m_pDrawn->ptLast = pos;
    takeRectangle(m_pDrawn.get(), QRect(pos, QSize(0, 0)));
}

void CNoteWidget::hold(int nIndex, const QPoint &pos)
{
    NoteRegin *pRegion = m_regions.at(size_t(nIndex)).get();
    select(pRegion);
    m_selectedBefore = *pRegion;
    m_nHeldHandle = handleAt(nIndex, pos);
    pRegion->nState = m_nHeldHandle >= 0 ? NoteResizing : NoteMoving;
    pRegion->ptPress = pRegion->ptLast = pos;
}

void CNoteWidget::mouseMoveEvent(QMouseEvent *pEvent)
{
    const bool bLeft = pEvent->buttons() & Qt::LeftButton;
    if (bLeft && (m_pDrawn || isHeld()))
        dragTo(pEvent->pos());
    else if (pEvent->buttons() == Qt::NoButton)
        hover(pEvent->pos());
}

void CNoteWidget::dragTo(const QPoint &pos)
{
    NoteRegin *pRegion = m_pDrawn ? m_pDrawn.get() : m_pSelected;
    const QRect before = dirtyRect(*pRegion);
    const QRect bounds = pictureBounds();
    pRegion->ptLast = pos;
    if (m_pDrawn) {
        m_pDrawn->nState = NoteDrawing;
        m_pDrawn->ptEnd = keptIn(pos, bounds);
        takeRectangle(pRegion, NoteGeometry::normalised(m_pDrawn->ptStart, m_pDrawn->ptEnd));
    } else if (!m_bDrawingAllowed || !m_toView.isInvertible()) {
        return;
    } else if (pRegion->nState == NoteMoving) {
        takeRectangle(pRegion,
                      NoteGeometry::shiftedInto(m_selectedBefore.rect.translated(pos - pRegion->ptPress), bounds));
    } else {
        // By the way of the handle, not by the place of the mouse: handles may be held outside the picture.
        const QRect &rect = m_selectedBefore.rect;
        const QPoint way = NoteGeometry::offsetWithin(rect, m_nHeldHandle, pos - pRegion->ptPress, bounds);
        takeRectangle(pRegion, NoteGeometry::resized(rect, m_nHeldHandle, way));
    }
    update(before.united(dirtyRect(*pRegion)));
}

void CNoteWidget::mouseReleaseEvent(QMouseEvent *pEvent)
{
    if (pEvent->button() != Qt::LeftButton)
        return;
    if (m_pDrawn)
        releaseDrawn();
    else if (isHeld() && m_pSelected->nState == NoteMoving)
        releaseMoved(m_pSelected);
    else if (isHeld())
        releaseResized(m_pSelected);
}

void CNoteWidget::releaseDrawn()
{
    std::unique_ptr<NoteRegin> pRegion = std::move(m_pDrawn);
    updateRegion(*pRegion);
    if (pRegion->nState != NoteDrawing || pRegion->rect.width() < SmallestSide ||
        pRegion->rect.height() < SmallestSide) {
        pRegion->nState = NotePressed;
        return;
    }
    pRegion->nState = NoteIdle;
    pRegion->ptPress = pRegion->ptLast = QPoint();
    pRegion->nId = regionCount();
    m_regions.push_back(std::move(pRegion));
    m_places.emplace_back();
    keepPlace(*m_regions.back());
    openCard(m_regions.back().get(), true);
}

void CNoteWidget::releaseMoved(NoteRegin *pRegion)
{
    const QPoint way = pRegion->rect.topLeft() - m_selectedBefore.rect.topLeft();
    pRegion->ptPress = pRegion->ptLast = QPoint();
    if (qAbs(way.x()) < SmallestSide && qAbs(way.y()) < SmallestSide) {
        // A click: the note is to be read.
        takeRectangle(pRegion, m_selectedBefore.rect);
        pRegion->nState = NoteIdle;
        openCard(pRegion, false);
        return;
    }
    pRegion->nState = NoteMoved;
    pRegion->ptStart = pRegion->rect.topLeft();
    pRegion->ptEnd = pRegion->ptStart + QPoint(pRegion->rect.width(), pRegion->rect.height());
    keepPlace(*pRegion);
    select(nullptr);
    Q_EMIT signal_saveNoteInfo(pRegion);
}

void CNoteWidget::releaseResized(NoteRegin *pRegion)
{
    const bool bTooSmall = pRegion->rect.width() < SmallestSide || pRegion->rect.height() < SmallestSide;
    pRegion->ptPress = pRegion->ptLast = QPoint();
    pRegion->nState = NoteResized;
    m_nHeldHandle = NoteGeometry::NoHandle;
    if (bTooSmall || pRegion->rect == m_selectedBefore.rect) {
        pRegion->nState = NoteIdle;
        takeRectangle(pRegion, m_selectedBefore.rect);
        openCard(pRegion, false);
        return;
    }
    pRegion->ptStart = pRegion->rect.topLeft();
    pRegion->ptEnd = pRegion->ptStart + QPoint(pRegion->rect.width(), pRegion->rect.height());
    keepPlace(*pRegion);
    openCard(pRegion, true);
}

void CNoteWidget::mouseDoubleClickEvent(QMouseEvent *pEvent)
{
    // Not for the widget below, which would leave the preview.
    pEvent->accept();
    if (pEvent->button() != Qt::LeftButton)
        return;
    const int nRegion = regionAt(pEvent->pos());
    if (nRegion >= 0) {
        leaveCard();
        if (nRegion < regionCount())
            openCard(m_regions.at(size_t(nRegion)).get(), true);
    }
}

void CNoteWidget::hover(const QPoint &pos)
{
    const int nBefore = m_nHovered;
    m_nHovered = regionAt(pos);
    for (const int i : {nBefore, m_nHovered}) {
        if (i >= 0 && i < regionCount() && nBefore != m_nHovered)
            updateRegion(*m_regions.at(size_t(i)));
    }
    if (m_nHovered >= 0) {
        const int nHandle = handleAt(m_nHovered, pos);
        setCursor(nHandle >= 0        ? NoteGeometry::cursorOf(nHandle)
                  : m_bDrawingAllowed ? Qt::SizeAllCursor
                                      : Qt::PointingHandCursor);
        return;
    }
    m_bItemUnderMouse = false;
    Q_EMIT signal_sendMousePos(pos);
    setCursor(m_bItemUnderMouse && m_bDrawingAllowed ? Qt::CrossCursor : Qt::ArrowCursor);
}

void CNoteWidget::leaveEvent(QEvent *pEvent)
{
    QWidget::leaveEvent(pEvent);
    if (m_nHovered >= 0 && m_nHovered < regionCount())
        updateRegion(*m_regions.at(size_t(m_nHovered)));
    m_nHovered = -1;
}

void CNoteWidget::selectNext(bool bForward)
{
    const int nCount = regionCount();
    if (nCount == 0 || isHeld() || m_pDrawn || !m_pCard->isHidden())
        return;
    const int nFrom = m_pSelected != nullptr ? m_pSelected->nId : (bForward ? -1 : 0);
    select(m_regions.at(size_t((nFrom + (bForward ? 1 : nCount - 1)) % nCount)).get());
}

void CNoteWidget::escapeFromCard()
{
    const int nSelected = m_pSelected != nullptr && m_pSelected->nId < m_nStored ? m_pSelected->nId : -1;
    cancelSelectedRect();
    // Still chosen, for the next key.
    if (nSelected >= 0)
        select(m_regions.at(size_t(nSelected)).get());
}

void CNoteWidget::keyPressEvent(QKeyEvent *pEvent)
{
    switch (pEvent->key()) {
    case Qt::Key_Escape:
        if (!m_pCard->isHidden() || m_pDrawn || isHeld())
            escapeFromCard();
        else
            hide();
        break;
    case Qt::Key_Delete:
        slot_deleteNote();
        break;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        if (const int nStep = stepOf(pEvent))
            selectNext(nStep > 0);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_pSelected != nullptr && m_pCard->isHidden())
            openCard(m_pSelected, true);
        break;
    default:
        QWidget::keyPressEvent(pEvent);
        break;
    }
}

void CNoteWidget::hideEvent(QHideEvent *pEvent)
{
    // Whoever hides the overlay has saved before what is to be saved.
    if (isHidden()) {
        cancelSelectedRect();
        // Otherwise the next widget of the window has it, which may be the host's, and the preview's keys are dead.
        if (hasFocus() && parentWidget() != nullptr)
            parentWidget()->setFocus();
    }
    m_pFlashTimer->stop();
    m_nFlashed = -1;
    QWidget::hideEvent(pEvent);
}
