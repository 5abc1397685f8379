// Named for its optimisation, which keeps whole tiles in registers: AVX2 would add nothing.
#include "imaging/operations/geometry/rotate_pixels.h"

#include <emmintrin.h>

#include <cstring>

namespace zyr {
namespace {

struct Plane {
  const uint8_t* source;
  ptrdiff_t sourceStride;
  uint8_t* target;
  ptrdiff_t targetStride;

  const uint8_t* Source(size_t row) const {
    return source + static_cast<ptrdiff_t>(row) * sourceStride;
  }
  uint8_t* Target(size_t row) const { return target + static_cast<ptrdiff_t>(row) * targetStride; }
  Plane At(size_t x, size_t y, size_t pixelBytes) const {
    return {Source(y) + x * pixelBytes, sourceStride, Target(x) + y * pixelBytes, targetStride};
  }
};

struct Bytes {
  static constexpr size_t kPixelBytes = 1;
  static constexpr size_t kTile = 16;
  static __m128i Low(__m128i a, __m128i b) { return _mm_unpacklo_epi8(a, b); }
  static __m128i High(__m128i a, __m128i b) { return _mm_unpackhi_epi8(a, b); }
};

struct Words {
  static constexpr size_t kPixelBytes = 2;
  static constexpr size_t kTile = 8;
  static __m128i Low(__m128i a, __m128i b) { return _mm_unpacklo_epi16(a, b); }
  static __m128i High(__m128i a, __m128i b) { return _mm_unpackhi_epi16(a, b); }
};

// A square of 2^n rows, read as one sequence, is turned over by interleaving its halves n times.
template <typename Pixels>
void TransposeTile(const Plane& plane) {
  constexpr size_t kRows = Pixels::kTile;
  __m128i rows[kRows];
  for (size_t i = 0; i < kRows; ++i) {
    rows[i] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(plane.Source(i)));
  }
  for (size_t round = kRows; round > 1; round /= 2) {
    __m128i mixed[kRows];
    for (size_t i = 0; i < kRows / 2; ++i) {
      mixed[2 * i] = Pixels::Low(rows[i], rows[i + kRows / 2]);
      mixed[2 * i + 1] = Pixels::High(rows[i], rows[i + kRows / 2]);
    }
    for (size_t i = 0; i < kRows; ++i) rows[i] = mixed[i];
  }
  for (size_t i = 0; i < kRows; ++i) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(plane.Target(i)), rows[i]);
  }
}

struct Triples {
  static constexpr size_t kPixelBytes = 3;
  static constexpr size_t kTile = 16;
};

// Four bytes at a time: the fourth is overwritten by the next pixel, which the last one lacks.
template <>
void TransposeTile<Triples>(const Plane& plane) {
  for (size_t x = 0; x < Triples::kTile; ++x) {
    const uint8_t* source = plane.source + 3 * x;
    uint8_t* target = plane.Target(x);
    for (size_t y = 0; y + 1 < Triples::kTile; ++y) {
      uint32_t pixel = source[0] | source[1] << 8 | source[2] << 16;
      std::memcpy(target, &pixel, sizeof(pixel));
      source += plane.sourceStride;
      target += 3;
    }
    std::memcpy(target, source, 3);
  }
}

template <size_t kPixelBytes>
void TransposeSlowly(const Plane& plane, size_t width, size_t height) {
  for (size_t x = 0; x < width; ++x) {
    for (size_t y = 0; y < height; ++y) {
      std::memcpy(plane.Target(x) + y * kPixelBytes, plane.Source(y) + x * kPixelBytes,
                  kPixelBytes);
    }
  }
}

template <typename Pixels>
void TransposePlane(const Plane& plane, size_t width, size_t height) {
  constexpr size_t kTile = Pixels::kTile;
  constexpr size_t kBytes = Pixels::kPixelBytes;
  const size_t wholeWidth = width - width % kTile;
  const size_t wholeHeight = height - height % kTile;
  for (size_t x = 0; x < wholeWidth; x += kTile) {
    for (size_t y = 0; y < wholeHeight; y += kTile) {
      TransposeTile<Pixels>(plane.At(x, y, kBytes));
    }
  }
  TransposeSlowly<kBytes>(plane.At(wholeWidth, 0, kBytes), width - wholeWidth, wholeHeight);
  TransposeSlowly<kBytes>(plane.At(0, wholeHeight, kBytes), width, height - wholeHeight);
}

}  // namespace

void TransposePixels(const uint8_t* source, ptrdiff_t sourceStride, uint8_t* target,
                     ptrdiff_t targetStride, size_t width, size_t height, size_t pixelBytes) {
  const Plane plane = {source, sourceStride, target, targetStride};
  if (pixelBytes == 1) {
    TransposePlane<Bytes>(plane, width, height);
  } else if (pixelBytes == 2) {
    TransposePlane<Words>(plane, width, height);
  } else {
    TransposePlane<Triples>(plane, width, height);
  }
}

}  // namespace zyr
