// A state that an edited image was in, to come back to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "acquire/image_cache/cached_image.h"
#include "acquire/image_dialog/image_operations.h"

namespace zyr {

// Keeps the pixels, or how they were made of another version's: a hundred full copies would take
// some 400 MB. At most kMostRepeats operations stand between a version and kept pixels, so that
// coming back to it takes no time that a person notices.
class ImageVersion {
 public:
  static constexpr size_t kMostRepeats = 4;

  // The state that `image` is in. Null if it has no pixels. May throw std::bad_alloc.
  static std::shared_ptr<ImageVersion> Of(CachedImage& image);
  // What `done` made of `parent`, whose state `image` is still in. May throw std::bad_alloc.
  static std::shared_ptr<ImageVersion> Of(std::shared_ptr<ImageVersion> parent, CachedImage& image,
                                          ImageOperations done);

  // An image in this state, bit for bit. Null without memory.
  std::unique_ptr<CachedImage> Restore() const;

  size_t KeptBytes() const { return pixels_.size(); }

 private:
  // Operations between the kept pixels and this version.
  size_t Repeats() const;
  void Keep(CachedImage& image);

  ImageDescription description_;  // of the pixels; unused without them
  std::vector<uint8_t> pixels_;   // rows bottom-up; empty if there is a parent
  std::shared_ptr<ImageVersion> parent_;
  ImageOperations operations_;
};

}  // namespace zyr
