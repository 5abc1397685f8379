// Loops over rows of levels. Included by level_base.cpp and level_avx2.cpp, each within a namespace
// of its own; no inline function of a header may come in.

namespace {

void Extremes16(const uint16_t* samples, size_t count, uint16_t* least, uint16_t* greatest) {
  uint16_t low = *least;
  uint16_t high = *greatest;
  for (size_t i = 0; i < count; ++i) {
    low = samples[i] < low ? samples[i] : low;
    high = samples[i] > high ? samples[i] : high;
  }
  *least = low;
  *greatest = high;
}

void Extremes8(const uint8_t* bytes, size_t count, uint8_t* least, uint8_t* greatest) {
  uint8_t low = *least;
  uint8_t high = *greatest;
  for (size_t i = 0; i < count; ++i) {
    low = bytes[i] < low ? bytes[i] : low;
    high = bytes[i] > high ? bytes[i] : high;
  }
  *least = low;
  *greatest = high;
}

void Complement16(const uint16_t* __restrict source, uint16_t* __restrict target, size_t count,
                  uint16_t mask) {
  for (size_t i = 0; i < count; ++i) target[i] = static_cast<uint16_t>(~source[i] & mask);
}

void Complement8(const uint8_t* __restrict source, uint8_t* __restrict target, size_t count) {
  for (size_t i = 0; i < count; ++i) target[i] = static_cast<uint8_t>(~source[i]);
}

uint16_t LookUp16(const uint16_t* __restrict table, const uint16_t* __restrict source,
                  uint16_t* __restrict target, size_t count) {
  uint16_t inUse = 0;
  for (size_t i = 0; i < count; ++i) inUse |= source[i];
  for (size_t i = 0; i < count; ++i) target[i] = table[source[i]];
  return inUse;
}

void LookUp8Plainly(const uint8_t* __restrict table, const uint8_t* __restrict source,
                    uint8_t* __restrict target, size_t count) {
  size_t i = 0;
  for (; i + 8 <= count; i += 8) {
    uint64_t eight;
    __builtin_memcpy(&eight, source + i, 8);
    uint64_t result = 0;
    for (size_t k = 0; k < 8; ++k) result |= uint64_t{table[eight >> 8 * k & 0xFF]} << 8 * k;
    __builtin_memcpy(target + i, &result, 8);
  }
  for (; i < count; ++i) target[i] = table[source[i]];
}

// Neighbours are mostly alike; counted in several tables they do not wait for each other.
void Count8(const uint8_t* bytes, size_t count, uint32_t* bins) {
  size_t i = 0;
  for (; i + 8 <= count; i += 8) {
    uint64_t eight;
    __builtin_memcpy(&eight, bytes + i, 8);
    for (size_t k = 0; k < 8; ++k) ++bins[k % kCountTables * 256 + (eight >> 8 * k & 0xFF)];
  }
  for (; i < count; ++i) ++bins[bytes[i]];
}

void Count16(const uint16_t* samples, size_t count, uint32_t top, uint32_t* bins) {
  const size_t levels = size_t{top} + 1;
  size_t i = 0;
  for (; i + 4 <= count; i += 4) {
    uint64_t four;
    __builtin_memcpy(&four, samples + i, 8);
    for (size_t k = 0; k < 4; ++k) {
      const uint32_t sample = four >> 16 * k & 0xFFFF;
      ++bins[k * levels + (sample < top ? sample : top)];
    }
  }
  for (; i < count; ++i) ++bins[samples[i] < top ? samples[i] : top];
}

}  // namespace
