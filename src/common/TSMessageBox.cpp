#include "common/TSMessageBox.h"

#include "theme/TSSkinSetting.h"
#include "ui_TSMessageBox.h"

#include <QDebug>
#include <QPainter>

bool TSMessageBox::s_bAnyRunning = false;

namespace {

const QSize BoxSize(364, 225);
const QRect TitlePlace(0, 30, 364, 17);
const QRect TextPlace(30, 76, 300, 70);
const QRect ClosePlace(330, 10, 16, 16);
const QSize ButtonSize(106, 28);
const QSize NarrowButtonSize(90, 28);
constexpr int ButtonTop = 167;
constexpr int TitlePixels = 16;
constexpr int BodyPixels = 13;

QString argb(const QColor &color)
{
    return color.name(QColor::HexArgb);
}

QString buttonStyle(const QColor &background)
{
    return QStringLiteral("color:") + argb(TSSkinSetting::GetInstance()->GetTextColor(0)) +
           QStringLiteral(";border-radius:14px;background-color:") + argb(background) + QStringLiteral(";");
}

void fix(QWidget *pWidget, const QRect &place, const QFont &font)
{
    pWidget->setFixedSize(place.size());
    pWidget->move(place.topLeft());
    pWidget->setFont(font);
}

void placeButton(QWidget *pButton, int nX, const QSize &size)
{
    pButton->setFixedSize(size);
    pButton->move(nX, ButtonTop);
}

} // namespace

TSMessageBox::TSMessageBox(QWidget *pParent)
    : QDialog(pParent)
    , m_ui(std::make_unique<Ui::TSMessageBox>())
{
    s_bAnyRunning = false;
    m_ui->setupUi(this);
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    resize(400, 200);
    placeChildren();
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Tessaro"));
    applyStyleSheets();
}

TSMessageBox::~TSMessageBox()
{
    s_bAnyRunning = false;
    qDebug("TSMessage exec destory");
}

void TSMessageBox::placeChildren()
{
    // Sizes and fonts that a style sheet of the host's window gives to all buttons and labels are not for this box.
    setStyleSheet(QStringLiteral("QPushButton{min-width:0px;min-height:0px;padding:0px;margin:0px;border:none;}"
                                 "#tips_lab{font-size:%1px;}#lab_context,QPushButton{font-size:%2px;}")
                      .arg(TitlePixels)
                      .arg(BodyPixels));
    setFixedSize(BoxSize);
    QFont titleFont;
    titleFont.setPixelSize(TitlePixels);
    QFont bodyFont;
    bodyFont.setPixelSize(BodyPixels);
    fix(m_ui->tips_lab, TitlePlace, titleFont);
    m_ui->tips_lab->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    fix(m_ui->lab_context, TextPlace, bodyFont);
    m_ui->lab_context->setOpenExternalLinks(true);
    placeButtons();
    m_ui->confirm_btn->setFont(bodyFont);
    m_ui->cancel_btn->setFont(bodyFont);
    m_ui->ok_btn->setFont(bodyFont);
    // The one button of a notice takes the keyboard; a question is not answered by a key that was meant for something
    // else.
    m_ui->confirm_btn->setFocusPolicy(Qt::ClickFocus);
    m_ui->cancel_btn->setFocusPolicy(Qt::ClickFocus);
    fix(m_ui->btn_close, ClosePlace, bodyFont);
    m_ui->btn_close->setAutoDefault(false);
    m_ui->btn_close->setFocusPolicy(Qt::NoFocus);
}

void TSMessageBox::placeButtons()
{
    placeButton(m_ui->confirm_btn, 56, ButtonSize);
    placeButton(m_ui->cancel_btn, 202, ButtonSize);
    placeButton(m_ui->ok_btn, 129, ButtonSize);
}

