#include "preview/PreviewDbClickWidget.h"

#include "interfaces/data/IFileListProvider.h"
#include "interfaces/data/IPreviewDataSource.h"
#include "interfaces/services/ISettingsObject.h"
#include "plugin/PluginInnerData.h"
#include "preview/HubTitleBar.h"
#include "preview/MiddleResourcePreviewWidget.h"
#include "preview/PreviewLeftNumWin.h"
#include "preview/PreviewLeftWin.h"
#include "theme/TSSkinSetting.h"
#include "ui_PreviewDbClickWidget.h"

#include <QPainter>

#include <utility>

namespace {

constexpr int LeftColumnWidth = 140;
constexpr int MinimumWidth = 140;
constexpr int StripRow = 1;
constexpr int CounterRow = 2;
constexpr int LongList = 10000;

} // namespace

PreviewDbClickWidget::PreviewDbClickWidget(QWidget *pParent)
    : IPreviewDbClickWidget(pParent)
    , m_pStrip(new PreviewLeftWin(this))
    , m_pCounter(new PreviewLeftNumWin(this))
    , m_pHub(new MiddleResourcePreviewWidget(this, MiddleResourcePreviewWidget::DoubleClickMode))
    , m_ui(std::make_unique<Ui::PreviewDbClickWidget>())
{
    buildForm();
    connect(PluginInnerData::instance(), &PluginInnerData::signalUpdateRightPanel, this,
            &IPreviewDbClickWidget::signalPreviewFileIdChanged);
    readColumnSettings();
    connectHub();
    connectColumns();
    connectProvider();
    // The strip takes the focus by a click; leaving, folding and zooming go on from there.
    m_pHub->shareKeysWith(m_ui->wid_left);
    showFirstFile();
}

PreviewDbClickWidget::~PreviewDbClickWidget() = default;

void PreviewDbClickWidget::buildForm()
{
    m_ui->setupUi(this);
    m_ui->gridLayout->addWidget(m_pStrip, StripRow, 0);
    m_ui->gridLayout->addWidget(m_pCounter, CounterRow, 0);
    m_ui->verticalLayout_mid->addWidget(m_pHub);
    setMinimumWidth(MinimumWidth);
    m_ui->splitter->setSizes({LeftColumnWidth});
    m_ui->splitter->handle(0)->installEventFilter(this);
    m_ui->splitter->handle(1)->installEventFilter(this);
    m_ui->wid_left->installEventFilter(this);
    connect(TSSkinSetting::GetInstance(), &TSSkinSetting::signalThemeChanged, m_ui->wid_left,
            QOverload<>::of(&QWidget::update));
}

void PreviewDbClickWidget::readColumnSettings()
{
    PluginInnerData *pData = PluginInnerData::instance();
    const ISettingsObject *pSettings = pData->settingsObject();
    const bool bLeftShown = pSettings == nullptr || pSettings->isLeftColumnShown();
    if (!bLeftShown) {
        m_pHub->titleBar()->setColumnTextShow(true);
        m_ui->wid_left->hide();
    }
    pData->setLeftColumnShown(bLeftShown);
    pData->setRightPanelHidden(pSettings != nullptr && pSettings->isRightPanelHidden());
    m_pHub->refreshTitleBar();
}

void PreviewDbClickWidget::connectHub()
{
    using Hub = MiddleResourcePreviewWidget;
    connect(m_pStrip, SIGNAL(SigShowResource(int, int, qint64)), this, SLOT(SlotRecvShowSource(int, int, qint64)));
    connect(this, &PreviewDbClickWidget::signal_showResource, m_pHub, &Hub::slot_previewResource);
    connect(m_pHub, &Hub::signal_exitCurWidget, this, &PreviewDbClickWidget::slot_close_hide);
    connect(m_pHub, &Hub::siganl_updateLeftList, m_pStrip, &PreviewLeftWin::slotThumbnailLoad);
    connect(m_pHub, &Hub::signal_left_Key_Pressed, this, &PreviewDbClickWidget::slot_show_left_source);
    connect(m_pHub, &Hub::signal_right_Key_Pressed, this, &PreviewDbClickWidget::slot_show_right_source);
    connect(m_pHub, &Hub::signal_up_Key_Pressed, this, &PreviewDbClickWidget::slot_show_up_source);
    connect(m_pHub, &Hub::signal_down_Key_Pressed, this, &PreviewDbClickWidget::slot_show_down_source);
    connect(m_pHub, &Hub::signal_previousSource, m_pStrip, &PreviewLeftWin::selectPrevious);
    connect(m_pHub, &Hub::signal_nextSource, m_pStrip, &PreviewLeftWin::selectNext);
    connect(m_pHub, &Hub::signal_deletedFile, this, [] {
        // The host tells which files are gone: onProviderRemoveFiles.
    });
    connect(m_pHub, &Hub::signal_forbidden_right, this, &IPreviewDbClickWidget::signalRightViewIsForbidden);
}

