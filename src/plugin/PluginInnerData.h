#pragma once

#include "common/PictureMemory.h"
#include "interfaces/data/IFileInfo.h"
#include "interfaces/data/IResponseInfo.h"
#include "interfaces/data/NoteRecord.h"
#include "interfaces/data/TagRecord.h"
#include "plugin/NoteStore.h"

#include <QImage>
#include <QMap>
#include <QMutex>
#include <QObject>
#include <QPointer>
#include <QReadWriteLock>
#include <QSharedPointer>
#include <QSize>
#include <QVector>

#include <atomic>
#include <functional>
#include <utility>

class IBaseModulePlugin;
class IDataCenterPlugin;
class IImageDecoder;
class IMainWindowHandle;
class IPluginManager;
class IPresentationRenderer;
class IPreviewDataSource;
class ISettingPlugin;
class ISettingsObject;
class IShortcutSetting;
class ITagAction;
class ITSCacheManager;

/** What is kept of one opened presentation. */
struct RenderEntry {
    int nPageCount = 0;
    bool bOpen = false;
    quint64 nSerial = 0; ///< The larger, the later it was opened.
};

/**
 * The one state that every surface and type widget shares: the host's objects, the list of files and the current one,
 * its labels and notes, and what has to survive from one preview to the next.
 *
 * Owner: itself, from the first use to the unloading of the library. Thread: GUI thread, except the operations of
 * loader tasks, which say so.
 */
class PluginInnerData : public QObject {
    Q_OBJECT

public:
    static PluginInnerData *instance();

    // The host's objects. Any of them may be missing.
    void setPluginManager(IPluginManager *pManager);
    void setDataSource(const QSharedPointer<IPreviewDataSource> &pDataSource);
    void setMainWindowHandle(IMainWindowHandle *pHandle) { m_pMainWindowHandle = pHandle; }
    IPluginManager *pluginManager() const { return m_pPluginManager; }
    IMainWindowHandle *mainWindowHandle() const { return m_pMainWindowHandle; }
    IShortcutSetting *shortcutSetting() const { return m_pShortcutSetting; }
    bool isShortcutEnabled() const;
    ISettingsObject *settingsObject() const { return m_pSettingsObject; }
    QSharedPointer<IPreviewDataSource> dataSource() const { return m_pDataSource; }
    QSharedPointer<ITSCacheManager> cacheManager();
    QSharedPointer<QObject> dataCenter();
    /** Portable text of the host's shortcut with this number; empty without one. */
    QString shortcutText(int nShortcutId) const;
    /** Text of the settings object: where the last export went; empty without settings. */
    QString settingsText() const;
    /** Keeps where an export went, for the next one. */
    void setLastExportPath(const QString &path);
    /** Releases the host's objects; waits for a decode that is running. */
    void clearPreviewData();

    // The list of files and the current one.
    void setFileList(const QVector<qint64> &fileIds, int nIndex, qint64 nContext);
    /** A caller that knows where the file stands in the list of records spares the search for it. */
    void setCurrentFile(qint64 nFileId, int nKnownPosition = -1);
    int reloadCurrentTags();
    /** Quick where the current file was found last, or beside it. */
    int indexOfCurrent() const;
    int currentIndex() const { return m_nCurrentIndex; }
    qint64 contextValue() const { return m_nContext; }
    qint64 currentFileId() const { return m_nCurrentFileId; }
    QVector<qint64> fileIds() const { return m_fileIds; }
    QVector<FileInfoPtr> fileInformationList() const { return m_fileInformationList; }
    FileInfoPtr currentFileInfo() const { return m_pCurrentFileInfo; }
    TagRecordList currentTags() const { return m_currentTags; }
    QString currentFilePath() const;
    QString currentFileName() const;
    QString currentFileDescription() const;
    void removeFiles(const QVector<qint64> &removedIds);
    void dropFiles(const QVector<qint64> &removedIds);
    void refillFileInformation();

    // Small actions on the current file.
    void copyFile();
    void copyFilePath();
    void copyTags();
    void pasteTags();
    QMap<int, NoteRecord> notes() const { return m_notes; }
    void addOrModifyNote(int nKey, const QString &text, const QRect &rect, quint32 nValue);
    void deleteNote(int nKey);
    /** Numbers the current file's notes 0, 1, 2, … again: a deletion leaves a gap. */
    void renumberNotes();
    /** The current file's notes in order. */
    QVector<NoteRecord> noteList() const;
    /** Puts another list in the place of a file's, which need not be the current one; false when refused. */
    bool setNotesOfFile(qint64 nFileId, const QVector<NoteRecord> &notes);
    NoteStore *noteStore() { return &m_noteStore; }

    // Values that outlive a preview.
    int audioVolume() const { return m_nAudioVolume; }
    void setAudioVolume(int nPercent) { m_nAudioVolume = nPercent; }
    int videoVolume() const { return m_nVideoVolume; }
    void setVideoVolume(int nPercent) { m_nVideoVolume = nPercent; }
    bool isLeftColumnShown() const { return m_bLeftColumnShown; }
    void setLeftColumnShown(bool bShown) { m_bLeftColumnShown = bShown; }
    bool isRightPanelHidden() const { return m_bRightPanelHidden; }
    void setRightPanelHidden(bool bHidden) { m_bRightPanelHidden = bHidden; }
    bool isSavedImage() const { return m_bSavedImage; }
    void setSavedImage(bool bSaved) { m_bSavedImage = bSaved; }

