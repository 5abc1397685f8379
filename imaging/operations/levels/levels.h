// Point operations at the speed of the memory: a row's samples are looked up in a table of the
// levels or, where the rule is a straight line and the processor can, calculated.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"
#include "imaging/operations/levels/level_loops.h"
#include "imaging/operations/row_progress.h"

namespace zyr {

// level * slope + offset, truncated and limited to 0 to `top`.
struct LevelLine {
  double slope = 1;
  double offset = 0;
  uint16_t top = 255;
};

using ByteTable = std::array<uint8_t, 256>;

// Maps bytes. With a line that runs close to the table's entries the bytes are calculated if that
// gives what the table holds.
class ByteMapper {
 public:
  explicit ByteMapper(const ByteTable& table, std::optional<LevelLine> line = {});
  void Map(const uint8_t* source, uint8_t* target, size_t count) const;

 private:
  ByteTable table_;
  std::optional<LevelLine> line_;
};

// Maps samples by a rule from level to level, which is asked once for each level up to `mask` and,
// if a greater sample ever comes, for all other levels.
class SampleMapper {
 public:
  using Rule = std::function<uint16_t(uint32_t level)>;

  SampleMapper(uint32_t mask, Rule rule, std::optional<LevelLine> line = {});
  void Map(const uint16_t* source, uint16_t* target, size_t count);

 private:
  // How a line is drawn.
  struct Drawing {
    LevelLine line;
    bool isRough;
    uint16_t Draw(const uint16_t* source, uint16_t* target, size_t count) const;
  };

  bool IsExact(const Drawing& drawing) const;
  void AddLevelsBeyondMask();

  uint32_t mask_;
  Rule rule_;
  std::vector<uint16_t> table_;  // 65,536 entries
  std::optional<Drawing> drawing_;
  bool isWhole_;
};

// A copy whose samples went through the mapper. Row r is reported as row `firstRow` + r.
std::unique_ptr<CKIPDeepImage> MapSamples(const CKIPDeepImage& image, SampleMapper& mapper,
                                          const RowProgress& progress, uint32_t firstRow = 0);

// The same for images of 8 bits and, by bytes, 24.
std::unique_ptr<CKIPImage> MapBytes(const CKIPImage& image, const ByteMapper& mapper,
                                    const RowProgress& progress, uint32_t firstRow = 0);

// What SSE2's conversion gives: numbers that an int cannot hold, and what is no number, become the
// least one. Its lower 8 or 16 bits, which is all that images keep, are 0.
int32_t Truncate(double value);

}  // namespace zyr
