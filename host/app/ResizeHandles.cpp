#include "app/ResizeHandles.h"

#include <QEvent>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

#include <utility>

namespace {

constexpr int k_nEdge = 4;
constexpr int k_nCorner = 12;

class ResizeHandle : public QWidget {
public:
    ResizeHandle(Qt::Edges edges, Qt::CursorShape cursor, QWidget *pWindow)
        : QWidget(pWindow)
        , m_edges(edges)
    {
        setCursor(cursor);
    }

    Qt::Edges edges() const { return m_edges; }

protected:
    void mousePressEvent(QMouseEvent *pEvent) override
    {
        if (pEvent->button() != Qt::LeftButton)
            return;
        m_startGeometry = window()->geometry();
        m_startPosition = pEvent->globalPos();
        m_bOwnResize = !window()->windowHandle()->startSystemResize(m_edges);
    }

    void mouseMoveEvent(QMouseEvent *pEvent) override
    {
        if (!m_bOwnResize)
            return;
        const QPoint offset = pEvent->globalPos() - m_startPosition;
        const QSize least = window()->minimumSize().expandedTo(window()->minimumSizeHint());
        QRect geometry = m_startGeometry;
        if (m_edges.testFlag(Qt::LeftEdge))
            geometry.setLeft(qMin(geometry.left() + offset.x(), geometry.right() + 1 - least.width()));
        if (m_edges.testFlag(Qt::RightEdge))
            geometry.setRight(qMax(geometry.right() + offset.x(), geometry.left() - 1 + least.width()));
        if (m_edges.testFlag(Qt::TopEdge))
            geometry.setTop(qMin(geometry.top() + offset.y(), geometry.bottom() + 1 - least.height()));
        if (m_edges.testFlag(Qt::BottomEdge))
            geometry.setBottom(qMax(geometry.bottom() + offset.y(), geometry.top() - 1 + least.height()));
        window()->setGeometry(geometry);
    }

    void mouseReleaseEvent(QMouseEvent * /*pEvent*/) override { m_bOwnResize = false; }

private:
    const Qt::Edges m_edges;
    QRect m_startGeometry;
    QPoint m_startPosition;
    bool m_bOwnResize = false;
};

const std::pair<Qt::Edges, Qt::CursorShape> k_places[] = {
    {Qt::LeftEdge, Qt::SizeHorCursor},
    {Qt::RightEdge, Qt::SizeHorCursor},
    {Qt::TopEdge, Qt::SizeVerCursor},
    {Qt::BottomEdge, Qt::SizeVerCursor},
    {Qt::TopEdge | Qt::LeftEdge, Qt::SizeFDiagCursor},
    {Qt::BottomEdge | Qt::RightEdge, Qt::SizeFDiagCursor},
    {Qt::TopEdge | Qt::RightEdge, Qt::SizeBDiagCursor},
    {Qt::BottomEdge | Qt::LeftEdge, Qt::SizeBDiagCursor},
};

QRect handleGeometry(Qt::Edges edges, const QSize &window)
{
    const bool bCorner = (edges & (Qt::LeftEdge | Qt::RightEdge)) && (edges & (Qt::TopEdge | Qt::BottomEdge));
    QRect area(QPoint(0, 0), window);
    const int nAcross = bCorner ? k_nCorner : k_nEdge;
    if (edges.testFlag(Qt::LeftEdge))
        area.setWidth(nAcross);
    if (edges.testFlag(Qt::RightEdge))
        area.setLeft(window.width() - nAcross);
    if (edges.testFlag(Qt::TopEdge))
        area.setHeight(bCorner ? k_nEdge : nAcross);
    if (edges.testFlag(Qt::BottomEdge))
        area.setTop(window.height() - (bCorner ? k_nEdge : nAcross));
    return area;
}

} // namespace

ResizeHandles::ResizeHandles(QWidget *pWindow)
    : QObject(pWindow)
    , m_pWindow(pWindow)
{
    for (const auto &entry : k_places)
        m_handles.append(new ResizeHandle(entry.first, entry.second, pWindow));
    pWindow->installEventFilter(this);
    place();
}

bool ResizeHandles::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    const bool bPlace = pEvent->type() == QEvent::Resize || pEvent->type() == QEvent::WindowStateChange ||
                        pEvent->type() == QEvent::Show;
    if (pWatched == m_pWindow && bPlace)
        place();
    return QObject::eventFilter(pWatched, pEvent);
}

void ResizeHandles::place()
{
    const bool bResizable = !(m_pWindow->windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen));
    for (QWidget *pHandle : qAsConst(m_handles)) {
        pHandle->setGeometry(handleGeometry(static_cast<ResizeHandle *>(pHandle)->edges(), m_pWindow->size()));
        pHandle->setVisible(bResizable);
        pHandle->raise();
    }
}
