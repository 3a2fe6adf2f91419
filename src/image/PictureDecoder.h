#pragma once

#include <QImage>
#include <QString>

/** Reads pictures through the host's decoder. Any thread; one decode at a time in the whole plug-in. */
namespace PictureDecoder {

/** The picture at the path in full size and upright, or null when it cannot be decoded. */
QImage decode(const QString &path);

} // namespace PictureDecoder
