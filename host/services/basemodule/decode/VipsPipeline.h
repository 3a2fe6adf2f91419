#pragma once

#include "services/basemodule/decode/DecodeRequest.h"
#include "services/basemodule/decode/PictureFormat.h"

#include <functional>
#include <memory>
// Qt takes "signals" for itself in headers that glib wants to name a member so.
#undef signals
#include <vips/vips.h>

namespace basemodule {

struct GObjectUnref {
    void operator()(void *pObject) const { g_object_unref(pObject); }
};
template <typename T>
using GObjectPointer = std::unique_ptr<T, GObjectUnref>;

/** A step of a libvips pipeline; nothing is computed before writeToMemory. */
using VipsPicture = GObjectPointer<VipsImage>;

/**
 * Appends what brings the picture to 8-bit sRGB with 3 or 4 bands. `reload` opens the file a second time, for
 * pictures whose brightness range has to be known before the first row can be delivered. Null when it cannot be done.
 */
VipsPicture toSrgb(VipsPicture image, PictureFormat format, const std::function<VipsPicture()> &reload);

VipsPicture resized(VipsPicture image, const QSize &size);
VipsPicture mirrored(VipsPicture image);

/** Runs the pipeline into one bitmap; null when it fails, is refused or is given up. */
DecodedPicture writeToMemory(VipsPicture image, const DecodeRequest &request);

/** Wraps the pixels of a picture, which must outlive the result, without copying. */
VipsPicture wrapped(const DecodedPicture &picture);

} // namespace basemodule
