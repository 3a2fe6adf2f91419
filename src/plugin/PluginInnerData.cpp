#include "plugin/PluginInnerData.h"

#include "interfaces/actions/ITagAction.h"
#include "interfaces/data/IFileInformationProvider.h"
#include "interfaces/data/IPreviewDataSource.h"
#include "interfaces/services/IBaseModulePlugin.h"
#include "interfaces/services/IDataCenterPlugin.h"
#include "interfaces/services/IPresentationRenderer.h"
#include "interfaces/services/ISettingPlugin.h"
#include "interfaces/services/ISettingsObject.h"
#include "interfaces/services/IShortcutSetting.h"
#include "interfaces/services/ITSCacheManager.h"
#include "plugin/HostLookup.h"

#include <QDebug>
#include <QMutexLocker>
#include <QSet>

namespace {

constexpr int KeptPictureLevels = 2;

QSet<qint64> toSet(const QVector<qint64> &ids)
{
    return {ids.constBegin(), ids.constEnd()};
}

} // namespace

PluginInnerData *PluginInnerData::instance()
{
    static PluginInnerData *pInstance = nullptr;
    if (pInstance == nullptr)
        pInstance = new PluginInnerData;
    return pInstance;
}

void PluginInnerData::setPluginManager(IPluginManager *pManager)
{
    qDebug("Big Img Preview Set Plugin Manager");
    m_pPluginManager = pManager;
    // What an earlier manager gave may be gone with it.
    m_pSettingPlugin = nullptr;
    m_pShortcutSetting = nullptr;
    m_pSettingsObject = nullptr;
    m_pCacheManager.reset();
    m_pImageDecoder = nullptr;
    m_pPresentationRenderer = nullptr;
    if (m_pPluginManager == nullptr) {
        qDebug("Big Img Preview Set Plugin Manager,m_pluginManager is nullptr");
        return;
    }
    lookupBaseModule();
    m_pSettingPlugin = lookupHostInterface<ISettingPlugin>(m_pPluginManager, QStringLiteral("ISettingPlugin"));
    if (m_pSettingPlugin == nullptr) {
        qDebug("Big Img Preview Set Plugin Manager,m_pSettingPlugin is nullptr");
        return;
    }
    m_pShortcutSetting = m_pSettingPlugin->shortcutSetting();
    if (m_pShortcutSetting == nullptr)
        qDebug("Big Img Preview Set Plugin Manager,m_pShortcutSetting is nullptr");
    m_pSettingsObject = m_pSettingPlugin->settingsObject();
}

void PluginInnerData::lookupBaseModule()
{
    auto *pBaseModule = lookupHostInterface<IBaseModulePlugin>(m_pPluginManager, QStringLiteral("IBaseModulePlugin"));
    if (pBaseModule == nullptr)
        return;
    m_pCacheManager = pBaseModule->cacheManager();
    m_pImageDecoder = pBaseModule->imageDecoder();
    m_pPresentationRenderer = pBaseModule->presentationRenderer();
}

QSharedPointer<ITSCacheManager> PluginInnerData::cacheManager()
{
    if (m_pPluginManager != nullptr)
        lookupBaseModule();
    return m_pCacheManager;
}

QSharedPointer<QObject> PluginInnerData::dataCenter()
{
    auto *pPlugin = lookupHostInterface<IDataCenterPlugin>(m_pPluginManager, QStringLiteral("IDataCenterPlugin"));
    m_pDataCenter = pPlugin != nullptr ? pPlugin->dataCenter() : QSharedPointer<QObject>();
    return m_pDataCenter;
}

QString PluginInnerData::shortcutText(int nShortcutId) const
{
    return m_pShortcutSetting != nullptr ? m_pShortcutSetting->shortcut(nShortcutId).keySequence : QString();
}

QString PluginInnerData::settingsText() const
{
    return m_pSettingPlugin != nullptr && m_pSettingsObject != nullptr ? m_pSettingsObject->lastExportPath()
                                                                       : QString();
}

