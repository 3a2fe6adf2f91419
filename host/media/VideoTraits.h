#pragma once

#include "media/Cancelled.h"

#include <QByteArray>

namespace media {

/** What a player must know of a video before it opens it. */
struct VideoTraits {
    int nRotation = 0;       ///< Clockwise degrees by which it stands upright: 0, 90, 180 or 270.
    bool bHighRange = false; ///< Brighter than screens: has to be toned down.
};

/** Reads the head of the file, which is named by its native bytes. Any thread; touches the disk. */
VideoTraits videoTraits(const QByteArray &native, const Cancelled &cancelled);

} // namespace media
