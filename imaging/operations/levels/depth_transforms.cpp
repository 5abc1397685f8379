#include "imaging/operations/levels/depth_transforms.h"

#include <algorithm>
#include <numeric>

namespace zyr {
namespace {

using Counts = std::span<const uint32_t>;
using Levels = std::span<uint8_t>;

constexpr double kClipPercent = 3;

struct Range {
  size_t low;
  size_t high;
};

uint64_t TotalOf(Counts counts) {
  return std::accumulate(counts.begin(), counts.end(), uint64_t{0});
}

// Not a number is no percentage.
uint64_t PartOf(uint64_t total, double percent) {
  const double part = percent > 0 ? std::min(percent, 100.0) : 0;
  return static_cast<uint64_t>(static_cast<double>(total) * part * 0.01);
}

uint8_t LevelOfShare(double share) {
  return static_cast<uint8_t>(std::min(share * 255 + 0.5, 255.0));
}

void Accumulate(Counts counts, bool eachOnce, Levels levels) {
  const auto weight = [eachOnce](uint32_t count) { return eachOnce ? count != 0 : count; };
  uint64_t total = 0;
  for (const uint32_t count : counts) total += weight(count);
  uint64_t sum = 0;
  for (size_t i = 0; i < counts.size(); ++i) {
    sum += weight(counts[i]);
    levels[i] = LevelOfShare(static_cast<double>(sum) / static_cast<double>(total));
  }
}

void Equalize(Counts counts, double pixels, Levels levels) {
  double share = 0;
  for (size_t i = 0; i < counts.size(); ++i) {
    share = std::min(share + counts[i] / pixels, 1.0);
    levels[i] = LevelOfShare(share);
  }
}

void Spread(const Range& range, Levels levels) {
  if (range.low >= range.high) return;
  const double size = static_cast<double>(range.high - range.low);
  for (size_t i = 0; i < levels.size(); ++i) {
    const double above = static_cast<double>(std::clamp(i, range.low, range.high) - range.low);
    levels[i] = static_cast<uint8_t>(above / size * 255);
  }
}

// From the level at which the samples reach `darkCount`, counted from below, to the one at which
// they reach `brightCount`, counted from above. Empty levels are passed over, so 0 means the
// outermost level that occurs. There must be samples, and not fewer than these.
Range ClippedRange(Counts counts, uint64_t darkCount, uint64_t brightCount) {
  Range range = {0, counts.size() - 1};
  uint64_t dark = counts[range.low];
  while (dark == 0 || dark < darkCount) dark += counts[++range.low];
  uint64_t bright = counts[range.high];
  while (bright == 0 || bright < brightCount) bright += counts[--range.high];
  return range;
}

void Clip(Counts counts, bool atLow, bool atHigh, Levels levels) {
  const uint64_t clipped = PartOf(TotalOf(counts), kClipPercent);
  Spread(ClippedRange(counts, atLow ? clipped : 0, atHigh ? clipped : 0), levels);
}

// Grown level by level towards the more frequent neighbour, the lower of equal ones, until it holds
// `enough` samples.
Range WindowAroundPeak(Counts counts, uint64_t enough) {
  const size_t last = counts.size() - 1;
  const auto peak = std::max_element(counts.begin(), counts.end());
  const size_t start = static_cast<size_t>(peak - counts.begin());
  Range window = {start, start};
  uint64_t held = *peak;
  while (held < enough && (window.low > 0 || window.high < last)) {
    const bool down = window.high == last ||
                      (window.low > 0 && counts[window.low - 1] >= counts[window.high + 1]);
    held += down ? counts[--window.low] : counts[++window.high];
  }
  return window;
}

bool HasReducedForm(uint32_t mode) { return mode == kDepthOccupied || mode == kDepthPeak; }

}  // namespace

bool IsPlainDepthMode(uint32_t mode) {
  return mode == kDepthPlain || mode == kDepthWindow || mode == kDepthThreeRamps ||
         mode == kDepthThresholds;
}

void TransformLevels(Counts counts, const DepthTransform& transform, Levels levels) {
  const uint64_t total = TotalOf(counts);
  if (total == 0 || IsPlainDepthMode(transform.mode)) return;
  const bool positive = transform.positive;
  switch (transform.mode) {
    case kDepthShare:
      return Accumulate(counts, false, levels);
    case kDepthRank:
      return Accumulate(counts, true, levels);
    case kDepthClip:
      return Clip(counts, true, true, levels);
    case kDepthRange:
    case kDepthOccupied:
      return Clip(counts, false, false, levels);
    case kDepthClipDark:
      return Clip(counts, positive, !positive, levels);
    case kDepthClipBright:
      return Clip(counts, !positive, positive, levels);
    case kDepthPeak:
      return Spread(WindowAroundPeak(counts, PartOf(total, transform.percent)), levels);
    default:
      return Equalize(counts, transform.pixels, levels);
  }
}

void TransformReducedLevels(Counts counts, const DepthTransform& transform, Levels levels) {
  DepthTransform reduced = transform;
  if (!IsPlainDepthMode(transform.mode) && !HasReducedForm(transform.mode)) {
    reduced.mode = kDepthClip;
  }
  TransformLevels(counts, reduced, levels);
}

void SmoothLevels(std::span<const uint8_t> reduced, uint32_t shift, Levels levels) {
  const size_t block = size_t{1} << shift;
  for (size_t i = 0; i < levels.size(); ++i) {
    const size_t step = i >> shift;
    const size_t next = std::min(step + 1, reduced.size() - 1);
    const size_t along = i & (block - 1);
    const size_t both = reduced[step] * (block - along) + reduced[next] * along;
    levels[i] = static_cast<uint8_t>(both >> shift);
  }
}

}  // namespace zyr
