// Drawing of device-independent bitmaps from ordinary memory.
#pragma once

#include <cstdint>

namespace zyr::platform {

using DeviceContext = void*;

struct DrawRect {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

// A bottom-up bitmap of 1, 8 or 24 bits with rows padded to 4 bytes. `palette` has `colorCount`
// entries of blue, green, red, 0. All borrowed for the call.
struct DibView {
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t bitsPerPixel = 0;
  const uint8_t* palette = nullptr;
  uint32_t colorCount = 0;
  const uint8_t* bits = nullptr;
};

// Stretches the part `from` of the picture over `to`; both count y from the top. A negative height
// of `from` draws the rows of the positive height, the last one first.
bool DrawDib(DeviceContext target, const DrawRect& to, const DibView& dib, const DrawRect& from);

}  // namespace zyr::platform
