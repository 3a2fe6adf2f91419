#pragma once

#include "services/basemodule/decode/DecodeRequest.h"

class QIODevice;

namespace basemodule {

/** Decodes Windows bitmaps; opaque ones come as Bgr24, as the format itself stores them. */
DecodeResult readBmp(QIODevice &device, const DecodeRequest &request);

} // namespace basemodule
