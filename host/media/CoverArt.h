#pragma once

#include "media/MediaInput.h"

namespace media {

/** The picture file embedded as a cover, as it stands in the file: JPEG, PNG… Empty without one. */
QByteArray embeddedCover(const AVFormatContext &input);

} // namespace media