void PreviewDbClickWidget::connectColumns()
{
    using Hub = MiddleResourcePreviewWidget;
    connect(m_pHub, &Hub::signal_SourcePreviewFullScreen, this, &PreviewDbClickWidget::toggleFullScreen);
    connect(m_pHub, &Hub::signal_right_changed, this, &PreviewDbClickWidget::toggleRightPanel);
    connect(m_pHub, &Hub::signal_left_chenged, this, &PreviewDbClickWidget::slot_left_changed);
    connect(this, &IPreviewDbClickWidget::signalStartSideTimer, m_pHub, &Hub::signal_start_right_side_timer);
}

void PreviewDbClickWidget::connectProvider()
{
    // Of use only to a host that emits in another thread, which then does no harm.
    qRegisterMetaType<QVector<qint64>>("QVector<qint64>");
    const QSharedPointer<IPreviewDataSource> pSource = PluginInnerData::instance()->dataSource();
    IFileListProvider *pProvider = pSource ? pSource->fileListProvider() : nullptr;
    if (pProvider != nullptr) {
        connect(pProvider, SIGNAL(signalRemoveFiles(QVector<qint64>)), this,
                SLOT(onProviderRemoveFiles(QVector<qint64>)));
    }
}

void PreviewDbClickWidget::showFirstFile()
{
    m_pStrip->reload();
    if (m_pStrip->currentIndex().isValid())
        return;
    // A host that gives no list may still give the file; without either there is nothing to wait for.
    if (PluginInnerData::instance()->currentFileInfo())
        m_pHub->slot_previewResource();
    else
        m_pHub->slot_switchPreviewWidget(MiddleResourcePreviewWidget::ReservedPage);
}

bool PreviewDbClickWidget::canClosePreview()
{
    if (!m_pHub->confirmNotLoading())
        return false;
    PluginInnerData::instance()->clearRenderCache();
    return true;
}

void PreviewDbClickWidget::stopPreview()
{
    m_pHub->leavePreview();
}

void PreviewDbClickWidget::setRightPanelHidden(bool bHidden)
{
    PluginInnerData::instance()->setRightPanelHidden(bHidden);
    m_pHub->titleBar()->setColumnTextShow(false);
    m_pHub->refreshTitleBar();
}

QWidget *PreviewDbClickWidget::previewWidget()
{
    return this;
}

void PreviewDbClickWidget::SlotRecvShowSource(int cur, int total, qint64 fileId)
{
    m_pCounter->setNumbers(cur, total);
    if (m_bOnlyListing)
        return;
    m_bAnnouncing = true;
    QVector<qint64> raised{fileId};
    Q_EMIT sigRaiseAnalysisPriority(raised);
    Q_EMIT signalPreviewFileIdChanged(fileId);
    Q_EMIT signal_showResource();
    m_bAnnouncing = false;
}

void PreviewDbClickWidget::slot_close_hide()
{
    m_bClosed = true;
    close();
    Q_EMIT signalBackBtnClicked(PluginInnerData::instance()->currentFileId());
}

void PreviewDbClickWidget::slot_show_left_source()
{
    // Stepping goes through the strip; so too in the three below.
}

void PreviewDbClickWidget::slot_show_right_source()
{
}

void PreviewDbClickWidget::slot_show_up_source()
{
}

void PreviewDbClickWidget::slot_show_down_source()
{
}

void PreviewDbClickWidget::slot_left_changed()
{
    PluginInnerData *pData = PluginInnerData::instance();
    QWidget *pLeft = m_ui->wid_left;
    const bool bHide = !pLeft->isHidden() || pData->isLeftColumnShown();
    m_pHub->titleBar()->setColumnTextShow(bHide);
    const bool bHadFocus = pLeft->isAncestorOf(QApplication::focusWidget());
    pLeft->setVisible(!bHide);
    if (bHide && bHadFocus)
        m_pHub->setFocus();
    pData->setLeftColumnShown(!bHide);
    m_pHub->refreshTitleBar();
    updateColumnText();
}

void PreviewDbClickWidget::toggleRightPanel()
{
    PluginInnerData *pData = PluginInnerData::instance();
    Q_EMIT signalHideRightView();
    pData->setRightPanelHidden(!pData->isRightPanelHidden());
    m_pHub->refreshTitleBar();
    updateColumnText();
}

