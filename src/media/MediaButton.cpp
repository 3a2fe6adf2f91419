#include "media/MediaButton.h"

#include "media/MediaStyle.h"
#include "theme/TSSkinSetting.h"

#include <QHelpEvent>
#include <QToolTip>

MediaButton::MediaButton(const QSize &size, QWidget *pParent)
    : CPushButton(pParent)
{
    setFlat(true);
    setFixedSize(size);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &MediaButton::applyIcon);
}

void MediaButton::showIcon(const QString &iconName)
{
    // Said again at every look at the player: a style sheet is not free.
    if (iconName == m_iconName)
        return;
    m_iconName = iconName;
    applyIcon();
}

void MediaButton::applyIcon()
{
    setStyleSheet(MediaStyle::icon(m_iconName));
}

bool MediaButton::event(QEvent *pEvent)
{
    if (pEvent->type() != QEvent::ToolTip || toolTip().isEmpty())
        return CPushButton::event(pEvent);
    // For the parent: a tip of the button itself would wear the button's icon.
    QToolTip::showText(static_cast<QHelpEvent *>(pEvent)->globalPos(), toolTip(), parentWidget());
    return true;
}
