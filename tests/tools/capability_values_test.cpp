#include "tools/zyracquire/capability_values.h"

#include <gtest/gtest.h>

namespace zyr {
namespace {

using Block = std::vector<uint8_t>;
using testing::Test;

Block Join(std::initializer_list<Block> parts) {
  Block block;
  for (const Block& part : parts) block.insert(block.end(), part.begin(), part.end());
  return block;
}

Block U16(uint32_t value) {
  return {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8)};
}
Block U32(uint32_t value) { return Join({U16(value), U16(value >> 16)}); }

// What a reading shows: the range, the items, and where the current and the default one stand.
std::string Shown(TW_UINT16 capability, TW_UINT16 container, const Block& block) {
  const auto values = ReadContainer(capability, container, block);
  if (!values) return "refused";
  std::string shown = values->range;
  for (const std::string& item : values->items) shown += "[" + item + "]";
  if (values->current) shown += " current " + std::to_string(*values->current);
  if (values->defaultItem) shown += " default " + std::to_string(*values->defaultItem);
  return shown;
}

TEST(CapabilityValues, ReadsEveryKindOfContainer) {
  EXPECT_EQ(Shown(ICAP_XFERMECH, TWON_ONEVALUE, Join({U16(TWTY_UINT16), U32(2)})), "[2 (Memory)]");
  EXPECT_EQ(Shown(CAP_XFERCOUNT, TWON_ONEVALUE, Join({U16(TWTY_INT16), U32(0xFFFF)})), "[-1]");
  EXPECT_EQ(Shown(ICAP_BITDEPTH, TWON_ENUMERATION,
                  Join({U16(TWTY_UINT16), U32(2), U32(1), U32(0), U16(8), U16(16)})),
            "[8][16] current 1 default 0");
  const Block names = Join({U16(TWTY_UINT16), U32(2), U16(CAP_XFERCOUNT), U16(ICAP_UNITS)});
  EXPECT_EQ(Shown(CAP_SUPPORTEDCAPS, TWON_ARRAY, names), "[CAP_XFERCOUNT][ICAP_UNITS]");
  EXPECT_EQ(ReadContainer(CAP_SUPPORTEDCAPS, TWON_ARRAY, names)->numbers,
            (std::vector<uint32_t>{CAP_XFERCOUNT, ICAP_UNITS}));
  // -0.5 to 1.5 in FIX32.
  EXPECT_EQ(Shown(ICAP_BRIGHTNESS, TWON_RANGE,
                  Join({U16(TWTY_FIX32), U16(0xFFFF), U16(0x8000), U16(1), U16(0x8000), U16(0),
                        U16(0x4000), U32(0), U16(1), U16(0)})),
            "-0.5 to 1.5 in steps of 0.25[1][0] current 0 default 1");
  // A text ends with its block if it has less room than its type.
  EXPECT_EQ(Shown(CAP_AUTHOR, TWON_ONEVALUE, Join({U16(TWTY_STR128), {'K', 'o', 0, 'x'}})), "[Ko]");
  // An index past the list is no reason to refuse the list.
  EXPECT_EQ(Shown(ICAP_XFERMECH, TWON_ENUMERATION,
                  Join({U16(TWTY_UINT16), U32(1), U32(1), U32(0), U16(2)})),
            "[2 (Memory)] default 0");
}

TEST(CapabilityValues, RefusesBlocksThatAreTooSmallForWhatTheyClaim) {
  const struct {
    TW_UINT16 container;
    Block block;
  } kCases[] = {
      {TWON_ONEVALUE, {}},
      {TWON_ONEVALUE, {4}},
      {TWON_ONEVALUE, Join({U16(TWTY_UINT32), U16(1)})},
      {TWON_ONEVALUE, Join({U16(99), U32(1)})},
      {TWON_ARRAY, Join({U16(TWTY_UINT16), U16(1)})},
      {TWON_ARRAY, Join({U16(TWTY_UINT16), U32(2), U16(1)})},
      {TWON_ARRAY, Join({U16(TWTY_UINT16), U32(0xFFFFFFFF), U16(1)})},
      {TWON_ARRAY, Join({U16(TWTY_UINT32), U32(0x40000001), U32(1)})},
      {TWON_ENUMERATION, Join({U16(TWTY_UINT16), U32(1), U32(0), U16(0)})},
      {TWON_RANGE, Join({U16(TWTY_UINT16), U32(1), U32(1), U32(1), U32(1), U16(1)})},
      {77, Join({U16(TWTY_UINT16), U32(1)})},
  };
  for (const auto& wrong : kCases) {
    // On the heap and of its exact size, so that the sanitizer sees a byte too many.
    const Block exact(wrong.block.begin(), wrong.block.end());
    EXPECT_FALSE(ReadContainer(ICAP_XFERMECH, wrong.container, exact))
        << wrong.container << ' ' << exact.size();
  }
}

TEST(CapabilityValues, TableFoldsLongLists) {
  const std::string table =
      FormatTable({{"ICAP_BITDEPTH", "Enumeration UINT16", "16", "8", "8, 16"},
                   {"CAP_X", "Array UINT16", "-", "-", "AAAAAAAAAA, BBBBBBBBBB, CCCCCCCCCC"}},
                  80);
  EXPECT_EQ(table,
            "Capability     Type                Current  Default  Offered\n"
            "ICAP_BITDEPTH  Enumeration UINT16  16       8        8, 16\n"
            "CAP_X          Array UINT16        -        -        AAAAAAAAAA, BBBBBBBBBB,\n"
            "                                                     CCCCCCCCCC\n");
}

}  // namespace
}  // namespace zyr