void TSMessageBox::applyStyleSheets()
{
    const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
    m_ui->main_wid->setStyleSheet(QStringLiteral("#main_wid{background-color:") +
                                  argb(pSkin->GetPopupWinBackgroundColor()) +
                                  QStringLiteral(";border-radius:10px;border:1px solid; border-color:") +
                                  argb(pSkin->GetPopupWinBorderColor()) + QStringLiteral(";}"));
    const QString labelStyle =
        QStringLiteral("background-color:rgba(0,0,0,0);color:") + argb(pSkin->GetTextColor(0)) + QStringLiteral(";");
    m_ui->tips_lab->setStyleSheet(labelStyle);
    m_ui->lab_context->setStyleSheet(labelStyle);
    m_ui->ok_btn->setStyleSheet(buttonStyle(pSkin->GetMainColor()));
    m_ui->confirm_btn->setStyleSheet(buttonStyle(pSkin->GetMainColor()));
    m_ui->cancel_btn->setStyleSheet(buttonStyle(pSkin->GetInputAndButtonColor()));
    m_ui->btn_close->setStyleSheet(pSkin->GetResourcePath(QStringLiteral("mainbody_close.svg")) +
                                   QStringLiteral("background-color:transparent;background:transparent;border:none;"));
}

void TSMessageBox::applyMode(Mode mode)
{
    switch (mode) {
    case OkMode:
        m_ui->ok_btn->show();
        m_ui->confirm_btn->hide();
        m_ui->cancel_btn->hide();
        break;
    case YesNoMode:
    case YesNoQuietMode:
        m_ui->ok_btn->hide();
        m_ui->confirm_btn->show();
        m_ui->cancel_btn->show();
        break;
    case ThreeButtonMode:
        m_ui->ok_btn->show();
        m_ui->confirm_btn->show();
        m_ui->cancel_btn->show();
        m_ui->ok_btn->setStyleSheet(buttonStyle(TSSkinSetting::GetInstance()->GetInputAndButtonColor()));
        placeButton(m_ui->confirm_btn, 31, NarrowButtonSize);
        placeButton(m_ui->cancel_btn, 137, NarrowButtonSize);
        placeButton(m_ui->ok_btn, 243, NarrowButtonSize);
        break;
    }
}

void TSMessageBox::setMessage(Mode mode, const QString &title, const QString &text, QWidget *pWidget)
{
    Q_UNUSED(pWidget)
    m_result = NoneValue;
    m_ui->retranslateUi(this);
    placeButtons();
    applyStyleSheets();
    applyMode(mode);
    m_mode = mode;
    m_ui->lab_context->setText(text);
    m_ui->btn_close->show();
    m_ui->tips_lab->setText(title);
    update();
}

void TSMessageBox::setButtonTexts(const QString &confirmText, const QString &cancelText, const QString &okText)
{
    m_ui->confirm_btn->setText(confirmText);
    m_ui->cancel_btn->setText(cancelText);
    m_ui->ok_btn->setText(okText);
}

void TSMessageBox::showModal()
{
    setModal(true);
    open();
}

void TSMessageBox::answer(ReturnValue value)
{
    close();
    m_result = value;
    Q_EMIT signalResult(m_result);
}

void TSMessageBox::on_confirm_btn_clicked()
{
    answer(YesValue);
}

void TSMessageBox::on_ok_btn_clicked()
{
    answer(OkValue);
}

void TSMessageBox::on_cancel_btn_clicked()
{
    answer(NoValue);
}

void TSMessageBox::on_btn_close_clicked()
{
    if (m_mode == YesNoMode)
        answer(NoValue);
    else
        close();
}

void TSMessageBox::slotExecInThread(Mode mode, QString title, QString text, QWidget *widget)
{
    setMessage(mode, title, text, widget);
    showModal();
}

void TSMessageBox::closeEvent(QCloseEvent *pEvent)
{
    endRunning();
    QDialog::closeEvent(pEvent);
}

void TSMessageBox::hideEvent(QHideEvent *pEvent)
{
    endRunning();
    QDialog::hideEvent(pEvent);
}

void TSMessageBox::paintEvent(QPaintEvent *pEvent)
{
    const QPainter painter(this);
    QDialog::paintEvent(pEvent);
}
