#include "image/TSDBGraphicsScene.h"

#include <QGraphicsItem>
#include <QGraphicsSceneMouseEvent>
#include <QTransform>

TSDBGraphicsScene::TSDBGraphicsScene(QObject *pParent)
    : QGraphicsScene(pParent)
{
}

void TSDBGraphicsScene::forgetPress()
{
    m_bPressed = false;
    m_pDraggedItem = nullptr;
}

QGraphicsItem *TSDBGraphicsScene::draggedItem() const
{
    // The item may have been deleted while the button is held.
    return m_bPressed && items().contains(m_pDraggedItem) ? m_pDraggedItem : nullptr;
}

void TSDBGraphicsScene::mousePressEvent(QGraphicsSceneMouseEvent *pEvent)
{
    QGraphicsScene::mousePressEvent(pEvent);
    if (pEvent->button() != Qt::LeftButton)
        return;
    m_bPressed = true;
    m_pDraggedItem = itemAt(pEvent->scenePos(), QTransform());
    if (m_pDraggedItem != nullptr)
        m_offset = pEvent->scenePos() - m_pDraggedItem->pos();
}

void TSDBGraphicsScene::mouseMoveEvent(QGraphicsSceneMouseEvent *pEvent)
{
    QGraphicsScene::mouseMoveEvent(pEvent);
    if (!(pEvent->buttons() & Qt::LeftButton))
        return;
    if (QGraphicsItem *pItem = draggedItem())
        pItem->setPos(pEvent->scenePos() - m_offset);
}
