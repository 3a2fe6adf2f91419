#pragma once

#include "media/MediaInput.h"

#include <QImage>

extern "C" {
#include <libavutil/frame.h>
}

namespace media {

/** Whether a video is brighter than screens and has to be toned down. */
bool isHighRange(AVColorTransferCharacteristic transfer);

/**
 * A picture of such a video in the screen's range and colours, toned down as the player does it. The image holds the
 * frame's own values in sixteen bits (RGBX64); the result is RGB888.
 */
QImage toScreenRange(const QImage &image, const AVFrame &frame);

} // namespace media