void PluginInnerData::setDataSource(const QSharedPointer<IPreviewDataSource> &pDataSource)
{
    m_pDataSource = pDataSource;
    m_pTagAction = m_pDataSource ? m_pDataSource->tagAction() : QSharedPointer<ITagAction>();
}

void PluginInnerData::clearPreviewData()
{
    {
        const QMutexLocker locker(&m_lock);
        m_pDataSource.reset();
        m_pTagAction.reset();
        m_fileInformationList.clear();
        m_pCurrentFileInfo.reset();
        m_currentTags.clear();
        m_pDataCenter.reset();
    }
    const QMutexLocker locker(&m_exchangeLock);
    m_pictureLevels.clear();
}

void PluginInnerData::setFileList(const QVector<qint64> &fileIds, int nIndex, qint64 nContext)
{
    if (!m_fileIds.isSharedWith(fileIds))
        m_fileIds = fileIds;
    m_nCurrentIndex = nIndex;
    m_nContext = nContext;
    refillFileInformation();
}

void PluginInnerData::refillFileInformation()
{
    if (!m_pDataSource)
        return;
    m_fileInformationList.clear();
    if (IFileInformationProvider *pProvider = m_pDataSource->fileInformationProvider())
        pProvider->fillFileInformation(m_fileIds, &m_fileInformationList);
}

void PluginInnerData::setCurrentFile(qint64 nFileId)
{
    m_nCurrentFileId = nFileId;
    if (!m_pDataSource)
        return;
    m_currentTags.clear();
    m_pCurrentFileInfo = m_pDataSource->fileInfo(nFileId, &m_currentTags);
    m_notes.clear();
    if (!m_pCurrentFileInfo)
        return;
    const QVector<NoteRecord> notes = m_pCurrentFileInfo->notes();
    for (int i = 0; i < notes.size(); ++i)
        m_notes.insert(i, notes.at(i));
}

int PluginInnerData::reloadCurrentTags()
{
    if (m_pDataSource) {
        m_currentTags.clear();
        m_pCurrentFileInfo = m_pDataSource->fileInfo(m_nCurrentFileId, &m_currentTags);
    }
    return m_currentTags.size();
}

int PluginInnerData::indexOfCurrent() const
{
    if (!m_pCurrentFileInfo)
        return -1;
    const int nIndex = m_fileInformationList.indexOf(m_pCurrentFileInfo);
    if (nIndex >= 0)
        return nIndex;
    // A host that makes a new record on each request still means the same file.
    const qint64 nId = m_pCurrentFileInfo->fileId();
    for (int i = 0; i < m_fileInformationList.size(); ++i) {
        if (m_fileInformationList.at(i) && m_fileInformationList.at(i)->fileId() == nId)
            return i;
    }
    return -1;
}

QString PluginInnerData::currentFilePath() const
{
    return m_pCurrentFileInfo ? m_pCurrentFileInfo->filePath() : QString();
}

QString PluginInnerData::currentFileName() const
{
    return m_pCurrentFileInfo ? m_pCurrentFileInfo->fileName() : QString();
}

QString PluginInnerData::currentFileDescription() const
{
    return m_pCurrentFileInfo ? m_pCurrentFileInfo->description() : QString();
}

void PluginInnerData::removeFiles(const QVector<qint64> &removedIds)
{
    const QSet<qint64> removed = toSet(removedIds);
    const auto isKept = [this, &removed](int i) {
        return m_fileInformationList.at(i) && !removed.contains(m_fileInformationList.at(i)->fileId());
    };
    const int nPosition = indexOfCurrent();
    int nChosen = -1;
    for (int i = nPosition + 1; nChosen < 0 && i < m_fileInformationList.size(); ++i) {
        if (isKept(i))
            nChosen = i;
    }
    for (int i = nPosition - 1; nChosen < 0 && i >= 0; --i) {
        if (isKept(i))
            nChosen = i;
    }
    if (nChosen >= 0)
        setCurrentFile(m_fileInformationList.at(nChosen)->fileId());
}

