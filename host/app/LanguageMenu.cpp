#include "app/LanguageMenu.h"

#include <QAction>
#include <QActionGroup>
#include <QVariant>

LanguageMenu::LanguageMenu(QWidget *pParent)
    : QMenu(pParent)
    , m_pGroup(new QActionGroup(this))
{
    setObjectName(QStringLiteral("hostLanguageMenu"));
    const auto add = [this](const QString &name, const QString &code) {
        QAction *pAction = m_pGroup->addAction(addAction(name));
        pAction->setCheckable(true);
        pAction->setData(code);
    };
    add(tr("System"), QString());
    add(QStringLiteral("English"), QStringLiteral("en"));
    add(QStringLiteral("\u7b80\u4f53\u4e2d\u6587"), QStringLiteral("zh_CN"));
    connect(m_pGroup, &QActionGroup::triggered, this,
            [this](const QAction *pAction) { Q_EMIT signalChosen(pAction->data().toString()); });
}

void LanguageMenu::setChosen(const QString &code)
{
    for (QAction *pAction : m_pGroup->actions())
        pAction->setChecked(pAction->data().toString() == code);
}
