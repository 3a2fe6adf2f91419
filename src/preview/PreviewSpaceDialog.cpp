#include "preview/PreviewSpaceDialog.h"

#include "common/CPushButton.h"
#include "common/IconStyle.h"
#include "interfaces/data/IFileListProvider.h"
#include "interfaces/data/IPreviewDataSource.h"
#include "plugin/PluginInnerData.h"
#include "preview/MiddleResourcePreviewWidget.h"
#include "theme/TSSkinSetting.h"

#include <QCloseEvent>
#include <QDebug>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QStyleOption>

namespace {

constexpr int CloseButtonSide = 20;
constexpr int CloseButtonRight = 57;
constexpr int CloseButtonTop = 37;
constexpr double VeilOpacity = 0.8;

} // namespace

PreviewSpaceDialog::PreviewSpaceDialog(QWidget *pParent)
    : IPreviewSpaceDialog(pParent, Qt::Dialog | Qt::FramelessWindowHint)
    , m_pLayout(new QHBoxLayout(this))
    , m_pCloseBtn(new CPushButton(this))
{
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowTitle(tr("Quick Preview"));
    m_pLayout->setMargin(1);
    // Before there is a hub: every widget in it would be styled anew.
    QColor veil(Qt::black);
    veil.setAlphaF(VeilOpacity);
    setStyleSheet(QStringLiteral("background:") + veil.name(QColor::HexArgb));
    m_pHub = new MiddleResourcePreviewWidget(this, MiddleResourcePreviewWidget::SpaceDialogMode);
    m_pHub->setStyleSheet(QStringLiteral("background:transparent"));
    m_pLayout->addWidget(m_pHub);
    buildCloseButton();
    connectHub();
    connectProvider();
    if (pParent != nullptr)
        pParent->window()->installEventFilter(this);
}

void PreviewSpaceDialog::buildCloseButton()
{
    m_pCloseBtn->setObjectName(QStringLiteral("closeButton"));
    m_pCloseBtn->setFlat(true);
    m_pCloseBtn->setFixedSize(CloseButtonSide, CloseButtonSide);
    m_pCloseBtn->setToolTip(tr("Close"));
    m_pCloseBtn->setAccessibleName(tr("Close"));
    const auto applyIcon = [this] {
        const TSSkinSetting *pSkin = TSSkinSetting::GetInstance();
        m_pCloseBtn->setStyleSheet(
            QStringLiteral("QPushButton{border:0px;background:transparent;%1} QPushButton:hover{%2}")
                .arg(pSkin->GetResourcePath(QStringLiteral("title_window_close_normal.svg")),
                     pSkin->GetResourcePath(QStringLiteral("title_window_close_hover.svg"))) +
            IconStyle::fixedButton(m_pCloseBtn->size()) + IconStyle::toolTip());
    };
    applyIcon();
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, m_pCloseBtn, applyIcon);
    m_pCloseBtn->raise();
}

void PreviewSpaceDialog::connectHub()
{
    using Hub = MiddleResourcePreviewWidget;
    connect(m_pCloseBtn, &QPushButton::clicked, this, &PreviewSpaceDialog::slot_close_hide);
    connect(m_pHub, &Hub::signal_exitCurWidget, this, &PreviewSpaceDialog::slot_close_hide);
    // The pages of a presentation come before the next file.
    const auto connectKey = [this](auto pSignal, bool bForward, void (PreviewSpaceDialog::*pStep)()) {
        connect(m_pHub, pSignal, this, [this, bForward, pStep] {
            if (!m_pHub->turnPage(bForward))
                (this->*pStep)();
        });
    };
    connectKey(&Hub::signal_left_Key_Pressed, false, &PreviewSpaceDialog::slot_show_left_source);
    connectKey(&Hub::signal_up_Key_Pressed, false, &PreviewSpaceDialog::slot_show_up_source);
    connectKey(&Hub::signal_right_Key_Pressed, true, &PreviewSpaceDialog::slot_show_right_source);
    connectKey(&Hub::signal_down_Key_Pressed, true, &PreviewSpaceDialog::slot_show_down_source);
    connect(m_pHub, &Hub::signal_close_space_dialog, this, &PreviewSpaceDialog::closeNow);
}

void PreviewSpaceDialog::connectProvider()
{
    const QSharedPointer<IPreviewDataSource> pSource = PluginInnerData::instance()->dataSource();
    IFileListProvider *pProvider = pSource ? pSource->fileListProvider() : nullptr;
    if (pProvider != nullptr) {
        connect(pProvider, SIGNAL(signalRemoveFiles(QVector<qint64>)), this,
                SLOT(onProviderRemoveFiles(QVector<qint64>)));
    }
}

