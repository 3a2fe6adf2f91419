#pragma once

#include "services/basemodule/decode/DecodeRequest.h"

namespace basemodule {

/** The picture that stands for a video or a sound: an embedded cover, else a frame that is not black. */
DecodeResult readMedia(const QByteArray &nativePath, const DecodeRequest &request);

} // namespace basemodule
