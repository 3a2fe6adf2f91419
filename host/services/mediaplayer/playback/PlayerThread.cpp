#include "services/mediaplayer/playback/PlayerThread.h"

#include "services/mediaplayer/playback/MpvLibrary.h"
#include "services/mediaplayer/playback/RenderBackend.h"

#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>

#include <clocale>
#include <cstdlib>
#include <mpv/client.h>
#include <mpv/render.h>

namespace {

struct Option {
    const char *name;
    const char *value;
};

// A player without a will of its own: it reads no configuration, no scripts, no keys, asks nobody on the network, and
// opens nothing but the file it was given and subtitles beside it.
constexpr Option kOptions[] = {
    {"config", "no"},
    {"terminal", "no"},
    {"load-scripts", "no"},
    {"load-auto-profiles", "no"},
    {"load-stats-overlay", "no"},
    {"load-osd-console", "no"},
    {"osc", "no"},
    {"osd-level", "0"},
    {"ytdl", "no"},
    {"input-default-bindings", "no"},
    {"input-builtin-bindings", "no"},
    {"input-vo-keyboard", "no"},
    {"input-media-keys", "no"},
    {"resume-playback", "no"},
    {"demuxer", "lavf"},
    {"demuxer-lavf-o", "protocol_whitelist=none"},
    {"access-references", "no"},
    {"load-unsafe-playlists", "no"},
    {"ordered-chapters", "no"},
    {"sub-auto", "exact"},
    {"audio-file-auto", "no"},
    {"cover-art-auto", "no"},
    {"cache-on-disk", "no"},
    // A preview steps through many files: none of them is read far ahead.
    {"demuxer-max-bytes", "32MiB"},
    {"demuxer-max-back-bytes", "16MiB"},
    {"idle", "yes"},
    {"keep-open", "yes"},
    {"hr-seek", "yes"},
    // Else the end is told, and the output paused, while the last moments are still to be heard.
    {"gapless-audio", "no"},
    {"audio-fallback-to-null", "yes"},
    {"audio-client-name", "Big Image Preview"},
    {"image-display-duration", "inf"},
    {"screenshot-sw", "no"},
};

constexpr Option kSoftwareOptions[] = {
    {"sws-scaler", "bilinear"},
    {"sws-fast", "yes"},
    {"zimg-scaler", "bilinear"},
    {"zimg-dither", "no"},
    // The software renderer cannot turn frames: a filter does.
    {"video-rotate", "no"},
};

// Where scaling and colour conversion read and write fastest.
constexpr std::size_t kAlignment = 64;

/** An image whose rows begin at multiples of the alignment. */
QImage alignedImage(const QSize &size, QImage::Format format)
{
    const std::size_t nStride = (std::size_t(size.width()) * 4 + kAlignment - 1) / kAlignment * kAlignment;
    void *pData = std::aligned_alloc(kAlignment, nStride * std::size_t(size.height()));
    if (pData == nullptr)
        return {};
    return QImage(static_cast<uchar *>(pData), size.width(), size.height(), int(nStride), format, &std::free, pData);
}

} // namespace

struct PlayerThread::Drawing {
    std::unique_ptr<RenderBackend> pBackend;
    std::unique_ptr<mpv_render_context, FreeRenderer> pRenderer; ///< Goes before what it draws with.
    QVector<QImage> buffers;                                     ///< Those that nobody else holds are drawn into again.
};

void PlayerThread::FreeRenderer::operator()(mpv_render_context *pContext) const
{
    MpvLibrary::get().render_context_free(pContext);
}

PlayerThread::PlayerThread(const PlayerSetup &setup)
    : m_setup(setup)
{
    setObjectName(QStringLiteral("player"));
}

PlayerThread::~PlayerThread()
{
    Q_ASSERT(!isRunning());
}

void PlayerThread::begin()
{
    if (m_bBegun)
        return;
    m_bBegun = true;
    // The core reads and writes numbers in texts and refuses to start where they would have commas.
    std::setlocale(LC_NUMERIC, "C");
    const bool bMayUseOpenGl = m_setup.rendering == Rendering::Automatic || m_setup.rendering == Rendering::OpenGl;
    if (bMayUseOpenGl && QOpenGLContext::supportsThreadedOpenGL()) {
        m_pSurface = std::make_unique<QOffscreenSurface>();
        m_pSurface->create();
    }
    start();
}

void PlayerThread::setFrameSize(const QSize &size)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (size == m_size)
            return;
        m_size = size;
        m_bResized = true;
    }
    m_work.notify_one();
}

QImage PlayerThread::frame() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_frame;
}

void PlayerThread::forgetFrames()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_frame = QImage();
    m_bNewFrameNeeded = true;
}

void PlayerThread::quit()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bQuit = true;
    }
    m_work.notify_one();
}

void PlayerThread::wake()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_bWoken = true;
    }
    m_work.notify_one();
}

