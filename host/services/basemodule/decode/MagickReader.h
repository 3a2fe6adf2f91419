#pragma once

#include "services/basemodule/decode/DecodeRequest.h"
#include "services/basemodule/decode/PictureFormat.h"

namespace basemodule {

/**
 * Decodes the older formats through ImageMagick's core library with the coder named explicitly, so that content can
 * never choose one. Layered documents come flattened as Bgra32Layered, icons as their largest picture.
 */
DecodeResult readWithMagick(const QByteArray &bytes, PictureFormat format, const DecodeRequest &request);

} // namespace basemodule
