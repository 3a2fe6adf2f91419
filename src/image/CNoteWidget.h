#pragma once

#include "image/NoteGeometry.h"
#include "image/NoteRegin.h"
#include "interfaces/data/NoteRecord.h"

#include <QHash>
#include <QPixmap>
#include <QTransform>
#include <QVector>
#include <QWidget>

#include <memory>
#include <vector>

class CircleNumToolTip;
class CNoteInputWidget;
class QTimer;

/**
 * The transparent overlay of the comment mode: shows the region notes of a picture and lets them be drawn, moved,
 * resized, written and deleted. Places are kept in pixels of the picture and laid out anew whenever the picture moves
 * under it; nothing is stored here, what the user asks for goes out by signals.
 *
 * Owner: the picture widget, which lays it over its view. Thread: GUI thread.
 */
class CNoteWidget : public QWidget {
    Q_OBJECT

public:
    explicit CNoteWidget(QWidget *pParent);
    ~CNoteWidget() override;

    /** Takes a file's notes in the host's order. A note that is being written or held goes on as it is. */
    void setNotes(const QVector<NoteRecord> &notes);
    /** Lays the notes out: from pixels of the picture, which is of this size, to those of the overlay. */
    void layNotes(const QTransform &toView, const QSize &pictureSize);
    /** Where cards may lie: not under the bars of the preview. */
    void setFreeArea(const QRect &area);
    /** The answer to signal_sendMousePos: a picture lies there. */
    void setItemUnderMouse(bool bItem) { m_bItemUnderMouse = bItem; }
    /** Off where places mean nothing: notes can be read, rewritten and deleted, but none drawn or moved. */
    void setDrawingAllowed(bool bAllowed) { m_bDrawingAllowed = bAllowed; }

    int regionCount() const { return int(m_regions.size()); }
    const NoteRegin *region(int nIndex) const { return m_regions.at(size_t(nIndex)).get(); }
    /** Where a region's number lies. */
    QRect badgeRect(int nIndex) const;
    CNoteInputWidget *card() const { return m_pCard; }
    /** The note whose card is open where its text, colour or new size would be lost; null otherwise. It has that text.
     */
    NoteRegin *unsavedRegion();

    /** Draws the eye to a note. */
    void flash(int nIndex);

Q_SIGNALS:
    void signal_saveNoteInfo(NoteRegin *pNoteRegion);
    void signal_deleteNoteInfo(int nId);
    void signal_sendMousePos(QPoint mousePos);

public Q_SLOTS:
    /** Closes the card without saving: a new region goes, a changed one is as it was. */
    void cancelSelectedRect();
    void slotCloseWindow(QWidget *pWidget);
    void slot_saveNoteInfo(QString strNoteText);
    void slot_deleteNote();
    void slot_updateRegionColor(QColor color);

protected:
    bool event(QEvent *pEvent) override;
    void paintEvent(QPaintEvent *pEvent) override;
    void mousePressEvent(QMouseEvent *pEvent) override;
    void mouseMoveEvent(QMouseEvent *pEvent) override;
    void mouseReleaseEvent(QMouseEvent *pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent *pEvent) override;
    void leaveEvent(QEvent *pEvent) override;
    void focusInEvent(QFocusEvent *pEvent) override;
    void keyPressEvent(QKeyEvent *pEvent) override;
    void hideEvent(QHideEvent *pEvent) override;

private:
    /** A region's place in pixels of the picture, and the note it was made from. */
    struct Place {
        NoteGeometry::Corners corners;
        NoteRecord record;
    };

    void layRegion(NoteRegin *pRegion, const NoteGeometry::Corners &corners) const;
    void keepPlace(const NoteRegin &region);
    void markStored(const NoteRegin &region);
    int positionInList(const NoteRecord &record, int nWanted, const QVector<NoteRecord> &notes) const;
    void takeRectangle(NoteRegin *pRegion, const QRect &rect);
    QRect pictureBounds() const;
    int regionAt(const QPoint &pos) const;
    int handleAt(int nIndex, const QPoint &pos) const;
    bool isHeld() const;
    bool hasUnsaved() const;

    // Input: see CNoteWidgetInput.cpp.
    void startDrawing(const QPoint &pos);
    void hold(int nIndex, const QPoint &pos);
    void dragTo(const QPoint &pos);
    void releaseDrawn();
    void releaseMoved(NoteRegin *pRegion);
    void releaseResized(NoteRegin *pRegion);
    void hover(const QPoint &pos);
    void leaveCard();
    void selectNext(bool bForward);
    void escapeFromCard();

    void select(NoteRegin *pRegion);
    void openCard(NoteRegin *pRegion, bool bToEdit);
    void closeCard();
    void placeCard();
    void applyTheme();

    // Painting: see CNoteWidgetPaint.cpp.
    void paintRegion(QPainter *pPainter, const NoteRegin &region, const QRect &exposed);
    void paintHandles(QPainter *pPainter, const NoteRegin &region) const;
    void paintFlash(QPainter *pPainter, const NoteRegin &region) const;
    void paintCardShadow(QPainter *pPainter) const;
    const QPixmap &badge(int nNumber, const QColor &color);
    QRect dirtyRect(const NoteRegin &region) const;
    void updateRegion(const NoteRegin &region);

    std::vector<std::unique_ptr<NoteRegin>> m_regions;
    std::vector<Place> m_places;
    int m_nStored = 0; ///< Regions from here on are not in the host's list yet.
    std::unique_ptr<NoteRegin> m_pDrawn;
    NoteRegin *m_pSelected = nullptr;
    NoteRegin m_selectedBefore; ///< As it was when it was selected, for cancelling.
    int m_nHovered = -1;
    int m_nHeldHandle = NoteGeometry::NoHandle;
    QTransform m_toView;
    QSize m_pictureSize;
    QRect m_freeArea;
    bool m_bItemUnderMouse = false;
    bool m_bDrawingAllowed = true;
    CNoteInputWidget *m_pCard;
    CircleNumToolTip *m_pBadge; ///< Never shown: its picture is taken for each number.
    QHash<quint64, QPixmap> m_badges;
    double m_fBadgeRatio = 0.0;
    QTimer *m_pFlashTimer;
    int m_nFlashed = -1;
    int m_nFlashTick = 0;
};
