// Numbers as bytes, lowest byte first, whatever the machine's own order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace zyr {

template <typename Unsigned>
void StoreLittleEndian(uint8_t* bytes, Unsigned value) {
  static_assert(std::is_unsigned_v<Unsigned>);
  for (size_t i = 0; i < sizeof(Unsigned); ++i) bytes[i] = static_cast<uint8_t>(value >> (8 * i));
}

template <typename Unsigned>
Unsigned LoadLittleEndian(const uint8_t* bytes) {
  static_assert(std::is_unsigned_v<Unsigned>);
  Unsigned value = 0;
  for (size_t i = 0; i < sizeof(Unsigned); ++i) {
    value = static_cast<Unsigned>(value | static_cast<Unsigned>(bytes[i]) << (8 * i));
  }
  return value;
}

}  // namespace zyr
