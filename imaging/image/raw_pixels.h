// Images from and to bare rows of samples.
#pragma once

#include <cstdint>
#include <memory>

#include "foundation/support/progress.h"
#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"

namespace zyr {

enum class FirstRow { kTop, kBottom };  // where the first row of the buffer stands in the picture

// An 8-bit image with an identity palette. Rows of the buffer are `width + pad` bytes apart;
// without `positive` each byte is inverted. Null on failure or cancel.
std::unique_ptr<CKIPImage> ImageFromRaw8(const uint8_t* buffer, uint32_t width, uint32_t height,
                                         bool positive, uint32_t pad, uint32_t xResolution,
                                         uint32_t yResolution, FirstRow firstRow,
                                         ProgressCallback progress = nullptr);

// How 16-bit samples become bytes. Mode 0 is a plain reduction to the top 8 bits of the depth,
// spread over all levels where the depth is below 8 bits. The other modes look at the samples'
// distribution first: imaging/operations/levels/depth_transforms.h names them.
struct DepthMapping {
  bool positive = true;
  uint32_t mode = 0;
  uint32_t bits = 16;  // declared depth of the samples
  uint32_t lowBit = 0;
  bool detectDepth = true;  // take the depth that the samples really use
  bool transpose = false;
  bool invert = false;
  int32_t brightness = 0;  // percent
  int32_t contrast = 0;    // percent
  double gamma = 0;        // 0 and 1 mean none
  double percent = 0;      // for mode 12; numbers outside 0 to 100 count as the nearer one
};

// An 8-bit image with an identity palette. Rows of the buffer are `width + pad` samples apart; the
// first row becomes the bottom of the picture. With `transpose` the target is height x width.
std::unique_ptr<CKIPImage> ImageFromRaw16(const uint16_t* buffer, uint32_t width, uint32_t height,
                                          uint32_t pad, uint32_t xResolution, uint32_t yResolution,
                                          const DepthMapping& mapping,
                                          ProgressCallback progress = nullptr);
// The image's own depth takes the place of mapping.bits.
std::unique_ptr<CKIPImage> ImageFromDeepImage(const CKIPDeepImage& image,
                                              const DepthMapping& mapping,
                                              ProgressCallback progress = nullptr);

// Copies `width` bytes of each memory row, `width + pad` bytes apart. False on cancel, and if the
// image does not have 8 bits.
bool CopyImageToRaw8(const CKIPImage& image, uint8_t* buffer, uint32_t pad,
                     ProgressCallback progress = nullptr);

}  // namespace zyr
