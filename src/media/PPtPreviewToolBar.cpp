#include "media/PPtPreviewToolBar.h"

#include "common/CircleBtn.h"
#include "interfaces/services/IShortcutSetting.h"

#include <QHBoxLayout>
#include <QLabel>

namespace {

constexpr int EndSpacing = 20;
constexpr int ButtonSpacing = 10;
constexpr int NarrowSpacing = 5;
constexpr int PageWidth = 40;
constexpr int PercentWidth = 36;
constexpr int LabelHeight = 13;

const PreviewToolBar::ButtonRow ButtonRows[PPtPreviewToolBar::ButtonCount] = {
    {"preview_whole_normal.svg", "preview_whole_select.svg", QT_TRANSLATE_NOOP("PPtPreviewToolBar", "Fit to Window"),
     QT_TRANSLATE_NOOP("PPtPreviewToolBar", "Fit to Window("), IShortcutSetting::FitToWindow},
    {"preview_adapt_normal.svg", "preview_adapt_select.svg", QT_TRANSLATE_NOOP("PPtPreviewToolBar", "Fit to Width"),
     QT_TRANSLATE_NOOP("PPtPreviewToolBar", "Fit to Width("), IShortcutSetting::FitToWidth},
    {"preview_actual_normal.svg", "preview_actual_select.svg", QT_TRANSLATE_NOOP("PPtPreviewToolBar", "Actual Size"),
     QT_TRANSLATE_NOOP("PPtPreviewToolBar", "Actual Size("), IShortcutSetting::ActualSize},
    {"preview_previous_normal.svg", "preview_previous_select.svg", QT_TRANSLATE_NOOP("PPtPreviewToolBar", "Prev"),
     nullptr, 0},
    {"preview_next_normal.svg", "preview_next_select.svg", QT_TRANSLATE_NOOP("PPtPreviewToolBar", "Next"), nullptr, 0},
    {"preview_narrow_normal.svg", "preview_narrow_select.svg", QT_TRANSLATE_NOOP("PPtPreviewToolBar", "Zoom Out"),
     QT_TRANSLATE_NOOP("PPtPreviewToolBar", "Zoom Out("), IShortcutSetting::ZoomOut},
    {"preview_enlarge_normal.svg", "preview_enlarge_select.svg", QT_TRANSLATE_NOOP("PPtPreviewToolBar", "Zoom In"),
     QT_TRANSLATE_NOOP("PPtPreviewToolBar", "Zoom In("), IShortcutSetting::ZoomIn},
};

QString pageText(int nPage, int nPageCount)
{
    return QString::number(nPage) + QLatin1Char('/') + QString::number(nPageCount);
}

} // namespace

PPtPreviewToolBar::PPtPreviewToolBar(QWidget *pParent)
    : PreviewToolBar(ButtonRows, ButtonCount, "PPtPreviewToolBar", QSize(PercentWidth, LabelHeight), pParent)
    , m_pPageLabel(addLabel(QSize(PageWidth, LabelHeight), QStringLiteral("1/14")))
{
    buildLayout();
}

void PPtPreviewToolBar::buildLayout()
{
    auto *pLayout = new QHBoxLayout(this);
    pLayout->setMargin(0);
    pLayout->setSpacing(0);
    pLayout->addSpacing(EndSpacing);
    for (const Button button : {FitToWindowButton, FitToWidthButton, ActualSizeButton}) {
        pLayout->addWidget(buttonAt(button));
        pLayout->addSpacing(ButtonSpacing);
    }
    pLayout->addStretch();
    QWidget *const right[] = {buttonAt(PreviousButton), m_pPageLabel,   buttonAt(NextButton),
                              buttonAt(ZoomOutButton),  percentLabel(), buttonAt(ZoomInButton)};
    for (QWidget *pWidget : right) {
        if (pWidget != right[0])
            pLayout->addSpacing(NarrowSpacing);
        pLayout->addWidget(pWidget);
    }
    pLayout->addSpacing(EndSpacing);
}

void PPtPreviewToolBar::setPage(int nPageIndex, int nPageCount)
{
    m_pPageLabel->setText(pageText(nPageIndex + 1, nPageCount));
    // Wide enough for the last page at once, so that no button moves away under the mouse.
    m_pPageLabel->ensurePolished();
    m_pPageLabel->setFixedWidth(
        qMax(PageWidth, m_pPageLabel->fontMetrics().horizontalAdvance(pageText(nPageCount, nPageCount))));
}

void PPtPreviewToolBar::setPagesVisible(bool bVisible)
{
    for (QWidget *pWidget : {static_cast<QWidget *>(m_pPageLabel), static_cast<QWidget *>(buttonAt(PreviousButton)),
                             static_cast<QWidget *>(buttonAt(NextButton))})
        pWidget->setVisible(bVisible);
}
