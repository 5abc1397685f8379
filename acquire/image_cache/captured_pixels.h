// From the packed bitmap of a capture to the pixels of a cached image.
#pragma once

#include "acquire/image_cache/cached_image.h"
#include "platform/global_memory.h"

namespace zyr {

// Fills in size, depth, resolution and pixels, bottom-up. Colours become grey, samples of 16 bits
// keep their upper 12. False, with the image unchanged, for anything but a bitmap of a size that
// can be stored. The handle stays the caller's.
bool TakeCapturedPixels(platform::GlobalHandle handle, CachedImage* image);

}  // namespace zyr
