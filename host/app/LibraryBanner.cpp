#include "app/LibraryBanner.h"

#include "library/Library.h"
#include "theme/TSSkinSetting.h"

#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVariant>

LibraryBanner::LibraryBanner(Library *pLibrary, QWidget *pParent)
    : QWidget(pParent)
    , m_pLibrary(pLibrary)
    , m_pText(new QLabel(this))
    , m_pRetry(new QPushButton(tr("Try again"), this))
    , m_pStartNew(new QPushButton(tr("Start a new library"), this))
    , m_pDismiss(new QPushButton(tr("Go on without saving"), this))
{
    setObjectName(QStringLiteral("hostLibraryBanner"));
    setProperty("area", QStringLiteral("notice"));
    setAttribute(Qt::WA_StyledBackground);
    m_pText->setWordWrap(true);
    m_pText->setTextFormat(Qt::PlainText);
    m_pRetry->setObjectName(QStringLiteral("hostLibraryRetry"));
    m_pStartNew->setObjectName(QStringLiteral("hostLibraryStartNew"));
    m_pDismiss->setObjectName(QStringLiteral("hostLibraryDismiss"));
    m_pStartNew->setToolTip(tr("The present file is kept beside it under another name."));
    auto *pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(16, 8, 16, 8);
    pLayout->setSpacing(8);
    pLayout->addWidget(m_pText, 1);
    for (QPushButton *pButton : {m_pRetry, m_pStartNew, m_pDismiss}) {
        pButton->setFocusPolicy(Qt::TabFocus);
        pLayout->addWidget(pButton);
    }
    hide();
    connect(pLibrary, &Library::signalUnusable, this, &LibraryBanner::showFault);
    connect(m_pRetry, &QPushButton::clicked, this, [this] {
        hide();
        m_pLibrary->reopen(false);
    });
    connect(m_pStartNew, &QPushButton::clicked, this, [this] {
        hide();
        m_pLibrary->reopen(true);
    });
    connect(m_pDismiss, &QPushButton::clicked, this, &QWidget::hide);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &LibraryBanner::applyTheme);
    applyTheme();
}

void LibraryBanner::showFault(const QString &path, const QString &reason)
{
    m_pText->setText(tr("The library %1 cannot be used: %2. It is left as it is, and what you change now is not kept.")
                         .arg(QDir::toNativeSeparators(path), reason));
    // A library that another program works with must stay where it is.
    m_pStartNew->setVisible(!Library::isBusyReason(reason));
    show();
}

void LibraryBanner::applyTheme()
{
    TSSkinSetting::GetInstance()->SetWidgetStyleSheetWithQssName(this, QStringLiteral("host"));
}
