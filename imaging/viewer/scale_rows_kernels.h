// The loops of scale_rows.h, to be included within a namespace: see foundation/support/cpu.h.

void ColorsOfLevels(const uint8_t* __restrict levels, const uint32_t* __restrict colors,
                    size_t count, uint32_t* __restrict target) {
  for (size_t i = 0; i < count; ++i) target[i] = colors[levels[i]];
}

void GreysOfLevels(const uint8_t* __restrict levels, size_t count, uint32_t* __restrict target) {
  size_t i = 0;
#ifdef __AVX2__
  const __m256i lower = _mm256_setr_epi8(0, 0, 0, -1, 1, 1, 1, -1, 2, 2, 2, -1, 3, 3, 3, -1, 4, 4,
                                         4, -1, 5, 5, 5, -1, 6, 6, 6, -1, 7, 7, 7, -1);
  const __m256i upper = _mm256_or_si256(lower, _mm256_set1_epi8(8));
  for (; i + 16 <= count; i += 16) {
    const __m256i loaded =
        _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(levels + i)));
    auto* to = reinterpret_cast<__m256i*>(target + i);
    _mm256_storeu_si256(to, _mm256_shuffle_epi8(loaded, lower));
    _mm256_storeu_si256(to + 1, _mm256_shuffle_epi8(loaded, upper));
  }
#endif
  for (; i < count; ++i) target[i] = levels[i] * 0x010101u;
}

void ColorsOf24(const uint8_t* __restrict pixels, size_t count, uint32_t* __restrict target) {
  size_t i = 0;
#ifdef __AVX2__
  // Eight at a time from two loads of 16 bytes, of which the second reads four bytes beyond.
  const __m256i spread = _mm256_broadcastsi128_si256(
      _mm_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1));
  for (; i + 10 <= count; i += 8) {
    const auto* from = reinterpret_cast<const __m128i*>(pixels + i * 3);
    const auto* next = reinterpret_cast<const __m128i*>(pixels + i * 3 + 12);
    const __m256i both = _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(from)),
                                                 _mm_loadu_si128(next), 1);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(target + i), _mm256_shuffle_epi8(both, spread));
  }
#endif
  for (; i < count; ++i) {
    target[i] = pixels[i * 3] | static_cast<uint32_t>(pixels[i * 3 + 1]) << 8 |
                static_cast<uint32_t>(pixels[i * 3 + 2]) << 16;
  }
}

void SplitColors(const uint32_t* __restrict colors, size_t count, uint8_t* __restrict blue,
                 uint8_t* __restrict green, uint8_t* __restrict red) {
  for (size_t i = 0; i < count; ++i) {
    blue[i] = static_cast<uint8_t>(colors[i]);
    green[i] = static_cast<uint8_t>(colors[i] >> 8);
    red[i] = static_cast<uint8_t>(colors[i] >> 16);
  }
}

void JoinColors(const uint8_t* __restrict blue, const uint8_t* __restrict green,
                const uint8_t* __restrict red, size_t count, uint32_t* __restrict target) {
  for (size_t i = 0; i < count; ++i) {
    target[i] =
        blue[i] | static_cast<uint32_t>(green[i]) << 8 | static_cast<uint32_t>(red[i]) << 16;
  }
}

void SetWeighted(const uint8_t* __restrict values, uint32_t weight, size_t count,
                 uint32_t* __restrict sums) {
  for (size_t i = 0; i < count; ++i) sums[i] = values[i] * weight;
}

void AddWeighted(const uint8_t* __restrict values, uint32_t weight, size_t count,
                 uint32_t* __restrict sums) {
  for (size_t i = 0; i < count; ++i) sums[i] += values[i] * weight;
}

void RoundSums(size_t count, uint32_t* __restrict sums) {
  for (size_t i = 0; i < count; ++i) sums[i] = (sums[i] + 128) >> 8;
}

void AddTap(const uint32_t* __restrict sums, const int32_t* __restrict firsts,
            const uint32_t* __restrict weights, size_t count, uint32_t* __restrict means) {
  for (size_t i = 0; i < count; ++i) means[i] += sums[firsts[i]] * weights[i];
}

void MeansToBytes(const uint32_t* __restrict means, size_t count, uint8_t* __restrict target) {
  for (size_t i = 0; i < count; ++i) target[i] = static_cast<uint8_t>(means[i] >> 24);
}

