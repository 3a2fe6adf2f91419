#pragma once

#include "services/basemodule/decode/DecodeRequest.h"
#include "services/basemodule/decode/PictureFormat.h"

namespace basemodule {

/** Starts the library once: no operation cache, bounded threads. Any thread. */
void startVips();

/** The profile for inks that come without one; empty when there is none. */
QByteArray inkProfile();

/**
 * Decodes everything that libvips reads itself, streaming into one bitmap: colour to sRGB, 16 bit and float to
 * 8 bit, reduction while loading. Opaque pictures come as Rgb24, others as Rgba32.
 *
 * @param nativePath in the file system's own bytes.
 */
DecodeResult readWithVips(const QByteArray &nativePath, PictureFormat format, const DecodeRequest &request);

/** The same for a picture file in memory, except OpenEXR. */
DecodeResult readBytesWithVips(const QByteArray &bytes, PictureFormat format, const DecodeRequest &request);

} // namespace basemodule
