#include "hardware/correction/line_interpolation.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zyr {
namespace {

constexpr int64_t kNone = -1;

// The good pixels nearest to a defective one along a section through the frame.
struct Span {
  int64_t before = kNone;
  int64_t after = kNone;
};

// Spans of the `lines`, ascending, that a section of `length` pixels crosses. What lies between two
// of them is walked through once in each direction.
template <typename IsGood>
void FindSpans(const std::vector<int64_t>& lines, int64_t length, IsGood isGood,
               std::vector<Span>* spans) {
  int64_t nearest = kNone;
  int64_t walked = kNone;  // as far as this line
  for (size_t i = 0; i < lines.size(); walked = lines[i++]) {
    int64_t at = lines[i] - 1;
    while (at > walked && !isGood(at)) --at;
    if (at > walked) nearest = at;
    (*spans)[i].before = nearest;
  }
  nearest = kNone;
  walked = length;
  for (size_t i = lines.size(); i-- > 0; walked = lines[i]) {
    int64_t at = lines[i] + 1;
    while (at < walked && !isGood(at)) ++at;
    if (at < walked) nearest = at;
    (*spans)[i].after = nearest;
  }
}

uint16_t Interpolated(int64_t at, const Span& span, int32_t before, int32_t after) {
  const double fraction =
      static_cast<double>(at - span.before) / static_cast<double>(span.after - span.before);
  return static_cast<uint16_t>(before + static_cast<int32_t>(fraction * (after - before) + 0.5));
}

// `pointAt(section, at)` gives the list's coordinates.
template <typename PointAt>
void InterpolateLines(const std::vector<int64_t>& lines, int64_t sections, int64_t length,
                      PointAt pointAt, const DefectMask& mask, WeightedRepair* repair) {
  std::vector<Span> spans(lines.size());
  for (int64_t section = 0; section < sections && !lines.empty(); ++section) {
    const auto isGood = [&](int64_t at) {
      const auto [x, y] = pointAt(section, at);
      return mask.IsGood(x, y);
    };
    const auto pixelAt = [&](int64_t at) -> uint16_t& {
      const auto [x, y] = pointAt(section, at);
      return repair->PixelAt(x, y);
    };
    FindSpans(lines, length, isGood, &spans);
    for (size_t i = 0; i < lines.size(); ++i) {
      const Span& span = spans[i];
      if (span.before == kNone || span.after == kNone) {
        const auto [x, y] = pointAt(section, lines[i]);
        repair->RepairPixel(x, y);
      } else {
        pixelAt(lines[i]) = Interpolated(lines[i], span, pixelAt(span.before), pixelAt(span.after));
      }
    }
  }
}

struct Point {
  int64_t x;
  int64_t y;
};

}  // namespace

void InterpolateRows(const DefectMask& mask, WeightedRepair* repair) {
  InterpolateLines(
      mask.badRows(), mask.width(), mask.height(),
      [](int64_t x, int64_t y) {
        return Point{x, y};
      },
      mask, repair);
}

void InterpolateColumns(const DefectMask& mask, WeightedRepair* repair) {
  InterpolateLines(
      mask.badColumns(), mask.height(), mask.width(),
      [](int64_t y, int64_t x) {
        return Point{x, y};
      },
      mask, repair);
}

}  // namespace zyr
