#pragma once

#include <QGraphicsScene>
#include <QPointF>

/** The scene of picture and page views: the left button drags the picture. */
class TSDBGraphicsScene : public QGraphicsScene {
    Q_OBJECT

public:
    explicit TSDBGraphicsScene(QObject *pParent = nullptr);

    /** Ends a drag: the press and the dragged item are forgotten. */
    void forgetPress();

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent *pEvent) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent *pEvent) override;

private:
    QGraphicsItem *draggedItem() const;

    bool m_bPressed = false;
    QGraphicsItem *m_pDraggedItem = nullptr;
    QPointF m_offset;
};
