#include "imaging/operations/medians/median_rows.h"

#include "foundation/support/cpu.h"

namespace zyr {

namespace median_base {
template <class T>
void Row3x3(const T* const* rows, T* target, size_t count, size_t distance, T* room);
template <class T>
void Row5x5(const T* const* rows, T* target, size_t count, size_t distance, T* room);
template <class T>
void RowCross(const T* above, const T* row, const T* below, T* target, size_t count,
              size_t distance);
template <class T>
void RowBySearch(const T* const* rows, const MedianWindowSize& window, T* target, size_t count,
                 size_t distance);
}  // namespace median_base

namespace median_avx2 {
template <class T>
void Row3x3(const T* const* rows, T* target, size_t count, size_t distance, T* room);
template <class T>
void Row5x5(const T* const* rows, T* target, size_t count, size_t distance, T* room);
template <class T>
void RowCross(const T* above, const T* row, const T* below, T* target, size_t count,
              size_t distance);
template <class T>
void RowBySearch(const T* const* rows, const MedianWindowSize& window, T* target, size_t count,
                 size_t distance);
}  // namespace median_avx2

template <class T>
void MedianRow3x3(const T* const* rows, T* target, size_t count, size_t distance, T* room) {
  const auto run = HasAvx2() ? median_avx2::Row3x3<T> : median_base::Row3x3<T>;
  run(rows, target, count, distance, room);
}

template <class T>
void MedianRow5x5(const T* const* rows, T* target, size_t count, size_t distance, T* room) {
  const auto run = HasAvx2() ? median_avx2::Row5x5<T> : median_base::Row5x5<T>;
  run(rows, target, count, distance, room);
}

template <class T>
void MedianRowCross(const T* above, const T* row, const T* below, T* target, size_t count,
                    size_t distance) {
  const auto run = HasAvx2() ? median_avx2::RowCross<T> : median_base::RowCross<T>;
  run(above, row, below, target, count, distance);
}

template <class T>
void MedianRowBySearch(const T* const* rows, const MedianWindowSize& window, T* target,
                       size_t count, size_t distance) {
  const auto run = HasAvx2() ? median_avx2::RowBySearch<T> : median_base::RowBySearch<T>;
  run(rows, window, target, count, distance);
}

template void MedianRow3x3(const uint8_t* const*, uint8_t*, size_t, size_t, uint8_t*);
template void MedianRow3x3(const uint16_t* const*, uint16_t*, size_t, size_t, uint16_t*);
template void MedianRow5x5(const uint8_t* const*, uint8_t*, size_t, size_t, uint8_t*);
template void MedianRow5x5(const uint16_t* const*, uint16_t*, size_t, size_t, uint16_t*);
template void MedianRowCross(const uint8_t*, const uint8_t*, const uint8_t*, uint8_t*, size_t,
                             size_t);
template void MedianRowCross(const uint16_t*, const uint16_t*, const uint16_t*, uint16_t*, size_t,
                             size_t);
template void MedianRowBySearch(const uint8_t* const*, const MedianWindowSize&, uint8_t*, size_t,
                                size_t);
template void MedianRowBySearch(const uint16_t* const*, const MedianWindowSize&, uint16_t*, size_t,
                                size_t);

}  // namespace zyr
