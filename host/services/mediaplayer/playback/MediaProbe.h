#pragma once

#include "media/VideoTraits.h"

#include <QByteArray>

/** What must be known of a file before the player opens it. A plain value; crosses threads. */
struct MediaProbe {
    QByteArray native;  ///< The file's bytes on disk.
    bool bFile = false; ///< A regular file: a pipe would be waited for until somebody writes to it.
    media::VideoTraits video;
};

/** Reads the file's head. Any thread; touches the disk. */
MediaProbe probeMedia(const QString &path, const media::Cancelled &cancelled);

/** Filters that show such a video upright and in the screen's range where the renderer does not; empty for none. */
QByteArray videoFilters(const media::VideoTraits &video);
