// The inner loop of the emboss filter, over one row. Both forms give the same bits.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zyr {

// The loop works in blocks and reads up to this many bytes behind what it needs.
inline constexpr size_t kEmbossSlack = 8;

struct EmbossLight {
  double x;
  double y;
  double heightSquared;     // of the surface normal
  double heightTimesLight;  // times the light's height
  uint8_t flat;             // the shade where the surface is level
};

// `rows` are the previous row, the row itself and the next one, each with a pixel more at both
// ends.
using EmbossLoop = void (*)(const uint8_t* const rows[3], const EmbossLight& light, uint8_t* to,
                            size_t width);

extern const EmbossLoop kEmbossLoopBase;
extern const EmbossLoop kEmbossLoopAvx2;

}  // namespace zyr
