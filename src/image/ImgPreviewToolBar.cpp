#include "image/ImgPreviewToolBar.h"

#include "common/CircleBtn.h"
#include "common/CircleNumToolTip.h"
#include "interfaces/services/IShortcutSetting.h"

#include <QHBoxLayout>
#include <QLabel>

namespace {

constexpr int EndSpacing = 20;
constexpr int ButtonSpacing = 10;
constexpr int ZoomSpacing = 5;
constexpr int PercentWidth = 44;
constexpr int PercentHeight = 16;
constexpr int BadgeRight = 15;
constexpr int BadgeAbove = 7;

const PreviewToolBar::ButtonRow ButtonRows[ImgPreviewToolBar::ButtonCount] = {
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
    : PreviewToolBar(ButtonRows, ButtonCount, "ImgPreviewToolBar", QSize(PercentWidth, PercentHeight), pParent)
    , m_pCancelBtn(new CPushButton(this))
    , m_pNoteBadge(new CircleNumToolTip(this))
{
    m_pCancelBtn->setText(tr("Cancel"));
    m_pCancelBtn->setStyleSheet(QStringLiteral("background:transparent;border:none;"));
    m_pCancelBtn->hide();
    m_pNoteBadge->hide();
    buildLayout();
    updateToolTips();
}

void ImgPreviewToolBar::buildLayout()
{
    auto *pLayout = new QHBoxLayout(this);
    pLayout->setMargin(0);
    pLayout->setSpacing(0);
    pLayout->addSpacing(EndSpacing);
    for (int i = FitToWindowButton; i <= CommentButton; ++i) {
        pLayout->addWidget(buttonAt(i));
        pLayout->addSpacing(ButtonSpacing);
    }
    pLayout->addWidget(m_pCancelBtn);
    pLayout->addStretch();
    pLayout->addWidget(buttonAt(ZoomOutButton));
    pLayout->addSpacing(ZoomSpacing);
    pLayout->addWidget(percentLabel());
    pLayout->addSpacing(ZoomSpacing);
    pLayout->addWidget(buttonAt(ZoomInButton));
    pLayout->addSpacing(EndSpacing);
}

void ImgPreviewToolBar::setReduced(bool bReduced)
{
    for (int i = RotateButton; i <= CommentButton; ++i)
        buttonAt(i)->setVisible(!bReduced);
}

void ImgPreviewToolBar::setNoteCount(int nCount)
{
    m_pNoteBadge->setText(QString::number(nCount));
    m_pNoteBadge->setVisible(nCount > 0 && !buttonAt(CommentButton)->isHidden());
    placeBadge();
}

void ImgPreviewToolBar::resizeEvent(QResizeEvent *pEvent)
{
    QWidget::resizeEvent(pEvent);
    placeBadge();
}

void ImgPreviewToolBar::placeBadge()
{
    const QPoint anchor = buttonAt(CommentButton)->pos();
    m_pNoteBadge->raise(); // buttons come to the front when they are made
    m_pNoteBadge->move(anchor.x() + BadgeRight, anchor.y() - BadgeAbove);
}
