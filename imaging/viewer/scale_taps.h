// Which pixels of a line of the image, and how much of each, a pixel of the scaled line shows.
#pragma once

#include <cstdint>
#include <vector>

namespace zyr {

// One axis of a scaled picture: its pixel x covers what lies between Edge(x) and Edge(x + 1) in the
// image. Everything follows from x alone, so that parts drawn one by one fit together.
struct ScaleAxis {
  double scale = 1;
  double origin = 0;  // of the scaled picture's pixel 0, in the image
  int32_t size = 1;   // pixels of the image

  double Edge(int32_t x) const { return origin + x / scale; }
};

// The image pixels from `first` on, each with its share; the shares add up to kWhole.
struct MeanTaps {
  static constexpr uint32_t kWhole = 1 << 16;
  int32_t first = 0;
  std::vector<uint32_t> weights;
};
void FindMeanTaps(const ScaleAxis& axis, int32_t x, MeanTaps* taps);

// For scales of 1 and more: `first` rises by at most 1 from one x to the next.
// Between the image pixel `first` and the next, `fraction` / 32768 of the way.
struct BlendTap {
  int32_t first = 0;
  int16_t fraction = 0;  // never negative; 0 at the last pixel
};
BlendTap FindBlendTap(const ScaleAxis& axis, int32_t x);

// The image pixel under the middle.
int32_t FindNearest(const ScaleAxis& axis, int32_t x);

}  // namespace zyr
