#include "common/TsProgressDialog.h"

#include "actions/TsQtUtils.h"
#include "theme/TSSkinSetting.h"

#include <QCloseEvent>
#include <QDebug>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>

namespace {

constexpr int TitleBarHeight = 30;
const QSize DialogSize(304, 142);
const QRect TitlePlace(0, 23, 304, 30);
const QRect BarPlace(30, 82, 244, 6);
const QRect StatusPlace(0, 100, 304, 20);
constexpr int TitlePixels = 16;
constexpr int TitleSpacing = 99;
constexpr int StatusPixels = 12;

QFont fontOf(int nPixels)
{
    QFont font;
    font.setPixelSize(nPixels);
    return font;
}

void fix(QWidget *pWidget, const QRect &place)
{
    pWidget->setFixedSize(place.size());
    pWidget->move(place.topLeft());
}

} // namespace

TsProgressDialog::TsProgressDialog(QWidget *pParent)
    : CPopupDialog(pParent, true, true, true, true, false)
{
    setObjectName(QStringLiteral("TsProgressDialog"));
    setTitleBarHeight(TitleBarHeight);
    setTitleVisible(false);
    setCloseButtonVisible(true);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setFixedSize(DialogSize);
    setFocusPolicy(Qt::NoFocus);
    buildChildren();
    applyTheme();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, this, &TsProgressDialog::applyTheme);
    qDebug("TsProgressDialog::TsProgressDialog");
}

TsProgressDialog::~TsProgressDialog()
{
    qDebug("TsProgressDialog::~TsProgressDialog()");
}

void TsProgressDialog::buildChildren()
{
    // A style sheet of the host's window may give all labels a font, and all bars a height, which would go before
    // their own.
    setStyleSheet(QStringLiteral("#progressTitle{background:transparent;font-size:%1px;}"
                                 "#progressStatus{background:transparent;font-size:%2px;}"
                                 "QProgressBar{min-height:%3px;max-height:%3px;}")
                      .arg(TitlePixels)
                      .arg(StatusPixels)
                      .arg(BarPlace.height()));
    m_pTitleLabel = new QLabel(this);
    m_pTitleLabel->setObjectName(QStringLiteral("progressTitle"));
    fix(m_pTitleLabel, TitlePlace);
    m_pTitleLabel->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    // A hair closer than measured: on a screen of another scale the letters come out a little wider.
    QFont titleFont = fontOf(TitlePixels);
    titleFont.setLetterSpacing(QFont::PercentageSpacing, TitleSpacing);
    m_pTitleLabel->setFont(titleFont);

    m_pProgressBar = new QProgressBar(this);
    fix(m_pProgressBar, BarPlace);
    m_pProgressBar->setRange(0, 100);
    m_pProgressBar->setValue(0);
    m_pProgressBar->setFocusPolicy(Qt::NoFocus);
    m_pProgressBar->setOrientation(Qt::Horizontal);
    m_pProgressBar->setTextVisible(false);

    m_pStatusLabel = new QLabel(this);
    m_pStatusLabel->setObjectName(QStringLiteral("progressStatus"));
    m_pStatusLabel->setFont(fontOf(StatusPixels));
    fix(m_pStatusLabel, StatusPlace);
    m_pStatusLabel->setAlignment(Qt::AlignHCenter);
    m_pStatusLabel->setFocusPolicy(Qt::NoFocus);
}

void TsProgressDialog::applyTheme()
{
    if (!m_pTitleLabel || !m_pProgressBar || !m_pStatusLabel)
        return;
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    const auto argb = [](const QColor &color) {
        return color.name(QColor::HexArgb);
    };
    m_pTitleLabel->setStyleSheet(QStringLiteral("color:") + argb(pSkin->GetTextColor(0)));
    m_pProgressBar->setStyleSheet(
        QStringLiteral("QProgressBar{background:") + argb(pSkin->GetPopupProgressBarUnSelectColor2()) +
        QStringLiteral(";border-radius:3px;text-align:center;} QProgressBar::chunk{border-radius:3px; background:") +
        argb(pSkin->GetPopupProgressBarSelectColor()) + QStringLiteral(";}"));
    m_pStatusLabel->setStyleSheet(QStringLiteral("color:") + argb(pSkin->GetTextColor(1)));
}

void TsProgressDialog::setTitle(const QString &text)
{
    if (!m_pTitleLabel)
        return;
    m_pTitleLabel->setText(text);
    const int nWidth = TsQtUtils::textWidth(fontOf(TitlePixels), text);
    // The label is as wide as the ink, the text as wide as its letters with the space around them: the margin puts the
    // middle of the ink into the middle of the label, which would cut the last letter else.
    const QFontMetrics metrics(m_pTitleLabel->font());
    const QRect ink = metrics.boundingRect(text);
    m_pTitleLabel->setContentsMargins(metrics.horizontalAdvance(text) - ink.width() - 2 * ink.left(), 0, 0, 0);
    m_pTitleLabel->setFixedWidth(nWidth);
    m_pTitleLabel->move((width() - nWidth) / 2, m_pTitleLabel->y());
}

void TsProgressDialog::setStatusText(const QString &text)
{
    if (m_pStatusLabel)
        m_pStatusLabel->setText(text);
}

void TsProgressDialog::setValue(int nValue)
{
    if (m_pProgressBar)
        m_pProgressBar->setValue(nValue);
}

void TsProgressDialog::slotCloseBtnClicked(bool val)
{
    Q_UNUSED(val)
    if (m_bCanceling)
        return;
    m_bCanceling = true;
    setStatusText(tr("Canceling task"));
    Q_EMIT userCancle();
}

void TsProgressDialog::keyPressEvent(QKeyEvent *pEvent)
{
    if (pEvent->key() != Qt::Key_Escape)
        QDialog::keyPressEvent(pEvent);
}

void TsProgressDialog::closeEvent(QCloseEvent *pEvent)
{
    if (!pEvent->spontaneous()) {
        CPopupDialog::closeEvent(pEvent);
        return;
    }
    // The window manager's way to close goes the same way as the close cross.
    pEvent->ignore();
    slotCloseBtnClicked(false);
}
