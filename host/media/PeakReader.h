#pragma once

#include "media/Cancelled.h"

#include <QByteArray>
#include <QVector>

#include <functional>

namespace media {

/** How loud a sound is from moment to moment; a plain value that crosses threads. */
struct Peaks {
    QVector<quint8> levels;    ///< The loudest sample of each stretch of time, 0 to 255.
    double fStretchMsec = 0.0; ///< Length of a stretch.
    qint64 nDurationMsec = 0;  ///< Of what was decoded: exact where the file's own word is a guess.
    bool bComplete = false;    ///< Read to the end.

    bool isNull() const { return levels.isEmpty(); }
};

/**
 * Decodes a file's whole sound stream and reports about ten times a second what there is so far. A file of any length
 * gives a few thousand stretches. Null for a file without sound. Any thread; takes as long as decoding takes. Named by
 * its native bytes.
 */
Peaks readPeaks(const QByteArray &native, const Cancelled &cancelled, const std::function<void(const Peaks &)> &report);

} // namespace media
