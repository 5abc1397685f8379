// Included by emboss_base.cpp and emboss_avx2.cpp only.
#pragma once

#include "imaging/operations/masks/double_lanes.h"
#include "imaging/operations/masks/emboss_loops.h"

namespace zyr {
namespace {

constexpr size_t kEmbossBlock = 8;
static_assert(kEmbossBlock <= kEmbossSlack);

using Words = __m128i;  // eight 16-bit numbers

inline Words LoadPixels(const uint8_t* from) {
  return _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(from)),
                           _mm_setzero_si128());
}
inline Words Plus(Words a, Words b) { return _mm_add_epi16(a, b); }
inline Words Minus(Words a, Words b) { return _mm_sub_epi16(a, b); }

// The surface normal, each number within 3 x 255.
struct Normals {
  Words x;
  Words y;
};

inline Normals NormalsAt(const uint8_t* const rows[3], size_t x) {
  const uint8_t* const previous = rows[0] + x;
  const uint8_t* const here = rows[1] + x;
  const uint8_t* const next = rows[2] + x;
  // What both have in common lies on the diagonals.
  const Words falling = Minus(LoadPixels(previous), LoadPixels(next + 2));
  const Words rising = Minus(LoadPixels(next), LoadPixels(previous + 2));
  const Words across = Minus(LoadPixels(here), LoadPixels(here + 2));
  const Words down = Minus(LoadPixels(previous + 1), LoadPixels(next + 1));
  return {Plus(across, Plus(falling, rising)), Plus(down, Minus(falling, rising))};
}

// The lowest numbers, as many as there are lanes, of four 32-bit numbers.
inline Lanes ToLanes(__m128i numbers) {
#ifdef __AVX2__
  return _mm256_cvtepi32_pd(numbers);
#else
  return _mm_cvtepi32_pd(numbers);
#endif
}

// Shades of four pixels. `pairs` holds their normals, x in the lower and y in the upper half.
inline void Shade(__m128i pairs, const EmbossLight& light, int32_t* shades) {
  __m128i xs = _mm_srai_epi32(_mm_slli_epi32(pairs, 16), 16);
  __m128i ys = _mm_srai_epi32(pairs, 16);
  __m128i squares = _mm_madd_epi16(pairs, pairs);
  for (size_t i = 0; i < 4; i += kLanes) {
    // A sum below 0 stays below 0 and ends as 0.
    const Lanes lit = ToLanes(xs) * AllLanes(light.x) + ToLanes(ys) * AllLanes(light.y) +
                      AllLanes(light.heightTimesLight);
    const Lanes length = SqrtOf(ToLanes(squares) + AllLanes(light.heightSquared));
    StoreTruncated(Clamp(lit / length, AllLanes(255)), shades + i);
    xs = _mm_srli_si128(xs, 8);
    ys = _mm_srli_si128(ys, 8);
    squares = _mm_srli_si128(squares, 8);
  }
}

inline void EmbossBlock(const uint8_t* const rows[3], const EmbossLight& light, size_t x,
                        uint8_t* to) {
  const Normals normals = NormalsAt(rows, x);
  alignas(16) int32_t shades[kEmbossBlock];
  Shade(_mm_unpacklo_epi16(normals.x, normals.y), light, shades);
  Shade(_mm_unpackhi_epi16(normals.x, normals.y), light, shades + 4);
  const __m128i* const halves = reinterpret_cast<const __m128i*>(shades);
  const Words sloping = _mm_packs_epi32(halves[0], halves[1]);
  const Words isFlat = _mm_cmpeq_epi16(_mm_or_si128(normals.x, normals.y), _mm_setzero_si128());
  const Words result = _mm_or_si128(_mm_and_si128(isFlat, _mm_set1_epi16(light.flat)),
                                    _mm_andnot_si128(isFlat, sloping));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(to), _mm_packus_epi16(result, result));
}

void EmbossRow(const uint8_t* const rows[3], const EmbossLight& light, uint8_t* to, size_t width) {
  size_t x = 0;
  for (; x + kEmbossBlock <= width; x += kEmbossBlock) EmbossBlock(rows, light, x, to + x);
  if (x == width) return;
  uint8_t last[kEmbossBlock];
  EmbossBlock(rows, light, x, last);
  for (size_t i = 0; x + i < width; ++i) to[x + i] = last[i];
}

}  // namespace
}  // namespace zyr
