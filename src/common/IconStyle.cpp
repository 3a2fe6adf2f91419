#include "common/IconStyle.h"

#include "theme/TSSkinSetting.h"

QString IconStyle::previewButton(const QString &normalIcon, const QString &selectedIcon, const QSize &size)
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    return QStringLiteral("QPushButton{background:transparent;border:none;%1}"
                          "QPushButton:hover,QPushButton:pressed,QPushButton:checked{%2}")
               .arg(pSkin->GetResourcePath(normalIcon), pSkin->GetResourcePath(selectedIcon)) +
           fixedButton(size) + toolTip();
}

QString IconStyle::windowButton(const QString &normalIcon, const QString &hoverIcon, const QSize &size)
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    return QStringLiteral("QPushButton{border:0px;background:transparent;%1}QPushButton:hover{%2}")
               .arg(pSkin->GetResourcePath(normalIcon), pSkin->GetResourcePath(hoverIcon)) +
           fixedButton(size) + toolTip();
}

QString IconStyle::fixedButton(const QSize &size)
{
    return QStringLiteral("QPushButton{padding:0px;margin:0px;min-width:%1px;max-width:%1px;min-height:%2px;"
                          "max-height:%2px;}")
        .arg(size.width())
        .arg(size.height());
}

QString IconStyle::toolTip()
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    return QStringLiteral("QToolTip{background-color:%1;color:%2;border:1px solid %3;padding:3px;font-size:12px;}")
        .arg(pSkin->GetPopupWinBackgroundColor().name(), pSkin->GetTextColor(0).name(),
             pSkin->GetPopupWinBorderColor().name());
}
