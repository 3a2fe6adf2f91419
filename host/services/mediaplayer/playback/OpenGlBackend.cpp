#include "services/mediaplayer/playback/MpvLibrary.h"
#include "services/mediaplayer/playback/RenderBackend.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>

#include <mpv/render_gl.h>

namespace {

void *procAddress(void *pContext, const char *pName)
{
    return reinterpret_cast<void *>(static_cast<QOpenGLContext *>(pContext)->getProcAddress(pName));
}

bool isDrawnByProcessor(QOpenGLContext &context)
{
    const auto *pRenderer = reinterpret_cast<const char *>(context.functions()->glGetString(GL_RENDERER));
    const QByteArray renderer = QByteArray(pRenderer).toLower();
    for (const char *pSoftware : {"llvmpipe", "softpipe", "swrast", "swiftshader", "software"}) {
        if (renderer.contains(pSoftware))
            return true;
    }
    return renderer.isEmpty();
}

/** The core's OpenGL renderer in a context without a window. */
class OpenGlBackend final : public RenderBackend {
public:
    explicit OpenGlBackend(QOffscreenSurface *pSurface)
        : m_pSurface(pSurface)
    {
    }

    bool start(bool bSoftwareToo)
    {
        m_context.setFormat(m_pSurface->requestedFormat());
        return m_context.create() && m_context.makeCurrent(m_pSurface) &&
               (bSoftwareToo || !isDrawnByProcessor(m_context));
    }

    mpv_render_context *create(mpv_handle *pCore) override
    {
        char type[] = MPV_RENDER_API_TYPE_OPENGL;
        int nAdvanced = 1;
        mpv_opengl_init_params opengl = {};
        opengl.get_proc_address = &procAddress;
        opengl.get_proc_address_ctx = &m_context;
        mpv_render_param parameters[] = {
            {MPV_RENDER_PARAM_API_TYPE, type},
            {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &opengl},
            {MPV_RENDER_PARAM_ADVANCED_CONTROL, &nAdvanced},
            {MPV_RENDER_PARAM_INVALID, nullptr},
        };
        mpv_render_context *pContext = nullptr;
        return MpvLibrary::get().render_context_create(&pContext, pCore, parameters) == 0 ? pContext : nullptr;
    }

    bool draw(mpv_render_context *pContext, QImage *pImage) override
    {
        if (m_pTarget == nullptr || m_pTarget->size() != pImage->size())
            m_pTarget = std::make_unique<QOpenGLFramebufferObject>(pImage->size());
        mpv_opengl_fbo target = {};
        target.fbo = int(m_pTarget->handle());
        target.w = pImage->width();
        target.h = pImage->height();
        mpv_render_param parameters[] = {
            {MPV_RENDER_PARAM_OPENGL_FBO, &target},
            {MPV_RENDER_PARAM_INVALID, nullptr},
        };
        if (!m_pTarget->isValid() || MpvLibrary::get().render_context_render(pContext, parameters) != 0)
            return false;
        QOpenGLFunctions *pGl = m_context.functions();
        m_pTarget->bind();
        pGl->glPixelStorei(GL_PACK_ALIGNMENT, 4);
        pGl->glReadPixels(0, 0, pImage->width(), pImage->height(), GL_RGBA, GL_UNSIGNED_BYTE, pImage->bits());
        m_pTarget->release();
        return pGl->glGetError() == GL_NO_ERROR;
    }

    QImage::Format format() const override { return QImage::Format_RGBX8888; }
    bool turnsFrames() const override { return true; }

private:
    QOffscreenSurface *m_pSurface;
    QOpenGLContext m_context;
    std::unique_ptr<QOpenGLFramebufferObject> m_pTarget;
};

} // namespace

std::unique_ptr<RenderBackend> RenderBackend::openGl(QOffscreenSurface *pSurface, bool bSoftwareToo)
{
    if (pSurface == nullptr || !pSurface->isValid())
        return {};
    auto pBackend = std::make_unique<OpenGlBackend>(pSurface);
    return pBackend->start(bSoftwareToo) ? std::move(pBackend) : nullptr;
}
