// The overlay's regions: taking notes, laying them out, the card.
#include "image/CNoteWidget.h"

#include "common/CircleNumToolTip.h"
#include "image/CNoteInputWidget.h"
#include "image/NoteText.h"
#include "theme/TSSkinSetting.h"

#include <QTimer>

#include <cmath>

namespace {

constexpr int FlashInterval = 30;
constexpr int FlashTicks = 40;
constexpr int CardMargin = 8;

bool isSame(const NoteRecord &left, const NoteRecord &right)
{
    return left.rect == right.rect && left.value == right.value && left.text == right.text;
}

} // namespace

CNoteWidget::CNoteWidget(QWidget *pParent)
    : QWidget(pParent)
    , m_pCard(new CNoteInputWidget(this))
    , m_pBadge(new CircleNumToolTip(this))
    , m_pFlashTimer(new QTimer(this))
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Comments on the picture"));
    setAccessibleDescription(tr("Ctrl+Tab chooses the next comment, Enter opens it and Delete deletes it"));
    m_pCard->hide();
    m_pBadge->hide();
    m_pFlashTimer->setInterval(FlashInterval);
    connect(m_pCard, &CNoteInputWidget::signal_saveNoteInfo, this, &CNoteWidget::slot_saveNoteInfo);
    connect(m_pCard, &CNoteInputWidget::signal_deleteNote, this, &CNoteWidget::slot_deleteNote);
    connect(m_pCard, &CNoteInputWidget::signal_changeRegionColor, this, &CNoteWidget::slot_updateRegionColor);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &CNoteWidget::applyTheme);
    connect(m_pFlashTimer, &QTimer::timeout, this, [this] {
        const bool bOver = ++m_nFlashTick >= FlashTicks || m_nFlashed >= regionCount();
        if (m_nFlashed < regionCount())
            updateRegion(*m_regions.at(size_t(m_nFlashed)));
        if (!bOver)
            return;
        m_pFlashTimer->stop();
        m_nFlashed = -1;
    });
}

CNoteWidget::~CNoteWidget() = default;

void CNoteWidget::applyTheme()
{
    m_badges.clear();
    m_pCard->applyStyle();
    update();
}

int CNoteWidget::positionInList(const NoteRecord &record, int nWanted, const QVector<NoteRecord> &notes) const
{
    if (nWanted < notes.size() && isSame(notes.at(nWanted), record))
        return nWanted;
    for (int i = 0; i < notes.size(); ++i) {
        if (isSame(notes.at(i), record))
            return i;
    }
    return -1;
}

void CNoteWidget::setNotes(const QVector<NoteRecord> &notes)
{
    // What is under the user's hands stays there, at its new position or, where the host dropped it, as a new note.
    std::unique_ptr<NoteRegin> pKept;
    Place keptPlace;
    int nKept = -1;
    if (m_pSelected != nullptr) {
        const size_t nOld = size_t(m_pSelected->nId);
        keptPlace = m_places.at(nOld);
        const bool bStored = m_pSelected->nId < m_nStored;
        nKept = bStored ? positionInList(keptPlace.record, m_pSelected->nId, notes) : notes.size();
        if (nKept < 0 && hasUnsaved())
            nKept = notes.size();
        if (nKept >= 0)
            pKept = std::move(m_regions.at(nOld));
        else
            closeCard();
        if (nKept < 0)
            m_pSelected = nullptr;
    }
    m_regions.clear();
    m_places.clear();
    m_nHovered = -1;
    m_nStored = notes.size();
    for (const NoteRecord &note : notes) {
        auto pRegion = std::make_unique<NoteRegin>();
        pRegion->nId = regionCount();
        pRegion->nState = NoteIdle;
        pRegion->strText = note.text;
        pRegion->color = NoteText::unpacked(note.value);
        if (pKept && pRegion->nId == nKept) {
            pKept->nId = nKept;
            pRegion = std::move(pKept);
            m_places.push_back(keptPlace);
        } else {
            m_places.push_back({NoteGeometry::cornersOf(note.rect), note});
        }
        m_regions.push_back(std::move(pRegion));
    }
    if (pKept) {
        pKept->nId = nKept;
        m_regions.push_back(std::move(pKept));
        m_places.push_back(keptPlace);
    }
    layNotes(m_toView, m_pictureSize);
    update();
}

void CNoteWidget::layNotes(const QTransform &toView, const QSize &pictureSize)
{
    m_toView = toView;
    m_pictureSize = pictureSize;
    bool bMoved = false;
    for (size_t i = 0; i < m_regions.size(); ++i) {
        NoteRegin *pRegion = m_regions.at(i).get();
        const QRect before = pRegion->rect;
        layRegion(pRegion, m_places.at(i).corners);
        bMoved = bMoved || pRegion->rect != before;
    }
    placeCard();
    if (bMoved)
        update();
}

void CNoteWidget::layRegion(NoteRegin *pRegion, const NoteGeometry::Corners &corners) const
{
    // One that is held follows the mouse.
    if (pRegion->nState == NoteMoving || pRegion->nState == NoteResizing)
        return;
    pRegion->ptStart = NoteGeometry::mapped(m_toView, corners.start);
    pRegion->ptEnd = NoteGeometry::mapped(m_toView, corners.end);
    pRegion->rect = NoteGeometry::normalised(pRegion->ptStart, pRegion->ptEnd);
    pRegion->handles = NoteGeometry::handleAreas(pRegion->rect);
}

void CNoteWidget::takeRectangle(NoteRegin *pRegion, const QRect &rect)
{
    pRegion->rect = rect;
    pRegion->handles = NoteGeometry::handleAreas(rect);
}

