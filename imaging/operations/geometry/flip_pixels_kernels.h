// The loops of ReversePixels, to be included within a namespace: see foundation/support/cpu.h. SSE2
// has no shuffle of bytes, so what depends on that is written for both.

#ifdef __AVX2__

inline constexpr size_t kVectorBytes = 32;

static inline void ReverseVectorOfBytes(const uint8_t* source, uint8_t* target) {
  const __m256i order = _mm256_broadcastsi128_si256(
      _mm_setr_epi8(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0));
  const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source));
  const __m256i halves = _mm256_permute4x64_epi64(bytes, 0x4E);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(target), _mm256_shuffle_epi8(halves, order));
}

static inline void ReverseVectorOfWords(const uint8_t* source, uint8_t* target) {
  const __m256i order = _mm256_broadcastsi128_si256(
      _mm_setr_epi8(14, 15, 12, 13, 10, 11, 8, 9, 6, 7, 4, 5, 2, 3, 0, 1));
  const __m256i words = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source));
  const __m256i halves = _mm256_permute4x64_epi64(words, 0x4E);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(target), _mm256_shuffle_epi8(halves, order));
}

// Some pixels of 3 bytes at once. Reads one byte ahead of them and writes one behind them.
inline constexpr size_t kTriples = 5;

static inline void ReverseTriples(const uint8_t* source, uint8_t* target) {
  const __m128i order = _mm_setr_epi8(13, 14, 15, 10, 11, 12, 7, 8, 9, 4, 5, 6, 1, 2, 3, 0);
  const __m128i pixels = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source - 1));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(target), _mm_shuffle_epi8(pixels, order));
}

#else

inline constexpr size_t kVectorBytes = 16;

static inline __m128i ReversedWords(__m128i words) {
  const __m128i swapped = _mm_shufflehi_epi16(_mm_shufflelo_epi16(words, 0x1B), 0x1B);
  return _mm_shuffle_epi32(swapped, 0x4E);
}

static inline void ReverseVectorOfBytes(const uint8_t* source, uint8_t* target) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source));
  const __m128i swapped = _mm_or_si128(_mm_slli_epi16(bytes, 8), _mm_srli_epi16(bytes, 8));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(target), ReversedWords(swapped));
}

static inline void ReverseVectorOfWords(const uint8_t* source, uint8_t* target) {
  const __m128i words = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(target), ReversedWords(words));
}

inline constexpr size_t kTriples = 1;

static inline void ReverseTriples(const uint8_t* source, uint8_t* target) {
  uint32_t pixel;
  std::memcpy(&pixel, source - 1, sizeof(pixel));
  pixel >>= 8;
  std::memcpy(target, &pixel, sizeof(pixel));
}

#endif

static inline void ReverseRest(const uint8_t* source, uint8_t* target, size_t width, size_t first,
                               size_t pixelBytes) {
  for (size_t x = first; x < width; ++x) {
    for (size_t i = 0; i < pixelBytes; ++i) {
      target[x * pixelBytes + i] = source[(width - 1 - x) * pixelBytes + i];
    }
  }
}

void ReverseRow8(const uint8_t* source, uint8_t* target, size_t width) {
  size_t x = 0;
  for (; x + kVectorBytes <= width; x += kVectorBytes) {
    ReverseVectorOfBytes(source + width - kVectorBytes - x, target + x);
  }
  ReverseRest(source, target, width, x, 1);
}

void ReverseRow16(const uint8_t* source, uint8_t* target, size_t width) {
  const size_t rowBytes = 2 * width;
  size_t x = 0;
  for (; x + kVectorBytes <= rowBytes; x += kVectorBytes) {
    ReverseVectorOfWords(source + rowBytes - kVectorBytes - x, target + x);
  }
  ReverseRest(source, target, width, x / 2, 2);
}

void ReverseRow24(const uint8_t* source, uint8_t* target, size_t width) {
  size_t x = 0;
  for (; x + kTriples < width; x += kTriples) {
    ReverseTriples(source + 3 * (width - kTriples - x), target + 3 * x);
  }
  ReverseRest(source, target, width, x, 3);
}
