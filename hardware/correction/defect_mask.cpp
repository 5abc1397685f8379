#include "hardware/correction/defect_mask.h"

#include <algorithm>
#include <limits>
#include <set>

namespace zyr {
namespace {

std::vector<int64_t> SortedBelow(int64_t end, const std::vector<int32_t>& lines) {
  const std::set<int32_t> sorted(lines.begin(), lines.end());
  constexpr int64_t kMost = std::numeric_limits<int32_t>::max();
  return {sorted.lower_bound(0), sorted.lower_bound(static_cast<int32_t>(std::min(end, kMost)))};
}

}  // namespace

DefectMask::DefectMask(const DefectList& list, uint32_t width, uint32_t height)
    : width_(width),
      height_(height),
      badRows_(SortedBelow(height_, list.rows())),
      badColumns_(SortedBelow(width_, list.columns())),
      defective_(size_t{width} * height) {
  for (const auto& [x, y] : list.Pixels()) {
    if (Contains(x, y)) defective_[At(x, y)] = true;
  }
  for (const int64_t y : badRows_) {
    for (int64_t x = 0; x < width_; ++x) defective_[At(x, y)] = true;
  }
  for (const int64_t x : badColumns_) {
    for (int64_t y = 0; y < height_; ++y) defective_[At(x, y)] = true;
  }
}

}  // namespace zyr
