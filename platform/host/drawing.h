// Test control of the drawing double.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/drawing.h"

namespace zyr::platform::host {

struct DrawnDib {
  DeviceContext target = nullptr;
  DrawRect to;
  DrawRect from;
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t bitsPerPixel = 0;
  std::vector<uint8_t> palette;  // 4 bytes a colour
  std::vector<uint8_t> bits;     // all rows as handed over
};
const std::vector<DrawnDib>& DrawnDibs();

void FailDrawing(bool fail);

void ResetDrawing();

}  // namespace zyr::platform::host
