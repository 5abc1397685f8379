// What the tests of the image correction share.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "hardware/correction/sensor_image.h"

namespace zyr {

inline uint32_t Random(uint32_t limit) {
  static std::mt19937 generator(1);
  return generator() % limit;
}

// Levels below `limit`; resolution 300 x 150. A pattern in the padding shows who writes there.
inline Held<SensorImage> RandomFrame(uint32_t width, uint32_t height, uint32_t limit) {
  Held<SensorImage> frame = NewSensorImage();
  EXPECT_TRUE(frame->Create(width, height, 300, 150));
  for (uint32_t y = 0; y < height; ++y) {
    for (uint32_t x = 0; x < frame->GetRowPixels(); ++x) {
      frame->Row(y)[x] = static_cast<uint16_t>(x < width ? Random(limit) : 0xABC);
    }
  }
  return frame;
}

// All samples, padding included.
inline std::vector<uint16_t> SamplesOf(const SensorImage& frame) {
  return {frame.data(), frame.data() + size_t{frame.GetHeight()} * frame.GetRowPixels()};
}

}  // namespace zyr
