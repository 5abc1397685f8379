// The pixels of a captured image in the form that operations take.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "acquire/image_cache/cached_image.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"

namespace zyr {

// A copy, of either kind; rows run as they do in the image. Deep pictures have the depth that the
// image is stored with.
class EditablePicture {
 public:
  // Null if the image has no pixels, and without memory.
  static std::unique_ptr<EditablePicture> Of(CachedImage& image);

  // Replaces the picture by what the operation for its kind makes of it; false if that is nothing.
  template <typename On8Bits, typename OnDeep>
  bool Change(On8Bits on8Bits, OnDeep onDeep) {
    if (grey_ != nullptr) return ReplaceBy(on8Bits(grey_.get()), &grey_);
    return ReplaceBy(onDeep(deep_.get()), &deep_);
  }

  // Without gaps between the rows. May throw std::bad_alloc.
  std::vector<uint8_t> Pixels() const;

 private:
  template <typename Picture>
  static bool ReplaceBy(std::unique_ptr<Picture> result, std::unique_ptr<Picture>* picture) {
    if (result == nullptr) return false;
    *picture = std::move(result);
    return true;
  }

  std::unique_ptr<CKIPImage> grey_;  // one of both
  std::unique_ptr<CKIPDeepImage> deep_;
};

}  // namespace zyr
