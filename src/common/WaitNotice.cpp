#include "common/WaitNotice.h"

#include "common/CNotificationFloatingWidget.h"
#include "theme/TSSkinSetting.h"

#include <QCoreApplication>

namespace {

constexpr int WarningTop = 20;

} // namespace

void WaitNotice::showWarning(QWidget *pParent, const QString &text)
{
    auto *pNotice = new CNotificationFloatingWidget(pParent);
    pNotice->setContent(QStringLiteral("remind_error_icon.svg"), text);
    pNotice->setTop(WarningTop);
    pNotice->setBackgroundColor(TSSkinSetting::GetInstance()->GetNotificationBackColor2());
    pNotice->show();
}

void WaitNotice::show(QWidget *pParent)
{
    showWarning(pParent, QCoreApplication::translate("WaitNotice", "Please wait for the file to finish loading!"));
}
