#include "media/SoundControl.h"

#include "media/MediaButton.h"
#include "media/SoundControlWin.h"

#include <QCursor>
#include <QEvent>

namespace {

constexpr int UsualVolume = 50;

} // namespace

SoundControl::SoundControl(MediaButton *pButton, QWidget *pBar)
    : QObject(pBar)
    , m_pButton(pButton)
    , m_pBar(pBar)
    , m_pWindow(new SoundControlWin(pBar))
{
    m_pWindow->hide();
    m_pButton->setAttribute(Qt::WA_Hover);
    m_pButton->setAccessibleName(tr("Mute or unmute"));
    const auto widgets = {pBar, static_cast<QWidget *>(m_pWindow), static_cast<QWidget *>(m_pButton)};
    for (QWidget *pWidget : widgets)
        pWidget->setMouseTracking(true);
    showAudible(true);
    pBar->installEventFilter(this);
    // Last: the bar hands events on to an object that is complete.
    m_pButton->installEventFilter(pBar);
    m_pWindow->installEventFilter(pBar);
}

int SoundControl::volume() const
{
    return m_pWindow->soundValue();
}

void SoundControl::showVolume(int nPercent)
{
    // Silence that somebody else chose must have a way back here as well.
    if (nPercent == 0 && m_nSavedVolume == 0)
        m_nSavedVolume = volume() != 0 ? volume() : UsualVolume;
    m_pWindow->showSoundValue(nPercent);
    showAudible(nPercent != 0);
}

void SoundControl::showAudible(bool bAudible)
{
    m_bMuted = !bAudible;
    m_pButton->showIcon(bAudible ? QStringLiteral("preview_voice.svg") : QStringLiteral("preview_mute.svg"));
}

void SoundControl::toggleMute()
{
    // The bar hears of the new volume and shows it.
    if (m_bMuted) {
        m_pWindow->setSoundValue(m_nSavedVolume);
    } else {
        m_nSavedVolume = m_pWindow->soundValue();
        m_pWindow->setSoundValue(0);
    }
}

void SoundControl::showOver(const QPoint &buttonPosition)
{
    const QPoint button = m_pBar->mapToGlobal(buttonPosition);
    m_pWindow->move(button.x() - (m_pWindow->width() - m_pButton->width()) / 2, button.y() - m_pWindow->height());
    m_pWindow->show();
}

void SoundControl::showAtButton()
{
    showOver(m_pButton->pos());
}

bool SoundControl::filterEvent(const QObject *pWatched, const QEvent *pEvent)
{
    const QEvent::Type type = pEvent->type();
    if (pWatched == m_pButton) {
        if (type == QEvent::HoverEnter && !m_pWindow->isVisible())
            showAtButton();
        else if (type == QEvent::HoverLeave)
            leaveButton();
        return type == QEvent::HoverEnter || type == QEvent::HoverLeave;
    }
    if (pWatched != m_pWindow)
        return false;
    if (type == QEvent::Leave)
        leaveWindow();
    return type == QEvent::MouseButtonPress || type == QEvent::Enter;
}

void SoundControl::leaveButton()
{
    if (!m_pWindow->isVisible())
        return;
    // The pop-up touches the button: the mouse that goes up to it is in it, or on its very edge.
    if (m_pWindow->geometry().adjusted(-1, -1, 1, 1).contains(QCursor::pos()))
        showAtButton();
    else
        m_pWindow->hide();
}

void SoundControl::leaveWindow()
{
    if (!m_pButton->isVisible())
        return;
    const QWidget *pOuter = m_pBar->parentWidget() != nullptr ? m_pBar->parentWidget() : m_pBar;
    const QPoint corner(m_pWindow->x(), m_pButton->y() - m_pWindow->height());
    if (QRect(pOuter->mapToGlobal(corner), m_pWindow->size()).contains(QCursor::pos()))
        showAtButton();
    else
        m_pWindow->hide();
}

bool SoundControl::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    // A window of its own, it would stay behind when the bar goes.
    if (pEvent->type() == QEvent::Hide)
        m_pWindow->hide();
    return QObject::eventFilter(pWatched, pEvent);
}
