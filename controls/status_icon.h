// The small pictures in front of status lines.
#pragma once

#include <windows.h>

namespace zyr {

enum class StatusIcon { kInformation, kError, kStep, kFinal };

// A disc with a white sign, `size` pixels wide and high, its edges blended into `background`.
void DrawStatusIcon(HDC target, int x, int y, int size, StatusIcon icon, COLORREF background);

}  // namespace zyr
