#include "services/basemodule/BaseModule.h"

#include "interfaces/plugin/PluginInfo.h"
#include "services/basemodule/cache/DecodeAhead.h"
#include "services/basemodule/cache/ThumbnailCache.h"
#include "services/basemodule/decode/ImageDecoder.h"
#include "services/basemodule/decode/PictureFormat.h"
#include "services/basemodule/decode/PictureReader.h"
#include "services/basemodule/documents/DocumentConverter.h"
#include "services/basemodule/documents/PresentationRenderer.h"

#include <QDir>

#include <utility>

namespace basemodule {

namespace {

// A look through the thumbnail folders costs as much as a few thumbnails.
constexpr int kAnalysesBetweenPrunings = 1000;

std::unique_ptr<DocumentConverter> makeConverter(const CacheFolders &folders, ConverterSettings settings)
{
    if (settings.folder.isEmpty())
        settings.folder =
            folders.documents.isEmpty() ? folders.renditions + QStringLiteral("-documents") : folders.documents;
    return std::make_unique<DocumentConverter>(settings);
}

/** An analysis waits while a picture is being decoded for the screen. */
class AnalysisControl : public DecodeControl {
public:
    AnalysisControl(DecodeGate &gate, const std::atomic_bool &cancelled)
        : m_gate(gate)
        , m_cancelled(cancelled)
    {
    }

