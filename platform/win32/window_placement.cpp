#include "platform/window_placement.h"

#include <cstring>

#include "platform/win32/system.h"

namespace zyr::platform {

static_assert(sizeof(WINDOWPLACEMENT) == std::tuple_size_v<PlacementBytes>);

bool IsMinimised(Window window) { return IsIconic(static_cast<HWND>(window)); }
bool IsMaximised(Window window) { return IsZoomed(static_cast<HWND>(window)); }

std::optional<PlacementBytes> PlacementOf(Window window) {
  WINDOWPLACEMENT placement = {};
  placement.length = sizeof placement;
  if (!GetWindowPlacement(static_cast<HWND>(window), &placement)) return std::nullopt;
  PlacementBytes bytes;
  std::memcpy(bytes.data(), &placement, bytes.size());
  return bytes;
}

void ApplyPlacement(Window window, const PlacementBytes& bytes) {
  WINDOWPLACEMENT placement;
  std::memcpy(&placement, bytes.data(), bytes.size());
  placement.length = sizeof placement;
  SetWindowPlacement(static_cast<HWND>(window), &placement);
}

// All monitors together: a window on the second one stays there.
ScreenArea CurrentScreen() {
  const int left = GetSystemMetrics(SM_XVIRTUALSCREEN);
  const int top = GetSystemMetrics(SM_YVIRTUALSCREEN);
  return {left, top, left + GetSystemMetrics(SM_CXVIRTUALSCREEN),
          top + GetSystemMetrics(SM_CYVIRTUALSCREEN)};
}

}  // namespace zyr::platform
