#include "common/CNotificationFloatingWidget.h"

#include "actions/TsQtUtils.h"
#include "theme/TSSkinSetting.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QTimer>

namespace {

constexpr int InitialWidth = 130;
constexpr int Height = 28;
constexpr int IconSide = 12;
constexpr int SideMargins = 40;
constexpr int IconSpacing = 6;
constexpr int FontPixels = 12;
constexpr int DefaultTop = 80;
constexpr int DefaultDuration = 3000;
constexpr int TimerInterval = 200;

} // namespace

CNotificationFloatingWidget::CNotificationFloatingWidget(QWidget *pParent)
    : QWidget(pParent)
    , m_pTextLabel(new QLabel(this))
    , m_pIconLabel(new QLabel(this))
    , m_pCloseTimer(new QTimer(this))
{
    m_font.setPixelSize(FontPixels);
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_StyledBackground);
    setFixedSize(InitialWidth, Height);
    buildChildren();
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    setBackgroundColor(pSkin->GetNotificationBackColor1());
    m_pTextLabel->setStyleSheet(QStringLiteral("color:") + pSkin->GetTextColor(0).name());
}

void CNotificationFloatingWidget::buildChildren()
{
    auto *pLayout = new QHBoxLayout(this);
    pLayout->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    pLayout->setMargin(0);
    pLayout->setSpacing(0);
    pLayout->setContentsMargins(0, 0, 0, 0);
    m_pIconLabel->setFixedSize(IconSide, IconSide);
    pLayout->addWidget(m_pIconLabel);
    pLayout->setSpacing(IconSpacing);
    m_pTextLabel->setFont(m_font);
    pLayout->addWidget(m_pTextLabel);
    m_pCloseTimer->setInterval(TimerInterval);
    connect(m_pCloseTimer, &QTimer::timeout, this, &QWidget::close);
}

void CNotificationFloatingWidget::setContent(const QString &iconName, const QString &text)
{
    m_pIconLabel->setStyleSheet(QStringLiteral("QLabel{border:0px;") +
                                TSSkinSetting::GetInstance()->GetResourcePath(iconName) + QStringLiteral("}"));
    m_pTextLabel->setText(text);
    const int nTextWidth = TsQtUtils::textWidth(m_font, text);
    // The bounding box leaves out the bearings of the outer letters, without which the label would cut the last one.
    m_pTextLabel->setFixedWidth(text.isEmpty() ? 0 : qMax(nTextWidth, m_pTextLabel->sizeHint().width()));
    setFixedSize(nTextWidth + SideMargins + (m_bShowIcon ? m_pIconLabel->width() : 0), Height);
}

void CNotificationFloatingWidget::setTop(int nY)
{
    m_nY = nY;
}

void CNotificationFloatingWidget::setBackgroundColor(const QColor &color)
{
    setObjectName(QStringLiteral("floatingWidget"));
    setStyleSheet(QStringLiteral("#floatingWidget{border-radius:6px;background:") + color.name(QColor::HexArgb) +
                  QStringLiteral(";}"));
}

void CNotificationFloatingWidget::showEvent(QShowEvent *pEvent)
{
    QWidget::showEvent(pEvent);
    const int nParentWidth = parentWidget() != nullptr ? parentWidget()->width() : width();
    const int nTop = m_nX == -1 && m_nY == -1 ? DefaultTop : m_nY;
    // Always centred: an x position is only asked for, never applied.
    move((nParentWidth - width()) / 2, nTop);
    raise();
    m_pCloseTimer->start(m_nDuration < 1 ? DefaultDuration : m_nDuration);
}
