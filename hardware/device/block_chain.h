// The chain of blocks in the memory of a sensor of the 303 family.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "hardware/result.h"

namespace zyr {

enum BlockKind : uint8_t { kDefectBlock = 0, kCalibrationBlock = 1 };

struct MemoryBlock {
  uint8_t kind = 0;  // any; see BlockKind
  std::string description;
  std::span<const uint8_t> payload;  // within the area
  bool isIntact = false;             // its checksum is right; nothing depends on it
};

// As many as a sensor has; what a memory holds beyond them is left alone.
inline constexpr size_t kMostBlocks = 4;

// Replaces `blocks` by those of the chain; none is a success too. kUnexpected, and no blocks, for
// a chain that breaks off or leads outside the area.
Result ParseBlockChain(std::span<const uint8_t> area, std::vector<MemoryBlock>* blocks);

}  // namespace zyr
