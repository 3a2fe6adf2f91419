#include "app/TitleBar.h"

#include "app/HostIcons.h"
#include "app/LanguageMenu.h"
#include "theme/TSSkinSetting.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QToolButton>
#include <QVariant>
#include <QWindow>

namespace {

constexpr int k_nHeight = 40;
constexpr int k_nLogoSize = 20;
constexpr int k_nWindowButtonSize = 14;

} // namespace

TitleBar::TitleBar(QWidget *pWindow, QWidget *pParent)
    : QWidget(pParent)
    , m_pLogo(new QLabel(this))
    , m_pTitle(new QLabel(QApplication::applicationDisplayName(), this))
    , m_pLanguageButton(HostIcons::makeToolButton(QStringLiteral("hostLanguageButton"), tr("Language"), this))
    , m_pLanguageMenu(new LanguageMenu(this))
    , m_pThemeButton(HostIcons::makeToolButton(QStringLiteral("hostThemeButton"), tr("Light or dark"), this))
    , m_pMinimizeButton(addButton(QStringLiteral("hostMinimizeButton"), tr("Minimise")))
    , m_pMaximizeButton(addButton(QStringLiteral("hostMaximizeButton"), tr("Maximise")))
    , m_pCloseButton(addButton(QStringLiteral("hostCloseButton"), tr("Close")))
{
    setObjectName(QStringLiteral("hostTitleBar"));
    setProperty("area", QStringLiteral("title"));
    setAttribute(Qt::WA_StyledBackground);
    setFixedHeight(k_nHeight);
    m_pTitle->setObjectName(QStringLiteral("hostTitle"));
    m_pTitle->setProperty("role", QStringLiteral("heading"));
    for (QPushButton *pButton : {m_pMinimizeButton, m_pMaximizeButton, m_pCloseButton})
        pButton->setFixedSize(k_nWindowButtonSize, k_nWindowButtonSize);

    auto *pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(16, 0, 16, 0);
    pLayout->setSpacing(16);
    pLayout->addWidget(m_pLogo);
    pLayout->addWidget(m_pTitle);
    pLayout->addStretch();
    pLayout->addWidget(m_pLanguageButton);
    pLayout->addWidget(m_pThemeButton);
    pLayout->addSpacing(8);
    for (QPushButton *pButton : {m_pMinimizeButton, m_pMaximizeButton, m_pCloseButton})
        pLayout->addWidget(pButton);

    m_pLanguageButton->setMenu(m_pLanguageMenu);
    m_pLanguageButton->setPopupMode(QToolButton::InstantPopup);
    connect(m_pThemeButton, &QToolButton::clicked, this, &TitleBar::signalThemeToggled);
    connect(m_pMinimizeButton, &QPushButton::clicked, pWindow, &QWidget::showMinimized);
    connect(m_pMaximizeButton, &QPushButton::clicked, this, &TitleBar::signalMaximizeToggled);
    connect(m_pCloseButton, &QPushButton::clicked, pWindow, &QWidget::close);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &TitleBar::applyTheme);
    pWindow->installEventFilter(this);
    applyTheme();
}

QPushButton *TitleBar::addButton(const QString &objectName, const QString &toolTip)
{
    auto *pButton = new QPushButton(this);
    pButton->setObjectName(objectName);
    pButton->setToolTip(toolTip);
    pButton->setAccessibleName(toolTip);
    pButton->setFlat(true);
    pButton->setFocusPolicy(Qt::TabFocus);
    return pButton;
}

void TitleBar::applyTheme()
{
    m_pLogo->setPixmap(HostIcons::icon(QStringLiteral("nav_logo.svg")).pixmap(k_nLogoSize, k_nLogoSize));
    HostIcons::setButtonIcon(m_pLanguageButton, QStringLiteral("host_language.svg"), QStringLiteral("\u6587"));
    HostIcons::setButtonIcon(m_pThemeButton, QStringLiteral("host_theme.svg"), QStringLiteral("\u2600"));
    m_pMinimizeButton->setStyleSheet(HostIcons::windowButtonStyleSheet(QStringLiteral("minisize")));
    m_pCloseButton->setStyleSheet(HostIcons::windowButtonStyleSheet(QStringLiteral("close")));
    showWindowState();
}

void TitleBar::showWindowState()
{
    const bool bMaximized = window()->isMaximized();
    m_pMaximizeButton->setToolTip(bMaximized ? tr("Restore") : tr("Maximise"));
    m_pMaximizeButton->setAccessibleName(m_pMaximizeButton->toolTip());
    m_pMaximizeButton->setStyleSheet(
        HostIcons::windowButtonStyleSheet(bMaximized ? QStringLiteral("restore") : QStringLiteral("maxsize")));
}

bool TitleBar::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    if (pWatched == window() && pEvent->type() == QEvent::WindowStateChange)
        showWindowState();
    return QWidget::eventFilter(pWatched, pEvent);
}

void TitleBar::mousePressEvent(QMouseEvent *pEvent)
{
    m_bPressed = pEvent->button() == Qt::LeftButton;
    m_pressPosition = pEvent->globalPos();
}

void TitleBar::mouseMoveEvent(QMouseEvent *pEvent)
{
    if (m_bOwnMove) {
        window()->move(window()->pos() + pEvent->globalPos() - m_pressPosition);
        m_pressPosition = pEvent->globalPos();
        return;
    }
    const int nDistance = (pEvent->globalPos() - m_pressPosition).manhattanLength();
    if (!m_bPressed || nDistance < QApplication::startDragDistance())
        return;
    m_bPressed = false;
    m_bOwnMove = !window()->windowHandle()->startSystemMove() && !window()->isMaximized();
}

void TitleBar::mouseReleaseEvent(QMouseEvent * /*pEvent*/)
{
    m_bPressed = false;
    m_bOwnMove = false;
}

void TitleBar::mouseDoubleClickEvent(QMouseEvent *pEvent)
{
    if (pEvent->button() == Qt::LeftButton)
        Q_EMIT signalMaximizeToggled();
}
