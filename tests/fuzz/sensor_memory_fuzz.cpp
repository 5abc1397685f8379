// Sensor memories of any content: the directory of the one family, the block chain of the other.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "hardware/correction/sensor_defects.h"
#include "hardware/device/block_chain.h"
#include "hardware/device/gain_record.h"
#include "hardware/device/identity_memory.h"

namespace {

using namespace zyr;

void Require(bool holds) {
  if (!holds) __builtin_trap();
}

void ReadDirectory(std::span<const uint8_t> memory) {
  const MemoryDirectory directory = ParseDefectDataAddress(memory);
  Require(!directory.id.empty() && directory.id.size() <= 15);
  Require(directory.directory_end <= memory.size() && directory.directory_end % 32 == 0);
  const auto text = DefectTextIn(memory, directory);
  Require(text.size() <= directory.defect_text_length);
  MakeTextDefects()->LoadText(text, 1156, 1600);
}

void ReadBlocks(std::span<const uint8_t> area) {
  std::vector<MemoryBlock> blocks;
  Require(!Failed(ParseBlockChain(area, &blocks)) || blocks.empty());
  Require(blocks.size() <= kMostBlocks);
  for (const MemoryBlock& block : blocks) {
    Require(std::less_equal<>()(area.data(), block.payload.data()));
    Require(std::less_equal<>()(block.payload.data() + block.payload.size(),
                                area.data() + area.size()));
    MakeBinaryDefects()->LoadBinary(block.payload.data(), block.payload.size(), 0, 0);
  }
  ParseGainRecord(area);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // In a block of its own, so that a read beside it is seen.
  const std::vector<uint8_t> memory(data, data + std::min<size_t>(size, 0x4000));
  ReadDirectory(memory);
  ReadBlocks(memory);
  return 0;
}
