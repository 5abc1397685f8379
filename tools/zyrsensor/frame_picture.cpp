#include "tools/zyrsensor/frame_picture.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace zyr {
namespace {

constexpr uint16_t kLargest12Bit = 0xFFF;

// One of the corrections stretches to 16 bits by itself; the others leave 12.
bool HasMoreThan12Bits(const SensorImage& frame) {
  for (uint32_t y = 0; y < frame.GetHeight(); ++y) {
    const uint16_t* row = frame.Row(y);
    if (std::any_of(row, row + frame.GetWidth(), [](uint16_t v) { return v > kLargest12Bit; }))
      return true;
  }
  return false;
}

int32_t Level12(const GreyPicture& picture, size_t index) {
  const uint32_t sample = picture.samples[index];
  return static_cast<int32_t>(picture.bits == 16 ? sample >> 4 : sample << 4);
}

}  // namespace

GreyPicture PictureOf(const SensorImage& frame, bool film) {
  const int shift = HasMoreThan12Bits(frame) ? 0 : 4;
  const uint16_t mask = film ? 0xFFFF : 0;
  GreyPicture picture;
  picture.width = frame.GetWidth();
  picture.height = frame.GetHeight();
  picture.bits = 16;
  picture.xDpi = frame.GetDpiX();
  picture.yDpi = frame.GetDpiY();
  picture.samples.reserve(size_t{picture.width} * picture.height);
  for (uint32_t y = picture.height; y-- > 0;) {
    const uint16_t* row = frame.Row(y);
    for (uint32_t x = 0; x < picture.width; ++x)
      picture.samples.push_back(static_cast<uint16_t>((row[x] << shift) ^ mask));
  }
  return picture;
}

std::optional<Difference> Compare(const GreyPicture& picture, const GreyPicture& reference) {
  const size_t count = picture.samples.size();
  if (picture.width != reference.width || picture.height != reference.height || count == 0)
    return std::nullopt;
  Difference difference;
  uint64_t sum = 0;
  uint64_t squares = 0;
  uint64_t above40 = 0;
  for (size_t i = 0; i < count; ++i) {
    const auto off = static_cast<uint32_t>(std::abs(Level12(picture, i) - Level12(reference, i)));
    sum += off;
    squares += uint64_t{off} * off;
    above40 += off > 40 ? 1 : 0;
    difference.largest = std::max(difference.largest, off);
  }
  const auto pixels = static_cast<double>(count);
  difference.mean = static_cast<double>(sum) / pixels;
  difference.rootMeanSquare = std::sqrt(static_cast<double>(squares) / pixels);
  difference.shareAbove40 = static_cast<double>(above40) / pixels;
  return difference;
}

}  // namespace zyr
