#include "common/CPopupDialog.h"

#include "common/CPopupTitleBarWidget.h"
#include "theme/TSSkinSetting.h"

#include <QGridLayout>
#include <QIcon>
#include <QVBoxLayout>

namespace {

constexpr int TitleBarMargin = 4;

} // namespace

CPopupDialog::CPopupDialog(QWidget *pParent, bool bClosable, bool bMovable, bool bTitle, bool bDeleteOnClose,
                           bool bIcon)
    : QDialog(pParent, Qt::FramelessWindowHint)
{
    setAttribute(Qt::WA_DeleteOnClose, bDeleteOnClose);
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowIcon(QIcon(TSSkinSetting::GetInstance()->GetResourceAbsolutePath(QStringLiteral("nav_logo.svg"))));

    m_pMainPanel = new QWidget(this);
    m_pMainPanel->setObjectName(QStringLiteral("wid_main"));
    auto *pMainLayout = new QGridLayout(this);
    pMainLayout->setObjectName(QStringLiteral("main_layout"));
    pMainLayout->setSpacing(0);
    pMainLayout->setContentsMargins(0, 0, 0, 0);
    pMainLayout->addWidget(m_pMainPanel);

    auto *pPanelLayout = new QVBoxLayout(m_pMainPanel);
    m_pTitleBar = new CPopupTitleBarWidget(this, m_pMainPanel, bClosable, bMovable, bTitle, bIcon, TitleBarMargin);
    m_pTitleBar->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    if (bClosable)
        connect(m_pTitleBar, &CPopupTitleBarWidget::signalCloseBtnClicked, this, &CPopupDialog::slotCloseBtnClicked);
    pPanelLayout->addWidget(m_pTitleBar);
    pPanelLayout->setSpacing(0);
    pPanelLayout->addStretch();
    pPanelLayout->setContentsMargins(0, 0, 0, 0);
    m_pContentLayout = new QVBoxLayout;
    pPanelLayout->addLayout(m_pContentLayout);
    pPanelLayout->addStretch();
    applyStyle();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &CPopupDialog::applyStyle);
}

void CPopupDialog::applyStyle()
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    m_pMainPanel->setStyleSheet(QStringLiteral("#wid_main{background-color:") +
                                pSkin->GetPopupWinBackgroundColor().name(QColor::HexArgb) +
                                QStringLiteral(";border-radius:8px;border:1px solid; border-color:") +
                                pSkin->GetPopupWinBorderColor().name(QColor::HexArgb) + QStringLiteral(";}"));
}

void CPopupDialog::showPopup()
{
    open();
}

void CPopupDialog::setTitleBarHeight(int nHeight)
{
    m_pTitleBar->setFixedHeight(nHeight);
}

void CPopupDialog::setTitleVisible(bool bVisible)
{
    m_pTitleBar->setTitleVisible(bVisible);
}

void CPopupDialog::setCloseButtonVisible(bool bVisible)
{
    m_pTitleBar->setCloseButtonVisible(bVisible);
}

void CPopupDialog::slotCloseBtnClicked(bool val)
{
    Q_UNUSED(val)
    close();
}
