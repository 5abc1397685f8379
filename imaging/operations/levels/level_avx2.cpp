#include <immintrin.h>

#include <cstddef>
#include <cstdint>

#include "imaging/operations/levels/level_loops.h"

namespace zyr::avx2 {

#include "imaging/operations/levels/level_kernels.h"

namespace {

__m256i Line8(__m128i bytes, __m256 slope, __m256 offset) {
  const __m256 levels = _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(bytes));
  return _mm256_cvttps_epi32(_mm256_add_ps(_mm256_mul_ps(levels, slope), offset));
}

void Draw16Bytes(__m256 slope, __m256 offset, const uint8_t* source, uint8_t* target) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source));
  const __m256i lower = Line8(bytes, slope, offset);
  const __m256i upper = Line8(_mm_srli_si128(bytes, 8), slope, offset);
  // Packing works within halves: the quarters come out as 0 2 1 3.
  const __m256i packed = _mm256_permute4x64_epi64(_mm256_packs_epi32(lower, upper), 0xD8);
  const __m128i result =
      _mm_packus_epi16(_mm256_castsi256_si128(packed), _mm256_extracti128_si256(packed, 1));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(target), result);
}

// A table of 256 bytes as 16 of 16, each looked up by the lower half of the bytes, of which the
// upper half then chooses.
struct ByteLookUp {
  __m256i parts[16];

  explicit ByteLookUp(const uint8_t* table) {
    for (int i = 0; i < 16; ++i) {
      parts[i] = _mm256_broadcastsi128_si256(
          _mm_loadu_si128(reinterpret_cast<const __m128i*>(table + 16 * i)));
    }
  }

  __m256i Of(__m256i bytes) const {
    const __m256i lower = _mm256_and_si256(bytes, _mm256_set1_epi8(15));
    __m256i found[16];
    for (int i = 0; i < 16; ++i) found[i] = _mm256_shuffle_epi8(parts[i], lower);
    // A blend goes by each byte's top bit, to which these shift bits 4 to 7 in turn.
    const __m256i choice[4] = {_mm256_slli_epi16(bytes, 3), _mm256_slli_epi16(bytes, 2),
                               _mm256_slli_epi16(bytes, 1), bytes};
    for (int bit = 0; bit < 4; ++bit) {
      for (int i = 0; i < 8 >> bit; ++i) {
        found[i] = _mm256_blendv_epi8(found[2 * i], found[2 * i + 1], choice[bit]);
      }
    }
    return found[0];
  }
};

void LookUp8(const uint8_t* table, const uint8_t* source, uint8_t* target, size_t count) {
  const ByteLookUp lookUp(table);
  size_t i = 0;
  for (; i + 32 <= count; i += 32) {
    const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source + i));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(target + i), lookUp.Of(bytes));
  }
  LookUp8Plainly(table, source + i, target + i, count - i);
}

struct ExactLine16 {
  __m256d slope;
  __m256d offset;

  __m128i Of4(__m128i levels) const {
    const __m256d exact = _mm256_cvtepi32_pd(levels);
    return _mm256_cvttpd_epi32(_mm256_add_pd(_mm256_mul_pd(exact, slope), offset));
  }

  __m128i Of8(__m128i samples) const {
    const __m128i zero = _mm_setzero_si128();
    const __m128i lower = Of4(_mm_unpacklo_epi16(samples, zero));
    const __m128i upper = Of4(_mm_unpackhi_epi16(samples, zero));
    return _mm_packus_epi32(lower, upper);
  }

  __m256i Of16(__m256i samples) const {
    const __m128i lower = Of8(_mm256_castsi256_si128(samples));
    return _mm256_set_m128i(Of8(_mm256_extracti128_si256(samples, 1)), lower);
  }
};

struct RoughLine16 {
  __m256 slope;
  __m256 offset;

  __m256i Of8(__m256i levels) const {
    const __m256 product = _mm256_mul_ps(_mm256_cvtepi32_ps(levels), slope);
    return _mm256_cvttps_epi32(_mm256_add_ps(product, offset));
  }

  // Widening and packing both work within halves, so that the order comes out as it was.
  __m256i Of16(__m256i samples) const {
    const __m256i zero = _mm256_setzero_si256();
    return _mm256_packus_epi32(Of8(_mm256_unpacklo_epi16(samples, zero)),
                               Of8(_mm256_unpackhi_epi16(samples, zero)));
  }
};

template <typename Line>
uint16_t Draw16(const Line& line, uint16_t top, const uint16_t* source, uint16_t* target,
                size_t count) {
  const __m256i tops = _mm256_set1_epi16(static_cast<short>(top));
  __m256i inUse = _mm256_setzero_si256();
  const auto draw = [&](const uint16_t* from, uint16_t* to) {
    const __m256i samples = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
    inUse = _mm256_or_si256(inUse, samples);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), _mm256_min_epu16(line.Of16(samples), tops));
  };
  size_t i = 0;
  for (; i + 16 <= count; i += 16) draw(source + i, target + i);
  uint16_t last[16] = {};
  for (size_t k = i; k < count; ++k) last[k - i] = source[k];
  draw(last, last);
  for (size_t k = i; k < count; ++k) target[k] = last[k - i];
  uint16_t lanes[16];
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(lanes), inUse);
  uint16_t result = 0;
  for (const uint16_t lane : lanes) result = static_cast<uint16_t>(result | lane);
  return result;
}

}  // namespace

void DrawLine8(float slope, float offset, const uint8_t* source, uint8_t* target, size_t count) {
  const __m256 slopes = _mm256_set1_ps(slope);
  const __m256 offsets = _mm256_set1_ps(offset);
  size_t i = 0;
  for (; i + 16 <= count; i += 16) Draw16Bytes(slopes, offsets, source + i, target + i);
  if (i == count) return;
  uint8_t last[16] = {};
  for (size_t k = i; k < count; ++k) last[k - i] = source[k];
  Draw16Bytes(slopes, offsets, last, last);
  for (size_t k = i; k < count; ++k) target[k] = last[k - i];
}

uint16_t DrawLine16(double slope, double offset, uint16_t top, const uint16_t* source,
                    uint16_t* target, size_t count) {
  const ExactLine16 line = {_mm256_set1_pd(slope), _mm256_set1_pd(offset)};
  return Draw16(line, top, source, target, count);
}

uint16_t DrawRoughLine16(float slope, float offset, uint16_t top, const uint16_t* source,
                         uint16_t* target, size_t count) {
  const RoughLine16 line = {_mm256_set1_ps(slope), _mm256_set1_ps(offset)};
  return Draw16(line, top, source, target, count);
}

const LevelKernels kKernels = {Extremes16, Extremes8, Complement16, Complement8,
                               LookUp16,   LookUp8,   Count8,       Count16};

}  // namespace zyr::avx2
