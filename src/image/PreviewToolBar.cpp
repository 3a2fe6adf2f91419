#include "image/PreviewToolBar.h"

#include "common/CircleBtn.h"
#include "common/IconStyle.h"
#include "plugin/PluginInnerData.h"
#include "theme/TSSkinSetting.h"

#include <QCoreApplication>
#include <QLabel>

namespace {

constexpr int ButtonSide = 26;
constexpr double BarOpacity = 0.86;

} // namespace

PreviewToolBar::PreviewToolBar(const ButtonRow *pRows, int nRows, const char *pContext, const QSize &percentSize,
                               QWidget *pParent)
    : QWidget(pParent)
    , m_pRows(pRows)
    , m_pContext(pContext)
{
    setObjectName(QStringLiteral("previewToolBar"));
    setAttribute(Qt::WA_StyledBackground);
    // A second click on a button that a running animation has switched off must not count as a double click on the
    // picture, which would leave the preview.
    setAttribute(Qt::WA_NoMousePropagation);
    setFixedHeight(BarHeight);
    for (int i = 0; i < nRows; ++i) {
        auto *pButton = new CircleBtn(this, ButtonSide, ButtonSide);
        pButton->setIcons(QLatin1String(pRows[i].pNormalIcon), QLatin1String(pRows[i].pSelectedIcon));
        pButton->setToolTipText(QCoreApplication::translate(pContext, pRows[i].pLabel));
        // A click leaves the keys with the picture, or with the comment that is being written.
        pButton->setFocusPolicy(Qt::TabFocus);
        m_buttons.append(pButton);
    }
    m_percentLabel = addLabel(percentSize, QStringLiteral("85%"));
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &PreviewToolBar::applyStyle);
}

QLabel *PreviewToolBar::addLabel(const QSize &size, const QString &text)
{
    auto *pLabel = new QLabel(text, this);
    pLabel->setFixedSize(size);
    pLabel->setAlignment(Qt::AlignCenter);
    m_labels.append(pLabel);
    applyStyle();
    return pLabel;
}

void PreviewToolBar::applyStyle()
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    QColor background = pSkin->GetPopupWinBackgroundColor();
    background.setAlphaF(BarOpacity);
    setStyleSheet(QStringLiteral("#previewToolBar{background:%1;}QLabel{background:transparent;}")
                      .arg(background.name(QColor::HexArgb)) +
                  IconStyle::toolTip());
    for (QLabel *pLabel : qAsConst(m_labels))
        pLabel->setStyleSheet(QStringLiteral("color:%1;font-size:13px;").arg(pSkin->GetTextColor(0).name()));
}

void PreviewToolBar::setPercent(int nPercent)
{
    m_percentLabel->setText(QString::number(nPercent) + QLatin1Char('%'));
}

void PreviewToolBar::setButtonsEnabled(bool bEnabled)
{
    for (CircleBtn *pButton : qAsConst(m_buttons))
        pButton->setEnabled(bEnabled);
}

void PreviewToolBar::updateToolTips()
{
    const PluginInnerData *pData = PluginInnerData::instance();
    for (int i = 0; i < m_buttons.size(); ++i) {
        const ButtonRow &row = m_pRows[i];
        const QString keyText = row.pLabelWithKey != nullptr ? pData->shortcutText(row.nShortcutId) : QString();
        if (!keyText.isEmpty()) {
            m_buttons.at(i)->setToolTip(QCoreApplication::translate(m_pContext, row.pLabelWithKey) + keyText +
                                        QLatin1Char(')'));
        } else {
            m_buttons.at(i)->setToolTip(QCoreApplication::translate(m_pContext, row.pLabel));
        }
    }
}
