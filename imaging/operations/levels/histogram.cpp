#include "imaging/operations/levels/histogram.h"

#include <algorithm>
#include <new>
#include <optional>
#include <vector>

#include "imaging/operations/levels/levels.h"

namespace zyr {
namespace {

struct Range {
  uint32_t low;
  uint32_t high;
};

// The work is one pass over the rows that lend their levels and one over those that change.
RowProgress HalfProgress(ProgressCallback progress, uint32_t rows) {
  return RowProgress(progress, 2 * rows);
}

// The image whose levels count; null if the operation is refused.
const CKIPImage* LevelsSource(const CKIPImage* image, const CKIPImage* reference) {
  if (image == nullptr || !image->IsValid() || !image->IsGrey()) return nullptr;
  if (reference == nullptr) return image;
  const bool serves = reference->IsValid() && reference->bitsPerPixel() == 8 &&
                      reference->width() >= image->width() &&
                      reference->height() >= image->height();
  return serves ? reference : nullptr;
}

// Runs `look(row)` over the rows. False on cancel.
template <typename Look>
bool ForEachRow(uint32_t height, ProgressCallback progress, Look look) {
  const RowProgress rows = HalfProgress(progress, height);
  for (uint32_t row = 0; row < height; ++row) {
    look(row);
    if (!rows.Continue(row)) return false;
  }
  return true;
}

// The sum of the tables of a count.
std::vector<uint32_t> Totals(const std::vector<uint32_t>& bins) {
  const size_t levels = bins.size() / kCountTables;
  std::vector<uint32_t> totals(levels);
  for (size_t table = 0; table < kCountTables; ++table) {
    for (size_t i = 0; i < levels; ++i) totals[i] += bins[table * levels + i];
  }
  return totals;
}

// Empty on cancel.
std::vector<uint32_t> CountLevels(const CKIPImage& image, ProgressCallback progress) {
  std::vector<uint32_t> bins(256 * kCountTables);
  const bool done = ForEachRow(image.height(), progress, [&](uint32_t row) {
    TheLevelKernels().count8(image.MemoryRow(row), image.width(), bins.data());
  });
  return done ? Totals(bins) : std::vector<uint32_t>{};
}

std::vector<uint32_t> CountLevels(const CKIPDeepImage& image, ProgressCallback progress) {
  std::vector<uint32_t> bins(image.GetLevels() * kCountTables);
  const bool done = ForEachRow(image.GetHeight(), progress, [&](uint32_t row) {
    TheLevelKernels().count16(image.GetRow(row), image.GetWidth(), image.GetMask(), bins.data());
  });
  return done ? Totals(bins) : std::vector<uint32_t>{};
}

std::optional<Range> FindExtremes(const CKIPImage& image, ProgressCallback progress) {
  uint8_t least = 255;
  uint8_t greatest = 0;
  const bool done = ForEachRow(image.height(), progress, [&](uint32_t row) {
    TheLevelKernels().extremes8(image.MemoryRow(row), image.width(), &least, &greatest);
  });
  return done ? std::optional(Range{least, greatest}) : std::nullopt;
}

std::optional<Range> FindExtremes(const CKIPDeepImage& image, ProgressCallback progress) {
  uint16_t least = static_cast<uint16_t>(image.GetMask());
  uint16_t greatest = 0;
  const bool done = ForEachRow(image.GetHeight(), progress, [&](uint32_t row) {
    TheLevelKernels().extremes16(image.GetRow(row), image.GetWidth(), &least, &greatest);
  });
  return done ? std::optional(Range{least, greatest}) : std::nullopt;
}

// `level` on the line that leads from 0 at `low` to `top` at `high`.
int32_t Spread(uint32_t level, const Range& range, uint32_t top) {
  const double above = static_cast<double>(level) - range.low;
  const double size = static_cast<double>(range.high) - range.low;
  return Truncate(above / size * top);
}

// The same, and beyond the ends as at the ends.
uint16_t SpreadWithin(uint32_t level, const Range& range, uint32_t top) {
  if (level < range.low) return 0;
  if (level > range.high) return static_cast<uint16_t>(top);
  return static_cast<uint16_t>(Spread(level, range, top));
}

std::optional<LevelLine> LineOf(const Range& range, uint32_t top) {
  if (range.low >= range.high) return std::nullopt;
  const double slope = static_cast<double>(top) / (range.high - range.low);
  return LevelLine{slope, -(range.low * slope), static_cast<uint16_t>(top)};
}

std::unique_ptr<CKIPDeepImage> SpreadSamples(const CKIPDeepImage& image, const Range& range,
                                             ProgressCallback progress) {
  const uint32_t top = image.GetMask();
  SampleMapper mapper(
      top, [=](uint32_t level) { return SpreadWithin(level, range, top); }, LineOf(range, top));
  return MapSamples(image, mapper, HalfProgress(progress, image.GetHeight()), image.GetHeight());
}

std::unique_ptr<CKIPImage> SpreadBytes(const CKIPImage& image, const ByteTable& table,
                                       const Range& range, ProgressCallback progress) {
  return MapBytes(image, ByteMapper(table, LineOf(range, 255)),
                  HalfProgress(progress, image.height()), image.height());
}

// What each level becomes so that all are used alike.
std::vector<uint16_t> EqualizedLevels(const std::vector<uint32_t>& counts, double pixels) {
  const double top = static_cast<double>(counts.size() - 1);
  std::vector<uint16_t> levels(counts.size());
  double share = 0;
  for (size_t i = 0; i < counts.size(); ++i) {
    share = std::min(share + counts[i] / pixels, 1.0);
    levels[i] = static_cast<uint16_t>(std::min(share * top + 0.5, top));
  }
  return levels;
}

// The first of `count` levels from `first` on, by `step`, at which the pixels so far reach
// `enough`. Empty levels do not count as reached.
std::optional<uint32_t> FirstReaching(const std::vector<uint32_t>& counts, uint64_t enough,
                                      uint32_t first, int step, uint32_t count) {
  uint64_t sum = 0;
  for (uint32_t level = first; count > 0; --count, level += step) {
    if (counts[level] == 0) continue;
    sum += counts[level];
    if (sum >= enough) return level;
  }
  return std::nullopt;
}

// None if there is nothing to spread.
std::optional<Range> ClippedRange(const std::vector<uint32_t>& counts, uint32_t lowPercent,
                                  uint32_t highPercent) {
  const uint32_t top = static_cast<uint32_t>(counts.size() - 1);
  uint64_t total = 0;
  for (uint32_t level = 1; level < top; ++level) total += counts[level];
  const auto share = [total](uint32_t percent) {
    return static_cast<uint64_t>(static_cast<double>(total) * percent * 0.01);
  };
  const auto low = FirstReaching(counts, share(lowPercent), 1, 1, top);
  const auto high = FirstReaching(counts, share(highPercent), top - 1, -1, top - 1);
  if (!low || !high || *low >= *high) return std::nullopt;
  return Range{*low, *high};
}

}  // namespace

std::unique_ptr<CKIPImage> Normalize(const CKIPImage* image, const CKIPImage* reference,
                                     ProgressCallback progress) try {
  const CKIPImage* const source = LevelsSource(image, reference);
  if (source == nullptr) return nullptr;
  const std::optional<Range> range = FindExtremes(*source, progress);
  if (!range) return nullptr;
  ByteTable table;
  for (uint32_t v = 0; v < table.size(); ++v) {
    // Without a reference no pixel lies beyond the ends.
    const bool isOpen = reference != nullptr || range->low == range->high;
    table[v] = static_cast<uint8_t>(isOpen ? Spread(v, *range, 255) : SpreadWithin(v, *range, 255));
  }
  return SpreadBytes(*image, table, *range, progress);
} catch (const std::bad_alloc&) {
  return nullptr;
}

std::unique_ptr<CKIPDeepImage> DeepNormalize(const CKIPDeepImage* image,
                                             ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid()) return nullptr;
  const std::optional<Range> range = FindExtremes(*image, progress);
  if (!range) return nullptr;
  return SpreadSamples(*image, *range, progress);
} catch (const std::bad_alloc&) {
  return nullptr;
}

