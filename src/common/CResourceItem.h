#pragma once

#include <QBuffer>
#include <QGraphicsItem>
#include <QMovie>
#include <QPixmap>
#include <QTransform>
#include <QVector>

#include <memory>

class QImage;

/**
 * The picture in a preview's scene, centred on its own origin, so that turning and zooming go about its centre. Shows
 * a still picture, the frames of an animation, or a circular cover.
 *
 * Owner: the widget that puts it into its scene. Thread: GUI thread.
 */
class CResourceItem : public QGraphicsItem {
public:
    enum DrawMode { DrawAnimation = 0, DrawPage = 1, DrawStillAlternative = 2, DrawStill = 3, DrawCircle = 4 };

    explicit CResourceItem(const QPixmap *pPicture, QSize size);
    ~CResourceItem() override;

    /**
     * Shows a picture, with the reduced levels that belong to it, and drops turns and flips of an earlier one. The
     * ratio is that of the screen: at scale 1.0 a pixel of the picture is one of the screen's. Returns the scale at
     * which the picture fits into the view, at most 1.0, times the load factor.
     */
    double setPicture(const QPixmap &picture, const QVector<QImage> &levels, double fPixelRatio, QSize viewSize,
                      const QString &path, int nLoadFactor);

    /**
     * Puts a rendition of the same picture with more, or fewer, pixels in its place: it stands where the one before
     * stood and is as large in the scene.
     */
    void replacePixels(const QPixmap &picture, const QVector<QImage> &levels);

    void setDrawMode(int nDrawMode);
    int drawMode() const { return m_nDrawMode; }

    /** Plays an animated picture from memory, somewhat faster than recorded; turns to the animation draw mode. */
    void playAnimation(const QByteArray &fileData);
    bool hasAnimation() const { return m_pAnimation != nullptr; }
    void releaseAnimation();
    /** An animation that nobody sees need not go on. */
    void setAnimationPaused(bool bPaused);

    /** Turns the picture on the screen; clockwise degrees add up. */
    void turnBy(double fDegrees);
    double turn() const { return m_fTurn; }
    bool isTurned() const { return m_bTurned; }

    /** Mirrors the picture left to right on the screen, however it is turned. */
    void flipHorizontally();

    /** Puts turn, flip and position back to where a new picture starts. */
    void resetPose();

    /** Size of the picture in units of the scene, and of the box that it fills as it is turned. */
    QSize pictureSize() const { return m_size; }
    QSizeF shownSize() const;

    /**
     * The picture stands for one of this size, of which it is a smaller rendition; empty: for itself. Forgotten with
     * the next picture.
     */
    void setOriginalSize(const QSize &size) { m_originalSize = size; }
    QSize originalSize() const { return m_originalSize.isEmpty() ? m_picture.size() : m_originalSize; }
    /** From pixels of the original picture, counted from its top left corner, to points of the item. */
    QTransform fromPicturePixels() const;
    /** A point of the item in pixels of the original picture. */
    QPointF toPicturePixels(const QPointF &itemPoint) const { return fromPicturePixels().inverted().map(itemPoint); }

    QString filePath() const { return m_filePath; }

    QRectF boundingRect() const override;
    void paint(QPainter *pPainter, const QStyleOptionGraphicsItem *pOption, QWidget *pWidget) override;

protected:
    void wheelEvent(QGraphicsSceneWheelEvent *pEvent) override;

private:
    void applyPose();
    void paintStill(QPainter *pPainter, const QRectF &exposed) const;
    void paintLevel(QPainter *pPainter, const QRectF &exposed, const QTransform &transform) const;
    void paintTurned(QPainter *pPainter, const QRectF &exposed) const;
    void paintCircle(QPainter *pPainter) const;
    int levelFor(double fDeviceScale, bool bTurns) const;
    const QImage &levelImage(int nLevel, QImage *pWhole) const;

    QPixmap m_picture;
    QVector<QImage> m_levels;
    QSize m_size; ///< In units of the scene.
    double m_fPixelRatio = 1.0;
    QSizeF m_density{1.0, 1.0}; ///< Pixels of the picture for each unit, across and down.
    QSize m_originalSize;
    // Kept from frame to frame while the picture is turned: taking them anew costs as much as filling them.
    mutable QImage m_uprightBuffer;
    mutable QImage m_turnedBuffer;
    QString m_filePath;
    int m_nDrawMode = DrawStill;
    // The buffer outlives the movie that reads it.
    std::unique_ptr<QBuffer> m_pAnimationData;
    std::unique_ptr<QMovie> m_pAnimation;
    double m_fScale = 1.0;
    double m_fTurn = 0.0;
    bool m_bTurned = false;
    bool m_bFlipped = false;
};
