#pragma once

#include <QSize>
#include <QString>
#include <QWidget>

#include <functional>

class VideoPlayerControlWidget;
class VideoPlayerWidget;

/**
 * The room in which a video surface stands in the middle: small while idle, as large as its frame or as the room
 * allows, or as a thumbnail.
 *
 * Owner: the video page. Thread: GUI thread.
 */
class TSembedVideoWidget : public QWidget {
    Q_OBJECT

public:
    explicit TSembedVideoWidget(QWidget *pParent);

    void setFilePath(const QString &path, int nStartPos);
    void setControlWidget(VideoPlayerControlWidget *pControl);
    void startWithSharedVolume();
    /** Pauses, and gives the path of a picture of the frame on screen; empty when there is none. */
    QString captureCurrentFrame();
    bool hasPlayer() const;
    /** What to do when a file does not play, and when there is no player any more. */
    void setHandlers(const std::function<void()> &onFailure, const std::function<void()> &onPlayerGone);
    void stopPlay();

    void resetToIdle();
    void shrinkToThumbnail();
    void fitToContainer();
    /** The room has another size. */
    void refit();

public Q_SLOTS:
    void slot_setSizeByVideoFrameSize();

private:
    void centre(const QSize &size);

    VideoPlayerWidget *m_pPlayer;
    QSize m_idleSize;
};
