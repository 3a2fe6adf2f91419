#include "preview/HubTitleBar.h"

#include "common/CircleBtn.h"
#include "common/IconStyle.h"
#include "interfaces/surfaces/IMainWindowHandle.h"
#include "plugin/PluginInnerData.h"
#include "theme/TSSkinSetting.h"

#include <QVBoxLayout>

namespace {

constexpr int RoundSide = 26;
constexpr int WindowSide = 14;
constexpr int LeftMargin = 16;
constexpr int RoundTop = 8;
constexpr int RoundSpacing = 8;
constexpr int RightMargin = 16;
constexpr int WindowTop = 14;
constexpr int WindowSpacing = 18;
constexpr int SurfaceButtonsHeight = 40;

QSize windowButtonSize()
{
    return {WindowSide, WindowSide};
}

} // namespace

HubTitleBar::HubTitleBar(QWidget *pHub)
    : QObject(pHub)
    , m_pHub(pHub)
    , m_pBackBtn(new CircleBtn(pHub, RoundSide, RoundSide))
    , m_pColumnBtn(new CircleBtn(pHub, RoundSide, RoundSide))
    , m_pMinimizeBtn(new CPushButton(pHub))
    , m_pMaximizeBtn(new CPushButton(pHub))
    , m_pCloseBtn(new CPushButton(pHub))
{
    m_pBackBtn->setIcons(QStringLiteral("preview_back_normal.svg"), QStringLiteral("preview_back_select.svg"));
    m_pBackBtn->setToolTipText(tr("Back（Esc）"));
    m_pColumnBtn->setIcons(QStringLiteral("preview_hide_normal.svg"), QStringLiteral("preview_hide_select.svg"));
    setColumnTextShow(false);
    for (CPushButton *pButton : {m_pMinimizeBtn, m_pMaximizeBtn, m_pCloseBtn})
        pButton->setFixedSize(WindowSide, WindowSide);
    m_pMinimizeBtn->setAccessibleName(tr("Minimize"));
    m_pMaximizeBtn->setAccessibleName(tr("Maximize or restore"));
    m_pCloseBtn->setAccessibleName(tr("Close"));
    m_pMinimizeBtn->setToolTip(tr("Minimize"));
    m_pCloseBtn->setToolTip(tr("Close"));
    connectWindowButtons();
    refresh();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &HubTitleBar::refresh);
}

void HubTitleBar::connectWindowButtons()
{
    const auto handle = [] {
        return PluginInnerData::instance()->mainWindowHandle();
    };
    connect(m_pMinimizeBtn, &QPushButton::clicked, this, [handle] {
        if (IMainWindowHandle *pHandle = handle())
            pHandle->minimize();
    });
    connect(m_pMaximizeBtn, &QPushButton::clicked, this, [this, handle] {
        if (IMainWindowHandle *pHandle = handle())
            pHandle->toggleMaximized();
        refresh();
    });
    connect(m_pCloseBtn, &QPushButton::clicked, this, [handle] {
        if (IMainWindowHandle *pHandle = handle())
            pHandle->close();
    });
}

QWidget *HubTitleBar::makePageBelow(QWidget *pPage)
{
    auto *pRoom = new QWidget(pPage->parentWidget());
    pRoom->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    auto *pLayout = new QVBoxLayout(pRoom);
    pLayout->setContentsMargins(0, SurfaceButtonsHeight, 0, 0);
    pLayout->addWidget(pPage);
    return pRoom;
}

void HubTitleBar::setVisible(bool bVisible)
{
    for (QWidget *pButton : {static_cast<QWidget *>(m_pBackBtn), static_cast<QWidget *>(m_pColumnBtn),
                             static_cast<QWidget *>(m_pMinimizeBtn), static_cast<QWidget *>(m_pMaximizeBtn),
                             static_cast<QWidget *>(m_pCloseBtn)})
        pButton->setVisible(bVisible);
}

void HubTitleBar::setColumnTextShow(bool bShow)
{
    m_pColumnBtn->setToolTipText(bShow ? tr("Show Left & Right Column (Tab)") : tr("Hide Left & Right Column (Tab)"));
}

void HubTitleBar::refresh()
{
    const IMainWindowHandle *pHandle = PluginInnerData::instance()->mainWindowHandle();
    const bool bMaximized = pHandle != nullptr && pHandle->isMaximized();
    m_pMinimizeBtn->setStyleSheet(IconStyle::windowButton(QStringLiteral("title_window_minisize_normal.svg"),
                                                          QStringLiteral("title_window_minisize_hover.svg"),
                                                          windowButtonSize()));
    m_pMaximizeBtn->setStyleSheet(
        bMaximized ? IconStyle::windowButton(QStringLiteral("title_window_restore_normal.svg"),
                                             QStringLiteral("title_window_restore_hover.svg"), windowButtonSize())
                   : IconStyle::windowButton(QStringLiteral("title_window_maxsize_normal.svg"),
                                             QStringLiteral("title_window_maxsize_hover.svg"), windowButtonSize()));
    m_pCloseBtn->setStyleSheet(IconStyle::windowButton(QStringLiteral("title_window_close_normal.svg"),
                                                       QStringLiteral("title_window_close_hover.svg"),
                                                       windowButtonSize()));
    m_pMaximizeBtn->setToolTip(bMaximized ? tr("Restore") : tr("Maximize"));
}

void HubTitleBar::relayout()
{
    m_pBackBtn->move(LeftMargin, RoundTop);
    m_pColumnBtn->move(LeftMargin + RoundSide + RoundSpacing, RoundTop);
    int nX = m_pHub->width() - RightMargin - WindowSide;
    for (CPushButton *pButton : {m_pCloseBtn, m_pMaximizeBtn, m_pMinimizeBtn}) {
        pButton->move(nX, WindowTop);
        nX -= WindowSide + WindowSpacing;
    }
    for (QWidget *pButton : {static_cast<QWidget *>(m_pBackBtn), static_cast<QWidget *>(m_pColumnBtn),
                             static_cast<QWidget *>(m_pMinimizeBtn), static_cast<QWidget *>(m_pMaximizeBtn),
                             static_cast<QWidget *>(m_pCloseBtn)})
        pButton->raise();
}
