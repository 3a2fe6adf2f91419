#include "app/ToolRow.h"

#include "app/ElidedLabel.h"
#include "app/FileGridModel.h"
#include "app/HostIcons.h"
#include "theme/TSSkinSetting.h"

#include <QAction>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>
#include <QVariant>

namespace {

constexpr int k_nHeight = 48;
constexpr int k_nSearchWidth = 220;
/** Narrower rows do without the place and with a shorter search line. */
constexpr int k_nRoomy = 720;

} // namespace

ToolRow::ToolRow(FileGridModel *pModel, QWidget *pParent)
    : QWidget(pParent)
    , m_pModel(pModel)
    , m_pPlace(new ElidedLabel(Qt::ElideMiddle, this))
    , m_pSearch(new QLineEdit(this))
    , m_pSearchIcon(m_pSearch->addAction(QIcon(), QLineEdit::LeadingPosition))
    , m_pKind(new QComboBox(this))
    , m_pOrder(new QComboBox(this))
    , m_pFolderButton(HostIcons::makeToolButton(QStringLiteral("hostFolderButton"), tr("Open folder (Ctrl+O)"), this))
    , m_pRefreshButton(
          HostIcons::makeToolButton(QStringLiteral("hostRefreshButton"), tr("Look for changes (F5)"), this))
    , m_pPanelButton(HostIcons::makeToolButton(QStringLiteral("hostPanelButton"), tr("Information (Alt+Enter)"), this))
{
    setObjectName(QStringLiteral("hostToolRow"));
    setFixedHeight(k_nHeight);
    m_pPlace->setObjectName(QStringLiteral("hostPlace"));
    m_pPlace->setProperty("role", QStringLiteral("secondary"));
    m_pSearch->setObjectName(QStringLiteral("hostSearch"));
    m_pSearch->setPlaceholderText(tr("Search names and labels"));
    m_pSearch->setAccessibleName(tr("Search names and labels"));
    m_pSearch->setToolTip(tr("Search (Ctrl+F)"));
    m_pSearch->setClearButtonEnabled(true);
    m_pSearch->installEventFilter(this);
    connect(m_pSearch, &QLineEdit::textChanged, this, &ToolRow::applyFilter);
    fillKinds();
    fillOrders();
    m_pPanelButton->setCheckable(true);
    connect(m_pFolderButton, &QToolButton::clicked, this, &ToolRow::signalOpenFolder);
    connect(m_pRefreshButton, &QToolButton::clicked, this, &ToolRow::signalRefresh);
    connect(m_pPanelButton, &QToolButton::clicked, this, &ToolRow::signalPanelToggled);
    auto *pLayout = new QHBoxLayout(this);
    pLayout->setContentsMargins(16, 0, 16, 0);
    pLayout->setSpacing(8);
    pLayout->addWidget(m_pPlace, 1);
    pLayout->addWidget(m_pSearch);
    pLayout->addWidget(m_pKind);
    pLayout->addWidget(m_pOrder);
    for (QToolButton *pButton : {m_pFolderButton, m_pRefreshButton, m_pPanelButton})
        pLayout->addWidget(pButton);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &ToolRow::applyTheme);
    applyTheme();
}

void ToolRow::fillKinds()
{
    using FileTypes::Kind;
    m_pKind->setObjectName(QStringLiteral("hostKind"));
    m_pKind->setAccessibleName(tr("Kind of files"));
    m_pKind->setFocusPolicy(Qt::TabFocus);
    const QPair<Kind, QString> kinds[] = {
        {Kind::Any, tr("All kinds")},      {Kind::Picture, tr("Pictures")}, {Kind::Camera, tr("Camera files")},
        {Kind::Document, tr("Documents")}, {Kind::Video, tr("Videos")},     {Kind::Sound, tr("Sounds")},
        {Kind::Other, tr("Other files")},
    };
    for (const auto &kind : kinds)
        m_pKind->addItem(kind.second, int(kind.first));
    connect(m_pKind, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] {
        applyFilter();
        Q_EMIT signalLeft();
    });
}

void ToolRow::fillOrders()
{
    m_pOrder->setObjectName(QStringLiteral("hostOrder"));
    m_pOrder->setAccessibleName(tr("Order of the files"));
    m_pOrder->setFocusPolicy(Qt::TabFocus);
    const QPair<FileOrder, QString> orders[] = {
        {FileOrder::Name, tr("By name")},
        {FileOrder::NewestFirst, tr("Newest first")},
        {FileOrder::OldestFirst, tr("Oldest first")},
        {FileOrder::LargestFirst, tr("Largest first")},
        {FileOrder::Type, tr("By type")},
    };
    for (const auto &order : orders)
        m_pOrder->addItem(order.second, int(order.first));
    connect(m_pOrder, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this] {
        m_pModel->setOrder(FileOrder(m_pOrder->currentData().toInt()));
        Q_EMIT signalLeft();
    });
}

void ToolRow::setPlace(const QString &text, const QString &toolTip)
{
    m_pPlace->setFullText(text, toolTip);
}

void ToolRow::setPanelShown(bool bShown)
{
    m_pPanelButton->setChecked(bShown);
}

void ToolRow::search()
{
    m_pSearch->setFocus();
    m_pSearch->selectAll();
}

void ToolRow::clearFilter()
{
    m_pSearch->clear();
    m_pKind->setCurrentIndex(0);
}

QString ToolRow::order() const
{
    return m_pOrder->currentData().toString();
}

void ToolRow::setOrder(const QString &order)
{
    const int nIndex = m_pOrder->findData(order.toInt());
    if (!order.isEmpty() && nIndex >= 0)
        m_pOrder->setCurrentIndex(nIndex);
}

void ToolRow::applyFilter()
{
    FileFilter filter = m_pModel->filter();
    filter.text = m_pSearch->text().simplified();
    filter.kind = FileTypes::Kind(m_pKind->currentData().toInt());
    if (filter == m_pModel->filter())
        return;
    Q_EMIT signalFilterChanged();
    m_pModel->setFilter(filter);
}

void ToolRow::applyTheme()
{
    m_pSearchIcon->setIcon(HostIcons::icon(QStringLiteral("host_search.svg")));
    HostIcons::setButtonIcon(m_pFolderButton, QStringLiteral("host_folder.svg"), QStringLiteral("…"));
    HostIcons::setButtonIcon(m_pRefreshButton, QStringLiteral("host_refresh.svg"), QStringLiteral("\u27F3"));
    HostIcons::setButtonIcon(m_pPanelButton, QStringLiteral("host_info.svg"), QStringLiteral("i"));
}

bool ToolRow::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    if (pWatched == m_pSearch && pEvent->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent *>(pEvent)->key()) {
        case Qt::Key_Escape:
            m_pSearch->clear();
            Q_EMIT signalLeft();
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Down:
            Q_EMIT signalLeft();
            return true;
        default:
            break;
        }
    }
    return QWidget::eventFilter(pWatched, pEvent);
}

void ToolRow::resizeEvent(QResizeEvent *pEvent)
{
    QWidget::resizeEvent(pEvent);
    m_pSearch->setFixedWidth(width() < k_nRoomy ? qMax(80, k_nSearchWidth - (k_nRoomy - width())) : k_nSearchWidth);
}
