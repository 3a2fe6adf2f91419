#include "image/PictureNotes.h"

#include "common/CNotificationFloatingWidget.h"
#include "common/CResourceItem.h"
#include "common/CircleBtn.h"
#include "common/WaitNotice.h"
#include "image/ImgPreviewToolBar.h"
#include "image/NoteText.h"
#include "image/NoteUndoNotice.h"
#include "image/PictureZoom.h"
#include "image/TSLargePreviewView.h"
#include "plugin/PluginInnerData.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr int RefreshDelay = 150;
constexpr double HalfPixel = 0.5;
constexpr int LongestName = 40;

bool isSameList(const QVector<NoteRecord> &left, const QVector<NoteRecord> &right)
{
    const auto isSame = [](const NoteRecord &a, const NoteRecord &b) {
        return a.rect == b.rect && a.value == b.value && a.text == b.text;
    };
    return left.size() == right.size() && std::equal(left.cbegin(), left.cend(), right.cbegin(), isSame);
}

} // namespace

PictureNotes::PictureNotes(TSLargePreviewView *pView, PictureZoom *pZoom, ImgPreviewToolBar *pToolBar, QWidget *pParent)
    : QObject(pParent)
    , m_pWidget(pParent)
    , m_pView(pView)
    , m_pZoom(pZoom)
    , m_pToolBar(pToolBar)
    , m_pOverlay(new CNoteWidget(pParent))
    , m_pUndoNotice(new NoteUndoNotice(pParent))
    , m_pRefreshTimer(new QTimer(this))
{
    m_pOverlay->hide();
    m_pOverlay->installEventFilter(this);
    m_pToolBar->button(ImgPreviewToolBar::CommentButton)->setCheckable(true);
    m_pRefreshTimer->setSingleShot(true);
    m_pRefreshTimer->setInterval(RefreshDelay);
    connect(m_pRefreshTimer, &QTimer::timeout, this, &PictureNotes::follow);
    connect(m_pUndoNotice, &NoteUndoNotice::signal_undo, this, &PictureNotes::undoRemoval);
    const NoteStore *pStore = PluginInnerData::instance()->noteStore();
    connect(pStore, &NoteStore::signal_stored, this, &PictureNotes::takeStored);
    connect(pStore, &NoteStore::signal_failed, this, &PictureNotes::takeFailure);
    connect(pStore, &NoteStore::signal_showRequested, this, &PictureNotes::showRequested);
}

bool PictureNotes::isCurrent() const
{
    return m_nFileId == PluginInnerData::instance()->currentFileId();
}

void PictureNotes::setPicture(CResourceItem *pItem, qint64 nFileId)
{
    m_pItem = pItem;
    m_nFileId = nFileId;
    m_bPlaceable = true;
    m_pUndoNotice->hide();
    m_notes = isCurrent() ? PluginInnerData::instance()->noteList() : QVector<NoteRecord>();
    m_fileName = isCurrent() ? PluginInnerData::instance()->currentFileName() : QString();
    if (pItem != nullptr)
        m_pToolBar->setNoteCount(m_notes.size());
}

void PictureNotes::setPlaceable(bool bPlaceable)
{
    m_bPlaceable = bPlaceable;
    m_pOverlay->setDrawingAllowed(bPlaceable);
}

void PictureNotes::enter()
{
    m_mode = On;
    m_pToolBar->button(ImgPreviewToolBar::CommentButton)->setChecked(true);
    m_pOverlay->setDrawingAllowed(m_bPlaceable);
    m_pOverlay->resize(m_pView->size());
    m_pOverlay->move(0, 0);
    reload();
    m_pOverlay->show();
    m_pOverlay->raise();
    m_pToolBar->raise();
    // A click on a button would give the focus to the hub, and Escape would leave the preview and not the mode.
    m_pToolBar->setFocusPolicy(Qt::ClickFocus);
    m_pToolBar->setFocusProxy(m_pOverlay);
    m_pOverlay->setFocus();
    if (!m_bPlaceable)
        WaitNotice::showWarning(m_pWidget, tr("Comments cannot be placed while the picture cannot be shown"));
}

void PictureNotes::leave(bool bTell)
{
    if (m_mode == Off)
        return;
    if (const NoteRegin *pUnsaved = m_pOverlay->unsavedRegion()) {
        const NoteRecord note = {pictureRect(*pUnsaved), NoteText::packed(pUnsaved->color), pUnsaved->strText};
        QVector<NoteRecord> notes = m_notes;
        if (pUnsaved->nId < notes.size())
            notes[pUnsaved->nId] = note;
        else
            notes.append(note);
        m_left = {m_nFileId, note.text, false};
        m_bLeaving = true;
        const bool bSent = PluginInnerData::instance()->setNotesOfFile(m_nFileId, notes);
        m_bLeaving = false;
        const bool bSaved = bSent && !m_left.bFailed;
        if (!bSaved) {
            QGuiApplication::clipboard()->setText(note.text);
            m_left = Left();
        }
        if (bTell)
            tellSaved(bSaved, m_fileName);
    }
    m_pOverlay->hide();
    becomeOff();
}

