// Small pictures in the system's own form.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace zyr {

struct IconDeleter {
  using pointer = HICON;
  void operator()(HICON icon) const { DestroyIcon(icon); }
};
using Icon = std::unique_ptr<HICON, IconDeleter>;

struct BitmapDeleter {
  using pointer = HBITMAP;
  void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
};
using Bitmap = std::unique_ptr<HBITMAP, BitmapDeleter>;

// Both from `size` rows of `size` pixels, the first row on top: blue in the low byte, then green,
// red and opacity. Colours are not multiplied by the opacity.
Bitmap BitmapFromPixels(const std::vector<uint32_t>& pixels, int size);
Icon IconFromPixels(const std::vector<uint32_t>& pixels, int size);

// This module's bitmap `id`, a square of 32-bit pixels of that kind, at another size. Meant for a
// smaller one: each pixel is the mean of what it covers. Empty if there is no such bitmap.
std::vector<uint32_t> PixelsOfBitmap(uint16_t id, int size);

}  // namespace zyr