std::unique_ptr<CKIPImage> Equalize(const CKIPImage* image, const CKIPImage* reference,
                                    ProgressCallback progress) try {
  const CKIPImage* const source = LevelsSource(image, reference);
  if (source == nullptr) return nullptr;
  const std::vector<uint32_t> counts = CountLevels(*source, progress);
  if (counts.empty()) return nullptr;
  const std::vector<uint16_t> levels =
      EqualizedLevels(counts, static_cast<double>(source->width()) * source->height());
  ByteTable table;
  std::copy(levels.begin(), levels.end(), table.begin());
  return MapBytes(*image, ByteMapper(table), HalfProgress(progress, image->height()),
                  image->height());
} catch (const std::bad_alloc&) {
  return nullptr;
}

std::unique_ptr<CKIPDeepImage> DeepEqualize(const CKIPDeepImage* image,
                                            ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid()) return nullptr;
  const std::vector<uint32_t> counts = CountLevels(*image, progress);
  if (counts.empty()) return nullptr;
  const std::vector<uint16_t> levels =
      EqualizedLevels(counts, static_cast<double>(image->GetWidth()) * image->GetHeight());
  const uint32_t mask = image->GetMask();
  SampleMapper mapper(mask, [&](uint32_t level) { return levels[std::min(level, mask)]; });
  return MapSamples(*image, mapper, HalfProgress(progress, image->GetHeight()), image->GetHeight());
} catch (const std::bad_alloc&) {
  return nullptr;
}

std::unique_ptr<CKIPImage> AutoBrightnessContrast(const CKIPImage* image, uint32_t lowPercent,
                                                  uint32_t highPercent, const CKIPImage* reference,
                                                  ProgressCallback progress) try {
  const CKIPImage* const source = LevelsSource(image, reference);
  if (source == nullptr) return nullptr;
  const std::vector<uint32_t> counts = CountLevels(*source, progress);
  if (counts.empty()) return nullptr;
  const std::optional<Range> range = ClippedRange(counts, lowPercent, highPercent);
  if (!range) return image->Clone(false);
  ByteTable table;
  for (uint32_t v = 0; v < table.size(); ++v) {
    table[v] = static_cast<uint8_t>(SpreadWithin(v, *range, 255));
  }
  return SpreadBytes(*image, table, *range, progress);
} catch (const std::bad_alloc&) {
  return nullptr;
}

std::unique_ptr<CKIPImage> AutoBrightnessContrastDefault(const CKIPImage* image,
                                                         ProgressCallback progress) {
  return AutoBrightnessContrast(image, 2, 2, nullptr, progress);
}

std::unique_ptr<CKIPDeepImage> DeepAutoBrightnessContrast(const CKIPDeepImage* image,
                                                          uint32_t lowPercent, uint32_t highPercent,
                                                          ProgressCallback progress) try {
  if (image == nullptr || !image->IsValid()) return nullptr;
  const std::vector<uint32_t> counts = CountLevels(*image, progress);
  if (counts.empty()) return nullptr;
  const std::optional<Range> range = ClippedRange(counts, lowPercent, highPercent);
  if (!range) return image->Clone();
  return SpreadSamples(*image, *range, progress);
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace zyr
