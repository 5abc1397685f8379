// Capitals of 5 x 7 dots, for labels.
#pragma once

#include <cstdint>

namespace zyr {

inline constexpr uint32_t kGlyphWidth = 5;
inline constexpr uint32_t kGlyphHeight = 7;

// Small letters look like their capitals; what has no glyph is blank.
bool GlyphDot(char character, uint32_t x, uint32_t y);

}  // namespace zyr
