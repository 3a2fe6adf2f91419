#include "preview/PreviewDbClickWidget.h"

#include "plugin/PluginInnerData.h"
#include "preview/HubTitleBar.h"
#include "preview/MiddleResourcePreviewWidget.h"

#include <QVBoxLayout>

PreviewDbClickWidget::PreviewDbClickWidget(QWidget *pParent)
    : IPreviewDbClickWidget(pParent)
    , m_pHub(new MiddleResourcePreviewWidget(this, MiddleResourcePreviewWidget::DoubleClickMode))
{
    using Hub = MiddleResourcePreviewWidget;
    setObjectName(QStringLiteral("PreviewDbClickWidget"));
    auto *pLayout = new QVBoxLayout(this);
    pLayout->setMargin(0);
    pLayout->addWidget(m_pHub);
    connect(PluginInnerData::instance(), &PluginInnerData::signalUpdateRightPanel, this,
            &IPreviewDbClickWidget::signalPreviewFileIdChanged);
    connect(m_pHub, &Hub::signal_exitCurWidget, this, &PreviewDbClickWidget::slot_close_hide);
    connect(m_pHub, &Hub::signal_forbidden_right, this, &IPreviewDbClickWidget::signalRightViewIsForbidden);
    connect(m_pHub, &Hub::signal_nextSource, this, [this] { step(1); });
    connect(m_pHub, &Hub::signal_previousSource, this, [this] { step(-1); });
    connect(this, &IPreviewDbClickWidget::signalStartSideTimer, m_pHub, &Hub::signal_start_right_side_timer);
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
}

QWidget *PreviewDbClickWidget::previewWidget()
{
    return this;
}

void PreviewDbClickWidget::slot_close_hide()
{
    close();
    Q_EMIT signalBackBtnClicked(PluginInnerData::instance()->currentFileId());
}

void PreviewDbClickWidget::showEvent(QShowEvent *pEvent)
{
    IPreviewDbClickWidget::showEvent(pEvent);
    if (m_bShownOnce)
        return;
    m_bShownOnce = true;
    m_pHub->slot_previewResource();
    m_pHub->setFocus();
}

void PreviewDbClickWidget::step(int nOffset)
{
    PluginInnerData *pData = PluginInnerData::instance();
    const QVector<FileInfoPtr> files = pData->fileInformationList();
    const int nIndex = pData->indexOfCurrent();
    const int nNext = nIndex + nOffset;
    if (nIndex == -1 || nNext < 0 || nNext >= files.size())
        return;
    pData->setCurrentFile(files.at(nNext)->fileId());
    Q_EMIT signalPreviewFileIdChanged(pData->currentFileId());
    m_pHub->slot_previewResource();
}
