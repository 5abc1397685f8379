#include "controls/pixel_icon.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "controls/paint.h"
#include "platform/resources.h"

namespace zyr {
namespace {

struct Square {
  std::vector<uint32_t> pixels;  // first row on top
  int side = 0;
};

Square LoadSquare(uint16_t id) {
  const platform::OwnResourcesScope own;
  uint32_t error = 0;
  const auto bytes = platform::BitmapResource(id, &error);
  BITMAPINFOHEADER header;
  if (bytes.size() < sizeof header) return {};
  std::memcpy(&header, bytes.data(), sizeof header);
  const auto side = static_cast<size_t>(header.biWidth);
  const size_t rowBytes = side * sizeof(uint32_t);
  if (header.biBitCount != 32 || header.biHeight != header.biWidth ||
      bytes.size() < sizeof header + side * rowBytes) {
    return {};
  }
  Square square = {std::vector<uint32_t>(side * side), static_cast<int>(side)};
  for (size_t row = 0; row < side; ++row) {
    std::memcpy(&square.pixels[row * side],
                bytes.data() + sizeof header + (side - 1 - row) * rowBytes, rowBytes);
  }
  return square;
}

// Of the pixels within, a part of a pixel counting for so much. An opaque pixel gives more of its
// colour than a pale one.
uint32_t MeanOf(const Square& square, double left, double top, double span) {
  double sums[4] = {};  // blue, green, red, opacity
  const auto end = [&](double from) {
    return std::min(static_cast<int>(std::ceil(from + span)), square.side);
  };
  for (int y = static_cast<int>(top); y < end(top); ++y) {
    const double height = std::min<double>(y + 1, top + span) - std::max<double>(y, top);
    for (int x = static_cast<int>(left); x < end(left); ++x) {
      const double width = std::min<double>(x + 1, left + span) - std::max<double>(x, left);
      const uint32_t pixel = square.pixels[static_cast<size_t>(y) * square.side + x];
      const double opacity = (pixel >> 24) * width * height;
      for (int i = 0; i < 3; ++i) sums[i] += (pixel >> 8 * i & 0xFF) * opacity;
      sums[3] += opacity;
    }
  }
  if (sums[3] <= 0) return 0;
  auto mean = static_cast<uint32_t>(sums[3] / (span * span) + 0.5) << 24;
  for (int i = 0; i < 3; ++i) mean |= static_cast<uint32_t>(sums[i] / sums[3] + 0.5) << 8 * i;
  return mean;
}

}  // namespace

Bitmap BitmapFromPixels(const std::vector<uint32_t>& pixels, int size) {
  const BITMAPINFO info = RowsFromTop(size, size);
  void* bits = nullptr;
  Bitmap bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (bitmap != nullptr) std::memcpy(bits, pixels.data(), pixels.size() * sizeof(uint32_t));
  return bitmap;
}

// An icon, for everywhere it is known that its colours are not multiplied by its opacity.
Icon IconFromPixels(const std::vector<uint32_t>& pixels, int size) {
  const Bitmap color = BitmapFromPixels(pixels, size);
  const std::vector<uint8_t> opaque((static_cast<size_t>(size) + 15) / 16 * 2 * size);
  const Bitmap mask(CreateBitmap(size, size, 1, 1, opaque.data()));
  ICONINFO info = {TRUE, 0, 0, mask.get(), color.get()};
  return Icon(CreateIconIndirect(&info));
}

std::vector<uint32_t> PixelsOfBitmap(uint16_t id, int size) {
  const Square square = LoadSquare(id);
  if (square.side == 0) return {};
  const double span = static_cast<double>(square.side) / size;
  std::vector<uint32_t> pixels;
  pixels.reserve(static_cast<size_t>(size) * size);
  for (int row = 0; row < size; ++row) {
    for (int column = 0; column < size; ++column) {
      pixels.push_back(MeanOf(square, column * span, row * span, span));
    }
  }
  return pixels;
}

}  // namespace zyr
