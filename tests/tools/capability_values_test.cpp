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

TEST(CapabilityValues, ReadsEveryKindOfContainer) {
  auto values = ReadContainer(ICAP_XFERMECH, TWON_ONEVALUE, Join({U16(TWTY_UINT16), U32(2)}));
  ASSERT_TRUE(values);
  EXPECT_EQ(values->items, std::vector<std::string>{"2 (Memory)"});

  values = ReadContainer(CAP_XFERCOUNT, TWON_ONEVALUE, Join({U16(TWTY_INT16), U32(0xFFFF)}));
  ASSERT_TRUE(values);
  EXPECT_EQ(values->items.front(), "-1");

  values = ReadContainer(ICAP_BITDEPTH, TWON_ENUMERATION,
                         Join({U16(TWTY_UINT16), U32(2), U32(1), U32(0), U16(8), U16(16)}));
  ASSERT_TRUE(values);
  EXPECT_EQ(values->items, (std::vector<std::string>{"8", "16"}));
  EXPECT_EQ(values->current, 1u);
  EXPECT_EQ(values->defaultItem, 0u);

  values = ReadContainer(CAP_SUPPORTEDCAPS, TWON_ARRAY,
                         Join({U16(TWTY_UINT16), U32(2), U16(CAP_XFERCOUNT), U16(ICAP_UNITS)}));
  ASSERT_TRUE(values);
  EXPECT_EQ(values->items, (std::vector<std::string>{"CAP_XFERCOUNT", "ICAP_UNITS"}));
  EXPECT_EQ(values->numbers, (std::vector<uint32_t>{CAP_XFERCOUNT, ICAP_UNITS}));

  // -0.5 to 1.5 in FIX32.
  values = ReadContainer(ICAP_BRIGHTNESS, TWON_RANGE,
                         Join({U16(TWTY_FIX32), U16(0xFFFF), U16(0x8000), U16(1), U16(0x8000),
                               U16(0), U16(0x4000), U32(0), U16(1), U16(0)}));
  ASSERT_TRUE(values);
  EXPECT_EQ(values->range, "-0.5 to 1.5 in steps of 0.25");
  EXPECT_EQ(values->items, (std::vector<std::string>{"1", "0"}));

  // A text ends with its block if it has less room than its type.
  values = ReadContainer(CAP_AUTHOR, TWON_ONEVALUE, Join({U16(TWTY_STR128), {'K', 'o', 0, 'x'}}));
  ASSERT_TRUE(values);
  EXPECT_EQ(values->items.front(), "Ko");
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
  // An index past the list is no reason to refuse the list.
  const auto values = ReadContainer(ICAP_XFERMECH, TWON_ENUMERATION,
                                    Join({U16(TWTY_UINT16), U32(1), U32(1), U32(0), U16(2)}));
  ASSERT_TRUE(values);
  EXPECT_FALSE(values->current);
  EXPECT_EQ(values->defaultItem, 0u);
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
