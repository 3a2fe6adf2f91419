#include "app/FullPreviewPlace.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QStackedWidget>

namespace {

/** As near to the right edge the preview offers its handle. */
constexpr int k_nEdgeWidth = 12;
/** A panel that went and came back with every step would flicker. */
constexpr int k_nForbiddenAfterMsec = 250;

} // namespace

FullPreviewPlace::FullPreviewPlace(QStackedWidget *pCenter, QWidget *pPanel, const QVector<QWidget *> &makingRoom,
                                   QObject *pParent)
    : QObject(pParent)
    , m_pCenter(pCenter)
    , m_pPanel(pPanel)
    , m_makingRoom(makingRoom)
{
    m_forbidTimer.setSingleShot(true);
    connect(&m_forbidTimer, &QTimer::timeout, this, [this] {
        m_bPanelForbidden = true;
        showPanel();
    });
    showPanel();
}

void FullPreviewPlace::enter(IPreviewDbClickWidget *pPreview, bool bPanelHidden)
{
    m_pPreview = pPreview;
    m_leastWindow = m_pCenter->window()->minimumSize();
    m_bPanelHidden = bPanelHidden;
    m_bPanelForbidden = false;
    m_hidden.clear();
    for (QWidget *pPart : m_makingRoom) {
        if (pPart->isHidden())
            continue;
        m_hidden.append(pPart);
        pPart->hide();
    }
    connect(pPreview, &IPreviewDbClickWidget::signalHideRightView, this, [this] {
        m_bPanelHidden = !m_bPanelHidden;
        showPanel(true);
        Q_EMIT signalPanelHidden(m_bPanelHidden);
    });
    connect(pPreview, &IPreviewDbClickWidget::signalRightViewIsForbidden, this, [this](bool bForbidden) {
        if (bForbidden) {
            m_forbidTimer.start(k_nForbiddenAfterMsec);
            return;
        }
        m_forbidTimer.stop();
        m_bPanelForbidden = false;
        showPanel();
    });
    showPanel();
    // Hidden with its owner the focus would wander on, to the name of the file of all places.
    if (QWidget *pFocus = QApplication::focusWidget())
        pFocus->clearFocus();
    QWidget *pWidget = pPreview->previewWidget();
    m_pCenter->addWidget(pWidget);
    m_pCenter->setCurrentWidget(pWidget);
    keepPreviewWhole();
    if (QApplication::focusWidget() == nullptr)
        pWidget->setFocus();
    qApp->installEventFilter(this);
}

void FullPreviewPlace::leave()
{
    qApp->removeEventFilter(this);
    m_forbidTimer.stop();
    if (m_pPreview != nullptr) {
        m_pPreview->disconnect(this);
        m_pCenter->removeWidget(m_pPreview->previewWidget());
        m_pPreview->previewWidget()->hide();
    }
    m_pPreview.clear();
    m_pCenter->setCurrentIndex(0);
    m_pCenter->setMinimumSize(0, 0);
    if (m_leastWindow.isValid())
        m_pCenter->window()->setMinimumSize(m_leastWindow);
    m_leastWindow = QSize();
    for (const QPointer<QWidget> &pPart : qAsConst(m_hidden)) {
        if (pPart != nullptr)
            pPart->show();
    }
    m_hidden.clear();
    showPanel();
}

void FullPreviewPlace::setPanelWanted(bool bWanted)
{
    m_bPanelWanted = bWanted;
    showPanel();
}

void FullPreviewPlace::showPanel(bool bAskedFor)
{
    if (!isOpen()) {
        m_pPanel->setVisible(m_bPanelWanted);
        return;
    }
    const int nNeeded = m_pPreview->previewWidget()->minimumSizeHint().width() +
                        m_pPanel->minimumSizeHint().expandedTo(m_pPanel->minimumSize()).width();
    const bool bRoom = bAskedFor || m_pPanel->window()->width() >= nNeeded;
    m_pPanel->setVisible(bRoom && !m_bPanelHidden && !m_bPanelForbidden);
    keepPreviewWhole();
}

void FullPreviewPlace::keepPreviewWhole()
{
    QWidget *pWindow = m_pCenter->window();
    // What the preview asks for by itself is less than its parts need.
    m_pCenter->setMinimumSize(m_pPreview->previewWidget()->minimumSizeHint().expandedTo(QSize(0, 0)));
    const QSize least = m_leastWindow.expandedTo(pWindow->minimumSizeHint());
    pWindow->setMinimumSize(least.boundedTo(pWindow->screen()->availableSize()));
}

bool FullPreviewPlace::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    if (pEvent->type() == QEvent::Resize && m_pPreview != nullptr && pWatched == m_pCenter->window())
        showPanel(); // there may be room for it now
    if (pEvent->type() == QEvent::MouseMove && m_pPreview != nullptr && pWatched->isWidgetType()) {
        const QWidget *pWidget = m_pPreview->previewWidget();
        const QPoint place = pWidget->mapFromGlobal(static_cast<QMouseEvent *>(pEvent)->globalPos());
        const bool bNear = pWidget->rect().contains(place) && place.x() >= pWidget->width() - k_nEdgeWidth;
        // Once for each approach: the preview's timer does the rest.
        if (bNear && !m_bNearEdge)
            Q_EMIT m_pPreview->signalStartSideTimer();
        m_bNearEdge = bNear;
    }
    return QObject::eventFilter(pWatched, pEvent);
}
