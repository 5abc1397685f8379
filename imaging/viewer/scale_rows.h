// The loops of a scaled picture over the pixels of a row.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zyr {

struct ScaleRows {
  // Colours, 0x00RRGGBB, of levels by 256 colours, of levels that are greys, of blue, green, red.
  void (*colorsOfLevels)(const uint8_t* levels, const uint32_t* colors, size_t count,
                         uint32_t* target);
  void (*greysOfLevels)(const uint8_t* levels, size_t count, uint32_t* target);
  void (*colorsOf24)(const uint8_t* pixels, size_t count, uint32_t* target);
  void (*splitColors)(const uint32_t* colors, size_t count, uint8_t* blue, uint8_t* green,
                      uint8_t* red);
  void (*joinColors)(const uint8_t* blue, const uint8_t* green, const uint8_t* red, size_t count,
                     uint32_t* target);

  // Means: the weighted rows are added up, rounded to 256ths of a level, and then added up along
  // the row into `means`, in units of 1 / 2^24 level. These must begin as a half.
  void (*setWeighted)(const uint8_t* values, uint32_t weight, size_t count, uint32_t* sums);
  void (*addWeighted)(const uint8_t* values, uint32_t weight, size_t count, uint32_t* sums);
  void (*roundSums)(size_t count, uint32_t* sums);
  void (*addTap)(const uint32_t* sums, const int32_t* firsts, const uint32_t* weights, size_t count,
                 uint32_t* means);
  void (*meansToBytes)(const uint32_t* means, size_t count, uint8_t* target);
  // The means of 2 x 2, `count` of them.
  void (*halve)(const uint8_t* upper, const uint8_t* lower, size_t count, uint8_t* target);
  void (*halveColors)(const uint32_t* upper, const uint32_t* lower, size_t count, uint32_t* target);

  // Blends: along the row, into 128ths of a level, and then between two such rows. A pair is a
  // level with the next in its upper half, the last with itself. `firsts` rise by at most 1, and
  // behind the pairs eight more can be read.
  void (*pairUp)(const uint8_t* values, size_t count, uint32_t* pairs);
  void (*blendPairs)(const uint32_t* pairs, const int32_t* firsts, const int16_t* fractions,
                     size_t count, int16_t* target);
  void (*blendRows)(const int16_t* upper, const int16_t* lower, int16_t fraction, size_t count,
                    uint8_t* target);
};

// Those for this processor.
const ScaleRows& ScaleRowLoops();

}  // namespace zyr
