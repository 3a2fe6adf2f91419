#pragma once

#include <QPointer>
#include <QWidget>

class MpvPlayer;

/**
 * Where a video is seen: paints the player's last frame, dark where there is none. The context menu offers subtitles
 * and sound tracks where there is a choice and is the parent's otherwise.
 *
 * Owner: the widget it is placed in. Thread: GUI thread only. The player may go first.
 */
class VideoArea final : public QWidget {
    Q_OBJECT

public:
    explicit VideoArea(MpvPlayer *pPlayer);

protected:
    void paintEvent(QPaintEvent *pEvent) override;
    void resizeEvent(QResizeEvent *pEvent) override;
    void showEvent(QShowEvent *pEvent) override;
    void contextMenuEvent(QContextMenuEvent *pEvent) override;

private:
    void tellSize();

    QPointer<MpvPlayer> m_pPlayer;
};
