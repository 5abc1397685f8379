// The histogram of a window that glides over an image, for medians of windows of any size.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "imaging/operations/sample_plane.h"

namespace zyr {

// Counts of values, and the value at a rank, which is followed from window to window: neighbouring
// windows share most of their samples. Counts go beyond 32 bits, for windows may be larger than the
// image they lie on, whose edges then count many times.
template <class T>
class RankHistogram {
 public:
  // The rank counts from 0, in ascending order; it must be below the number of values when asked.
  explicit RankHistogram(uint64_t rank) : rank_(rank), counts_(kLevels), groups_(kGroups) {}

  void Clear() {
    for (uint32_t i = 0; i < kGroups; ++i) {
      if (groups_[i] == 0) continue;
      std::fill_n(counts_.begin() + i * kGroup, kGroup, 0);
      groups_[i] = 0;
    }
    level_ = 0;
    below_ = 0;
  }

  // Removes by adding the count's negative: arithmetic is modulo 2^64.
  void Add(T value, uint64_t count) {
    counts_[value] += count;
    groups_[value / kGroup] += count;
    if (value < level_) below_ += count;
  }

  T ValueAtRank() {
    while (below_ > rank_) StepDown();
    while (below_ + counts_[level_] <= rank_) StepUp();
    return static_cast<T>(level_);
  }

 private:
  static constexpr uint32_t kLevels = 1u << (8 * sizeof(T));
  static constexpr uint32_t kGroup = 1u << (4 * sizeof(T));  // levels that are also counted as one
  static constexpr uint32_t kGroups = kLevels / kGroup;

  void StepDown() {
    if (level_ % kGroup == 0 && below_ - groups_[level_ / kGroup - 1] > rank_) {
      level_ -= kGroup;
      below_ -= groups_[level_ / kGroup];
    } else {
      --level_;
      below_ -= counts_[level_];
    }
  }

  void StepUp() {
    if (level_ % kGroup == 0 && below_ + groups_[level_ / kGroup] <= rank_) {
      below_ += groups_[level_ / kGroup];
      level_ += kGroup;
    } else {
      below_ += counts_[level_];
      ++level_;
    }
  }

  uint64_t rank_;
  uint32_t level_ = 0;
  uint64_t below_ = 0;  // values less than the level
  std::vector<uint64_t> counts_;
  std::vector<uint64_t> groups_;
};

// The part of a window along one axis that lies on the image, and how often its ends count beyond
// once each, for what lies outside.
struct WindowSpan {
  WindowSpan(uint32_t position, uint32_t length, uint32_t size) {
    const uint64_t back = size / 2;
    const uint64_t ahead = size - 1 - back;
    first = position - static_cast<uint32_t>(std::min<uint64_t>(position, back));
    last = static_cast<uint32_t>(std::min<uint64_t>(position + ahead, length - 1));
    before = back - (position - first);
    behind = ahead - (last - position);
  }

  uint32_t first;
  uint32_t last;
  uint64_t before;
  uint64_t behind;
};

// The medians of one row at a time.
template <class T>
class MedianWindow {
 public:
  MedianWindow(const SamplePlane<T>& source, uint32_t columns, uint32_t rows)
      : source_(source),
        columns_(columns),
        rows_(rows),
        histogram_((uint64_t{columns} * rows) >> 1) {}

  void FilterRow(uint32_t y, uint32_t channel, T* target) {
    const WindowSpan rows(y, source_.height, rows_);
    histogram_.Clear();
    AddFirstWindow(rows, channel);
    target[channel] = histogram_.ValueAtRank();
    for (uint32_t x = 1; x < source_.width; ++x) {
      const uint32_t leaving = WindowSpan(x - 1, source_.width, columns_).first;
      const uint32_t entering = WindowSpan(x, source_.width, columns_).last;
      if (leaving != entering) {
        AddColumn(rows, leaving, channel, uint64_t{0} - 1);
        AddColumn(rows, entering, channel, 1);
      }
      target[size_t{x} * source_.channels + channel] = histogram_.ValueAtRank();
    }
  }

 private:
  void AddFirstWindow(const WindowSpan& rows, uint32_t channel) {
    const WindowSpan columns(0, source_.width, columns_);
    AddColumn(rows, columns.first, channel, columns.before);
    for (uint32_t x = columns.first; x <= columns.last; ++x) AddColumn(rows, x, channel, 1);
    AddColumn(rows, columns.last, channel, columns.behind);
  }

  void AddColumn(const WindowSpan& rows, uint32_t x, uint32_t channel, uint64_t times) {
    const T* sample = source_.Row(rows.first) + size_t{x} * source_.channels + channel;
    histogram_.Add(*sample, rows.before * times);
    for (uint32_t y = rows.first; y < rows.last; ++y, sample += source_.stride) {
      histogram_.Add(*sample, times);
    }
    histogram_.Add(*sample, (rows.behind + 1) * times);
  }

  SamplePlane<T> source_;
  uint32_t columns_;
  uint32_t rows_;
  RankHistogram<T> histogram_;
};

}  // namespace zyr
