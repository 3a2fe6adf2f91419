#include "image/NoteUndoNotice.h"

#include "common/CPushButton.h"
#include "theme/TSSkinSetting.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QTimer>

namespace {

constexpr int Duration = 8000;
constexpr int Height = 32;
constexpr int SideMargin = 16;
constexpr int Spacing = 12;
constexpr int Gap = 12;

} // namespace

NoteUndoNotice::NoteUndoNotice(QWidget *pParent)
    : QWidget(pParent)
    , m_pLabel(new QLabel(tr("Comment deleted"), this))
    , m_pUndoBtn(new CPushButton(this))
    , m_pTimer(new QTimer(this))
{
    setObjectName(QStringLiteral("noteUndoNotice"));
    setAttribute(Qt::WA_StyledBackground);
    setAttribute(Qt::WA_NoMousePropagation);
    m_pUndoBtn->setText(tr("Undo"));
    m_pUndoBtn->setToolTip(tr("Undo (Ctrl+Z)"));
    m_pUndoBtn->setCursor(Qt::PointingHandCursor);
    auto *pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(SideMargin, 0, SideMargin, 0);
    pLayout->setSpacing(Spacing);
    pLayout->addWidget(m_pLabel);
    pLayout->addWidget(m_pUndoBtn);
    m_pTimer->setSingleShot(true);
    m_pTimer->setInterval(Duration);
    connect(m_pTimer, &QTimer::timeout, this, &QWidget::hide);
    connect(m_pUndoBtn, &QPushButton::clicked, this, &NoteUndoNotice::signal_undo);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &NoteUndoNotice::applyStyle);
    applyStyle();
    hide();
}

void NoteUndoNotice::applyStyle()
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    setStyleSheet(
        QStringLiteral("#noteUndoNotice{background:%1;border:1px solid %2;border-radius:6px;}")
            .arg(pSkin->GetNotificationBackColor1().name(QColor::HexArgb), pSkin->GetPopupWinBorderColor().name()));
    m_pLabel->setStyleSheet(
        QStringLiteral("QLabel{background:transparent;color:%1;font-size:12px;}").arg(pSkin->GetTextColor(0).name()));
    m_pUndoBtn->setStyleSheet(
        QStringLiteral("QPushButton{background:transparent;border:none;color:%1;font-size:12px;font-weight:bold;}"
                       "QPushButton:hover{text-decoration:underline;}")
            .arg(pSkin->GetMainColor().name()));
}

void NoteUndoNotice::showAbove(int nBottom)
{
    setFixedSize(sizeHint().width(), Height);
    move((parentWidget()->width() - width()) / 2, nBottom - Height - Gap);
    show();
    raise();
    m_pTimer->start();
}