void PictureNotes::becomeOff()
{
    m_mode = Off;
    m_pToolBar->setFocusProxy(nullptr); // first, as the policy would be the proxy's too
    m_pToolBar->setFocusPolicy(Qt::NoFocus);
    m_pRefreshTimer->stop();
    m_pUndoNotice->hide();
    m_bPanning = false;
    m_pToolBar->button(ImgPreviewToolBar::CommentButton)->setChecked(false);
}

void PictureNotes::tellSaved(bool bSaved, const QString &text)
{
    // Over the hub, as this widget is about to show something else.
    QWidget *pParent = m_pWidget->parentWidget() != nullptr ? m_pWidget->parentWidget() : m_pWidget;
    if (!bSaved) {
        WaitNotice::showWarning(pParent, tr("The comment could not be saved. Its text is on the clipboard."));
        return;
    }
    const QString name = text.size() > LongestName ? text.left(LongestName) + QChar(0x2026) : text;
    auto *pNotice = new CNotificationFloatingWidget(pParent);
    pNotice->setContent(QStringLiteral("remind_success_icon.svg"), tr("Your comment on %1 was saved").arg(name));
    pNotice->show();
}

QTransform PictureNotes::pictureToView() const
{
    if (m_pItem == nullptr)
        return QTransform::fromScale(0.0, 0.0);
    return m_pItem->fromPicturePixels() * m_pItem->sceneTransform() * m_pView->viewportTransform();
}

QRect PictureNotes::pictureRect(const NoteRegin &region) const
{
    const QTransform toView = pictureToView();
    const bool bStored = region.nId < m_notes.size();
    const QRect stored = bStored ? m_notes.at(region.nId).rect : QRect();
    const NoteGeometry::Corners corners = NoteGeometry::cornersOf(stored);
    // A pixel of the view may be many of the picture: what was not moved is not to creep.
    const bool bUnmoved = NoteGeometry::mapped(toView, corners.start) == region.ptStart &&
                          NoteGeometry::mapped(toView, corners.end) == region.ptEnd;
    if ((bStored && bUnmoved) || !toView.isInvertible())
        return stored;
    const double fTolerance = bStored ? HalfPixel / std::sqrt(std::abs(toView.determinant())) : -1.0;
    const QTransform toPicture = toView.inverted();
    const auto toPixel = [&](const QPoint &viewPoint) {
        const QPointF point = toPicture.map(QPointF(viewPoint));
        return QPoint(int(NoteGeometry::truncated(
                          NoteGeometry::snapped(point.x(), corners.start.x(), corners.end.x(), fTolerance))),
                      int(NoteGeometry::truncated(
                          NoteGeometry::snapped(point.y(), corners.start.y(), corners.end.y(), fTolerance))));
    };
    const QPoint start = toPixel(region.ptStart);
    const QPoint end = toPixel(region.ptEnd);
    return {start.x(), start.y(), end.x() - start.x(), end.y() - start.y()};
}

void PictureNotes::save(const NoteRegin &region)
{
    if (m_pItem == nullptr)
        return;
    PluginInnerData *pData = PluginInnerData::instance();
    const QRect rect = pictureRect(region);
    if (isCurrent()) {
        pData->addOrModifyNote(region.nId, region.strText, rect, NoteText::packed(region.color));
    } else if (!region.strText.isEmpty()) {
        // The preview is turning to another file; the note stays with its own.
        if (region.nId >= m_notes.size())
            m_notes.resize(region.nId + 1);
        m_notes[region.nId] = {rect, NoteText::packed(region.color), region.strText};
        pData->setNotesOfFile(m_nFileId, m_notes);
    }
    reload();
}

void PictureNotes::remove(int nId)
{
    if (nId < 0 || nId >= m_notes.size())
        return;
    PluginInnerData *pData = PluginInnerData::instance();
    m_removed = {m_nFileId, nId, m_notes.at(nId)};
    if (isCurrent()) {
        pData->deleteNote(nId);
        pData->renumberNotes();
    } else {
        m_notes.remove(nId);
        pData->setNotesOfFile(m_nFileId, m_notes);
    }
    reload();
    if (m_mode == On)
        m_pUndoNotice->showAbove(m_pToolBar->y());
}

void PictureNotes::undoRemoval()
{
    m_pUndoNotice->hide();
    if (m_removed.nFileId != m_nFileId)
        return;
    QVector<NoteRecord> notes = m_notes;
    notes.insert(qMin(m_removed.nPosition, notes.size()), m_removed.note);
    m_removed.nFileId = -1;
    PluginInnerData::instance()->setNotesOfFile(m_nFileId, notes);
    if (!isCurrent())
        m_notes = notes;
    reload();
}

