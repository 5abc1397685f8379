// The ways in which the depth mapper spreads the levels that an image has: each makes a table from
// a histogram. Nothing here throws.
#pragma once

#include <cstdint>
#include <span>

namespace zyr {

// Any other number is an equalization, too. The windowed, three-ramp and two-threshold ones are
// taken, but their thresholds were never settled: they answer as the plain one.
enum DepthMode : uint32_t {
  kDepthPlain = 0,
  kDepthShare = 1,     // each level becomes the share of the samples up to it
  kDepthRank = 2,      // the same, where each level that occurs counts once
  kDepthEqualize = 3,  // the share is of all pixels, with or without a level in the table
  kDepthClip = 4,      // linear, without 3 % of the samples at each end
  kDepthWindow = 5,
  kDepthRange = 6,  // linear over the data's range, even where other modes reduce it
  kDepthThreeRamps = 7,
  kDepthThresholds = 8,
  kDepthOccupied = 9,     // linear between the outermost levels that occur
  kDepthClipDark = 10,    // linear, without 3 % at the end that becomes the dark one
  kDepthClipBright = 11,  // or the bright one
  kDepthPeak = 12,        // linear over a window around the most frequent level
};

struct DepthTransform {
  uint32_t mode = kDepthPlain;
  bool positive = true;  // without, the caller complements the table afterwards
  double pixels = 0;     // of the image, counted or not
  double percent = 0;    // of the samples, for the window around the peak
};

// Whether the mode leaves the plain mapping as it is.
bool IsPlainDepthMode(uint32_t mode);

// Both take as many counts as levels, and leave the levels alone where there is nothing to spread:
// without samples, and where what is to be spread is a single level.

// Over all levels of the table.
void TransformLevels(std::span<const uint32_t> counts, const DepthTransform& transform,
                     std::span<uint8_t> levels);
// Over a table that was reduced to fewer levels: modes that do not have a form of their own for
// this clip 3 %.
void TransformReducedLevels(std::span<const uint32_t> counts, const DepthTransform& transform,
                            std::span<uint8_t> levels);

// Draws a table of (reduced.size() << shift) levels: each reduced level is the first of its block,
// and the others lead in a straight line to the next one. The last block is flat.
void SmoothLevels(std::span<const uint8_t> reduced, uint32_t shift, std::span<uint8_t> levels);

}  // namespace zyr
