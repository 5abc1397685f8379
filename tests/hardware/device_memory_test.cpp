// What the sensors' memories tell, down to memories of nonsense.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "foundation/support/little_endian.h"
#include "hardware/device/block_chain.h"
#include "hardware/device/correction_file.h"
#include "hardware/device/gain_record.h"
#include "hardware/device/identity_memory.h"
#include "platform/host/host.h"

namespace zyr {
namespace {

using namespace std::string_literals;
using Bytes = std::vector<uint8_t>;

constexpr char kEnd[] = "\xFF\xFF\xFF\xFF";

// A memory with these entries, 32 bytes each, behind its first 32 bytes.
Bytes MemoryOf(const std::vector<std::string>& entries, size_t size = kIdentityMemorySize) {
  Bytes memory(size, 0);
  for (size_t i = 0; i < entries.size(); ++i) {
    std::copy(entries[i].begin(), entries[i].end(), memory.begin() + 0x20 * (i + 1));
  }
  return memory;
}

TEST(IdentityMemory, ListsWhatItsDirectoryHolds) {
  const struct {
    std::vector<std::string> entries;
    MemoryDirectory expected;
  } kCases[] = {
      {{kEnd, "XCCD1"}, {"No_ID_C", 0, 0, 0x20, 0}},
      {{"XCCD00123456789A", kEnd}, {"CCD00123456789A", 0, 0, 0x40, 0x20}},  // all 15 characters
      {{"junk", "XCCD7C", "newd\x0C\x00\x31 2 0"s, kEnd}, {"CCD7C", 12, 0x66, 0x80, 0x40}},
      {{"newd\x00\x00"s, kEnd}, {"No_ID_C", 0, 0x26, 0x40, 0}},
      // A later list replaces an earlier one, unless that one claims too much.
      {{"newd\xE0\x1F", "newd\x05\x00"s, kEnd}, {"No_ID_C", 5, 0x46, 0x60, 0}},
      {{"newd\xE1\x1F", "newd\x05\x00"s, "XCCDA", kEnd}, {"No_ID_C", 0x1FE1, 0x26, 0, 0}},
      {{}, {"No_ID_C", 0, 0, 0, 0}},  // no end mark
  };
  for (const auto& c : kCases) {
    const MemoryDirectory found = ParseDefectDataAddress(MemoryOf(c.entries));
    EXPECT_EQ(found.id, c.expected.id);
    EXPECT_EQ(found.defect_text_length, c.expected.defect_text_length) << found.id;
    EXPECT_EQ(found.defect_text_offset, c.expected.defect_text_offset);
    EXPECT_EQ(found.directory_end, c.expected.directory_end);
    EXPECT_EQ(found.identity_entry_offset, c.expected.identity_entry_offset);
  }
}

TEST(IdentityMemory, EndsAtItsLimits) {
  std::vector<std::string> entries(0xFF, "x");
  entries[0x1C00 / 0x20 - 1] = "XCCDlast";   // at 0x1C00
  entries[0x1C20 / 0x20 - 1] = "XCCDafter";  // at 0x1C20, where no entry counts
  EXPECT_EQ(ParseDefectDataAddress(MemoryOf(entries)).id, "CCDlast");
  for (const size_t size : {0, 4, 0x20, 0x21, 0x23, 0x24, 0x2A}) {
    Bytes torn = MemoryOf({"XCCDshort"}, 0x40);
    torn.resize(size);
    EXPECT_EQ(ParseDefectDataAddress(torn).id, size < 0x24    ? "No_ID_C"
                                               : size == 0x24 ? "CCD"
                                                              : "CCDshort")
        << size;
  }
  const Bytes memory = MemoryOf({"newd\xDF\x1F\x31 2 0"s, kEnd});
  EXPECT_EQ(DefectTextIn(memory, ParseDefectDataAddress(memory)).size(), 0x2000u - 0x26);
  EXPECT_EQ(DefectTextIn(memory, ParseDefectDataAddress(memory)).substr(0, 5), "1 2 0");
  EXPECT_EQ(DefectTextIn(Bytes(3), ParseDefectDataAddress(memory)), "");
}

// With the checksum of the first block of GivesTheBlocksInOrder.
Bytes Block(uint8_t kind, const std::string& description, const Bytes& payload,
            const Bytes& marker = {0x01, 0x00}) {
  Bytes block(23);
  block[0] = 0x55;
  StoreLittleEndian(&block[1], static_cast<uint32_t>(payload.size()));
  block[6] = kind;
  std::copy(description.begin(), description.end(), block.begin() + 7);
  block.insert(block.end(), payload.begin(), payload.end());
  block.insert(block.end(), {0x02, 0xA5});
  block.insert(block.begin(), marker.begin(), marker.end());
  return block;
}

Bytes Joined(const std::vector<Bytes>& pieces) {
  Bytes all;
  for (const Bytes& piece : pieces) all.insert(all.end(), piece.begin(), piece.end());
  return all;
}

const Bytes kChainEnd = {0xFF, 0xFF};

TEST(BlockChain, GivesTheBlocksInOrder) {
  const Bytes filler = {0x00, 0x00, 1, 2, 3, 0xFF, 0x00};
  const Bytes area = Joined({Block(0, "Defects", {1, 2, 3}),
                             Block(1, "sixteen letters!", {}, filler),
                             Block(9, "", {4}, {0xFE, 0xFF}),
                             kChainEnd,
                             {7, 7, 7}});
  std::vector<MemoryBlock> blocks;
  ASSERT_EQ(ParseBlockChain(area, &blocks), kOk);
  ASSERT_EQ(blocks.size(), 3u);
  EXPECT_EQ(blocks[0].description + "|" + blocks[1].description, "Defects|sixteen letters!");
  EXPECT_EQ(Bytes(blocks[0].payload.begin(), blocks[0].payload.end()), (Bytes{1, 2, 3}));
  EXPECT_EQ(blocks[0].kind * 100 + blocks[1].kind * 10 + blocks[2].kind, 19);
  EXPECT_TRUE(blocks[0].isIntact);
  EXPECT_FALSE(blocks[1].isIntact || blocks[2].isIntact);

  ASSERT_EQ(ParseBlockChain(kChainEnd, &blocks), kOk);
  EXPECT_TRUE(blocks.empty());
}

TEST(BlockChain, KeepsFourBlocksOfMore) {
  std::vector<Bytes> pieces;
  for (uint8_t i = 0; i < 6; ++i) pieces.push_back(Block(0, std::string(1, 'a' + i), {i}));
  std::vector<MemoryBlock> blocks;
  ASSERT_EQ(ParseBlockChain(Joined(pieces), &blocks), kOk);
  ASSERT_EQ(blocks.size(), kMostBlocks);
  EXPECT_EQ(blocks[3].description, "d");
}

TEST(BlockChain, RefusesWhatLeadsOutOfTheArea) {
  const Bytes whole = Joined({Block(0, "a", {1, 2, 3}), Block(1, "b", {4}), kChainEnd});
  std::vector<MemoryBlock> blocks;
  for (size_t size = 0; size < whole.size(); ++size) {
    const Bytes torn(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    blocks.resize(1);
    EXPECT_EQ(ParseBlockChain(torn, &blocks), kUnexpected) << size;
    EXPECT_TRUE(blocks.empty());
  }
  Bytes huge = whole;
  for (const uint32_t size : {0x10000u, 0x7FFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFE9u}) {
    StoreLittleEndian(&huge[3], size);
    EXPECT_EQ(ParseBlockChain(huge, &blocks), kUnexpected) << size;
  }
  const Bytes wrongEnd = Block(0, "a", {1}, {0, 0, 5, 0xFF, 1});
  for (const Bytes& filler : {Bytes(0x4000), Joined({wrongEnd, kChainEnd}), Bytes{0, 0, 0xFF}}) {
    EXPECT_EQ(ParseBlockChain(filler, &blocks), kUnexpected) << filler.size();
  }
}

TEST(GainRecord, IsReadFromTheEnd) {
  Bytes area(0x4000);
  const auto put = [&area](size_t fromEnd, const Bytes& bytes) {
    std::copy(bytes.begin(), bytes.end(), area.end() - static_cast<std::ptrdiff_t>(fromEnd));
  };
  put(0x3C, {'1', 0x01, 0x2C, 0x02, 0x58, 0xFF, 0xFF, 0, 1, 0xFF});
  EXPECT_EQ(ParseGainRecord(area).gain_0, 0);
  put(0x40, {'P', 'D', 'I'});
  PdiRecord pdi = ParseGainRecord(area);
  EXPECT_EQ(pdi.enabled, 1u);
  EXPECT_EQ(pdi.gain_0, -3.0);
  EXPECT_EQ(pdi.gain_1, 600 * 0.000001);
  EXPECT_EQ(pdi.gain_2, 65535 * 0.0000000001);
  put(0x3C, {1});
  EXPECT_EQ(ParseGainRecord(area).enabled, 0u);
  EXPECT_EQ(ParseGainRecord(std::span(area).last(0x3F)).gain_0, 0);
}

TEST(CorrectionFile, LiesBesideTheModuleAndNowhereElse) {
  namespace host = platform::host;
  host::ResetAll();
  const std::string folder = "C:\\Windows\\TWAIN_32\\ZYR\\";
  host::PutFile(folder + "a.fix", "fix");
  host::PutFile(folder + "a.lumo", "1 2 0\r\n\0"s);
  host::PutFile(folder + "b.fix", "");
  host::PutFile(folder + "huge.fix", std::string(16 * 1024 * 1024 + 1, ' '));
  host::PutFile(folder + "sub\\c.fix", "fix");
  host::PutFile("C:\\Windows\\TWAIN_32\\d.fix", "fix");
  std::string text = "old";
  for (const char* id : {"c", "sub\\c", "sub/c", "..\\d", "../d", "C:d", "x..", "a.fix:s", "*"}) {
    EXPECT_EQ(LoadCorrectionFile(id, &text), kFileNotFound) << id;
  }
  EXPECT_EQ(text, "old");
  EXPECT_EQ(LoadCorrectionFile("A", &text), kOk);
  EXPECT_EQ(text, "1 2 0\r\n\0"s);
  EXPECT_EQ(LoadCorrectionFile("huge", &text), kAccessDenied);
  EXPECT_EQ(LoadCorrectionFile("b", &text), kOk);
  EXPECT_EQ(text, "");
  host::DenyOpening(folder);
  EXPECT_EQ(LoadCorrectionFile("a", &text), kAccessDenied);
  host::ResetAll();
}

}  // namespace
}  // namespace zyr
