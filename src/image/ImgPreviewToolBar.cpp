#include "image/ImgPreviewToolBar.h"

#include "common/CircleBtn.h"
#include "common/CircleNumToolTip.h"
#include "common/IconStyle.h"
#include "interfaces/services/IShortcutSetting.h"
#include "plugin/PluginInnerData.h"
#include "theme/TSSkinSetting.h"

#include <QHBoxLayout>
#include <QLabel>

namespace {

constexpr int ButtonSide = 26;
constexpr int EndSpacing = 20;
constexpr int ButtonSpacing = 10;
constexpr int ZoomSpacing = 5;
constexpr int PercentWidth = 44;
constexpr int PercentHeight = 16;
constexpr int BadgeRight = 15;
constexpr int BadgeAbove = 7;
constexpr double BarOpacity = 0.86;

struct ButtonRow {
    const char *pNormalIcon;
    const char *pSelectedIcon;
    const char *pLabel;
    const char *pLabelWithKey; ///< Null for a button without a shortcut.
    int nShortcutId;
};

const ButtonRow ButtonRows[ImgPreviewToolBar::ButtonCount] = {
    {"preview_whole_normal.svg", "preview_whole_select.svg", QT_TRANSLATE_NOOP("ImgPreviewToolBar", "Fit to Window"),
     QT_TRANSLATE_NOOP("ImgPreviewToolBar", "Fit to Window("), IShortcutSetting::FitToWindow},
    {"preview_adapt_normal.svg", "preview_adapt_select.svg", QT_TRANSLATE_NOOP("ImgPreviewToolBar", "Fit to Width"),
     QT_TRANSLATE_NOOP("ImgPreviewToolBar", "Fit to Width("), IShortcutSetting::FitToWidth},
    {"preview_actual_normal.svg", "preview_actual_select.svg", QT_TRANSLATE_NOOP("ImgPreviewToolBar", "Actual Size"),
     QT_TRANSLATE_NOOP("ImgPreviewToolBar", "Actual Size("), IShortcutSetting::ActualSize},
    {"preview_rotate_normal.svg", "preview_rotate_select.svg", QT_TRANSLATE_NOOP("ImgPreviewToolBar", "Rotate"),
     nullptr, 0},
    {"preview_flip_normal.svg", "preview_flip_select.svg", QT_TRANSLATE_NOOP("ImgPreviewToolBar", "Flip"), nullptr, 0},
    {"preview_cut_normal.svg", "preview_cut_select.svg", QT_TRANSLATE_NOOP("ImgPreviewToolBar", "Crop"), nullptr, 0},
    {"preview_mark_normal.svg", "preview_mark_select.svg", QT_TRANSLATE_NOOP("ImgPreviewToolBar", "Comment"), nullptr,
     0},
    {"preview_narrow_normal.svg", "preview_narrow_select.svg", QT_TRANSLATE_NOOP("ImgPreviewToolBar", "Zoom Out"),
     QT_TRANSLATE_NOOP("ImgPreviewToolBar", "Zoom Out("), IShortcutSetting::ZoomOut},
    {"preview_enlarge_normal.svg", "preview_enlarge_select.svg", QT_TRANSLATE_NOOP("ImgPreviewToolBar", "Zoom In"),
     QT_TRANSLATE_NOOP("ImgPreviewToolBar", "Zoom In("), IShortcutSetting::ZoomIn},
};

} // namespace

ImgPreviewToolBar::ImgPreviewToolBar(QWidget *pParent)
    : QWidget(pParent)
    , m_pCancelBtn(new CPushButton(this))
    , m_percentLabel(new QLabel(this))
    , m_pNoteBadge(new CircleNumToolTip(this))
{
    setObjectName(QStringLiteral("previewToolBar"));
    setAttribute(Qt::WA_StyledBackground);
    // A second click on a button that a running animation has switched off must not count as a double click on the
    // picture, which would leave the preview.
    setAttribute(Qt::WA_NoMousePropagation);
    setFixedHeight(BarHeight);
    for (const ButtonRow &row : ButtonRows) {
        auto *pButton = new CircleBtn(this, ButtonSide, ButtonSide);
        pButton->setIcons(QLatin1String(row.pNormalIcon), QLatin1String(row.pSelectedIcon));
        // A click leaves the keys with the picture, or with the comment that is being written.
        pButton->setFocusPolicy(Qt::TabFocus);
        m_buttons.append(pButton);
    }
    m_pCancelBtn->setText(tr("Cancel"));
    m_pCancelBtn->hide();
    m_percentLabel->setFixedSize(PercentWidth, PercentHeight);
    m_percentLabel->setAlignment(Qt::AlignCenter);
    m_percentLabel->setText(QStringLiteral("85%"));
    m_pNoteBadge->hide();
    buildLayout();
    updateToolTips();
    applyStyle();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &ImgPreviewToolBar::applyStyle);
}