void PlayerThread::run()
{
    Drawing drawing;
    m_pDrawing = &drawing;
    if (!makeCore() || (m_setup.rendering != Rendering::None && !makeRenderer())) {
        if (m_pCore != nullptr)
            MpvLibrary::get().terminate_destroy(m_pCore);
        m_pCore = nullptr;
    }
    Q_EMIT signalReady();
    QSize size;
    bool bResized = false;
    while (waitForWork(&size, &bResized))
        drawFrame(size, bResized);
    m_pDrawing->pRenderer.reset();
    m_pDrawing->pBackend.reset();
    if (m_pCore != nullptr)
        MpvLibrary::get().terminate_destroy(m_pCore);
}

bool PlayerThread::makeCore()
{
    if (!MpvLibrary::get().isComplete())
        return false;
    m_pCore = MpvLibrary::get().create();
    if (m_pCore == nullptr)
        return false;
    for (const Option &option : kOptions)
        MpvLibrary::get().set_option_string(m_pCore, option.name, option.value);
    MpvLibrary::get().set_option_string(m_pCore, "vo", m_setup.rendering == Rendering::None ? "null" : "libmpv");
    if (m_setup.rendering == Rendering::None)
        MpvLibrary::get().set_option_string(m_pCore, "vid", "no");
    if (!m_setup.soundOutput.isEmpty())
        MpvLibrary::get().set_option_string(m_pCore, "ao", m_setup.soundOutput.constData());
    return MpvLibrary::get().initialize(m_pCore) == 0;
}

bool PlayerThread::makeRenderer()
{
    if (m_pSurface != nullptr) {
        m_pDrawing->pBackend = RenderBackend::openGl(m_pSurface.get(), m_setup.rendering == Rendering::OpenGl);
        if (m_pDrawing->pBackend != nullptr)
            m_pDrawing->pRenderer.reset(m_pDrawing->pBackend->create(m_pCore));
    }
    if (m_pDrawing->pRenderer == nullptr) {
        m_pDrawing->pBackend = RenderBackend::software();
        for (const Option &option : kSoftwareOptions)
            MpvLibrary::get().set_option_string(m_pCore, option.name, option.value);
        m_pDrawing->pRenderer.reset(m_pDrawing->pBackend->create(m_pCore));
    }
    m_bTurnsFrames = m_pDrawing->pBackend->turnsFrames();
    MpvLibrary::get().set_option_string(m_pCore, "hwdec", m_bTurnsFrames ? "auto-safe" : "auto-copy-safe");
    if (m_pDrawing->pRenderer == nullptr)
        return false;
    MpvLibrary::get().render_context_set_update_callback(
        m_pDrawing->pRenderer.get(), [](void *pThis) { static_cast<PlayerThread *>(pThis)->wake(); }, this);
    return true;
}

bool PlayerThread::waitForWork(QSize *pSize, bool *pResized)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    m_work.wait(lock, [this] { return m_bWoken || m_bResized || m_bQuit; });
    *pSize = m_size;
    *pResized = m_bResized;
    m_bWoken = false;
    m_bResized = false;
    return !m_bQuit;
}

void PlayerThread::drawFrame(const QSize &size, bool bResized)
{
    if (m_pDrawing->pRenderer == nullptr)
        return;
    const bool bUpdate =
        (MpvLibrary::get().render_context_update(m_pDrawing->pRenderer.get()) & MPV_RENDER_UPDATE_FRAME) != 0;
    if (!bUpdate && !bResized)
        return;
    mpv_render_frame_info info = {};
    MpvLibrary::get().render_context_get_info(m_pDrawing->pRenderer.get(), {MPV_RENDER_PARAM_NEXT_FRAME_INFO, &info});
    const bool bNew =
        (info.flags & MPV_RENDER_FRAME_INFO_PRESENT) != 0 && (info.flags & MPV_RENDER_FRAME_INFO_REDRAW) == 0;
    if (size.isEmpty()) {
        int nSkip = 1;
        mpv_render_param parameters[] = {{MPV_RENDER_PARAM_SKIP_RENDERING, &nSkip},
                                         {MPV_RENDER_PARAM_INVALID, nullptr}};
        MpvLibrary::get().render_context_render(m_pDrawing->pRenderer.get(), parameters);
    }
    QImage image = size.isEmpty() ? QImage() : takeBuffer(size);
    const bool bDrawn = !image.isNull() && m_pDrawing->pBackend->draw(m_pDrawing->pRenderer.get(), &image);
    MpvLibrary::get().render_context_report_swap(m_pDrawing->pRenderer.get());
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        // A redraw after the file was left would show the old file once more.
        if (m_bNewFrameNeeded && !bNew)
            return;
        m_bNewFrameNeeded = false;
        if (!bDrawn)
            return;
        m_frame = image;
    }
    m_pDrawing->buffers.append(image);
    Q_EMIT signalFrame();
}

QImage PlayerThread::takeBuffer(const QSize &size)
{
    for (int i = m_pDrawing->buffers.size() - 1; i >= 0; --i) {
        // Held by nobody else, so that drawing into it changes no picture that somebody looks at.
        if (!m_pDrawing->buffers.at(i).isDetached())
            continue;
        const QImage buffer = m_pDrawing->buffers.takeAt(i);
        if (buffer.size() == size)
            return buffer;
    }
    return alignedImage(size, m_pDrawing->pBackend->format());
}
