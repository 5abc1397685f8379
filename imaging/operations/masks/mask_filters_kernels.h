// Included by mask_filters_base.cpp and mask_filters_avx2.cpp only.
#pragma once

#include <utility>

#include "imaging/operations/masks/double_lanes.h"
#include "imaging/operations/masks/mask_filters_loops.h"

namespace zyr {
namespace {

template <typename Sample, typename Wide>
void Widen(const Sample* __restrict from, Wide* __restrict to, size_t count) {
  for (size_t i = 0; i < count; ++i) to[i] = from[i];
}

template <typename Wide>
inline void Finish(const MaskSum<Wide>& sum, Lanes total, size_t x, int32_t* results) {
  total *= AllLanes(sum.factor);
  if (sum.added != nullptr) total += LoadLanes(sum.added + x);
  StoreTruncated(Clamp(total, AllLanes(sum.limit)) + AllLanes(sum.rounding), results);
}

// Written out for each k: in loops, gcc would keep the totals in memory.
template <typename Wide, size_t... k>
inline void SumVectors(const MaskSum<Wide>& sum, size_t x, int32_t* results,
                       std::index_sequence<k...>) {
  Lanes totals[] = {(static_cast<void>(k), Lanes{})...};
  const double* weight = sum.weights;
  for (size_t i = 0; i < sum.rows; ++i) {
    const Wide* from = sum.windowRows[i] + x;
    for (size_t j = 0; j < sum.columns; ++j, from += sum.step) {
      const Lanes factor = AllLanes(*weight++);
      ((totals[k] += LoadLanes(from + k * kLanes) * factor), ...);
    }
  }
  (Finish(sum, totals[k], x + k * kLanes, results + k * kLanes), ...);
}

// Results x to x + kVectors * kLanes - 1. Each pixel's products are added in the order of the mask.
template <size_t kVectors, typename Wide>
void SumBlock(const MaskSum<Wide>& sum, size_t x, int32_t* results) {
  SumVectors(sum, x, results, std::make_index_sequence<kVectors>());
}

template <size_t kVectors, typename Wide, typename Sample>
size_t SumBlocks(const MaskSum<Wide>& sum, size_t x, Sample* __restrict to, size_t count) {
  constexpr size_t kBlock = kVectors * kLanes;
  int32_t results[kBlock];
  for (; x + kBlock <= count; x += kBlock) {
    SumBlock<kVectors>(sum, x, results);
    for (size_t i = 0; i < kBlock; ++i) to[x + i] = static_cast<Sample>(results[i]);
  }
  return x;
}

// As many sums at once as hide the time of an addition and leave registers for the factors.
constexpr size_t kVectorsAtOnce = sizeof(void*) == 8 ? 8 : 4;

// Results x to count - 1.
template <typename Wide, typename Sample>
void SumFrom(const MaskSum<Wide>& sum, size_t x, Sample* to, size_t count) {
  x = SumBlocks<kVectorsAtOnce>(sum, x, to, count);
  x = SumBlocks<1>(sum, x, to, count);
  if (x == count) return;
  static_assert(kLanes <= kMaskSlack);
  int32_t results[kLanes];
  SumBlock<1>(sum, x, results);
  for (size_t i = 0; x + i < count; ++i) to[x + i] = static_cast<Sample>(results[i]);
}

template <typename Wide, typename Sample>
void SumRow(const MaskSum<Wide>& sum, Sample* to, size_t count) {
  SumFrom(sum, 0, to, count);
}

#ifdef __AVX2__
using Floats = __m256;
using Packed = __m256i;  // bytes
inline Floats LoadFloats(const float* from) { return _mm256_loadu_ps(from); }
inline Floats AllFloats(float value) { return _mm256_set1_ps(value); }
inline Packed Truncated(Floats v) { return _mm256_cvttps_epi32(v); }
// To 0 to 255.
inline Packed ToBytes(Packed a, Packed b, Packed c, Packed d) {
  const Packed mixed = _mm256_packus_epi16(_mm256_packs_epi32(a, b), _mm256_packs_epi32(c, d));
  return _mm256_permutevar8x32_epi32(mixed, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
}
inline bool AreEqual(Packed a, Packed b) {
  return _mm256_movemask_epi8(_mm256_cmpeq_epi8(a, b)) == -1;
}
#else
using Floats = __m128;
using Packed = __m128i;
inline Floats LoadFloats(const float* from) { return _mm_loadu_ps(from); }
inline Floats AllFloats(float value) { return _mm_set1_ps(value); }
inline Packed Truncated(Floats v) { return _mm_cvttps_epi32(v); }
inline Packed ToBytes(Packed a, Packed b, Packed c, Packed d) {
  return _mm_packus_epi16(_mm_packs_epi32(a, b), _mm_packs_epi32(c, d));
}
inline bool AreEqual(Packed a, Packed b) {
  return _mm_movemask_epi8(_mm_cmpeq_epi8(a, b)) == 0xFFFF;
}
#endif

constexpr size_t kFloats = sizeof(Floats) / sizeof(float);
constexpr size_t kRoughBlock = sizeof(Packed);
static_assert(kRoughBlock == 4 * kFloats);

struct FloatSums {
  Floats a, b, c, d;
};

// Of kRoughBlock pixels.
inline FloatSums SumInFloats(const MaskSum<float>& sum, const float* weight, size_t x) {
  Floats a = {}, b = {}, c = {}, d = {};
  for (size_t i = 0; i < sum.rows; ++i) {
    const float* from = sum.windowRows[i] + x;
    for (size_t j = 0; j < sum.columns; ++j, from += sum.step) {
      const Floats factor = AllFloats(*weight++);
      a += LoadFloats(from) * factor;
      b += LoadFloats(from + kFloats) * factor;
      c += LoadFloats(from + 2 * kFloats) * factor;
      d += LoadFloats(from + 3 * kFloats) * factor;
    }
  }
  return {a, b, c, d};
}

inline void AddFloats(const float* from, FloatSums* sums) {
  sums->a += LoadFloats(from);
  sums->b += LoadFloats(from + kFloats);
  sums->c += LoadFloats(from + 2 * kFloats);
  sums->d += LoadFloats(from + 3 * kFloats);
}

// Writes kRoughBlock results; false if some may be wrong.
inline bool SumBlockRoughly(const MaskSum<float>& sum, const RoughMask& rough, size_t x,
                            uint8_t* to) {
  FloatSums sums = SumInFloats(sum, rough.weights, x);
  if (sum.added != nullptr) AddFloats(sum.added + x, &sums);
  const auto [a, b, c, d] = sums;
  const Floats error = AllFloats(rough.error);
  const Packed least = ToBytes(Truncated(a - error), Truncated(b - error), Truncated(c - error),
                               Truncated(d - error));
  const Packed most = ToBytes(Truncated(a + error), Truncated(b + error), Truncated(c + error),
                              Truncated(d + error));
  __builtin_memcpy(to + x, &least, sizeof(least));
  return AreEqual(least, most);
}

size_t SumRowRoughly(const MaskSum<float>& sum, const RoughMask& rough, uint8_t* to, size_t count) {
  size_t exact = 0;
  size_t x = 0;
  for (; x + kRoughBlock <= count; x += kRoughBlock) {
    if (SumBlockRoughly(sum, rough, x, to)) continue;
    SumBlocks<kVectorsAtOnce>(sum, x, to, x + kRoughBlock);
    exact += kRoughBlock;
  }
  SumFrom(sum, x, to, count);
  return exact;
}

void SumRowOfFractions(const MaskSum<float>& sum, const float* weights, uint8_t* to, size_t count) {
  size_t x = 0;
  for (; x + kRoughBlock <= count; x += kRoughBlock) {
    const FloatSums sums = SumInFloats(sum, weights, x);
    float totals[kRoughBlock];
    __builtin_memcpy(totals, &sums, sizeof(totals));
    int32_t results[kRoughBlock];
    for (size_t i = 0; i < kRoughBlock; i += kLanes) {
      Finish(sum, LoadLanes(totals + i), x + i, results + i);
    }
    for (size_t i = 0; i < kRoughBlock; ++i) to[x + i] = static_cast<uint8_t>(results[i]);
  }
  SumFrom(sum, x, to, count);
}

constexpr MaskLoops kLoops = {Widen, Widen, SumRow, SumRow, SumRowOfFractions, SumRowRoughly};

}  // namespace
}  // namespace zyr
