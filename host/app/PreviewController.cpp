#include "app/PreviewController.h"

#include "app/FileGridModel.h"
#include "basemodule/IHostAnalysis.h"
#include "interfaces/data/IPreviewDataSource.h"
#include "interfaces/plugin/IBigImgPreviewPlugin.h"
#include "interfaces/plugin/IPreviewNotes.h"
#include "library/FileTypes.h"

#include <QWidget>

namespace {

// Neighbours wait until the picture asked for has had the machine for itself: longer for the first one, which the
// user waits for with the program's start.
constexpr int k_nAheadAfterOpenMsec = 500;
constexpr int k_nAheadAfterStepMsec = 150;

} // namespace

PreviewController::PreviewController(QWidget *pWindow, const FileGridModel *pModel, QObject *pParent)
    : QObject(pParent)
    , m_pWindow(pWindow)
    , m_pModel(pModel)
{
    m_aheadTimer.setSingleShot(true);
    connect(&m_aheadTimer, &QTimer::timeout, this, &PreviewController::announceFilesAhead);
}

PreviewController::~PreviewController()
{
    shutdown();
}

void PreviewController::setPlugin(IBigImgPreviewPlugin *pPlugin, const QSharedPointer<IPreviewDataSource> &pDataSource,
                                  IMainWindowHandle *pHandle)
{
    m_pPlugin = pPlugin;
    if (m_pPlugin == nullptr)
        return;
    m_pPlugin->setDataSource(pDataSource);
    m_pPlugin->setMainWindowHandle(pHandle);
}

void PreviewController::setAnalysis(IHostAnalysis *pAnalysis)
{
    m_pAnalysis = pAnalysis;
}

bool PreviewController::openQuickPreview(qint64 nFileId)
{
    const int nRow = m_pModel->rowOf(nFileId);
    if (m_pPlugin == nullptr || isOpen() || nRow < 0)
        return false;
    m_pDialog = m_pPlugin->createPreviewSpaceDialog(m_pWindow, m_pModel->fileIds(), nRow, nFileId, 0);
    if (m_pDialog == nullptr)
        return false;
    connectSurface(m_pDialog.data());
    connect(m_pDialog.data(), &IPreviewSpaceDialog::signalSpacePreviewClosed, this, &PreviewController::close);
    begin(nFileId);
    m_pDialog->showPreview();
    m_pDialog->activateWindow();
    return true;
}

bool PreviewController::openFullPreview(qint64 nFileId)
{
    const int nRow = m_pModel->rowOf(nFileId);
    if (m_pPlugin == nullptr || isOpen() || nRow < 0)
        return false;
    m_pFull = m_pPlugin->createPreviewDbClickWidget(m_pWindow, m_pModel->fileIds(), nRow, nFileId, 0);
    if (m_pFull == nullptr)
        return false;
    connectSurface(m_pFull.data());
    connect(m_pFull.data(), &IPreviewDbClickWidget::signalBackBtnClicked, this, &PreviewController::close);
    begin(nFileId);
    Q_EMIT signalFullPreviewOpened(m_pFull);
    return true;
}

template <typename Surface>
void PreviewController::connectSurface(Surface *pSurface)
{
    connect(pSurface, &Surface::signalPreviewFileIdChanged, this, &PreviewController::follow);
    connect(pSurface, &Surface::sigRaiseAnalysisPriority, this,
            [this](const QVector<qint64> &fileIds) { Q_EMIT signalAnalysisWanted(fileIds); });
}

void PreviewController::begin(qint64 nFileId)
{
    m_nShownId = nFileId;
    m_nDirection = 1;
    announceFileShown();
    m_aheadTimer.start(k_nAheadAfterOpenMsec);
    Q_EMIT signalAnalysisWanted({nFileId});
}

void PreviewController::bringToFront()
{
    if (QWidget *pSurface = dialog()) {
        pSurface->raise();
        pSurface->activateWindow();
    }
}

void PreviewController::releaseFile(qint64 nFileId)
{
    const FileRecordPtr pRecord = m_pModel->recordAt(m_pModel->rowOf(nFileId));
    if (m_pFull == nullptr || nFileId != m_nShownId || pRecord == nullptr)
        return;
    const FileTypes::Kind kind = FileTypes::kindOf(pRecord->fileType());
    if (kind != FileTypes::Kind::Video && kind != FileTypes::Kind::Sound)
        return;
    m_pFull->stopPreview();
    m_nReleasedId = nFileId;
}

void PreviewController::takeFileBack(qint64 nFileId)
{
    const bool bShown = m_pFull != nullptr && m_nReleasedId != 0 && nFileId == m_nReleasedId && nFileId == m_nShownId;
    m_nReleasedId = 0;
    if (!bShown)
        return;
    close(nFileId);
    openFullPreview(nFileId);
}

void PreviewController::showNote(qint64 nFileId, int nPosition)
{
    if (m_pNotes != nullptr && (isOpen() || openQuickPreview(nFileId)))
        m_pNotes->showNote(nFileId, nPosition);
}

void PreviewController::follow(qint64 nFileId)
{
    const int nFrom = m_pModel->rowOf(m_nShownId);
    const int nTo = m_pModel->rowOf(nFileId);
    if (nFrom >= 0 && nTo >= 0 && nFrom != nTo)
        m_nDirection = nTo > nFrom ? 1 : -1;
    m_nShownId = nFileId;
    announceFileShown();
    m_aheadTimer.start(k_nAheadAfterStepMsec);
    Q_EMIT signalFileShown(nFileId);
}

void PreviewController::announceFileShown()
{
    const FileRecordPtr pRecord = m_pModel->recordAt(m_pModel->rowOf(m_nShownId));
    if (m_pAnalysis != nullptr)
        m_pAnalysis->setFileShown(pRecord != nullptr ? pRecord->filePath() : QString());
}

void PreviewController::announceFilesAhead()
{
    const int nRow = m_pModel->rowOf(m_nShownId);
    if (m_pAnalysis == nullptr || !isOpen() || nRow < 0)
        return;
    QStringList paths;
    for (const int nOffset : {m_nDirection, 2 * m_nDirection, -m_nDirection}) {
        const FileRecordPtr pRecord = m_pModel->recordAt(nRow + nOffset);
        if (pRecord != nullptr && !pRecord->isUnavailable())
            paths.append(pRecord->filePath());
    }
    m_pAnalysis->setFilesAhead(paths);
}

void PreviewController::close(qint64 nFileId)
{
    m_aheadTimer.stop();
    if (m_pAnalysis != nullptr) {
        m_pAnalysis->setFilesAhead({});
        m_pAnalysis->setFileShown({});
    }
    if (m_pFull != nullptr)
        Q_EMIT signalFullPreviewLeft();
    if (QWidget *pSurface = dialog()) {
        pSurface->disconnect(this);
        pSurface->deleteLater();
    }
    m_pFull.clear();
    m_pDialog.clear();
    Q_EMIT signalClosed(nFileId);
}

void PreviewController::drop()
{
    if (!isOpen())
        return;
    if (m_pFull != nullptr)
        m_pFull->stopPreview();
    close(0);
}

void PreviewController::shutdown()
{
    m_aheadTimer.stop();
    if (m_pFull != nullptr) {
        m_pFull->stopPreview();
        Q_EMIT signalFullPreviewLeft();
    }
    delete dialog();
    if (m_pPlugin != nullptr) {
        m_pPlugin->clearPreviewData();
        m_pPlugin->setMainWindowHandle(nullptr);
    }
    m_pPlugin = nullptr;
    m_pNotes = nullptr;
    m_pAnalysis = nullptr;
}
