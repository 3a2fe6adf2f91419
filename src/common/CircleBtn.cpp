#include "common/CircleBtn.h"

#include "common/IconStyle.h"
#include "theme/TSSkinSetting.h"

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

void CircleBtn::applyIcons()
{
    if (!m_normalIcon.isEmpty())
        setStyleSheet(IconStyle::previewButton(m_normalIcon, m_selectedIcon));
}