void PreviewSpaceDialog::showPreview()
{
    coverHostWindow();
    m_pHub->slot_previewResource();
    setModal(true);
    m_bOpen = true;
    show();
    m_pHub->setFocus();
}

bool PreviewSpaceDialog::canClosePreview()
{
    if (!m_pHub->confirmNotLoading())
        return false;
    PluginInnerData::instance()->clearRenderCache();
    return true;
}

void PreviewSpaceDialog::slot_close_hide()
{
    if (!m_bOpen || !m_pHub->confirmNotLoading())
        return;
    PluginInnerData *pData = PluginInnerData::instance();
    if (pData->hasPendingPresentations()) {
        m_pHub->setClosePending(true); // releases what is being opened
        return;
    }
    closeNow();
}

void PreviewSpaceDialog::closeNow()
{
    if (!m_bOpen)
        return;
    m_bOpen = false;
    m_pHub->leavePreview();
    // Not close(): it does nothing inside the close event that may have led here.
    const QPointer<PreviewSpaceDialog> pThis(this);
    IPreviewSpaceDialog::reject();
    if (!pThis)
        return;
    Q_EMIT signalSpacePreviewClosed(PluginInnerData::instance()->currentFileId());
}

void PreviewSpaceDialog::slot_show_left_source()
{
    showPrevious();
}

void PreviewSpaceDialog::slot_show_up_source()
{
    showPrevious();
}

void PreviewSpaceDialog::slot_show_right_source()
{
    showNext();
}

void PreviewSpaceDialog::slot_show_down_source()
{
    showNext();
}

int PreviewSpaceDialog::currentPosition() const
{
    const int nIndex = PluginInnerData::instance()->indexOfCurrent();
    if (nIndex == -1)
        qCritical() << "PreviewSpaceDialog::slot_show_left_source" << nIndex;
    return nIndex;
}

void PreviewSpaceDialog::showNext()
{
    const int nIndex = currentPosition();
    if (nIndex != -1 && nIndex + 1 < PluginInnerData::instance()->fileInformationList().size())
        showFileAt(nIndex + 1);
}

void PreviewSpaceDialog::showPrevious()
{
    const int nIndex = currentPosition();
    if (nIndex > 0)
        showFileAt(nIndex - 1);
}

void PreviewSpaceDialog::showFileAt(int nIndex)
{
    PluginInnerData *pData = PluginInnerData::instance();
    const FileInfoPtr pInfo = pData->fileInformationList().at(nIndex);
    if (!pInfo)
        return;
    const qint64 nFileId = pInfo->fileId();
    pData->setCurrentFile(nFileId, nIndex);
    const QPointer<PreviewSpaceDialog> pThis(this);
    Q_EMIT signalPreviewFileIdChanged(nFileId);
    if (pThis)
        m_pHub->slot_previewResource();
}

void PreviewSpaceDialog::onProviderRemoveFiles(QVector<qint64> fileIds)
{
    Q_UNUSED(fileIds)
    slot_close_hide();
}

void PreviewSpaceDialog::paintEvent(QPaintEvent *pEvent)
{
    Q_UNUSED(pEvent)
    // Qt paints no background of its own on a translucent window, the style sheet's included.
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}

void PreviewSpaceDialog::resizeEvent(QResizeEvent *pEvent)
{
    IPreviewSpaceDialog::resizeEvent(pEvent);
    m_pCloseBtn->move(width() - CloseButtonRight, CloseButtonTop);
    m_pCloseBtn->raise();
}

void PreviewSpaceDialog::closeEvent(QCloseEvent *pEvent)
{
    // The window manager's way to close goes the same way as the button's.
    slot_close_hide();
    pEvent->setAccepted(!m_bOpen);
}

void PreviewSpaceDialog::keyPressEvent(QKeyEvent *pEvent)
{
    // To a dialog, Enter is a click on its first button.
    if (pEvent->key() == Qt::Key_Enter || pEvent->key() == Qt::Key_Return)
        pEvent->ignore();
    else
        IPreviewSpaceDialog::keyPressEvent(pEvent);
}

void PreviewSpaceDialog::reject()
{
    slot_close_hide();
}

bool PreviewSpaceDialog::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    const bool bMoved = pEvent->type() == QEvent::Move || pEvent->type() == QEvent::Resize;
    if (bMoved && isVisible())
        coverHostWindow();
    return IPreviewSpaceDialog::eventFilter(pWatched, pEvent);
}

void PreviewSpaceDialog::coverHostWindow()
{
    if (parentWidget() != nullptr)
        setGeometry(parentWidget()->window()->geometry());
    else if (const QScreen *pScreen = QGuiApplication::screenAt(QCursor::pos()))
        setGeometry(pScreen->availableGeometry());
}