void CNoteWidget::keepPlace(const NoteRegin &region)
{
    const QTransform toPicture = m_toView.inverted();
    m_places.at(size_t(region.nId)).corners = {toPicture.map(QPointF(region.ptStart)),
                                               toPicture.map(QPointF(region.ptEnd))};
}

QRect CNoteWidget::pictureBounds() const
{
    return m_pictureSize.isEmpty() ? rect() : m_toView.mapRect(QRectF(QPointF(), QSizeF(m_pictureSize))).toRect();
}

void CNoteWidget::setFreeArea(const QRect &area)
{
    m_freeArea = area.adjusted(CardMargin, CardMargin, -CardMargin, -CardMargin);
    placeCard();
}

void CNoteWidget::select(NoteRegin *pRegion)
{
    if (pRegion == m_pSelected)
        return;
    if (m_pSelected != nullptr)
        updateRegion(*m_pSelected);
    m_pSelected = pRegion;
    if (m_pSelected == nullptr)
        return;
    m_selectedBefore = *m_pSelected;
    updateRegion(*m_pSelected);
}

void CNoteWidget::openCard(NoteRegin *pRegion, bool bToEdit)
{
    select(pRegion);
    pRegion->pWidget = m_pCard;
    const NoteGeometry::Corners &corners = m_places.at(size_t(pRegion->nId)).corners;
    // What is stored are whole pixels, and those are told.
    const auto length = [](double fFrom, double fTo) {
        return int(qMin(std::abs(NoteGeometry::truncated(fTo) - NoteGeometry::truncated(fFrom)), 1e9));
    };
    const NoteDescription note = {
        pRegion->nId + 1, pRegion->strText,
        QSize(length(corners.start.x(), corners.end.x()), length(corners.start.y(), corners.end.y())), pRegion->color};
    if (bToEdit)
        m_pCard->openToEdit(note);
    else
        m_pCard->openToShow(note);
    placeCard();
    update();
}

void CNoteWidget::closeCard()
{
    if (m_pSelected != nullptr)
        m_pSelected->pWidget = nullptr;
    if (m_pCard->isHidden())
        return;
    const bool bHadFocus = m_pCard->isAncestorOf(focusWidget() != nullptr ? focusWidget() : this);
    m_pCard->hide();
    if (bHadFocus && isVisible())
        setFocus();
    update();
}

void CNoteWidget::placeCard()
{
    if (m_pCard->isHidden() || m_pSelected == nullptr)
        return;
    const QRect freeArea = m_freeArea.isValid() ? m_freeArea : rect();
    // The handles belong to what is not to be covered.
    const QRect region = m_pSelected->rect.adjusted(-CardMargin, -CardMargin, CardMargin, CardMargin);
    m_pCard->move(NoteGeometry::cardPlace(m_pCard->size(), region, freeArea).topLeft());
}

bool CNoteWidget::hasUnsaved() const
{
    if (m_pSelected == nullptr || !m_pCard->canSave())
        return false;
    return m_pCard->hasUnsavedText() || m_pSelected->nState == NoteResized ||
           m_pSelected->color != m_selectedBefore.color;
}

NoteRegin *CNoteWidget::unsavedRegion()
{
    if (!hasUnsaved())
        return nullptr;
    m_pSelected->strText = m_pCard->text();
    return m_pSelected;
}

void CNoteWidget::cancelSelectedRect()
{
    m_pDrawn.reset();
    closeCard();
    NoteRegin *pRegion = m_pSelected;
    select(nullptr);
    update();
    if (pRegion == nullptr)
        return;
    if (pRegion->nId >= m_nStored) {
        m_places.pop_back();
        m_regions.pop_back();
        m_nHovered = -1;
        return;
    }
    pRegion->color = m_selectedBefore.color;
    pRegion->strText = m_selectedBefore.strText;
    pRegion->nState = NoteIdle;
    pRegion->ptPress = pRegion->ptLast = QPoint();
    Place &place = m_places.at(size_t(pRegion->nId));
    place.corners = NoteGeometry::cornersOf(place.record.rect);
    layRegion(pRegion, place.corners);
}

void CNoteWidget::slotCloseWindow(QWidget *pWidget)
{
    if (pWidget == m_pCard)
        cancelSelectedRect();
    else if (pWidget != nullptr)
        pWidget->close();
}

void CNoteWidget::slot_saveNoteInfo(QString strNoteText)
{
    NoteRegin *pRegion = m_pSelected;
    if (pRegion == nullptr)
        return;
    pRegion->strText = strNoteText;
    pRegion->nState = NoteIdle;
    closeCard();
    select(nullptr);
    markStored(*pRegion);
    // The regions may be made anew before this returns.
    Q_EMIT signal_saveNoteInfo(pRegion);
}

void CNoteWidget::markStored(const NoteRegin &region)
{
    Place &place = m_places.at(size_t(region.nId));
    place.record = {NoteGeometry::rectOf(place.corners), NoteText::packed(region.color), region.strText};
    m_nStored = qMax(m_nStored, region.nId + 1);
}

void CNoteWidget::slot_deleteNote()
{
    if (m_pSelected == nullptr)
        return;
    const int nId = m_pSelected->nId;
    const bool bStored = nId < m_nStored;
    cancelSelectedRect();
    if (bStored)
        Q_EMIT signal_deleteNoteInfo(nId);
}

void CNoteWidget::slot_updateRegionColor(QColor color)
{
    if (m_pSelected == nullptr)
        return;
    m_pSelected->color = color;
    updateRegion(*m_pSelected);
}

void CNoteWidget::flash(int nIndex)
{
    if (nIndex < 0 || nIndex >= regionCount())
        return;
    m_nFlashed = nIndex;
    m_nFlashTick = 0;
    m_pFlashTimer->start();
}
