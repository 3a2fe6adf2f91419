#pragma once

#include "image/CNoteWidget.h"

#include <QPointer>

class CResourceItem;
class ImgPreviewToolBar;
class NoteUndoNotice;
class PictureZoom;
class QTimer;
class TSLargePreviewView;

/**
 * The comment mode of the picture widget: keeps the overlay on the picture, and the notes of the file that the picture
 * is of, whatever file the shared state has turned to meanwhile.
 *
 * Owner: the picture widget. Thread: GUI thread.
 */
class PictureNotes : public QObject {
    Q_OBJECT

public:
    enum Mode { Off = 0, On = 2 };

    PictureNotes(TSLargePreviewView *pView, PictureZoom *pZoom, ImgPreviewToolBar *pToolBar, QWidget *pParent);

    CNoteWidget *overlay() const { return m_pOverlay; }
    Mode mode() const { return m_mode; }
    /** The picture and its file; null while there is none. */
    void setPicture(CResourceItem *pItem, qint64 nFileId);
    /** Off for a picture that only stands for a file that cannot be shown. */
    void setPlaceable(bool bPlaceable);

    void enter();
    /** Hides the notes. What was typed and not saved is saved, for the file that it was typed for. */
    void leave(bool bTell = true);
    /** The picture moved, was zoomed or turned. */
    void follow();
    /** The same, and once more when things have settled. */
    void followAndRefresh();
    /** Shows the note that the host asked for, if there is one of this file. */
    void showRequested();

    void save(const NoteRegin &region);
    void remove(int nId);
    void acceptMousePos(const QPoint &pos);
    /** Lays the overlay over the view again, after a resize. */
    void placeOverlay(const QRect &freeArea);

protected:
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;

private:
    struct Removed {
        qint64 nFileId = -1;
        int nPosition = 0;
        NoteRecord note;
    };

    /** A text that was sent while its file was left, until the host has answered. */
    struct Left {
        qint64 nFileId = -1;
        QString text;
        bool bFailed = false;
    };

    QTransform pictureToView() const;
    QRect pictureRect(const NoteRegin &region) const;
    bool isCurrent() const;
    void reload();
    void takeStored(qint64 nFileId);
    void takeFailure(qint64 nFileId);
    void undoRemoval();
    void becomeOff();
    void tellSaved(bool bSaved, const QString &text);
    bool panByMouse(QEvent *pEvent);

    QWidget *m_pWidget;
    TSLargePreviewView *m_pView;
    PictureZoom *m_pZoom;
    ImgPreviewToolBar *m_pToolBar;
    CNoteWidget *m_pOverlay;
    NoteUndoNotice *m_pUndoNotice;
    QTimer *m_pRefreshTimer;
    CResourceItem *m_pItem = nullptr;
    qint64 m_nFileId = -1;
    QString m_fileName;
    QVector<NoteRecord> m_notes; ///< As last taken from the shared state.
    Mode m_mode = Off;
    bool m_bPlaceable = true;
    bool m_bLeaving = false;
    bool m_bPanning = false;
    QPoint m_lastPan;
    Removed m_removed;
    Left m_left;
};
