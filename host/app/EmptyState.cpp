#include "app/EmptyState.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QVariant>

EmptyState::EmptyState(QWidget *pParent)
    : QWidget(pParent)
    , m_pTitle(new QLabel(this))
    , m_pHint(new QLabel(this))
    , m_pButton(new QPushButton(tr("Open folder…"), this))
{
    setObjectName(QStringLiteral("hostEmptyState"));
    setAttribute(Qt::WA_StyledBackground);
    m_pTitle->setObjectName(QStringLiteral("hostEmptyTitle"));
    m_pHint->setObjectName(QStringLiteral("hostEmptyHint"));
    m_pTitle->setProperty("role", QStringLiteral("heading"));
    m_pHint->setProperty("role", QStringLiteral("secondary"));
    m_pButton->setDefault(true);
    m_pButton->setObjectName(QStringLiteral("hostPrimaryButton"));
    auto *pLayout = new QVBoxLayout(this);
    pLayout->setSpacing(12);
    pLayout->addStretch();
    for (QLabel *pLabel : {m_pTitle, m_pHint}) {
        pLabel->setAlignment(Qt::AlignHCenter);
        pLabel->setWordWrap(true);
        pLabel->setTextFormat(Qt::PlainText);
        pLayout->addWidget(pLabel);
    }
    pLayout->addSpacing(8);
    pLayout->addWidget(m_pButton, 0, Qt::AlignHCenter);
    pLayout->addStretch();
    connect(m_pButton, &QPushButton::clicked, this, &EmptyState::signalChooseFolder);
}

void EmptyState::showText(const QString &title, const QString &hint, bool bOfferFolder)
{
    m_pTitle->setText(title);
    m_pHint->setText(hint);
    m_pButton->setVisible(bOfferFolder);
    // Space and Enter do what is offered, and nothing elsewhere in the window.
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(bOfferFolder ? m_pButton : nullptr);
}