void PreviewDbClickWidget::toggleFullScreen()
{
    // Not a plain toggle of both columns: this is the order in which they come and go.
    PluginInnerData *pData = PluginInnerData::instance();
    const bool bLeftHidden = m_ui->wid_left->isHidden();
    if (pData->isRightPanelHidden()) {
        Q_EMIT signalHideRightView();
        pData->setRightPanelHidden(false);
        if (!bLeftHidden)
            slot_left_changed();
    } else if (bLeftHidden) {
        Q_EMIT signalHideRightView();
        pData->setRightPanelHidden(true);
        slot_left_changed();
    } else {
        slot_left_changed();
    }
    m_pHub->refreshTitleBar();
    updateColumnText();
}

void PreviewDbClickWidget::updateColumnText()
{
    const bool bRightHidden = PluginInnerData::instance()->isRightPanelHidden();
    m_pHub->titleBar()->setColumnTextShow(!bRightHidden && m_ui->wid_left->isHidden());
}

void PreviewDbClickWidget::onProviderRemoveFiles(QVector<qint64> fileIds)
{
    if (m_bClosed)
        return;
    // The host may find out while it is told of a choice, which the strip is still making.
    if (m_bAnnouncing || m_bRemovalQueued) {
        m_removedMeanwhile += fileIds;
        queueRemoval();
        return;
    }
    // A flood of signals is not to go through a long list once for each of them.
    if (removeListed(fileIds) && PluginInnerData::instance()->fileIds().size() > LongList)
        queueRemoval();
}

void PreviewDbClickWidget::queueRemoval()
{
    if (m_bRemovalQueued)
        return;
    m_bRemovalQueued = true;
    const auto removeGathered = [this] {
        m_bRemovalQueued = false;
        const QVector<qint64> removed = std::exchange(m_removedMeanwhile, {});
        if (!removed.isEmpty())
            onProviderRemoveFiles(removed);
    };
    QMetaObject::invokeMethod(this, removeGathered, Qt::QueuedConnection);
}

/** False when nothing is left to show: the host may have deleted this then. */
bool PreviewDbClickWidget::removeListed(const QVector<qint64> &fileIds)
{
    PluginInnerData *pData = PluginInnerData::instance();
    const bool bCurrentRemoved = fileIds.contains(pData->currentFileId());
    if (bCurrentRemoved)
        pData->removeFiles(fileIds);
    pData->dropFiles(fileIds);
    pData->refillFileInformation();
    const bool bNothingToShow = bCurrentRemoved && pData->fileInformationList().isEmpty();
    m_bEmptied = pData->fileIds().isEmpty() || bNothingToShow;
    if (m_bEmptied) {
        if (pData->isLoading())
            leaveWhenEmpty();
        m_pHub->slot_exitCurPreview_Key();
        return false;
    }
    // What is looked at, listened to or noted on goes on when another file leaves the list.
    m_bOnlyListing = !bCurrentRemoved;
    m_pStrip->reload();
    m_bOnlyListing = false;
    m_pStrip->slotThumbnailLoad();
    return true;
}

/** The exit after the last file's removal was refused while a file loaded: it is made up for when the load ends. */
void PreviewDbClickWidget::leaveWhenEmpty()
{
    if (!m_bEmptied || m_bClosed)
        return;
    if (PluginInnerData::instance()->isLoading())
        PluginInnerData::instance()->callAfterLoading(this, [this] { leaveWhenEmpty(); });
    else
        m_pHub->slot_exitCurPreview_Key();
}

bool PreviewDbClickWidget::eventFilter(QObject *pWatched, QEvent *pEvent)
{
    if (pWatched == m_ui->wid_left && pEvent->type() == QEvent::Paint) {
        QPainter painter(m_ui->wid_left);
        painter.fillRect(m_ui->wid_left->rect(), TSSkinSetting::GetInstance()->GetLeftWinBackgroundColor());
    } else if (pWatched == m_ui->splitter->handle(1)) {
        if (pEvent->type() == QEvent::Enter)
            Q_EMIT m_pHub->signal_start_left_side_timer();
        else if (pEvent->type() == QEvent::Leave)
            Q_EMIT m_pHub->signal_stop_side_timer();
    }
    return false;
}

void PreviewDbClickWidget::showEvent(QShowEvent *pEvent)
{
    IPreviewDbClickWidget::showEvent(pEvent);
    m_bClosed = false;
    if (m_bShownOnce)
        return;
    m_bShownOnce = true;
    m_pHub->setFocus();
}
