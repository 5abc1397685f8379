#include "twain/containers.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "platform/host/host.h"
#include "tests/twain/container_blocks.h"

namespace zyr {
namespace {

namespace host = platform::host;
using test::BlockOf;
using test::BytesOf;
using test::ContainerText;
using test::EnumerationBytes;
using test::OneValueBytes;
using test::Raw;
using test::Take;

constexpr bool kAddressFitsItem = sizeof(void*) == 4;

class ContainersTest : public testing::Test {
 protected:
  void SetUp() override { host::ResetAll(); }
  void TearDown() override {
    Free();
    EXPECT_EQ(host::HeldLocks(), 0u);
    EXPECT_EQ(host::LiveBlocks(), 0u);
    EXPECT_EQ(host::MemoryMisuses(), 0u);
    host::ResetAll();
  }
  void Free() {
    platform::FreeBlock(capability_.hContainer);
    capability_.hContainer = nullptr;
  }
  void Put(TW_UINT16 conType, const std::string& bytes) {
    Free();
    capability_.ConType = conType;
    capability_.hContainer = BlockOf(bytes);
  }

  TW_CAPABILITY capability_{};
};

TEST(Fix32Test, ConvertsByTruncation) {
  const struct {
    double value;
    int whole;
    int frac;
  } cases[] = {{-0.5, 0, 32769},  // a negative fraction borrows nothing from the whole
               {-2.25, -2, 49153},
               {0.999999, 0, 0},  // rounds up past its 16 bits
               {32768.0, -32768, 0},
               {65537.5, 1, 32768},
               {-std::numeric_limits<double>::infinity(), 0, 0},
               {std::numeric_limits<double>::quiet_NaN(), 0, 0}};
  for (const auto& c : cases) {
    const TW_FIX32 fix = ToFix32(c.value);
    EXPECT_EQ(int{fix.Whole}, c.whole) << c.value;
    EXPECT_EQ(int{fix.Frac}, c.frac) << c.value;
  }
}

TEST(Fix32Test, BringsBackEveryNonNegativeNumber) {
  int wrong = 0;
  for (int whole = 0; whole <= 32767; whole += 4681) {
    for (int frac = 0; frac <= 65535; ++frac) {
      const TW_FIX32 fix{static_cast<TW_INT16>(whole), static_cast<TW_UINT16>(frac)};
      const TW_FIX32 back = ToFix32(FromFix32(fix));
      wrong += back.Whole != fix.Whole || back.Frac != fix.Frac;
    }
  }
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(FromFix32({-1, 32768}), -0.5);
}

TEST_F(ContainersTest, BuildsOneValuesOfEachTypeInBlocksOfItsSize) {
  const std::string source = "0123456789abcdefghijklmnopqrstuvwxyzABCD";
  const struct {
    TW_UINT16 type;
    size_t item;
  } cases[] = {{TWTY_INT8, 1},   {TWTY_UINT8, 1},   {TWTY_INT16, 2},   {TWTY_UINT16, 2},
               {TWTY_INT32, 4},  {TWTY_UINT32, 4},  {TWTY_FIX32, 4},   {TWTY_FRAME, 16},
               {TWTY_STR32, 34}, {TWTY_STR64, 34},  {TWTY_STR128, 34}, {TWTY_STR255, 34},
               {TWTY_BOOL, 0},   {TWTY_STR1024, 0}, {TWTY_UNI512, 0},  {99, 0}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.type);
    ASSERT_EQ(BuildOneValue(&capability_, c.type, source.data()), TWCC_SUCCESS);
    const std::string bytes = BytesOf(capability_.hContainer);
    ASSERT_EQ(bytes.size(), c.item + 6);
    EXPECT_EQ(int{capability_.ConType}, TWON_ONEVALUE);
    EXPECT_EQ(Take<TW_UINT16>(bytes, 0), c.type);
    if (c.item != 0) {
      EXPECT_EQ(bytes.substr(2), source.substr(0, c.item) + std::string(4, '\0'));
    } else {
      const TW_HANDLE untouched = platform::AllocateMovable(4, false);
      EXPECT_EQ(bytes.substr(2), BytesOf(untouched)) << "as the allocator left them";
      platform::FreeBlock(untouched);
    }
    Free();
  }
}

TEST_F(ContainersTest, BuildsListsWithTheIndexOfTheFirstEqualItem) {
  EXPECT_EQ(BuildArray(&capability_, {4101, 1, 65535}), TWCC_SUCCESS);
  EXPECT_EQ(ContainerText(capability_), "Array UINT16 4101 1 65535, 13 bytes");
  Free();
  EXPECT_EQ(BuildEnumerationUint16(&capability_, {8, 16, 8, 16}, 16, 8), TWCC_SUCCESS);
  EXPECT_EQ(ContainerText(capability_),
            "Enumeration UINT16 8 16 8 16, current #0, default #1, 23 bytes");
  Free();
  const uint16_t list[] = {5, 6, 7};
  EXPECT_EQ(BuildEnumerationUint16(&capability_, 2, list, 6, 7), TWCC_SUCCESS);
  EXPECT_EQ(ContainerText(capability_), "Enumeration UINT16 5 6, current #0, default #1, 19 bytes");
  Free();
  // Indices go by the double: these two differ by less than an item can show.
  EXPECT_EQ(BuildEnumerationFix32(&capability_, {100.0, 100.0 + 1e-9}, 100.0 + 1e-9, 200.0),
            TWCC_SUCCESS);
  EXPECT_EQ(ContainerText(capability_),
            "Enumeration FIX32 100.0000 100.0000, current #0, default #1, 23 bytes");
}

TEST_F(ContainersTest, BuildsNothingWithoutMemoryOrArguments) {
  const uint16_t value = 1;
  uint16_t read = 7;
  std::vector<uint16_t> values{7};
  EXPECT_EQ(BuildOneValue(nullptr, TWTY_UINT16, &value), TWCC_OPERATIONERROR);
  EXPECT_EQ(BuildOneValue(&capability_, TWTY_UINT16, nullptr), TWCC_OPERATIONERROR);
  EXPECT_EQ(BuildArray(nullptr, {1}), TWCC_OPERATIONERROR);
  EXPECT_EQ(BuildEnumerationUint16(nullptr, {1}, 1, 1), TWCC_OPERATIONERROR);
  EXPECT_EQ(BuildEnumerationUint16(&capability_, 1, nullptr, 1, 1), TWCC_OPERATIONERROR);
  EXPECT_EQ(BuildEnumerationFix32(nullptr, {1.0}, 1.0, 1.0), TWCC_OPERATIONERROR);
  EXPECT_EQ(ReadOneValueUint16(&capability_, nullptr), TWCC_OPERATIONERROR);
  EXPECT_EQ(ReadOneValueString(&capability_, nullptr), TWCC_OPERATIONERROR);
  EXPECT_EQ(ReadEnumerationUint16(&capability_, &values, nullptr, &read), TWCC_OPERATIONERROR);
  EXPECT_EQ(ReadOneValueUint16(nullptr, &read), TWCC_OPERATIONERROR);
  EXPECT_EQ(read, 0);
  EXPECT_TRUE(values.empty());

  for (const auto& failNext : {host::FailNextAllocations, host::FailNextLocks}) {
    failNext(3);
    capability_.hContainer = this;  // what an application left there
    EXPECT_EQ(BuildOneValue(&capability_, TWTY_UINT16, &value), TWCC_LOWMEMORY);
    EXPECT_EQ(TW_HANDLE{capability_.hContainer}, nullptr);
    EXPECT_EQ(BuildArray(&capability_, {1}), TWCC_LOWMEMORY);
    EXPECT_EQ(BuildEnumerationFix32(&capability_, {1.0}, 1.0, 1.0), TWCC_LOWMEMORY);
    EXPECT_EQ(host::LiveBlocks(), 0u);
  }
}

TEST_F(ContainersTest, ReadsOneValuesOfTheAcceptedTypesOnly) {
  for (TW_UINT16 type = TWTY_INT8; type <= TWTY_UNI512 + 1; ++type) {
    SCOPED_TRACE(type);
    // 0x00028001: as a number, and as 32769 wholes and 2 parts.
    Put(TWON_ONEVALUE, Raw(type) + std::string("\x01\x80\x02\x00", 4));
    uint16_t number = 7;
    const bool isNumber = type == TWTY_INT16 || type == TWTY_UINT16;
    EXPECT_EQ(ReadOneValueUint16(&capability_, &number), isNumber ? TWCC_SUCCESS : TWCC_BADVALUE);
    EXPECT_EQ(number, isNumber ? 0x8001 : 0);
    uint16_t boolean = 7;
    const bool isBool = type == TWTY_BOOL;
    EXPECT_EQ(ReadOneValueBool(&capability_, &boolean), isBool ? TWCC_SUCCESS : TWCC_BADVALUE);
    EXPECT_EQ(boolean, isBool ? 0x8001 : 0);
    double fix = 7.0;
    const bool isFix = type == TWTY_FIX32;
    EXPECT_EQ(ReadOneValueFix32(&capability_, &fix), isFix ? TWCC_SUCCESS : TWCC_BADVALUE);
    EXPECT_EQ(fix, isFix ? -32767.0 + 2.0 / 65536.0 : 0.0);
  }
}

TEST_F(ContainersTest, ReadsEnumerationsWithTheirDefaultAndCurrentItems) {
  std::vector<uint16_t> numbers;
  uint16_t defaultItem = 9;
  uint16_t currentItem = 9;
  const auto readNumbers = [&] {
    return ReadEnumerationUint16(&capability_, &numbers, &defaultItem, &currentItem);
  };
  for (const TW_UINT16 type : {TWTY_INT16, TWTY_UINT16}) {
    Put(TWON_ENUMERATION, EnumerationBytes(type, {10, -1, 30}, 1, 2));
    EXPECT_EQ(readNumbers(), TWCC_SUCCESS);
    EXPECT_EQ(numbers, (std::vector<uint16_t>{10, 65535, 30}));
    EXPECT_EQ(defaultItem, 30);
    EXPECT_EQ(currentItem, 65535);
  }
  Put(TWON_ENUMERATION, EnumerationBytes(TWTY_UINT16, {8, 9}, 0xffffffff, 2));
  EXPECT_EQ(readNumbers(), TWCC_SUCCESS) << "an application's list needs no indices";
  EXPECT_EQ(defaultItem, 0);
  EXPECT_EQ(currentItem, 0);

  std::vector<double> doubles{9.0};
  double defaultDouble = 9.0;
  double currentDouble = 9.0;
  const auto readDoubles = [&] {
    return ReadEnumerationFix32(&capability_, &doubles, &defaultDouble, &currentDouble);
  };
  EXPECT_EQ(readDoubles(), TWCC_BADVALUE);
  EXPECT_TRUE(doubles.empty());
  EXPECT_EQ(currentDouble, 0.0);
  Put(TWON_ENUMERATION, EnumerationBytes(TWTY_FIX32, {100.5, 200.0}, 0, 1));
  EXPECT_EQ(readDoubles(), TWCC_SUCCESS);
  EXPECT_EQ(doubles, (std::vector<double>{100.5, 200.0}));
  EXPECT_EQ(defaultDouble, 200.0);
  EXPECT_EQ(currentDouble, 100.5);
  EXPECT_EQ(readNumbers(), TWCC_BADVALUE);
}

TEST_F(ContainersTest, RefusesBlocksThatClaimMoreThanTheyHold) {
  std::vector<uint16_t> numbers;
  uint16_t a = 0;
  uint16_t b = 0;
  double fix = 0.0;
  const auto readOf = [&](const std::string& bytes) {
    Put(TWON_ENUMERATION, bytes);
    return ReadEnumerationUint16(&capability_, &numbers, &a, &b);
  };
  std::string list = EnumerationBytes(TWTY_UINT16, {1, 2, 3});
  EXPECT_EQ(readOf(list + std::string(100, 'x')), TWCC_SUCCESS) << "more than it claims";
  for (size_t size = 1; size < list.size(); ++size) {
    EXPECT_EQ(readOf(list.substr(0, size)), TWCC_BADVALUE) << size;
  }
  // Counts whose bytes come out small in 32 bits.
  for (const uint32_t count : {4u, 0x40000000u, 0x80000001u, 0xffffffffu}) {
    EXPECT_EQ(readOf(list.replace(2, 4, Raw(count))), TWCC_BADVALUE) << count;
  }
  for (size_t size = 1; size < 6; ++size) {
    Put(TWON_ONEVALUE, OneValueBytes(TWTY_UINT16, 1).substr(0, size));
    EXPECT_EQ(ReadOneValueUint16(&capability_, &a), size < 4 ? TWCC_BADVALUE : TWCC_SUCCESS);
    Put(TWON_ONEVALUE, OneValueBytes(TWTY_FIX32, 1).substr(0, size));
    EXPECT_EQ(ReadOneValueFix32(&capability_, &fix), TWCC_BADVALUE) << size;
  }
}

TEST_F(ContainersTest, RefusesOtherContainersAndHandlesThatAreNone) {
  std::vector<uint16_t> numbers;
  uint16_t a = 0;
  uint16_t b = 0;
  const std::string bytes = EnumerationBytes(TWTY_UINT16, {1});  // long enough for either
  const TW_HANDLE sound = BlockOf(bytes);
  const TW_HANDLE freed = BlockOf(bytes);
  platform::FreeBlock(freed);
  for (const TW_HANDLE handle : {sound, freed, TW_HANDLE{nullptr}, TW_HANDLE{&a}}) {
    const TW_UINT16 readable = handle == sound ? TWCC_SUCCESS : TWCC_LOWMEMORY;
    for (TW_UINT16 conType = 0; conType <= TWON_RANGE + 1; ++conType) {
      capability_ = {0, conType, handle};
      EXPECT_EQ(ReadOneValueUint16(&capability_, &a),
                conType == TWON_ONEVALUE ? readable : TWCC_BADVALUE);
      EXPECT_EQ(ReadEnumerationUint16(&capability_, &numbers, &a, &b),
                conType == TWON_ENUMERATION ? readable : TWCC_BADVALUE);
    }
  }
  capability_.hContainer = sound;
}

TEST_F(ContainersTest, ReadsTextWhereTheModulesWidthPutsIt) {
  const std::string longText(300, 'x');
  const struct {
    TW_UINT16 type;
    size_t characters;
  } types[] = {{TWTY_STR32, 33}, {TWTY_STR64, 65}, {TWTY_STR128, 129}, {TWTY_STR255, 255}};
  for (const auto& type : types) {
    SCOPED_TRACE(type.type);
    const auto item = [&](const char* at) {
      return kAddressFitsItem ? Raw(static_cast<uint32_t>(reinterpret_cast<uintptr_t>(at)))
                              : std::string(at, std::strlen(at) + 1);
    };
    std::string read = "before";
    Put(TWON_ONEVALUE, Raw(type.type) + item("Dr. Weiss") + std::string(2, '\0'));
    EXPECT_EQ(ReadOneValueString(&capability_, &read), TWCC_SUCCESS);
    EXPECT_EQ(read, "Dr. Weiss");
    Put(TWON_ONEVALUE, Raw(type.type) + item(longText.c_str()));
    EXPECT_EQ(ReadOneValueString(&capability_, &read), TWCC_SUCCESS);
    EXPECT_EQ(read, longText.substr(0, kAddressFitsItem ? 255 : type.characters));
  }
  std::string read = "before";
  Put(TWON_ONEVALUE, Raw(TWTY_UINT32) + std::string(40, 'x'));
  EXPECT_EQ(ReadOneValueString(&capability_, &read), TWCC_BADVALUE);
  EXPECT_EQ(read, "");
  // An unmapped address; or a block that ends before its text does.
  Put(TWON_ONEVALUE, Raw(TWTY_STR32) + "\x10\x20\x01\x01");
  host::DenyReading(reinterpret_cast<const void*>(uintptr_t{0x01012010}), 1);
  EXPECT_EQ(ReadOneValueString(&capability_, &read), TWCC_BADVALUE);
  for (size_t size = 1; size <= 5; ++size) {
    Put(TWON_ONEVALUE, (Raw(TWTY_STR32) + "abcd").substr(0, size));
    EXPECT_EQ(ReadOneValueString(&capability_, &read), TWCC_BADVALUE) << size;
  }
}

}  // namespace
}  // namespace zyr
