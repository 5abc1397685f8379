#include "bench/operations/frames.h"

#include <algorithm>
#include <cmath>
#include <random>

#include "imaging/image/grey.h"
#include "imaging/image/raw_pixels.h"

namespace zyr::bench {

std::shared_ptr<const CKIPDeepImage> DeepFrame(FrameSize size) {
  auto image = std::make_shared<CKIPDeepImage>();
  image->Create(size.width, size.height, 12);
  std::mt19937 generator(1);
  std::normal_distribution<double> noise(0, 25);
  for (uint32_t y = 0; y < size.height; ++y) {
    for (uint32_t x = 0; x < size.width; ++x) {
      const double teeth = std::sin(x * 0.02) * std::sin(y * 0.006);
      const double value = 1900 + 1300 * teeth + 0.2 * x + noise(generator);
      *image->GetPixelPtr(x, y) = static_cast<uint16_t>(std::clamp(value, 0.0, 4095.0));
    }
  }
  return image;
}

std::shared_ptr<const CKIPImage> GreyFrame(FrameSize size) {
  return ImageFromDeepImage(*DeepFrame(size), {});
}

std::shared_ptr<const CKIPImage> ColorFrame(FrameSize size) {
  return ConvertTo24(*GreyFrame(size), nullptr);
}

cv::Mat MatOf(const CKIPDeepImage& image) {
  return {static_cast<int>(image.GetHeight()), static_cast<int>(image.GetWidth()), CV_16UC1,
          image.GetPixels(), image.GetStride() * sizeof(uint16_t)};
}

cv::Mat MatOf(const CKIPImage& image) {
  return {static_cast<int>(image.height()), static_cast<int>(image.width()),
          image.bitsPerPixel() == 24 ? CV_8UC3 : CV_8UC1, const_cast<uint8_t*>(image.bits()),
          image.stride()};
}

}  // namespace zyr::bench
