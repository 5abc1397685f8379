// Objects that answer for identities and count their references, as the platform's component model
// has it.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "hardware/result.h"

namespace zyr {

struct InterfaceId {
  uint32_t data1 = 0;
  uint16_t data2 = 0;
  uint16_t data3 = 0;
  std::array<uint8_t, 8> data4{};

  friend bool operator==(const InterfaceId&, const InterfaceId&) = default;
};

inline constexpr InterfaceId kUnknownInterface{
    0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

// Lets go of one reference.
struct ReleaseReference {
  template <typename Counted>
  void operator()(Counted* object) const {
    object->Release();
  }
};
// One reference, held.
template <typename Counted>
using Held = std::unique_ptr<Counted, ReleaseReference>;

}  // namespace zyr
