#include "image/NoteInfoEditWidget.h"

#include "image/CColorPntBtn.h"
#include "image/NoteText.h"
#include "theme/TSSkinSetting.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QTextDocument>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {

constexpr int Margin = 10;
constexpr int Spacing = 8;
constexpr int TextWidth = 161;
constexpr int TextHeight = 54;
constexpr int SaveWidth = 70;
constexpr int SaveHeight = 22;
constexpr int ColorSize = 6;

struct ColorChoice {
    QColor color;
    const char *pName;
};

QVector<ColorChoice> colorChoices()
{
    return {{Qt::blue, QT_TRANSLATE_NOOP("NoteInfoEditWidget", "Blue")},
            {QColor(QStringLiteral("#FA6400")), QT_TRANSLATE_NOOP("NoteInfoEditWidget", "Orange")},
            {Qt::cyan, QT_TRANSLATE_NOOP("NoteInfoEditWidget", "Cyan")},
            {Qt::yellow, QT_TRANSLATE_NOOP("NoteInfoEditWidget", "Yellow")}};
}

} // namespace

NoteInfoEditWidget::NoteInfoEditWidget(QWidget *pParent)
    : QWidget(pParent)
    , m_pTitle(new QLabel(this))
    , m_pSize(new QLabel(this))
    , m_pTextEdit(new QTextEdit(this))
    , m_pSaveBtn(new QPushButton(tr("Save"), this))
{
    m_pTextEdit->setAcceptRichText(false);
    m_pTextEdit->setTabChangesFocus(true);
    m_pTextEdit->setFixedSize(TextWidth, TextHeight);
    m_pTextEdit->setFrameShape(QFrame::NoFrame);
    m_pTextEdit->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_pTextEdit->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    m_pTextEdit->setPlaceholderText(tr("Please insert comments."));
    m_pTextEdit->setAccessibleName(tr("Comment"));
    m_pTextEdit->installEventFilter(this);
    const QVector<ColorChoice> choices = colorChoices();
    for (const ColorChoice &choice : choices) {
        auto *pButton = new CColorPntBtn(ColorSize, choice.color, this);
        pButton->setToolTip(tr(choice.pName));
        pButton->setAccessibleName(tr(choice.pName));
        connect(pButton, &CColorPntBtn::signal_ColorBtnClicked, this, &NoteInfoEditWidget::slot_ColorBtnClicked);
        m_colorBtns.append(pButton);
    }
    m_pSaveBtn->raise(); // behind the colours in the order of Tab
    m_pSaveBtn->setFixedSize(SaveWidth, SaveHeight);
    m_pSaveBtn->setAutoDefault(false);
    m_pSaveBtn->setToolTip(tr("Save (Ctrl+Enter)"));
    m_pSaveBtn->setCursor(Qt::PointingHandCursor);
    connect(m_pSaveBtn, &QPushButton::clicked, this, &NoteInfoEditWidget::signal_OKBtnClicked);
    connect(m_pTextEdit, &QTextEdit::textChanged, this, &NoteInfoEditWidget::slot_textEditChanged);
    buildLayout();
    applyStyle();
    slot_textEditChanged();
}

void NoteInfoEditWidget::buildLayout()
{
    auto *pHeader = new QHBoxLayout;
    pHeader->addWidget(m_pTitle);
    pHeader->addStretch();
    pHeader->addWidget(m_pSize);
    auto *pRow = new QHBoxLayout;
    pRow->setSpacing(0);
    for (CColorPntBtn *pButton : qAsConst(m_colorBtns))
        pRow->addWidget(pButton);
    pRow->addStretch();
    pRow->addWidget(m_pSaveBtn);
    auto *pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(Margin, Margin, Margin, Margin);
    pLayout->setSpacing(Spacing);
    pLayout->addLayout(pHeader);
    pLayout->addWidget(m_pTextEdit);
    pLayout->addLayout(pRow);
}

