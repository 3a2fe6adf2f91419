#include "image/NoteInfoShowWidget.h"

#include "image/NoteInfoEditWidget.h"
#include "image/NoteText.h"
#include "theme/TSSkinSetting.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace {

constexpr int Margin = 10;
constexpr int Spacing = 8;
constexpr int TextWidth = 161;
constexpr int LargestTextHeight = 160;
constexpr int ScrollBarWidth = 4;
constexpr int ButtonWidth = 70;
constexpr int ButtonHeight = 22;

} // namespace

NoteInfoShowWidget::NoteInfoShowWidget(QWidget *pParent)
    : QWidget(pParent)
    , m_pTitle(new QLabel(this))
    , m_pSize(new QLabel(this))
    , m_pText(new QLabel)
    , m_pTextArea(new QScrollArea(this))
    , m_pDeleteBtn(makeButton(tr("Delete")))
    , m_pModifyBtn(makeButton(tr("Modify")))
{
    // What users wrote is never taken for markup.
    m_pText->setTextFormat(Qt::PlainText);
    m_pText->setWordWrap(true);
    m_pText->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_pTextArea->setWidget(m_pText);
    m_pTextArea->setFrameShape(QFrame::NoFrame);
    m_pTextArea->setFocusPolicy(Qt::NoFocus);
    m_pTextArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(m_pDeleteBtn, &QPushButton::clicked, this, &NoteInfoShowWidget::signal_DelBtnClicked);
    connect(m_pModifyBtn, &QPushButton::clicked, this, &NoteInfoShowWidget::signal_EditBtnClicked);
    buildLayout();
    applyStyle();
}

QPushButton *NoteInfoShowWidget::makeButton(const QString &text)
{
    auto *pButton = new QPushButton(text, this);
    pButton->setFixedSize(ButtonWidth, ButtonHeight);
    pButton->setAutoDefault(false);
    pButton->setCursor(Qt::PointingHandCursor);
    return pButton;
}

void NoteInfoShowWidget::buildLayout()
{
    auto *pHeader = new QHBoxLayout;
    pHeader->addWidget(m_pTitle);
    pHeader->addStretch();
    pHeader->addWidget(m_pSize);
    auto *pRow = new QHBoxLayout;
    pRow->addWidget(m_pDeleteBtn);
    pRow->addStretch();
    pRow->addWidget(m_pModifyBtn);
    auto *pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(Margin, Margin, Margin, Margin);
    pLayout->setSpacing(Spacing);
    pLayout->addLayout(pHeader);
    pLayout->addWidget(m_pTextArea);
    pLayout->addLayout(pRow);
}

void NoteInfoShowWidget::applyStyle()
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    const QColor background(QStringLiteral("#E9EDF6"));
    const QString label = QStringLiteral("QLabel{background:transparent;color:%2;font-size:12px;}");
    m_pTitle->setStyleSheet(label.arg(pSkin->GetTextColor(0).name()));
    m_pSize->setStyleSheet(label.arg(pSkin->GetTextColor(1).name()));
    m_pText->setStyleSheet(label.arg(pSkin->GetTextColor(0).name()));
    m_pTextArea->setStyleSheet(QStringLiteral("QScrollArea{background:transparent;}"));
    m_pTextArea->viewport()->setAutoFillBackground(false);
    m_pTextArea->verticalScrollBar()->setStyleSheet(
        QStringLiteral("QScrollBar:vertical {background:transparent;width:4px;}"
                       "QScrollBar::handle:vertical {border-radius:2px;min-height:30px;background:%1;}"
                       "QScrollBar::add-line:vertical,QScrollBar::sub-line:vertical {height:0px;}")
            .arg(pSkin->GetTreeScrollHandleColor().name(QColor::HexArgb)));
    const QString button =
        QStringLiteral("QPushButton{background:%1;border:none;border-radius:11px;font-size:12px;color:%2;}")
            .arg(background.name(), NoteText::contrast(background).name()) +
        QStringLiteral("QPushButton:hover,QPushButton:focus{background:%1;color:%2;}")
            .arg(pSkin->GetMainColor().name(), NoteText::contrast(pSkin->GetMainColor()).name());
    m_pDeleteBtn->setStyleSheet(button);
    m_pModifyBtn->setStyleSheet(button);
}

void NoteInfoShowWidget::setNote(const NoteDescription &note)
{
    m_pTitle->setText(tr("Comment %1").arg(note.nNumber));
    m_pSize->setText(QStringLiteral("%1 × %2").arg(note.size.width()).arg(note.size.height()));
    m_pText->setText(NoteText::forDisplay(note.text));
    int nHeight = m_pText->heightForWidth(TextWidth);
    const bool bScrolls = nHeight > LargestTextHeight;
    const int nWidth = bScrolls ? TextWidth - ScrollBarWidth : TextWidth;
    nHeight = m_pText->heightForWidth(nWidth);
    m_pText->setFixedSize(nWidth, nHeight);
    m_pTextArea->setFixedSize(TextWidth, qMin(nHeight, LargestTextHeight));
    m_pTextArea->setVerticalScrollBarPolicy(bScrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    m_pTextArea->verticalScrollBar()->setValue(0);
}
