#include "imaging/operations/medians/median.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <vector>

#include "imaging/operations/clone.h"
#include "imaging/operations/medians/median_rows.h"
#include "imaging/operations/medians/median_window.h"
#include "imaging/operations/row_progress.h"
#include "imaging/operations/sample_plane.h"

namespace zyr {
namespace {

// Begins with a whole line of the cache: vectors that reach over two are slow.
template <class T>
class AlignedSamples {
 public:
  explicit AlignedSamples(uint64_t count)
      : samples_(NewVector<T>(count + kMedianMargin / sizeof(T))) {
    const uintptr_t begin = reinterpret_cast<uintptr_t>(samples_.data());
    data_ = samples_.data() + (kMedianMargin - begin % kMedianMargin) / sizeof(T);
  }

  T* data() { return data_; }

 private:
  std::vector<T> samples_;
  T* data_;
};

// The rows in a window around row y; `rows` gets as many as the window has, found by `rowAt`.
template <class T, class RowAt>
void RowsAround(uint32_t y, uint32_t height, uint32_t count, const T** rows, RowAt rowAt) {
  for (uint32_t i = 0; i < count; ++i) {
    rows[i] = rowAt(std::min(y + i - std::min(y + i, count / 2), height - 1));
  }
}

// The filters are false on cancel.
template <class T, class RowFilter>
bool FilterWithNetwork(const SamplePlane<T>& source, const SamplePlane<T>& target, uint32_t size,
                       RowFilter filter, ProgressCallback progress) {
  AlignedSamples<T> room(uint64_t{size} * MedianColumnsLength<T>(source.RowSamples()));
  std::vector<const T*> window(size);
  const RowProgress rows(progress, source.height);
  for (uint32_t y = 0; y < source.height; ++y) {
    RowsAround(y, source.height, size, window.data(),
               [&](uint32_t row) { return source.Row(row); });
    filter(window.data(), target.Row(y), source.RowSamples(), source.channels, room.data());
    if (!rows.Continue(y)) return false;
  }
  return true;
}

// The rows within reach, ready for MedianRowBySearch.
template <class T>
class SearchRows {
 public:
  SearchRows(const SamplePlane<T>& source, const MedianWindowSize& size)
      : source_(source),
        size_(size),
        length_(source.RowSamples() + size_t{size.columns} * source.channels +
                kMedianMargin / sizeof(T)),
        slots_(std::min(size.rows, source.height)),
        samples_(NewVector<T>(uint64_t{length_} * slots_)),
        window_(size.rows) {}

  // For one row after the other.
  const T* const* Around(uint32_t y) {
    const uint64_t end = uint64_t{y} + size_.rows - size_.rows / 2;
    while (next_ < std::min<uint64_t>(end, source_.height)) Fill(next_++);
    RowsAround(y, source_.height, size_.rows, window_.data(),
               [&](uint32_t row) { return Slot(row); });
    return window_.data();
  }

 private:
  T* Slot(uint32_t y) { return samples_.data() + y % slots_ * length_; }

  void Fill(uint32_t y) {
    constexpr T kHighest = static_cast<T>(T{1} << (8 * sizeof(T) - 1));
    const uint32_t channels = source_.channels;
    const size_t back = size_t{size_.columns / 2} * channels;
    const size_t ahead = size_t{size_.columns - 1} * channels - back;
    const size_t count = source_.RowSamples();
    const T* samples = source_.Row(y);
    T* row = Slot(y) + back;
    for (size_t i = 0; i < count; ++i) row[i] = samples[i] ^ kHighest;
    for (size_t i = 1; i <= back; ++i) *(row - i) = *(row - i + channels);
    for (size_t i = count; i < count + ahead; ++i) row[i] = row[i - channels];
  }

  SamplePlane<T> source_;
  MedianWindowSize size_;
  size_t length_;
  uint32_t slots_;
  std::vector<T> samples_;
  std::vector<const T*> window_;
  uint32_t next_ = 0;
};

template <class T>
bool FilterBySearch(const SamplePlane<T>& source, const SamplePlane<T>& target,
                    const MedianWindowSize& size, ProgressCallback progress) {
  SearchRows<T> window(source, size);
  const RowProgress rows(progress, source.height);
  for (uint32_t y = 0; y < source.height; ++y) {
    MedianRowBySearch(window.Around(y), size, target.Row(y), source.RowSamples(), source.channels);
    if (!rows.Continue(y)) return false;
  }
  return true;
}

template <class T>
bool FilterByHistogram(const SamplePlane<T>& source, const SamplePlane<T>& target,
                       const MedianWindowSize& size, ProgressCallback progress) {
  MedianWindow<T> window(source, size.columns, size.rows);
  const RowProgress rows(progress, source.height);
  for (uint32_t y = 0; y < source.height; ++y) {
    for (uint32_t channel = 0; channel < source.channels; ++channel) {
      window.FilterRow(y, channel, target.Row(y));
    }
    if (!rows.Continue(y)) return false;
  }
  return true;
}

template <class T>
bool Filter(const SamplePlane<T>& source, const SamplePlane<T>& target,
            const MedianWindowSize& size, ProgressCallback progress) {
  if (size.columns == 3 && size.rows == 3) {
    const auto filter = [](auto... arguments) { MedianRow3x3(arguments...); };
    return FilterWithNetwork(source, target, 3, filter, progress);
  }
  if (size.columns == 5 && size.rows == 5) {
    const auto filter = [](auto... arguments) { MedianRow5x5(arguments...); };
    return FilterWithNetwork(source, target, 5, filter, progress);
  }
  if (uint64_t{size.columns} * size.rows <= kMedianSearchLimit) {
    return FilterBySearch(source, target, size, progress);
  }
  return FilterByHistogram(source, target, size, progress);
}

// The clone has its padding filled already.
void CopyPadding(const CKIPImage&, CKIPImage&) {}

template <class Image>
std::unique_ptr<Image> Filtered(const Image* image, const MedianWindowSize& size,
                                ProgressCallback progress) try {
  if (!IsFilterable(image) || size.columns == 0 || size.rows == 0) return nullptr;
  std::unique_ptr<Image> filtered = NewUnwrittenClone(*image);
  if (filtered == nullptr || !Filter(PlaneOf(*image), PlaneOf(*filtered), size, progress)) {
    return nullptr;
  }
  CopyPadding(*image, *filtered);
  return filtered;
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace

std::unique_ptr<CKIPImage> MedianFilter(const CKIPImage* image, const CKIPMask& mask,
                                        ProgressCallback progress) {
  return Filtered(image, {mask.columns, mask.rows}, progress);
}

std::unique_ptr<CKIPDeepImage> DeepMedianFilter(const CKIPDeepImage* image, uint32_t size,
                                                ProgressCallback progress) {
  return Filtered(image, {size, size}, progress);
}

}  // namespace zyr