    bool accept(qint64) override { return proceed(); }
    bool proceed() override { return m_gate.waitForTurn(m_cancelled); }

private:
    DecodeGate &m_gate;
    const std::atomic_bool &m_cancelled;
};

} // namespace

BaseModule::BaseModule(QObject *pParent)
    : BaseModule(CacheFolders::standard(), pParent)
{
}

BaseModule::BaseModule(const CacheFolders &folders, QObject *pParent)
    : BaseModule(folders, ConverterSettings(), pParent)
{
}

BaseModule::BaseModule(const CacheFolders &folders, ConverterSettings settings, QObject *pParent)
    : QObject(pParent)
    , m_gate(std::make_shared<DecodeGate>())
    , m_documents(makeConverter(folders, std::move(settings)))
    , m_presentations(std::make_unique<PresentationRenderer>(*m_gate, *m_documents))
    , m_renditions(folders)
    , m_thumbnailFiles(folders.thumbnails, m_documents.get())
{
    m_documents->setProblemHandler([this](const QString &problem) { tell(problem); });
    // Previews read raw files through their rendition: that is what has to be ready.
    const auto resolve = [this](const QString &path) {
        return isRawSuffix(path.section(QLatin1Char('.'), -1)) ? m_renditions.renditionOf(path) : path;
    };
    m_ahead = std::make_unique<DecodeAhead>(*m_gate, resolve, m_documents.get());
    m_decoder = std::make_unique<ImageDecoder>(*m_gate, *m_ahead, m_renditions, m_documents.get());
    m_thumbnails = QSharedPointer<ThumbnailCache>::create(m_gate, m_thumbnailFiles);
}

void BaseModule::tell(const QString &problem)
{
    const auto call = [this, problem] {
        if (m_problemHandler)
            m_problemHandler(problem);
    };
    QMetaObject::invokeMethod(this, call, Qt::QueuedConnection);
}

BaseModule::~BaseModule()
{
    shutdown();
}

QObject *BaseModule::getObject()
{
    return this;
}

QUuid BaseModule::getPluginId()
{
    return QUuid(QStringLiteral("{5b9f6e0e-53c1-4c0c-9c53-b1f6a8c0e7d2}"));
}

void BaseModule::getPluginInfo(PluginInfo &info)
{
    info.name = QStringLiteral("basemodule");
    info.displayName = tr("Decoder and thumbnails");
    info.version = QStringLiteral("1.0");
    info.author = QStringLiteral("Big Image Preview");
    info.homePage = QUrl();
}

bool BaseModule::setPluginManager(IPluginManager *pManager)
{
    return pManager != nullptr;
}

bool BaseModule::initialize()
{
    return true;
}

bool BaseModule::extensionsInitialized()
{
    return true;
}

bool BaseModule::aboutToShutdown()
{
    shutdown();
    return true;
}

QSharedPointer<ITSCacheManager> BaseModule::cacheManager()
{
    return m_thumbnails;
}

IImageDecoder *BaseModule::imageDecoder()
{
    return m_decoder.get();
}

IPresentationRenderer *BaseModule::presentationRenderer()
{
    return m_presentations.get();
}

RenditionPaths BaseModule::renditionPaths(const QString &path, qint64 nSize, qint64 nModifiedMsec)
{
    return m_renditions.paths(path, nSize, nModifiedMsec);
}

void BaseModule::setFilesAhead(const QStringList &paths)
{
    m_ahead->setFiles(paths);
}

void BaseModule::setAheadBudget(qint64 nBytes)
{
    m_ahead->setBudget(nBytes);
}

AnalysisOutcome BaseModule::analyse(const QString &path, const std::atomic_bool &cancelled)
{
    AnalysisControl control(*m_gate, cancelled);
    if (m_bEnding || !control.proceed())
        return AnalysisOutcome::Cancelled;
    if (m_nAnalysed++ % kAnalysesBetweenPrunings == 0)
        m_thumbnailFiles.prune(m_nThumbnailBudget, cancelled);
    if (isRawSuffix(path.section(QLatin1Char('.'), -1)))
        m_renditions.renditionOf(path);
    const ThumbnailFiles::Kept kept = m_thumbnailFiles.keep(path, ThumbnailFiles::kXLarge, &control);
    if (cancelled || m_bEnding)
        return AnalysisOutcome::Cancelled;
    if (kept == ThumbnailFiles::Kept::NotWritten && !m_bToldNotWritten.exchange(true))
        tell(tr("Thumbnails cannot be kept in %1: the disk is full, or the folder cannot be written.")
                 .arg(QDir::toNativeSeparators(m_thumbnailFiles.folder())));
    if (kept == ThumbnailFiles::Kept::Yes)
        return AnalysisOutcome::Done;
    // What hindered it may be gone at the next start: once the program is installed the document has a picture, too.
    if (kept != ThumbnailFiles::Kept::Impossible || m_documents->isProgramMissing(pictureFormat(path)))
        return AnalysisOutcome::Cancelled;
    return AnalysisOutcome::Impossible;
}

void BaseModule::setFileShown(const QString &path)
{
    m_decoder->setFileShown(path);
}

void BaseModule::setProblemHandler(const ProblemHandler &handler)
{
    m_problemHandler = handler;
}

void BaseModule::setThumbnailDiskBudget(qint64 nBytes)
{
    m_nThumbnailBudget = nBytes;
}

FileMetadata BaseModule::readMetadata(const QString &path)
{
    return readFileMetadata(path);
}

QImage BaseModule::readPicture(const QString &path, int nLongestSide, const std::atomic_bool &cancelled)
{
    /** Gives up when the flag is set. */
    class FlagControl final : public DecodeControl {
    public:
        explicit FlagControl(const std::atomic_bool &flag)
            : m_flag(flag)
        {
        }
        bool accept(qint64) override { return proceed(); }
        bool proceed() override { return !m_flag; }

    private:
        const std::atomic_bool &m_flag;
    };
    FlagControl control(cancelled);
    DecodeRequest request;
    request.longestSide = nLongestSide;
    request.control = &control;
    request.documents = m_documents.get();
    request.wait = DocumentWait::Worker;
    const DecodeResult result = basemodule::readPicture(path, request);
    return result.picture.isNull() ? QImage() : result.picture.toUprightImage();
}

void BaseModule::shutdown()
{
    m_bEnding = true;
    m_gate->wakeAll();
    m_presentations->shutdown();
    m_documents->shutdown();
    m_thumbnails->shutdown();
    m_ahead->shutdown();
    m_decoder->shutdown();
    m_renditions.shutdown();
}

} // namespace basemodule
