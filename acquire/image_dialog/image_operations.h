// What the image dialog can do to the pixels of a captured image.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "acquire/image_cache/cached_image.h"
#include "foundation/support/progress.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"

namespace zyr {

// An operation with its parameters. The same operation on the same pixels gives the same pixels
// again. Percentages may lie outside 0 to 100.
struct ImageOperation {
  const char* progressText = "";  // English
  bool applies = true;            // otherwise the operation changes nothing, whatever the image
  std::function<std::unique_ptr<CKIPImage>(const CKIPImage*, ProgressCallback)> on8Bits;
  std::function<std::unique_ptr<CKIPDeepImage>(const CKIPDeepImage*, ProgressCallback)> onDeep;
  bool turnsSides = false;  // width and height, and the resolutions, change places

  static ImageOperation Sharpen(uint32_t size, int32_t factor);
  static ImageOperation Smooth(uint32_t size, int32_t factor);
  static ImageOperation EnhanceEdges(uint32_t size, double strength);
  static ImageOperation RemoveNoise(uint32_t size);
  static ImageOperation RemoveNoiseFast();
  static ImageOperation AdjustGamma(double gamma);
  static ImageOperation AdjustBrightnessContrast(int32_t brightness, int32_t contrast);
  static ImageOperation AutoBrightnessContrast();
  static ImageOperation Equalize();
  static ImageOperation Normalize();
  static ImageOperation Invert();
  static ImageOperation FlipHorizontal();
  static ImageOperation FlipVertical();
  // 90, 180 or 270, clockwise; anything else changes nothing.
  static ImageOperation Rotate(uint32_t degrees);
};

// To be applied in this order.
using ImageOperations = std::vector<ImageOperation>;

ImageOperations AdjustGammaBrightnessContrast(double gamma, int32_t brightness, int32_t contrast);

// Applies them, each with its progress window, and returns those that gave something. What does not
// apply, has failed or was ended by Escape leaves the picture as it was. Rows must run bottom-up.
// May throw std::bad_alloc, with the image as some of the operations left it.
ImageOperations Apply(const ImageOperations& operations, CachedImage& image);

// Applies again what Apply has returned, without a window and deaf to Escape. False without memory.
bool Repeat(const ImageOperations& operations, CachedImage& image);

}  // namespace zyr