void NoteInfoEditWidget::applyStyle()
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    const QString label = QStringLiteral("QLabel{background:transparent;color:%1;font-size:12px;}");
    m_pTitle->setStyleSheet(label.arg(pSkin->GetTextColor(0).name()));
    m_pSize->setStyleSheet(label.arg(pSkin->GetTextColor(1).name()));
    m_pTextEdit->setStyleSheet(
        QStringLiteral("QTextEdit{background:%1;border:1px;border-color:%2;color:%3;font-size:12px;border-radius:4px;}")
            .arg(pSkin->GetInputAndButtonColor().name(), pSkin->GetPopupWinBorderColor().name(),
                 pSkin->GetTextColor(0).name()));
    m_pTextEdit->verticalScrollBar()->setStyleSheet(
        QStringLiteral("QScrollBar:vertical {background:transparent;width:4px;}"
                       "QScrollBar::handle:vertical {border-radius:2px;min-height:30px;background:%1;}"
                       "QScrollBar::add-line:vertical,QScrollBar::sub-line:vertical {height:0px;}")
            .arg(pSkin->GetTreeScrollHandleColor().name(QColor::HexArgb)));
    QPalette colors = m_pTextEdit->palette();
    colors.setColor(QPalette::PlaceholderText, pSkin->GetTextColor(1));
    m_pTextEdit->setPalette(colors);
    const QColor background(QStringLiteral("#FA6400"));
    m_pSaveBtn->setStyleSheet(
        QStringLiteral("QPushButton{background:%1;border-radius:11px;font-size:12px;color:%2;}")
            .arg(background.name(), NoteText::contrast(background).name()) +
        QStringLiteral(
            "QPushButton:hover,QPushButton:focus{background:%1;}QPushButton:disabled{background:%2;color:%3;}")
            .arg(background.lighter(115).name(), pSkin->GetInputAndButtonColor().name(),
                 pSkin->GetTextColor(2).name()));
}

void NoteInfoEditWidget::setNote(const NoteDescription &note)
{
    m_pTitle->setText(tr("Comment %1").arg(note.nNumber));
    m_pSize->setText(QStringLiteral("%1 × %2").arg(note.size.width()).arg(note.size.height()));
    m_originalText = note.text;
    m_pTextEdit->setPlainText(note.text);
    m_pTextEdit->document()->setModified(false);
    m_pTextEdit->moveCursor(QTextCursor::End);
    for (CColorPntBtn *pButton : qAsConst(m_colorBtns))
        pButton->setChecked(pButton->color() == note.color);
}

QString NoteInfoEditWidget::text() const
{
    // The box turns some characters into others; a text that nobody touched keeps them.
    return isTextModified() ? m_pTextEdit->toPlainText() : m_originalText;
}

bool NoteInfoEditWidget::isTextModified() const
{
    return m_pTextEdit->document()->isModified();
}

bool NoteInfoEditWidget::canSave() const
{
    return m_pSaveBtn->isEnabled();
}

void NoteInfoEditWidget::focusText()
{
    m_pTextEdit->setFocus();
}

void NoteInfoEditWidget::slot_textEditChanged()
{
    // Looking for a character that shows is quick also in a text of a hundred thousand.
    m_pSaveBtn->setEnabled(m_pTextEdit->document()->characterCount() > 1 &&
                           !m_pTextEdit->toPlainText().trimmed().isEmpty());
}

void NoteInfoEditWidget::slot_ColorBtnClicked(QColor color)
{
    for (CColorPntBtn *pButton : qAsConst(m_colorBtns))
        pButton->setChecked(pButton->color() == color);
    Q_EMIT signal_changeRegionColor(color);
}

bool NoteInfoEditWidget::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    if (pEvent->type() == QEvent::FocusIn || pEvent->type() == QEvent::FocusOut)
        update();
    if (pEvent->type() == QEvent::KeyPress) {
        const auto *pKey = static_cast<QKeyEvent *>(pEvent);
        const bool bEnter = pKey->key() == Qt::Key_Return || pKey->key() == Qt::Key_Enter;
        // Saves; the box would break the line.
        if (bEnter && pKey->modifiers().testFlag(Qt::ControlModifier)) {
            Q_EMIT signal_OKBtnClicked();
            return true;
        }
    }
    return QWidget::eventFilter(pWatched, pEvent);
}

void NoteInfoEditWidget::paintEvent(QPaintEvent *pEvent)
{
    Q_UNUSED(pEvent)
    if (!m_pTextEdit->hasFocus())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(TSSkinSetting::GetInstance()->GetMainColor(), 1.0));
    painter.drawRoundedRect(QRectF(m_pTextEdit->geometry()).adjusted(-1.5, -1.5, 1.5, 1.5), 5.0, 5.0);
}
