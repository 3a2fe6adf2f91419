#include "services/mediaplayer/playback/MpvLibrary.h"

#include <QLibrary>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

// The interface these calls are written for.
constexpr int kInterfaceVersion = int(MPV_CLIENT_API_VERSION >> 16);

/**
 * Each core has a dozen threads, which leave what they freed in the allocator: 200 MB after some hundred videos. From
 * here on it goes back to the system, and frames are taken from there.
 */
void keepLittleFreedMemory()
{
#ifdef __GLIBC__
    constexpr int kFrame = 128 << 10;
    constexpr int kMostKept = 1 << 20;
    mallopt(M_MMAP_THRESHOLD, kFrame);
    mallopt(M_TRIM_THRESHOLD, kMostKept);
#endif
}

} // namespace

MpvLibrary::MpvLibrary()
{
    keepLittleFreedMemory();
    QLibrary library(QStringLiteral("mpv"), kInterfaceVersion);
    m_bComplete = library.load();
    const auto resolve = [this, &library](const char *pName, auto &pFunction) {
        pFunction = m_bComplete ? reinterpret_cast<std::decay_t<decltype(pFunction)>>(library.resolve(pName)) : nullptr;
        m_bComplete = pFunction != nullptr;
    };
    resolve("mpv_create", create);
    resolve("mpv_initialize", initialize);
    resolve("mpv_terminate_destroy", terminate_destroy);
    resolve("mpv_set_option_string", set_option_string);
    resolve("mpv_set_wakeup_callback", set_wakeup_callback);
    resolve("mpv_wait_event", wait_event);
    resolve("mpv_observe_property", observe_property);
    resolve("mpv_unobserve_property", unobserve_property);
    resolve("mpv_get_property_async", get_property_async);
    resolve("mpv_set_property_async", set_property_async);
    resolve("mpv_command_async", command_async);
    resolve("mpv_command_node_async", command_node_async);
    resolve("mpv_command_node", command_node);
    resolve("mpv_free_node_contents", free_node_contents);
    resolve("mpv_render_context_create", render_context_create);
    resolve("mpv_render_context_free", render_context_free);
    resolve("mpv_render_context_set_update_callback", render_context_set_update_callback);
    resolve("mpv_render_context_update", render_context_update);
    resolve("mpv_render_context_get_info", render_context_get_info);
    resolve("mpv_render_context_render", render_context_render);
    resolve("mpv_render_context_report_swap", render_context_report_swap);
}

const MpvLibrary &MpvLibrary::get()
{
    static const MpvLibrary library;
    return library;
}
