// A vector register of doubles, as wide as the file's target has it. Only for kernel files: each
// gets its own copy, see foundation/support/cpu.h.
#pragma once

#include <immintrin.h>

#include <cstddef>
#include <cstdint>

namespace zyr {
namespace {

#ifdef __AVX2__

using Lanes = __m256d;  // + - * / work lane by lane
constexpr size_t kLanes = 4;

inline Lanes LoadLanes(const double* from) { return _mm256_loadu_pd(from); }
inline Lanes LoadLanes(const float* from) { return _mm256_cvtps_pd(_mm_loadu_ps(from)); }
inline Lanes AllLanes(double value) { return _mm256_set1_pd(value); }
inline Lanes SqrtOf(Lanes v) { return _mm256_sqrt_pd(v); }
// To 0 to `limit`; what is not a number becomes `limit`.
inline Lanes Clamp(Lanes v, Lanes limit) {
  return _mm256_max_pd(_mm256_min_pd(v, limit), _mm256_setzero_pd());
}
inline void StoreTruncated(Lanes v, int32_t* to) {
  _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm256_cvttpd_epi32(v));
}

#else

using Lanes = __m128d;
constexpr size_t kLanes = 2;

inline Lanes LoadLanes(const double* from) { return _mm_loadu_pd(from); }
inline Lanes LoadLanes(const float* from) {
  return _mm_cvtps_pd(_mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(from))));
}
inline Lanes AllLanes(double value) { return _mm_set1_pd(value); }
inline Lanes SqrtOf(Lanes v) { return _mm_sqrt_pd(v); }
inline Lanes Clamp(Lanes v, Lanes limit) {
  return _mm_max_pd(_mm_min_pd(v, limit), _mm_setzero_pd());
}
inline void StoreTruncated(Lanes v, int32_t* to) {
  _mm_storel_epi64(reinterpret_cast<__m128i*>(to), _mm_cvttpd_epi32(v));
}

#endif

}  // namespace
}  // namespace zyr
