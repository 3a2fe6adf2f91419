#pragma once

#include <QImage>

#include <memory>

struct mpv_handle;
struct mpv_render_context;
class QOffscreenSurface;

/**
 * Draws the frames of a core into images: with OpenGL and read back, or in software. Frames come as plain images also
 * from OpenGL, because windows that hold an OpenGL widget are made anew and flicker, and cannot be translucent
 * everywhere.
 *
 * Owner: PlayerThread. Thread: that one only, from creation to end.
 */
class RenderBackend {
public:
    virtual ~RenderBackend() = default;

    /** The renderer of the core; null when it cannot be had. */
    virtual mpv_render_context *create(mpv_handle *pCore) = 0;

    /** Draws the present frame; false when that failed. The image is as large as the frame is to be. */
    virtual bool draw(mpv_render_context *pContext, QImage *pImage) = 0;

    virtual QImage::Format format() const = 0;
    virtual bool turnsFrames() const = 0;

    static std::unique_ptr<RenderBackend> software();

    /** Null where there is no OpenGL, or only in software and `bSoftwareToo` is not set. */
    static std::unique_ptr<RenderBackend> openGl(QOffscreenSurface *pSurface, bool bSoftwareToo);
};
