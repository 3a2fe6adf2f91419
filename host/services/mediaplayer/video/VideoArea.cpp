#include "services/mediaplayer/video/VideoArea.h"

#include "services/mediaplayer/playback/MpvPlayer.h"
#include "services/mediaplayer/video/TrackMenu.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QPainter>

VideoArea::VideoArea(MpvPlayer *pPlayer)
    : m_pPlayer(pPlayer)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(tr("Video"));
    connect(pPlayer->frames(), &PlayerThread::signalFrame, this, QOverload<>::of(&QWidget::update));
    connect(pPlayer, &MpvPlayer::signalFrameForgotten, this, QOverload<>::of(&QWidget::update));
}

void VideoArea::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QImage frame = m_pPlayer != nullptr ? m_pPlayer->frames()->frame() : QImage();
    if (frame.isNull()) {
        // As dark as the surfaces videos are placed in.
        painter.fillRect(rect(), QColor(22, 22, 22));
        return;
    }
    // Until a frame of the new size is drawn the old one is stretched.
    painter.setRenderHint(QPainter::SmoothPixmapTransform, frame.size() != size() * devicePixelRatioF());
    painter.drawImage(QRectF(rect()), frame);
}

void VideoArea::resizeEvent(QResizeEvent *)
{
    tellSize();
}

void VideoArea::showEvent(QShowEvent *)
{
    // A preview shows the place of a video well before it plays it.
    if (m_pPlayer != nullptr)
        m_pPlayer->warmUp();
    tellSize();
}

void VideoArea::tellSize()
{
    if (m_pPlayer != nullptr)
        m_pPlayer->frames()->setFrameSize(size() * devicePixelRatioF());
}

void VideoArea::contextMenuEvent(QContextMenuEvent *pEvent)
{
    QMenu *pMenu = m_pPlayer != nullptr ? TrackMenu::create(m_pPlayer, this) : nullptr;
    if (pMenu == nullptr) {
        pEvent->ignore();
        return;
    }
    // What the preview does with the file stays within reach.
    pMenu->addSeparator();
    const QPoint at = pEvent->pos();
    QAction *pFile = pMenu->addAction(tr("File…"));
    connect(pFile, &QAction::triggered, this, [this, at] {
        QWidget *pParent = parentWidget();
        if (pParent == nullptr)
            return;
        const QPoint inParent = mapToParent(at);
        QCoreApplication::postEvent(
            pParent, new QContextMenuEvent(QContextMenuEvent::Other, inParent, pParent->mapToGlobal(inParent)));
    });
    pMenu->popup(pEvent->globalPos());
}
