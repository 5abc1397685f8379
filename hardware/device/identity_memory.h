// The directory of the identity memory that a sensor of the 2000 family carries.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zyr {

inline constexpr uint32_t kIdentityMemorySize = 0x2000;  // bytes

// Offsets and lengths in bytes, as the memory tells them: they may point outside it.
struct MemoryDirectory {
  std::string id;                   // "No_ID_C" if the memory has none
  uint32_t defect_text_length = 0;  // 0 without a defect list
  uint32_t defect_text_offset = 0;
  uint32_t directory_end = 0;          // the first free entry; 0 without an end mark
  uint32_t identity_entry_offset = 0;  // 0 without an identity
};

// Takes any bytes for what they are: a memory with nothing sensible in it has an empty directory.
MemoryDirectory ParseDefectDataAddress(std::span<const uint8_t> memory);

// The text of the defect list, as far as it lies in the memory.
std::string_view DefectTextIn(std::span<const uint8_t> memory, const MemoryDirectory& directory);

}  // namespace zyr
