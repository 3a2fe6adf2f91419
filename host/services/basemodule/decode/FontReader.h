#pragma once

#include "services/basemodule/decode/DecodeRequest.h"

namespace basemodule {

/**
 * A specimen of a font file: its name, its letters and a line in several sizes. Draws in the calling thread without
 * making the font known to the program. Null without a QGuiApplication and for what is no font.
 */
DecodeResult readFont(const QByteArray &bytes, const DecodeRequest &request);

} // namespace basemodule
