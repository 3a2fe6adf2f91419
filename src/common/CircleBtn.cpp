#include "common/CircleBtn.h"

#include "common/IconStyle.h"
#include "theme/TSSkinSetting.h"

#include <QStyleOptionButton>
#include <QStylePainter>

CircleBtn::CircleBtn(QWidget *pParent, int nWidth, int nHeight)
    : CPushButton(pParent)
{
    setFlat(true);
    setWindowFlag(Qt::WindowStaysOnTopHint);
    setFixedSize(nWidth, nHeight);
    raise();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &CircleBtn::applyIcons);
}

void CircleBtn::setIcons(const QString &normalIcon, const QString &selectedIcon)
{
    m_normalIcon = normalIcon;
    m_selectedIcon = selectedIcon;
    applyIcons();
}

void CircleBtn::setToolTipText(const QString &text)
{
    setToolTip(text);
    setAccessibleName(text);
}

void CircleBtn::paintEvent(QPaintEvent *pEvent)
{
    Q_UNUSED(pEvent)
    QStyleOptionButton option;
    initStyleOption(&option);
    // Switched off for the tenth of a second that an animation takes, the button under the mouse would blink.
    if (!isEnabled() && underMouse())
        option.state |= QStyle::State_Enabled | QStyle::State_MouseOver;
    QStylePainter painter(this);
    painter.drawControl(QStyle::CE_PushButton, option);
}

void CircleBtn::applyIcons()
{
    if (!m_normalIcon.isEmpty())
        setStyleSheet(IconStyle::previewButton(m_normalIcon, m_selectedIcon, size()));
}
