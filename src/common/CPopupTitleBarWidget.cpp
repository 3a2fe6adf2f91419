#include "common/CPopupTitleBarWidget.h"

#include "common/CPushButton.h"
#include "common/IconStyle.h"
#include "theme/TSSkinSetting.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QWindow>

namespace {

constexpr int IconSide = 16;
constexpr int CloseButtonSide = 16;
constexpr int Spacing = 6;

} // namespace

CPopupTitleBarWidget::CPopupTitleBarWidget(QWidget *pDialog, QWidget *pParent, bool bClosable, bool bMovable,
                                           bool bTitle, bool bIcon, int nMargin)
    : QWidget(pParent)
    , m_pDialog(pDialog)
    , m_bMovable(bMovable)
{
    auto *pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(2 * nMargin, nMargin, 2 * nMargin, nMargin);
    pLayout->setSpacing(Spacing);
    if (bIcon) {
        m_pIconLabel = new QLabel(this);
        m_pIconLabel->setPixmap(pDialog->windowIcon().pixmap(IconSide, IconSide));
        pLayout->addWidget(m_pIconLabel);
    }
    if (bTitle) {
        m_pTitleLabel = new QLabel(pDialog->windowTitle(), this);
        m_pTitleLabel->setTextFormat(Qt::PlainText);
        connect(pDialog, &QWidget::windowTitleChanged, m_pTitleLabel, &QLabel::setText);
        pLayout->addWidget(m_pTitleLabel);
    }
    pLayout->addStretch();
    if (bClosable) {
        m_pCloseBtn = new CPushButton(this);
        m_pCloseBtn->setObjectName(QStringLiteral("popwindCloseBtn"));
        m_pCloseBtn->setAccessibleName(tr("Close"));
        // The return key is not to press it.
        m_pCloseBtn->setAutoDefault(false);
        connect(m_pCloseBtn, &QPushButton::clicked, this, &CPopupTitleBarWidget::signalCloseBtnClicked);
        pLayout->addWidget(m_pCloseBtn);
    }
    applyStyle();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &CPopupTitleBarWidget::applyStyle);
}

void CPopupTitleBarWidget::applyStyle()
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    if (m_pTitleLabel != nullptr)
        m_pTitleLabel->setStyleSheet(QStringLiteral("background:transparent;color:") +
                                     pSkin->GetTextColor(0).name(QColor::HexArgb));
    if (m_pCloseBtn == nullptr)
        return;
    const QString icon = QStringLiteral("mainbody_close.svg");
    m_pCloseBtn->setStyleSheet(IconStyle::windowButton(icon, icon, QSize(CloseButtonSide, CloseButtonSide)) +
                               QStringLiteral("QPushButton:hover{border-radius:3px;background:") +
                               pSkin->GetInputAndButtonColor().name(QColor::HexArgb) + QStringLiteral(";}"));
}

void CPopupTitleBarWidget::setTitleVisible(bool bVisible)
{
    if (m_pTitleLabel != nullptr)
        m_pTitleLabel->setVisible(bVisible);
}

void CPopupTitleBarWidget::setCloseButtonVisible(bool bVisible)
{
    if (m_pCloseBtn != nullptr)
        m_pCloseBtn->setVisible(bVisible);
}

void CPopupTitleBarWidget::mousePressEvent(QMouseEvent *pEvent)
{
    QWindow *pWindow = m_pDialog->windowHandle();
    if (m_bMovable && pEvent->button() == Qt::LeftButton && pWindow != nullptr)
        pWindow->startSystemMove();
    else
        QWidget::mousePressEvent(pEvent);
}
