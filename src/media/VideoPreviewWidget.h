#pragma once

#include "image/PreviewRoom.h"

class CircleBtn;
class FileActionController;
class QVBoxLayout;
class TSembedVideoWidget;
class VideoPlayerControlWidget;

/**
 * The hub's page for video files: the video in its room, the bar under it, and two buttons over it for its size.
 * Without a player it shows the file's suffix.
 *
 * Owner: the hub, which uses it for every video. Thread: GUI thread.
 */
class VideoPreviewWidget : public PreviewRoom {
    Q_OBJECT

public:
    explicit VideoPreviewWidget(QWidget *pParent);

    /** Starts the file, a moment later. */
    void setFilePath(const QString &path, int nStartPos);
    /** Releases the file, and keeps the volume for the next one. */
    void stopPreview();
    void resetPreview();
    /** The buttons for the size and the bar. */
    void setToolsVisible(bool bVisible);
    bool hasPlayer() const;

public Q_SLOTS:
    void slot_AdaptBtnClicked();
    void slot_NormalBtnClicked();
    void slot_defaultOpen();
    void slot_checkFilePath();
    void slot_exportToPackage();
    void slot_exportToComputer();
    void slot_copyFile();
    void slot_copyFilePath();
    void slot_copyTag();
    void slot_pasteTag();
    void slot_setCurFramToCover();
    void slot_deleteComplete();
    void slot_removeToRecycle();

protected:
    void contextMenuEvent(QContextMenuEvent *pEvent) override;
    void resizeEvent(QResizeEvent *pEvent) override;

private:
    CircleBtn *createButton(const QString &iconName, const QString &toolTip);
    void createFileActions();
    void showPlayerThere();
    void takeSharedVolume();
    void tellFailure();

    QVBoxLayout *m_pLayout;
    CircleBtn *m_pAdaptBtn;
    CircleBtn *m_pNormalBtn;
    TSembedVideoWidget *m_pVideo;
    VideoPlayerControlWidget *m_pControl;
    FileActionController *m_pFileActions = nullptr;
    bool m_bFailureTold = false;
};
