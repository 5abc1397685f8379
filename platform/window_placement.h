// Where a top-level window stands on the screen.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "platform/messages.h"

namespace zyr::platform {

// The 44 bytes of the system's placement record, little-endian: length, flags, show command,
// minimised position (x, y), maximised position (x, y), normal rectangle (left, top, right,
// bottom), 32 bits each.
using PlacementBytes = std::array<uint8_t, 44>;

bool IsMinimised(Window window);
bool IsMaximised(Window window);
std::optional<PlacementBytes> PlacementOf(Window window);
void ApplyPlacement(Window window, const PlacementBytes& placement);

struct ScreenArea {
  int32_t left = 0;
  int32_t top = 0;
  int32_t right = 0;
  int32_t bottom = 0;
};
ScreenArea CurrentScreen();

}  // namespace zyr::platform
