// The steps that make a captured image easier to read, by the settings of its sensor family.
#pragma once

#include <memory>
#include <string>

#include "acquire/image_cache/cached_image.h"
#include "acquire/image_cache/editable_picture.h"

namespace zyr {

// Works on a picture of the image's pixels, which Store puts back; without it nothing has changed.
// A step cannot fail: without a picture, by a setting that says nothing, and where the operation
// gives nothing (the user's Escape, no memory) it leaves all as it is. Filters weigh neighbours in
// the order of the image's rows, which must still run bottom-up. Application's thread only.
class ImageEnhancement {
 public:
  explicit ImageEnhancement(CachedImage& image);  // which must outlive this object
  ImageEnhancement(const ImageEnhancement&) = delete;
  ImageEnhancement& operator=(const ImageEnhancement&) = delete;

  void ApplyAutomaticBrightnessContrast();
  void ApplyImageAdjustment();  // gamma, then brightness and contrast
  void ApplyNoiseRemoval();
  void ApplySharpening();
  void ApplyLaplace();
  void ApplySmoothing();

  // False if there is no picture, or no memory.
  bool Store();

 private:
  CachedImage& image_;
  const std::string system_;  // the sensor family's prefix in the settings
  std::unique_ptr<EditablePicture> picture_;
};

}  // namespace zyr