    // Loads in progress: while there is one, leaving the preview is refused.
    bool isLoading() const { return !m_loadingFiles.isEmpty(); }
    // Each belongs to the widget that will receive it, which waits for its own loads only.
    bool isLoadingFor(qint64 nFileId, const QObject *pReceiver) const;
    void beginLoading(qint64 nFileId, const QObject *pReceiver) { m_loadingFiles[nFileId].append(pReceiver); }
    void endLoading(qint64 nFileId, const QObject *pReceiver);
    /** A receiver that goes away hears of its loads no more. */
    void endLoadingsOf(const QObject *pReceiver);
    /** Calls once, later, when the last load in progress has ended; not at all when the context has gone by then. */
    void callAfterLoading(QObject *pContext, const std::function<void()> &call);

    // Presentations being opened, by how many loads, and those open.
    bool hasPendingPresentations() const;
    bool isPresentationPending(qint64 nFileId) const;
    void beginPendingPresentation(qint64 nFileId);
    void endPendingPresentation(qint64 nFileId);
    bool hasRenderEntry(qint64 nFileId) const;
    int presentationPageCount(qint64 nFileId) const;
    /** Closes the document as well, or cancels its opening. */
    void dropRenderEntry(qint64 nFileId);
    void clearRenderCache();
    void releaseOpenRenderers();
    /**
     * Loader tasks: opens a document, renders a page of it, closes all. Any thread. An opening that turns out to be
     * unwanted fails, and leaves nothing open. A page fits into the pixels given, else it has its own size.
     */
    bool openPresentation(qint64 nFileId, const QString &path, const std::function<bool()> &isUnwanted = {});
    QImage renderPresentationPage(qint64 nFileId, int nPage, const QSize &pixelSize = {}) const;
    void closeAllPresentations();

    // Decoding. Any thread; the decoder is used under the lock, one decode at a time.
    QMutex *decodeLock() { return &m_lock; }
    IImageDecoder *imageDecoder() const { return m_pImageDecoder; }
    /** Where decoded pictures have their memory from; trimmed when a preview is left. */
    PictureMemory *pictureMemory() { return &m_pictureMemory; }

Q_SIGNALS:
    void signalUpdateRightPanel(qint64 nFileId);

private:
    PluginInnerData();

    void lookupBaseModule();
    void handleTagResult(qint64 nActionId, const ResponseInfoPtr &pInfo);
    bool sendNotes(qint64 *pActionId);
    bool isCurrentAt(int nPosition) const;
    void numberNotes(const QVector<NoteRecord> &notes);
    void takeStoredNotes(qint64 nFileId);
    void detachRenderer();

    IPluginManager *m_pPluginManager = nullptr;
    ISettingPlugin *m_pSettingPlugin = nullptr;
    IMainWindowHandle *m_pMainWindowHandle = nullptr;
    IShortcutSetting *m_pShortcutSetting = nullptr;
    ISettingsObject *m_pSettingsObject = nullptr;
    QSharedPointer<ITSCacheManager> m_pCacheManager;
    QSharedPointer<IPreviewDataSource> m_pDataSource;
    int m_nCurrentIndex = 0;
    qint64 m_nContext = -1;
    qint64 m_nCurrentFileId = -1;
    QVector<qint64> m_fileIds;
    FileInfoPtr m_pCurrentFileInfo;
    TagRecordList m_currentTags;
    QVector<FileInfoPtr> m_fileInformationList;
    mutable int m_nPositionHint = 0; ///< Where the current file was found last; may be anywhere.
    QMap<int, NoteRecord> m_notes;
    int m_nAudioVolume = 50;
    int m_nVideoVolume = 50;
    QMap<qint64, RenderEntry> m_renderCache;
    QSharedPointer<ITagAction> m_pTagAction;
    bool m_bLeftColumnShown = false;
    bool m_bRightPanelHidden = false;
    QMap<qint64, QVector<const QObject *>> m_loadingFiles;
    QVector<std::pair<QPointer<QObject>, std::function<void()>>> m_afterLoading;
    QMap<qint64, int> m_pendingPresentations;
    QMutex m_lock;
    PictureMemory m_pictureMemory;

    // Taken from the base module together with the cache manager.
    // Read by tasks while the GUI thread may look the base module up again.
    std::atomic<IImageDecoder *> m_pImageDecoder{nullptr};
    std::atomic<IPresentationRenderer *> m_pPresentationRenderer{nullptr};
    QSharedPointer<QObject> m_pDataCenter;
    NoteStore m_noteStore;
    qint64 m_nTagActionId = 0;
    bool m_bSavedImage = false;
    quint64 m_nLastRenderSerial = 0;
    // Guards the render cache and the pending map, which tasks use; held for moments only.
    mutable QMutex m_renderCacheLock;
    // Held for reading while a task uses the renderer, so that the host can take it away.
    mutable QReadWriteLock m_rendererLock;
};
