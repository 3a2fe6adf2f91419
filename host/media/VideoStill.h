#pragma once

#include "media/MediaInput.h"

#include <QImage>

namespace media {

/** One picture out of a video. */
struct VideoStill {
    QImage image;     ///< Not turned; null when no frame could be decoded.
    QSize fullSize;   ///< Of the video's frames in square pixels, not turned.
    int rotation = 0; ///< Clockwise degrees to stand upright.
};

/**
 * A frame that tells what the video is about: from inside it, and not black where there is another one. Fitted into
 * a square of this side, never enlarged; 0 for the full size. Any thread; takes about as long as a few key frames.
 */
VideoStill videoStill(AVFormatContext &input, int nLongestSide, const Cancelled &cancelled);

/** The size and turn alone. */
VideoStill videoSize(const AVFormatContext &input);

} // namespace media