void PictureNotes::reload()
{
    if (isCurrent())
        m_notes = PluginInnerData::instance()->noteList();
    m_pToolBar->setNoteCount(m_notes.size());
    if (m_mode == Off)
        return;
    m_pOverlay->setNotes(m_notes);
    follow();
}

void PictureNotes::takeStored(qint64 nFileId)
{
    if (nFileId == m_left.nFileId)
        m_left = Left();
    // Mostly the host has stored what is shown already.
    if (nFileId == m_nFileId && isCurrent() && m_pItem != nullptr &&
        !isSameList(m_notes, PluginInnerData::instance()->noteList()))
        reload();
}

void PictureNotes::takeFailure(qint64 nFileId)
{
    if (m_bLeaving) {
        m_left.bFailed = true;
        return;
    }
    const Left left = nFileId == m_left.nFileId ? std::exchange(m_left, Left()) : Left();
    if (left.nFileId >= 0 && nFileId != m_nFileId) {
        // The user was told that it is saved, and looks at another file by now.
        QGuiApplication::clipboard()->setText(left.text);
        tellSaved(false, QString());
    } else if (nFileId == m_nFileId && m_pWidget->isVisible()) {
        WaitNotice::showWarning(m_pWidget, tr("The comments could not be saved"));
    }
}

void PictureNotes::follow()
{
    if (m_mode == On)
        m_pOverlay->layNotes(pictureToView(), m_pItem != nullptr ? m_pItem->originalSize() : QSize());
}

void PictureNotes::followAndRefresh()
{
    if (m_mode == Off)
        return;
    follow();
    m_pRefreshTimer->start();
}

void PictureNotes::placeOverlay(const QRect &freeArea)
{
    m_pOverlay->resize(m_pWidget->size());
    m_pOverlay->setFreeArea(freeArea);
    if (m_pUndoNotice->isVisible())
        m_pUndoNotice->showAbove(m_pToolBar->y());
}

void PictureNotes::showRequested()
{
    if (m_pItem == nullptr || !m_pItem->isVisible() || !m_pWidget->isVisible() || !isCurrent())
        return;
    const int nNote = PluginInnerData::instance()->noteStore()->takeRequested(m_nFileId);
    if (nNote < 0 || nNote >= m_notes.size())
        return;
    if (m_mode == Off)
        enter();
    if (nNote >= m_pOverlay->regionCount())
        return;
    const QRect view = m_pOverlay->rect();
    if (!view.contains(m_pOverlay->region(nNote)->rect)) {
        m_pZoom->fitToWindow(false);
        follow();
    }
    m_pOverlay->flash(nNote);
}

void PictureNotes::acceptMousePos(const QPoint &pos)
{
    const QGraphicsItem *pItem = m_pView->itemAt(pos);
    m_pOverlay->setItemUnderMouse(pItem != nullptr && pItem->isVisible());
}

bool PictureNotes::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    switch (pEvent->type()) {
    case QEvent::Wheel:
        QCoreApplication::sendEvent(m_pView->viewport(), pEvent);
        return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        return panByMouse(pEvent);
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
        if (!static_cast<QKeyEvent *>(pEvent)->matches(QKeySequence::Undo) || !m_pUndoNotice->isVisible())
            return false;
        if (pEvent->type() == QEvent::KeyPress)
            undoRemoval();
        pEvent->accept();
        return true;
    case QEvent::HideToParent:
        // The overlay's own key.
        if (m_mode == On)
            becomeOff();
        return false;
    default:
        return QObject::eventFilter(pWatched, pEvent);
    }
}

bool PictureNotes::panByMouse(QEvent *pEvent)
{
    const auto *pMouse = static_cast<QMouseEvent *>(pEvent);
    const bool bPans = pMouse->button() == Qt::MiddleButton ||
                       (pMouse->button() == Qt::LeftButton && pMouse->modifiers().testFlag(Qt::ControlModifier));
    if (pEvent->type() == QEvent::MouseButtonPress && bPans) {
        m_bPanning = m_pItem != nullptr;
        m_lastPan = pMouse->pos();
        m_pOverlay->setCursor(Qt::ClosedHandCursor);
        return true;
    }
    if (!m_bPanning)
        return false;
    if (pEvent->type() == QEvent::MouseMove && m_pItem != nullptr) {
        m_pItem->setPos(m_pItem->pos() + m_pView->mapToScene(pMouse->pos()) - m_pView->mapToScene(m_lastPan));
        m_lastPan = pMouse->pos();
        follow();
    } else {
        m_bPanning = false;
        m_pOverlay->setCursor(Qt::ArrowCursor);
    }
    return true;
}
