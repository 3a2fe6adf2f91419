#include "services/mediaplayer/playback/MpvLibrary.h"
#include "services/mediaplayer/playback/RenderBackend.h"

#include <mpv/render.h>

namespace {

/** The core's own software renderer. */
class SoftwareBackend final : public RenderBackend {
public:
    mpv_render_context *create(mpv_handle *pCore) override
    {
        char type[] = MPV_RENDER_API_TYPE_SW;
        int nAdvanced = 1;
        mpv_render_param parameters[] = {
            {MPV_RENDER_PARAM_API_TYPE, type},
            {MPV_RENDER_PARAM_ADVANCED_CONTROL, &nAdvanced},
            {MPV_RENDER_PARAM_INVALID, nullptr},
        };
        mpv_render_context *pContext = nullptr;
        return MpvLibrary::get().render_context_create(&pContext, pCore, parameters) == 0 ? pContext : nullptr;
    }

    bool draw(mpv_render_context *pContext, QImage *pImage) override
    {
        int size[2] = {pImage->width(), pImage->height()};
        auto nStride = std::size_t(pImage->bytesPerLine());
        // With alpha, which is then opaque: the fourth byte of the formats without it is left to chance.
        char format[] = "bgra";
        mpv_render_param parameters[] = {
            {MPV_RENDER_PARAM_SW_SIZE, size},       {MPV_RENDER_PARAM_SW_FORMAT, format},
            {MPV_RENDER_PARAM_SW_STRIDE, &nStride}, {MPV_RENDER_PARAM_SW_POINTER, pImage->bits()},
            {MPV_RENDER_PARAM_INVALID, nullptr},
        };
        return MpvLibrary::get().render_context_render(pContext, parameters) == 0;
    }

    QImage::Format format() const override { return QImage::Format_RGB32; }
    bool turnsFrames() const override { return false; }
};

} // namespace

std::unique_ptr<RenderBackend> RenderBackend::software()
{
    return std::make_unique<SoftwareBackend>();
}
