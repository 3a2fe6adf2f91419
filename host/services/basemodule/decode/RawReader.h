#pragma once

#include "services/basemodule/decode/DecodeRequest.h"

namespace basemodule {

/** The preview picture that a camera stores in its raw file. */
struct RawPreview {
    QByteArray jpeg;        ///< Empty when the preview is stored as plain pixels or there is none.
    DecodedPicture picture; ///< Set when it is stored as plain pixels.
    int rotation = 0;       ///< Clockwise degrees to stand upright, as the raw file says.

    bool isNull() const { return jpeg.isEmpty() && picture.isNull(); }
};

/** Takes the largest embedded preview out of a raw file, without developing the file. */
RawPreview readRawPreview(const QByteArray &nativePath);

/** Decodes the embedded preview. */
DecodeResult readRaw(const QByteArray &nativePath, const DecodeRequest &request);

/** A JPEG that carries this turn in an EXIF block of its own; unchanged when it has an orientation already. */
QByteArray jpegWithRotation(const QByteArray &jpeg, int nRotation);

} // namespace basemodule
