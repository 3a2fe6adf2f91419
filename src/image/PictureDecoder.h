#pragma once

#include <QImage>
#include <QString>

#include <functional>

/** Reads pictures through the host's decoder. Any thread; one decode at a time in the whole plug-in. */
namespace PictureDecoder {

struct Picture {
    QImage image;         ///< In full size and upright; null when it cannot be decoded.
    bool bOpaque = false; ///< Known to have no transparent pixel.
    QImage firstLevel;    ///< Of an opaque picture's levels, where it was made on the way; null: not yet.
};

/** Stops where `isUnwanted` answers true, which is asked before each longer stage; the picture is then null. */
Picture decode(const QString &path, const std::function<bool()> &isUnwanted = {});

} // namespace PictureDecoder
