// The stored position of a window.
#pragma once

#include <optional>

#include "platform/window_placement.h"

namespace zyr {

// The placement with its normal rectangle shifted onto the screen; one that is larger than the
// screen has its left (top) edge at the screen's. Null if the rectangle is none, its right edge
// lying left of its left one or its bottom above its top.
std::optional<platform::PlacementBytes> MovedOntoScreen(const platform::PlacementBytes& placement,
                                                        const platform::ScreenArea& screen);

// The placement as it is stored: with its length, and with no flag but that of a maximised window.
platform::PlacementBytes StoredPlacement(const platform::PlacementBytes& placement, bool maximised);

}  // namespace zyr
