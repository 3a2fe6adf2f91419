#pragma once

#include <mpv/client.h>
#include <mpv/render.h>

/**
 * The functions of libmpv. It is loaded with the first player, as it and all that it needs take longer to load than
 * the rest of the host together, and most sessions begin without a video.
 *
 * Thread: any.
 */
class MpvLibrary {
public:
    /** Loads the library at the first call. */
    static const MpvLibrary &get();

    /** Without it no other function may be called. */
    bool isComplete() const { return m_bComplete; }

    decltype(&mpv_create) create = nullptr;
    decltype(&mpv_initialize) initialize = nullptr;
    decltype(&mpv_terminate_destroy) terminate_destroy = nullptr;
    decltype(&mpv_set_option_string) set_option_string = nullptr;
    decltype(&mpv_set_wakeup_callback) set_wakeup_callback = nullptr;
    decltype(&mpv_wait_event) wait_event = nullptr;
    decltype(&mpv_observe_property) observe_property = nullptr;
    decltype(&mpv_unobserve_property) unobserve_property = nullptr;
    decltype(&mpv_get_property_async) get_property_async = nullptr;
    decltype(&mpv_set_property_async) set_property_async = nullptr;
    decltype(&mpv_command_async) command_async = nullptr;
    decltype(&mpv_command_node_async) command_node_async = nullptr;
    decltype(&mpv_command_node) command_node = nullptr;
    decltype(&mpv_free_node_contents) free_node_contents = nullptr;
    decltype(&mpv_render_context_create) render_context_create = nullptr;
    decltype(&mpv_render_context_free) render_context_free = nullptr;
    decltype(&mpv_render_context_set_update_callback) render_context_set_update_callback = nullptr;
    decltype(&mpv_render_context_update) render_context_update = nullptr;
    decltype(&mpv_render_context_get_info) render_context_get_info = nullptr;
    decltype(&mpv_render_context_render) render_context_render = nullptr;
    decltype(&mpv_render_context_report_swap) render_context_report_swap = nullptr;

private:
    MpvLibrary();

    bool m_bComplete = false;
};
