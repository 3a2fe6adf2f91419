#include "app/HostIcons.h"

#include "theme/TSSkinSetting.h"

#include <QImageReader>
#include <QToolButton>

namespace {

QString pathOf(const QString &name)
{
    return TSSkinSetting::GetInstance()->GetResourceAbsolutePath(name);
}

} // namespace

QIcon HostIcons::icon(const QString &name)
{
    const QString path = pathOf(name);
    return path.isEmpty() ? QIcon() : QIcon(path);
}

void HostIcons::loadLibraries()
{
    const QString name = QStringLiteral("nav_logo.svg");
    icon(name).pixmap(1);
    QImageReader(pathOf(name)).canRead();
}

void HostIcons::setButtonIcon(QAbstractButton *pButton, const QString &name, const QString &fallbackText)
{
    const QIcon buttonIcon = icon(name);
    pButton->setIcon(buttonIcon);
    pButton->setText(buttonIcon.isNull() ? fallbackText : QString());
}

QToolButton *HostIcons::makeToolButton(const QString &objectName, const QString &toolTip, QWidget *pParent)
{
    constexpr int k_nSize = 26;
    constexpr int k_nIconSize = 16;
    auto *pButton = new QToolButton(pParent);
    pButton->setObjectName(objectName);
    pButton->setToolTip(toolTip);
    pButton->setAccessibleName(toolTip);
    pButton->setFixedSize(k_nSize, k_nSize);
    pButton->setIconSize(QSize(k_nIconSize, k_nIconSize));
    pButton->setAutoRaise(true);
    pButton->setFocusPolicy(Qt::TabFocus);
    return pButton;
}

QString HostIcons::windowButtonStyleSheet(const QString &action)
{
    const TSSkinSetting *pTheme = TSSkinSetting::GetInstance();
    const QString name = QStringLiteral("title_window_%1_%2.svg");
    return QStringLiteral(
               "QPushButton{border:0px;background:transparent;padding:0px;min-height:0px;%1}QPushButton:hover{%2}"
               "QPushButton:focus{border:1px solid %3;}")
        .arg(pTheme->GetResourcePath(name.arg(action, QStringLiteral("normal"))),
             pTheme->GetResourcePath(name.arg(action, QStringLiteral("hover"))),
             pTheme->GetCommonColor(0).name(QColor::HexArgb));
}
