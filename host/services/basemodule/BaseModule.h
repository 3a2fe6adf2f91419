#pragma once

#include "interfaces/plugin/IPlugin.h"
#include "interfaces/services/IBaseModulePlugin.h"
#include "services/basemodule/IHostAnalysis.h"
#include "services/basemodule/cache/DecodeGate.h"
#include "services/basemodule/cache/RenditionStore.h"
#include "services/basemodule/cache/ThumbnailFiles.h"
#include "services/basemodule/documents/ConverterSettings.h"

#include <QObject>

#include <memory>

namespace basemodule {

class DecodeAhead;
class DocumentConverter;
class ImageDecoder;
class PresentationRenderer;
class ThumbnailCache;

/**
 * Root object of the base module: builds decoder, decode-ahead, renditions, thumbnails and page renderer and hands them
 * out.
 *
 * Owner: the Qt plug-in loader, or a test. Thread: GUI thread; the decoder, the renderer, renditionPaths and analyse:
 * any.
 */
class BaseModule : public QObject, public IPlugin, public IBaseModulePlugin, public IHostAnalysis {
    Q_OBJECT
    Q_INTERFACES(IPlugin IBaseModulePlugin IHostAnalysis)

public:
    explicit BaseModule(QObject *pParent = nullptr);
    BaseModule(const CacheFolders &folders, QObject *pParent);
    /** With programs and limits of its own for documents; a missing folder is filled in. */
    BaseModule(const CacheFolders &folders, ConverterSettings settings, QObject *pParent);
    ~BaseModule() override;

    QObject *getObject() override;
    QUuid getPluginId() override;
    void getPluginInfo(PluginInfo &info) override;
    bool setPluginManager(IPluginManager *pManager) override;
    bool initialize() override;
    bool extensionsInitialized() override;
    bool aboutToShutdown() override;

    QSharedPointer<ITSCacheManager> cacheManager() override;
    IImageDecoder *imageDecoder() override;
    IPresentationRenderer *presentationRenderer() override;

    RenditionPaths renditionPaths(const QString &path, qint64 nSize, qint64 nModifiedMsec) override;
    void setFilesAhead(const QStringList &paths) override;
    void setAheadBudget(qint64 nBytes) override;
    AnalysisOutcome analyse(const QString &path, const std::atomic_bool &cancelled) override;
    void setFileShown(const QString &path) override;
    void setProblemHandler(const ProblemHandler &handler) override;
    void setThumbnailDiskBudget(qint64 nBytes) override;
    void shutdown() override;
    QImage readPicture(const QString &path, int nLongestSide, const std::atomic_bool &cancelled) override;
    FileMetadata readMetadata(const QString &path) override;

    /** For tests: what is held ready. */
    DecodeAhead &decodeAhead() const { return *m_ahead; }

private:
    /** Any thread. */
    void tell(const QString &problem);

    const std::shared_ptr<DecodeGate> m_gate;
    std::unique_ptr<DocumentConverter> m_documents;
    std::unique_ptr<PresentationRenderer> m_presentations;
    RenditionStore m_renditions;
    std::unique_ptr<DecodeAhead> m_ahead;
    std::unique_ptr<ImageDecoder> m_decoder;
    QSharedPointer<ThumbnailCache> m_thumbnails;
    const ThumbnailFiles m_thumbnailFiles;
    ProblemHandler m_problemHandler;
    std::atomic<qint64> m_nThumbnailBudget{qint64(1) << 30};
    std::atomic_int m_nAnalysed{0};
    std::atomic_bool m_bEnding{false};
    std::atomic_bool m_bToldNotWritten{false};
};

} // namespace basemodule
