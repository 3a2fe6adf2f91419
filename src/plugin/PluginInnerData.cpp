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

#include <algorithm>

namespace {

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

PluginInnerData::PluginInnerData()
{
    connect(&m_noteStore, &NoteStore::signal_stored, this, &PluginInnerData::takeStoredNotes);
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
    m_pCacheManager = pBaseModule != nullptr ? pBaseModule->cacheManager() : QSharedPointer<ITSCacheManager>();
    m_pImageDecoder = pBaseModule != nullptr ? pBaseModule->imageDecoder() : nullptr;
    m_pPresentationRenderer = pBaseModule != nullptr ? pBaseModule->presentationRenderer() : nullptr;
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

bool PluginInnerData::isShortcutEnabled() const
{
    return m_pShortcutSetting != nullptr && m_pShortcutSetting->isShortcutEnabled();
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

void PluginInnerData::setLastExportPath(const QString &path)
{
    if (m_pSettingsObject != nullptr)
        m_pSettingsObject->setLastExportPath(path);
}

void PluginInnerData::setDataSource(const QSharedPointer<IPreviewDataSource> &pDataSource)
{
    m_pDataSource = pDataSource;
    if (!m_pDataSource) {
        m_fileInformationList.clear();
        m_pCurrentFileInfo.reset();
        m_currentTags.clear();
        m_notes.clear();
    }
    m_pTagAction = m_pDataSource ? m_pDataSource->tagAction() : QSharedPointer<ITagAction>();
}

void PluginInnerData::clearPreviewData()
{
    detachRenderer();
    // What the host's own destructors do is not to happen under the lock: they may come back here, or wait for a
    // decode.
    QSharedPointer<IPreviewDataSource> pDataSource;
    QSharedPointer<ITagAction> pTagAction;
    QVector<FileInfoPtr> files;
    FileInfoPtr pFile;
    TagRecordList tags;
    QSharedPointer<ITSCacheManager> pCacheManager;
    {
        const QMutexLocker locker(&m_lock);
        pDataSource.swap(m_pDataSource);
        pTagAction.swap(m_pTagAction);
        files.swap(m_fileInformationList);
        pFile.swap(m_pCurrentFileInfo);
        tags.swap(m_currentTags);
        m_notes.clear();
        pCacheManager.swap(m_pCacheManager);
        // A task that waits for the lock finds no decoder any more; the next source looks it up again.
        m_pImageDecoder = nullptr;
    }
    pDataSource.reset();
    pTagAction.reset();
    files.clear();
    pFile.reset();
    tags.clear();
    pCacheManager.reset();
    m_pDataCenter.reset();
    m_noteStore.clear();
    m_pictureMemory.trim();
}

void PluginInnerData::setFileList(const QVector<qint64> &fileIds, int nIndex, qint64 nContext)
{
    if (!m_fileIds.isSharedWith(fileIds))
        m_fileIds = fileIds;
    m_nCurrentIndex = nIndex;
    m_nPositionHint = nIndex;
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
    // A record that the host could not give is no file to step to.
    m_fileInformationList.removeAll(FileInfoPtr());
}

void PluginInnerData::setCurrentFile(qint64 nFileId, int nKnownPosition)
{
    m_nCurrentFileId = nFileId;
    if (nKnownPosition >= 0)
        m_nPositionHint = nKnownPosition;
    if (!m_pDataSource)
        return;
    m_currentTags.clear();
    m_pCurrentFileInfo = m_pDataSource->fileInfo(nFileId, &m_currentTags);
    m_notes.clear();
    if (!m_pCurrentFileInfo)
        return;
    numberNotes(m_noteStore.newest(nFileId, m_pCurrentFileInfo->notes()));
}

int PluginInnerData::reloadCurrentTags()
{
    if (m_pDataSource) {
        m_currentTags.clear();
        m_pCurrentFileInfo = m_pDataSource->fileInfo(m_nCurrentFileId, &m_currentTags);
    }
    return m_currentTags.size();
}

bool PluginInnerData::isCurrentAt(int nPosition) const
{
    return nPosition >= 0 && nPosition < m_fileInformationList.size() &&
           m_fileInformationList.at(nPosition) == m_pCurrentFileInfo;
}

int PluginInnerData::indexOfCurrent() const
{
    // Steps are short: of a long list only the neighbourhood of the last answer is looked at, as a rule.
    for (const int nPosition : {m_nPositionHint, m_nPositionHint + 1, m_nPositionHint - 1}) {
        if (m_pCurrentFileInfo && isCurrentAt(nPosition))
            return m_nPositionHint = nPosition;
    }
    int nIndex = m_pCurrentFileInfo ? m_fileInformationList.indexOf(m_pCurrentFileInfo) : -1;
    if (nIndex < 0) {
        // A host that makes a new record on each request, or has none for the file any more, still means the same file.
        const auto isCurrent = [this](const FileInfoPtr &pInfo) {
            return pInfo->fileId() == m_nCurrentFileId;
        };
        const auto begin = m_fileInformationList.cbegin();
        const auto end = m_fileInformationList.cend();
        if (m_nPositionHint >= 0 && m_nPositionHint < m_fileInformationList.size() && isCurrent(begin[m_nPositionHint]))
            return m_nPositionHint;
        const auto it = std::find_if(begin, end, isCurrent);
        nIndex = it != end ? int(it - begin) : -1;
    }
    if (nIndex >= 0)
        m_nPositionHint = nIndex;
    return nIndex;
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
        return !removed.contains(m_fileInformationList.at(i)->fileId());
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
        setCurrentFile(m_fileInformationList.at(nChosen)->fileId(), nChosen);
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

bool PluginInnerData::isLoadingFor(qint64 nFileId, const QObject *pReceiver) const
{
    return m_loadingFiles.value(nFileId).contains(pReceiver);
}

void PluginInnerData::endLoading(qint64 nFileId, const QObject *pReceiver)
{
    const auto it = m_loadingFiles.find(nFileId);
    if (it == m_loadingFiles.end())
        return;
    it->removeOne(pReceiver);
    if (it->isEmpty())
        m_loadingFiles.erase(it);
    if (isLoading())
        return;
    // Later: whoever ends the load has not yet shown what came of it.
    for (const auto &waiting : qAsConst(m_afterLoading)) {
        if (waiting.first)
            QMetaObject::invokeMethod(waiting.first, waiting.second, Qt::QueuedConnection);
    }
    m_afterLoading.clear();
}

void PluginInnerData::callAfterLoading(QObject *pContext, const std::function<void()> &call)
{
    m_afterLoading.append({pContext, call});
}

void PluginInnerData::endLoadingsOf(const QObject *pReceiver)
{
    const QList<qint64> fileIds = m_loadingFiles.keys();
    for (const qint64 nFileId : fileIds)
        endLoading(nFileId, pReceiver);
}
