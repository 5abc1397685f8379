// The two kinds of images as rows of samples, for operations that treat both alike.
#pragma once

#include <cstddef>
#include <cstdint>

#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"

namespace zyr {

// Memory row 0 first. The samples belong to the image; those of a source are only read.
template <class T>
struct SamplePlane {
  T* samples;
  uint32_t width;  // pixels
  uint32_t height;
  size_t stride;      // samples
  uint32_t channels;  // samples of a pixel

  T* Row(uint32_t y) const { return samples + size_t{y} * stride; }
  size_t RowSamples() const { return size_t{width} * channels; }
};

// 8 or 24 bits.
inline SamplePlane<uint8_t> PlaneOf(const CKIPImage& image) {
  return {const_cast<uint8_t*>(image.bits()), image.width(), image.height(), image.stride(),
          image.bitsPerPixel() / 8};
}

inline SamplePlane<uint16_t> PlaneOf(const CKIPDeepImage& image) {
  return {image.GetPixels(), image.GetWidth(), image.GetHeight(), image.GetStride(), 1};
}

// What filters of neighbourhoods work on.
inline bool IsFilterable(const CKIPImage* image) {
  return image != nullptr && image->IsValid() && (image->bitsPerPixel() == 24 || image->IsGrey());
}

inline bool IsFilterable(const CKIPDeepImage* image) {
  return image != nullptr && image->IsValid();
}

}  // namespace zyr