void ImgPreviewToolBar::buildLayout()
{
    auto *pLayout = new QHBoxLayout(this);
    pLayout->setMargin(0);
    pLayout->setSpacing(0);
    pLayout->addSpacing(EndSpacing);
    for (int i = FitToWindowButton; i <= CommentButton; ++i) {
        pLayout->addWidget(m_buttons.at(i));
        pLayout->addSpacing(ButtonSpacing);
    }
    pLayout->addWidget(m_pCancelBtn);
    pLayout->addStretch();
    pLayout->addWidget(m_buttons.at(ZoomOutButton));
    pLayout->addSpacing(ZoomSpacing);
    pLayout->addWidget(m_percentLabel);
    pLayout->addSpacing(ZoomSpacing);
    pLayout->addWidget(m_buttons.at(ZoomInButton));
    pLayout->addSpacing(EndSpacing);
}

void ImgPreviewToolBar::applyStyle()
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    QColor background = pSkin->GetPopupWinBackgroundColor();
    background.setAlphaF(BarOpacity);
    setStyleSheet(QStringLiteral("#previewToolBar{background:%1;}QLabel{background:transparent;}")
                      .arg(background.name(QColor::HexArgb)) +
                  IconStyle::toolTip());
    m_pCancelBtn->setStyleSheet(QStringLiteral("background:transparent;border:none;"));
    m_percentLabel->setStyleSheet(QStringLiteral("color:%1;font-size:13px;").arg(pSkin->GetTextColor(0).name()));
}

void ImgPreviewToolBar::setPercent(int nPercent)
{
    m_percentLabel->setText(QString::number(nPercent) + QLatin1Char('%'));
}

void ImgPreviewToolBar::setButtonsEnabled(bool bEnabled)
{
    for (CircleBtn *pButton : qAsConst(m_buttons))
        pButton->setEnabled(bEnabled);
}

void ImgPreviewToolBar::setReduced(bool bReduced)
{
    for (int i = RotateButton; i <= CommentButton; ++i)
        m_buttons.at(i)->setVisible(!bReduced);
}

void ImgPreviewToolBar::setNoteCount(int nCount)
{
    m_pNoteBadge->setText(QString::number(nCount));
    m_pNoteBadge->setVisible(nCount > 0 && !m_buttons.at(CommentButton)->isHidden());
    placeBadge();
}

void ImgPreviewToolBar::updateToolTips()
{
    const PluginInnerData *pData = PluginInnerData::instance();
    for (int i = 0; i < ButtonCount; ++i) {
        const ButtonRow &row = ButtonRows[i];
        const QString keyText = row.pLabelWithKey != nullptr ? pData->shortcutText(row.nShortcutId) : QString();
        m_buttons.at(i)->setAccessibleName(tr(row.pLabel));
        m_buttons.at(i)->setToolTip(keyText.isEmpty() ? tr(row.pLabel)
                                                      : tr(row.pLabelWithKey) + keyText + QLatin1Char(')'));
    }
}

void ImgPreviewToolBar::resizeEvent(QResizeEvent *pEvent)
{
    QWidget::resizeEvent(pEvent);
    placeBadge();
}

void ImgPreviewToolBar::placeBadge()
{
    const QPoint anchor = m_buttons.at(CommentButton)->pos();
    m_pNoteBadge->raise(); // buttons come to the front when they are made
    m_pNoteBadge->move(anchor.x() + BadgeRight, anchor.y() - BadgeAbove);
}
