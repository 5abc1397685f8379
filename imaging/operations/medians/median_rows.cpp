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

void MedianRow3x3(const uint8_t* const* rows, uint8_t* target, size_t count, size_t distance,
                  uint8_t* room) {
  (HasAvx2() ? median_avx2::Row3x3<uint8_t> : median_base::Row3x3<uint8_t>)(rows, target, count,
                                                                            distance, room);
}

void MedianRow3x3(const uint16_t* const* rows, uint16_t* target, size_t count, size_t distance,
                  uint16_t* room) {
  (HasAvx2() ? median_avx2::Row3x3<uint16_t> : median_base::Row3x3<uint16_t>)(rows, target, count,
                                                                              distance, room);
}

void MedianRow5x5(const uint8_t* const* rows, uint8_t* target, size_t count, size_t distance,
                  uint8_t* room) {
  (HasAvx2() ? median_avx2::Row5x5<uint8_t> : median_base::Row5x5<uint8_t>)(rows, target, count,
                                                                            distance, room);
}

void MedianRow5x5(const uint16_t* const* rows, uint16_t* target, size_t count, size_t distance,
                  uint16_t* room) {
  (HasAvx2() ? median_avx2::Row5x5<uint16_t> : median_base::Row5x5<uint16_t>)(rows, target, count,
                                                                              distance, room);
}

void MedianRowCross(const uint8_t* above, const uint8_t* row, const uint8_t* below, uint8_t* target,
                    size_t count, size_t distance) {
  (HasAvx2() ? median_avx2::RowCross<uint8_t>
             : median_base::RowCross<uint8_t>)(above, row, below, target, count, distance);
}

void MedianRowCross(const uint16_t* above, const uint16_t* row, const uint16_t* below,
                    uint16_t* target, size_t count, size_t distance) {
  (HasAvx2() ? median_avx2::RowCross<uint16_t>
             : median_base::RowCross<uint16_t>)(above, row, below, target, count, distance);
}

void MedianRowBySearch(const uint8_t* const* rows, const MedianWindowSize& window, uint8_t* target,
                       size_t count, size_t distance) {
  (HasAvx2() ? median_avx2::RowBySearch<uint8_t>
             : median_base::RowBySearch<uint8_t>)(rows, window, target, count, distance);
}

void MedianRowBySearch(const uint16_t* const* rows, const MedianWindowSize& window,
                       uint16_t* target, size_t count, size_t distance) {
  (HasAvx2() ? median_avx2::RowBySearch<uint16_t>
             : median_base::RowBySearch<uint16_t>)(rows, window, target, count, distance);
}

}  // namespace zyr
