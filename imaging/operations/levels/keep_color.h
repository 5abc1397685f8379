// Point operations that leave the pixels of one colour as they are.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "imaging/operations/levels/levels.h"

namespace zyr {

// The colour whose pixels stay as they are; below 24 bits the pixels of the palette's nearest one.
inline constexpr ColorRef kKeepNoColor = 0xFFFFFFFF;

struct ColorTables {
  ByteTable red, green, blue;
};

// The palette's index nearest to `keep`; none for kKeepNoColor and without a palette.
std::optional<uint32_t> KeptIndex(const CKIPImage& image, ColorRef keep);

// Maps an image of 24 bits, or one of 8 bits by its red table. `keep` may be kKeepNoColor. Null on
// failure or cancel.
std::unique_ptr<CKIPImage> MapBytesKeeping(const CKIPImage& image, const ColorTables& tables,
                                           ColorRef keep, const RowProgress& progress);

}  // namespace zyr
