#pragma once

#include <functional>

namespace media {

/** Asked again and again while a file is read; true: give up. */
using Cancelled = std::function<bool()>;

} // namespace media
