#include "common/TSCustomMenu.h"

#include "theme/TSSkinSetting.h"

TSCustomMenu::TSCustomMenu(QWidget *pParent)
    : QMenu(pParent)
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    TSSkinSetting::GetInstance()->SetWidgetStyleSheetWithQssName(this, QStringLiteral("menu"));
}
