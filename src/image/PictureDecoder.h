#pragma once

#include <QImage>
#include <QString>

/** Reads pictures through the host's decoder. Any thread; one decode at a time in the whole plug-in. */
namespace PictureDecoder {

struct Picture {
    QImage image;         ///< In full size and upright; null when it cannot be decoded.
    bool bOpaque = false; ///< Known to have no transparent pixel.
};

Picture decode(const QString &path);

} // namespace PictureDecoder
