#pragma once

#include "image/PreviewRoom.h"
#include "media/MediaPlayer.h"

#include <QImage>

class AudioPlayerControlWidget;
class FileActionController;
class QGraphicsItem;
class QTimer;
class QVBoxLayout;
class TSDBGraphicsScene;
class TSLargePreviewView;

/**
 * The hub's page for audio files: the player's cover item in a view, and under it what plays the file. Without a player
 * it shows the file's suffix.
 *
 * Owner: the hub, which uses it for every audio file. Thread: GUI thread.
 */
class AudioPreviewWidget : public PreviewRoom {
    Q_OBJECT

public:
    explicit AudioPreviewWidget(QWidget *pParent);
    ~AudioPreviewWidget() override;

    /** Plays the file, a moment later. */
    void playAudio(const QString &path);
    /** Releases the file, and keeps the volume for the next one. */
    void stopPreview();

public Q_SLOTS:
    void slot_animationRotate(int nValue);
    void slot_defaultOpen();
    void slot_checkFilePath();
    void slot_exportToPackage();
    void slot_exportToComputer();
    void slot_copyFile();
    void slot_copyFilePath();
    void slot_copyTag();
    void slot_pasteTag();
    void slot_setCover();
    void slot_deleteComplete();
    void slot_removeToRecycle();

protected:
    void contextMenuEvent(QContextMenuEvent *pEvent) override;
    void resizeEvent(QResizeEvent *pEvent) override;
    bool eventFilter(QObject *pWatched, QEvent *pEvent) override;

private:
    void createView();
    void createFileActions();
    void showPlayerThere();
    void takeSharedVolume();
    void layOutView();
    void loadCover();
    void showCover(const QImage &cover, const QImage &label);
    void tellFailure();

    QVBoxLayout *m_pLayout;
    TSLargePreviewView *m_pView;
    TSDBGraphicsScene *m_pScene;
    AudioPlayerControlWidget *m_pControl = nullptr;
    MediaPlayer m_pPlayer;
    QGraphicsItem *m_pItem = nullptr; ///< The scene's, as long as it has it.
    QTimer *m_pLoadTimer;
    int m_nLoad = 0; ///< Tells the picture that is waited for from those before it.
    FileActionController *m_pFileActions = nullptr;
    bool m_bFailureTold = false;
};
