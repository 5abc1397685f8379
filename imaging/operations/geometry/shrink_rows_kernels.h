// The loops of shrink_rows.h, to be included within a namespace: see foundation/support/cpu.h.

void SetWeighted(float* __restrict sums, const uint8_t* __restrict values, float weight,
                 size_t count) {
  for (size_t i = 0; i < count; ++i) sums[i] = static_cast<float>(values[i]) * weight;
}

void AddWeighted(float* __restrict sums, const uint8_t* __restrict values, float weight,
                 size_t count) {
  for (size_t i = 0; i < count; ++i) sums[i] += static_cast<float>(values[i]) * weight;
}
