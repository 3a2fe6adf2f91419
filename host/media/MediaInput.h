#pragma once

#include "media/Cancelled.h"

#include <QByteArray>

#include <memory>

extern "C" {
#include <libavformat/avformat.h>
}

namespace media {

struct CloseInput {
    void operator()(AVFormatContext *pContext) const { avformat_close_input(&pContext); }
};
using InputPointer = std::unique_ptr<AVFormatContext, CloseInput>;

/**
 * Opens a local video or sound file by its native bytes. Null for files that are neither (pictures, play lists, text)
 * and for damaged ones. Nothing that the file refers to is opened. `cancelled` must outlive
 * the input. Any thread; touches the disk.
 */
InputPointer openInput(const QByteArray &native, const Cancelled &cancelled);

/** The same after reading the file's head alone: quick, and does not know every stream's properties. */
InputPointer openHead(const QByteArray &native, const Cancelled &cancelled);

/** The stream shown when the file plays; a sound file's cover is none. Null without one. */
AVStream *videoStream(const AVFormatContext &input);

/** The sound stream that plays unless another is chosen. Null without one. */
AVStream *soundStream(const AVFormatContext &input);

/** Whether the stream is a picture that belongs to the file rather than a video. */
bool isAttachedPicture(const AVStream &stream);

/** Clockwise degrees by which the stream's frames stand upright: 0, 90, 180 or 270. */
int uprightRotation(const AVStream &stream);

} // namespace media
