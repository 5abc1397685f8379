#include "settings/placement.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "foundation/support/little_endian.h"

namespace zyr {
namespace {

constexpr size_t kLengthOffset = 0;
constexpr size_t kFlagsOffset = 4;
constexpr size_t kLeftOffset = 28;
constexpr size_t kTopOffset = 32;
constexpr size_t kRightOffset = 36;
constexpr size_t kBottomOffset = 40;
constexpr uint32_t kRestoreToMaximised = 2;

// From one edge of a rectangle to the opposite one. 64 bits, since stored numbers may be anything.
struct Range {
  int64_t start;
  int64_t end;
};

Range LoadRange(const platform::PlacementBytes& placement, size_t start, size_t end) {
  const auto load = [&](size_t offset) {
    return static_cast<int32_t>(LoadLittleEndian<uint32_t>(placement.data() + offset));
  };
  return {load(start), load(end)};
}

void StoreRange(platform::PlacementBytes& placement, size_t start, size_t end, Range range) {
  const auto store = [&](size_t offset, int64_t value) {
    const auto limited =
        static_cast<int32_t>(std::min<int64_t>(value, std::numeric_limits<int32_t>::max()));
    StoreLittleEndian(placement.data() + offset, static_cast<uint32_t>(limited));
  };
  store(start, range.start);
  store(end, range.end);
}

Range Shifted(Range range, int64_t screenStart, int64_t screenEnd) {
  const int64_t start =
      std::max(range.start - std::max<int64_t>(range.end - screenEnd, 0), screenStart);
  return {start, start + (range.end - range.start)};
}

}  // namespace

std::optional<platform::PlacementBytes> MovedOntoScreen(const platform::PlacementBytes& placement,
                                                        const platform::ScreenArea& screen) {
  const Range columns = LoadRange(placement, kLeftOffset, kRightOffset);
  const Range rows = LoadRange(placement, kTopOffset, kBottomOffset);
  if (columns.end < columns.start || rows.end < rows.start) return std::nullopt;
  platform::PlacementBytes moved = placement;
  StoreRange(moved, kLeftOffset, kRightOffset, Shifted(columns, screen.left, screen.right));
  StoreRange(moved, kTopOffset, kBottomOffset, Shifted(rows, screen.top, screen.bottom));
  return moved;
}

platform::PlacementBytes StoredPlacement(const platform::PlacementBytes& placement,
                                         bool maximised) {
  platform::PlacementBytes stored = placement;
  StoreLittleEndian(stored.data() + kLengthOffset, static_cast<uint32_t>(stored.size()));
  StoreLittleEndian(stored.data() + kFlagsOffset, maximised ? kRestoreToMaximised : 0u);
  return stored;
}

}  // namespace zyr
