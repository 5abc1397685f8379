// A grey picture in memory, as the tools hand it around.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zyr {

struct GreyPicture {
  uint32_t width = 0;  // pixels
  uint32_t height = 0;
  uint32_t bits = 8;  // a sample, 8 or 16
  double xDpi = 0;    // dots per inch, 0: unknown
  double yDpi = 0;
  std::vector<uint16_t> samples;  // width x height from the top row down, 0 is black

  const uint16_t* Row(uint32_t row) const { return samples.data() + size_t{row} * width; }
};

}  // namespace zyr
