#pragma once

#include <QImage>

/** Pictures whose memory is taken as quickly as the system allows. Any thread. */
namespace PictureMemory {

/** A picture with undefined pixels, as QImage's own constructor makes it; null when there is no memory for it. */
QImage create(int nWidth, int nHeight, QImage::Format format);

} // namespace PictureMemory