void PluginInnerData::dropFiles(const QVector<qint64> &removedIds)
{
    const QSet<qint64> removed = toSet(removedIds);
    QVector<qint64> kept;
    kept.reserve(m_fileIds.size());
    for (const qint64 nId : qAsConst(m_fileIds)) {
        if (!removed.contains(nId))
            kept.append(nId);
    }
    m_fileIds = kept;
}

void PluginInnerData::endLoadingsOf(const QObject *pReceiver)
{
    for (auto it = m_loadingFiles.begin(); it != m_loadingFiles.end();)
        it = it.value() == pReceiver ? m_loadingFiles.erase(it) : it + 1;
}

bool PluginInnerData::hasRenderEntry(qint64 nFileId) const
{
    const QMutexLocker locker(&m_exchangeLock);
    return m_renderCache.contains(nFileId);
}

int PluginInnerData::presentationPageCount(qint64 nFileId) const
{
    const QMutexLocker locker(&m_exchangeLock);
    return m_renderCache.value(nFileId).nPageCount;
}

void PluginInnerData::dropRenderEntry(qint64 nFileId)
{
    {
        const QMutexLocker locker(&m_exchangeLock);
        if (m_renderCache.remove(nFileId) == 0)
            return;
    }
    if (IPresentationRenderer *pRenderer = m_pPresentationRenderer)
        pRenderer->closeDocument(nFileId);
}

void PluginInnerData::clearRenderCache()
{
    QList<qint64> openIds;
    {
        const QMutexLocker locker(&m_exchangeLock);
        openIds = m_renderCache.keys();
        m_renderCache.clear();
    }
    IPresentationRenderer *pRenderer = m_pPresentationRenderer;
    if (pRenderer == nullptr)
        return;
    for (const qint64 nId : qAsConst(openIds))
        pRenderer->closeDocument(nId);
}

void PluginInnerData::releaseOpenRenderers()
{
    closeAllPresentations();
}

bool PluginInnerData::openPresentation(qint64 nFileId, const QString &path)
{
    IPresentationRenderer *pRenderer = m_pPresentationRenderer;
    RenderEntry entry;
    entry.bOpen = pRenderer != nullptr && pRenderer->openDocument(nFileId, path);
    entry.nPageCount = entry.bOpen ? pRenderer->pageCount(nFileId) : 0;
    const QMutexLocker locker(&m_exchangeLock);
    m_renderCache.insert(nFileId, entry);
    return entry.bOpen;
}

QImage PluginInnerData::renderPresentationPage(qint64 nFileId, int nPage) const
{
    IPresentationRenderer *pRenderer = m_pPresentationRenderer;
    return pRenderer != nullptr ? pRenderer->renderPage(nFileId, nPage, QSize()) : QImage();
}

void PluginInnerData::closeAllPresentations()
{
    if (IPresentationRenderer *pRenderer = m_pPresentationRenderer)
        pRenderer->closeAllDocuments();
}

void PluginInnerData::storePictureLevels(qint64 nImageKey, const QVector<QImage> &levels)
{
    if (levels.isEmpty())
        return;
    const QMutexLocker locker(&m_exchangeLock);
    m_pictureLevels.append({nImageKey, levels});
    while (m_pictureLevels.size() > KeptPictureLevels)
        m_pictureLevels.removeFirst();
}

QVector<QImage> PluginInnerData::takePictureLevels(qint64 nImageKey)
{
    const QMutexLocker locker(&m_exchangeLock);
    for (int i = 0; i < m_pictureLevels.size(); ++i) {
        if (m_pictureLevels.at(i).first == nImageKey)
            return m_pictureLevels.takeAt(i).second;
    }
    return {};
}