void Halve(const uint8_t* __restrict upper, const uint8_t* __restrict lower, size_t count,
           uint8_t* __restrict target) {
  for (size_t i = 0; i < count; ++i) {
    uint16_t above;
    uint16_t below;
    __builtin_memcpy(&above, upper + i * 2, 2);
    __builtin_memcpy(&below, lower + i * 2, 2);
    const uint16_t sum =
        static_cast<uint16_t>((above & 0xFF) + (above >> 8) + (below & 0xFF) + (below >> 8) + 2);
    target[i] = static_cast<uint8_t>(sum >> 2);
  }
}

void HalveColors(const uint32_t* __restrict upper, const uint32_t* __restrict lower, size_t count,
                 uint32_t* __restrict target) {
  const uint32_t outer = 0xFF00FF;  // blue and red, summed up in halves of a number
  for (size_t i = 0; i < count; ++i) {
    const uint32_t a = upper[i * 2];
    const uint32_t b = upper[i * 2 + 1];
    const uint32_t c = lower[i * 2];
    const uint32_t d = lower[i * 2 + 1];
    const uint32_t ends = (a & outer) + (b & outer) + (c & outer) + (d & outer) + 0x20002;
    const uint32_t green =
        (a >> 8 & 0xFF) + (b >> 8 & 0xFF) + (c >> 8 & 0xFF) + (d >> 8 & 0xFF) + 2;
    target[i] = (ends >> 2 & outer) | (green >> 2 << 8);
  }
}

void PairUp(const uint8_t* __restrict values, size_t count, uint32_t* __restrict pairs) {
  for (size_t i = 0; i + 1 < count; ++i) {
    pairs[i] = values[i] | static_cast<uint32_t>(values[i + 1]) << 16;
  }
  pairs[count - 1] = values[count - 1] * 0x10001u;
}

void BlendPairs(const uint32_t* __restrict pairs, const int32_t* __restrict firsts,
                const int16_t* __restrict fractions, size_t count, int16_t* __restrict target) {
  size_t i = 0;
#ifdef __AVX2__
  // Eight neighbours lie within eight pairs, as nothing is made smaller here.
  const __m256i low = _mm256_set1_epi32(0xFFFF);
  for (; i + 8 <= count; i += 8) {
    const __m256i first = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(firsts + i));
    const __m256i offsets = _mm256_sub_epi32(first, _mm256_set1_epi32(firsts[i]));
    const __m256i loaded = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pairs + firsts[i]));
    const __m256i pair = _mm256_permutevar8x32_epi32(loaded, offsets);
    const __m256i left = _mm256_and_si256(pair, low);
    const __m256i step = _mm256_sub_epi32(_mm256_srli_epi32(pair, 16), left);
    const __m256i part =
        _mm256_cvtepi16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(fractions + i)));
    const __m256i moved = _mm256_srai_epi32(
        _mm256_add_epi32(_mm256_mullo_epi32(step, part), _mm256_set1_epi32(128)), 8);
    const __m256i sum = _mm256_add_epi32(_mm256_slli_epi32(left, 7), moved);
    const __m256i packed = _mm256_permute4x64_epi64(_mm256_packs_epi32(sum, sum), 0x08);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target + i), _mm256_castsi256_si128(packed));
  }
#endif
  for (; i < count; ++i) {
    const uint32_t pair = pairs[firsts[i]];
    const int32_t left = static_cast<int32_t>(pair & 0xFFFF);
    const int32_t right = static_cast<int32_t>(pair >> 16);
    target[i] = static_cast<int16_t>((left << 7) + (((right - left) * fractions[i] + 128) >> 8));
  }
}

void BlendRows(const int16_t* __restrict upper, const int16_t* __restrict lower, int16_t fraction,
               size_t count, uint8_t* __restrict target) {
  size_t i = 0;
#ifdef __AVX2__
  const __m256i fractions = _mm256_set1_epi16(fraction);
  const __m256i half = _mm256_set1_epi16(64);
  for (; i + 16 <= count; i += 16) {
    const __m256i above = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(upper + i));
    const __m256i below = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(lower + i));
    const __m256i part = _mm256_mulhrs_epi16(_mm256_sub_epi16(below, above), fractions);
    const __m256i sum = _mm256_srli_epi16(_mm256_add_epi16(_mm256_add_epi16(above, part), half), 7);
    const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi16(sum, sum), 0x08);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(target + i), _mm256_castsi256_si128(packed));
  }
#endif
  for (; i < count; ++i) {
    const int16_t step = static_cast<int16_t>(lower[i] - upper[i]);
    const int16_t part = static_cast<int16_t>((((step * fraction) >> 14) + 1) >> 1);
    target[i] = static_cast<uint8_t>((upper[i] + part + 64) >> 7);
  }
}
