#pragma once

#include <QElapsedTimer>
#include <QGraphicsObject>
#include <QPixmap>

/**
 * The cover of the sound that plays, as a round picture that turns. It is stepped from outside, so that nothing runs
 * while nothing turns, and turns by the time that passed, so that a late step is not seen. A picture that a preview
 * left in its data is shown in place of its own.
 *
 * Owner: the scene it is placed in. Thread: GUI thread only.
 */
class CoverItem final : public QGraphicsObject {
    Q_OBJECT

public:
    /** Of the picture that fills the item, in its own coordinates. */
    static constexpr int kSide = 360;

    CoverItem();

    /** Any picture; its centred square is shown. */
    void setPicture(const QImage &picture);
    /** A drawn cover for a file of this suffix. */
    void setDefaultPicture(const QString &suffix);

    /** One step of the animation. */
    void step(bool bPlaying);

    /** Centres it in a rectangle of its scene, as large as looks well there. */
    void fitInto(const QRectF &rect);

    /** The centred square of a picture, at this size in pixels. */
    static QImage squareOf(const QImage &picture, int nSide);

    QRectF boundingRect() const override;
    void paint(QPainter *pPainter, const QStyleOptionGraphicsItem *pOption, QWidget *pWidget) override;

private:
    void setSquare(const QImage &square);
    static QPixmap discOf(const QImage &square);
    const QPixmap &discFromOutside();

    QPixmap m_disc;
    QPixmap m_outsideDisc; ///< Of the picture that a preview left in the item's data.
    qint64 m_nOutsideKey = 0;
    QElapsedTimer m_sinceStep;
    double m_fSpeed = 0.0; ///< Of full speed: it starts and ends gently.
};
