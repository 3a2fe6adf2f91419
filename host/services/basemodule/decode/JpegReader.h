#pragma once

#include "services/basemodule/decode/DecodeRequest.h"

class QIODevice;

namespace basemodule {

/**
 * Decodes a JPEG stream straight into the memory that is handed out, in the layout that previews take over with one
 * copy. Colour conversion to sRGB, where the file needs one, happens strip by strip on the way.
 *
 * @param device            open, at the start of the stream.
 * @param nFallbackRotation turn to report when the stream itself carries no orientation.
 */
DecodeResult readJpeg(QIODevice &device, const DecodeRequest &request, int nFallbackRotation = 0);

/** The EXIF orientation of a JPEG in memory; 0 when it carries none. */
int jpegOrientation(const QByteArray &jpeg);

} // namespace basemodule
