// The dialog that asks how many rows and columns of thumbnails are to be seen at a time.
#pragma once

#include <windows.h>

#include <optional>

#include "acquire/capture_dialog/capture_dialog_view.h"

namespace zyr {

inline constexpr uint32_t kMostThumbnailRows = 10;
inline constexpr uint32_t kMostThumbnailColumns = 10;

// Modal. The user's choice, at least one of each; null for Cancel, and if the owner goes meanwhile.
std::optional<ThumbnailGridSize> AskForThumbnailGridAbove(HWND owner, ThumbnailGridSize present);

}  // namespace zyr
