// The popups of the viewer.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>

namespace zyr {

// Both come back when the user has chosen or gone away; meanwhile messages are handled, and the
// owner may be destroyed. `at` is on the screen.

// One of ViewerOperation, 0 if none. `spectrum` is marked as the one in use; 0 if none is.
uint32_t ChooseOperation(HWND owner, POINT at, uint32_t spectrum);

struct SpotSettings {
  uint32_t size = 0;           // pixels
  uint32_t magnification = 0;  // 0 for a spot that does not magnify
};
std::optional<SpotSettings> ChooseSpot(HWND owner, POINT at, const SpotSettings& present);

}  // namespace zyr
