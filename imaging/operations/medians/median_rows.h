// Medians of small windows for all samples of a row, which are uint8_t or uint16_t.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zyr {

// Bytes ahead of each row of sorted columns and behind it: for what reaches over its ends, and
// for the rest of the last vector.
inline constexpr size_t kMedianMargin = 64;

// Samples from one row of sorted columns to the next.
template <class T>
constexpr size_t MedianColumnsLength(size_t count) {
  constexpr size_t kLine = kMedianMargin / sizeof(T);
  return (count / kLine + 1) * kLine + 2 * kLine;
}

// Both take the rows that the window covers, `count` samples each; beyond the ends the outermost
// ones repeat. `distance` is from a sample to the next of its channel, 1 or 3. `room` has as many
// rows of MedianColumnsLength(count) as the window has, best aligned to the margin.
template <class T>
void MedianRow3x3(const T* const* rows, T* target, size_t count, size_t distance, T* room);
template <class T>
void MedianRow5x5(const T* const* rows, T* target, size_t count, size_t distance, T* room);

// Of each sample, its neighbours to the left and to the right, and those above and below it. The
// first and the last pixel, which have no two neighbours, stay in `target` as they are.
template <class T>
void MedianRowCross(const T* above, const T* row, const T* below, T* target, size_t count,
                    size_t distance);

struct MedianWindowSize {
  uint32_t columns;
  uint32_t rows;
};

// Of any window of at most so many samples. The rows begin with the leftmost sample of the first
// window, are long enough for the last one and go on for the margin; all their samples
// have the highest bit turned over.
inline constexpr uint32_t kMedianSearchLimit = 127;

template <class T>
void MedianRowBySearch(const T* const* rows, const MedianWindowSize& window, T* target,
                       size_t count, size_t distance);

}  // namespace zyr
