#include "foundation/support/registry.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/support/error.h"
#include "foundation/support/format.h"
#include "platform/host/host.h"

namespace zyr {
namespace {

using platform::ValueType;
using Bytes = std::vector<uint8_t>;
namespace host = platform::host;

constexpr RootKey kRoot = RootKey::kLocalMachine;
constexpr char kKey[] = "SOFTWARE\\Test";

constexpr char kType[] = "50000001 The specified key and value contained an incompatible type";
constexpr char kSize[] = "50000002 The specified key and value contained data of a different size";
constexpr char kObtain[] = "50000000 Unable to obtain the value 'v' under the key SOFTWARE\\Test";
constexpr char kWrite[] =
    "10000007 Unable to write or create the value 'v' under the key SOFTWARE\\Test";

std::string Failure() { return FormatText("%lX ", Lu(LastErrorCode())) + LastErrorText(); }

// What the value "v" reads as, or why it does not.
std::string ReadNumber() {
  uint32_t number = 0;
  return RegGetDword(kRoot, kKey, "v", &number) ? std::to_string(number) : Failure();
}
std::string ReadText() {
  std::string text;
  return RegGetString(kRoot, kKey, "v", &text) ? text : Failure();
}
std::string ReadThreeBytes() {
  Bytes block(3);
  return RegGetBinary(kRoot, kKey, "v", block) ? std::string(block.begin(), block.end())
                                               : Failure();
}
std::string ReadReal() {
  double real = 0;
  return RegGetDouble(kRoot, kKey, "v", &real) ? FormatText("%g", real) : Failure();
}

class RegistryTest : public testing::Test {
 protected:
  void SetUp() override { host::ResetAll(); }
  void TearDown() override { EXPECT_EQ(host::OpenRegistryKeys(), 0); }
};

TEST_F(RegistryTest, JudgesStoredTypesAndSizes) {
  const Bytes real = {0xE3, 0x95, 0xB8, 0x23, 9, 9, 9, 9, 0, 0, 0, 0, 0, 0, 0xF8, 0xBF};
  Bytes otherMagic = real;
  otherMagic[3] = 0xCC;
  const struct {
    std::string (*read)();
    ValueType type;
    Bytes data;
    const char* outcome;
  } kCases[] = {
      {ReadNumber, ValueType::kDword, {4, 3, 2, 1}, "16909060"},
      {ReadNumber, ValueType::kDwordBigEndian, {1, 2, 3, 4}, "16909060"},
      {ReadNumber, ValueType::kDword, {}, kObtain},
      {ReadNumber, ValueType::kDword, {1, 0, 0, 0, 0, 0, 0, 0}, kObtain},
      {ReadNumber, ValueType::kString, {'1', 0, 0, 0}, kType},
      {ReadText, ValueType::kString, {'a', 'b', 'c', 'd'}, "abcd"},  // no terminator
      {ReadText, ValueType::kString, {'a', 0, 0xCC, 'b', 0}, "a"},
      {ReadText, ValueType::kString, {}, ""},
      {ReadText, ValueType::kExpandString, {'%', 'd', 0}, "%d"},
      {ReadText, ValueType::kMultiString, {'x', 0, 'y', 0, 0}, "x"},
      {ReadText, ValueType::kBinary, {'a', 0}, kType},
      {ReadThreeBytes, ValueType::kBinary, {'a', 'b', 'c'}, "abc"},
      {ReadThreeBytes, ValueType::kBinary, {'a', 'b', 'c', 'd'}, kSize},
      {ReadThreeBytes, ValueType::kBinary, {}, kSize},
      {ReadThreeBytes, ValueType::kNone, {'a', 'b', 'c'}, kType},
      {ReadReal, ValueType::kBinary, real, "-1.5"},
      {ReadReal, ValueType::kBinary, otherMagic, kType},
      {ReadReal, ValueType::kBinary, Bytes(real.begin() + 8, real.end()), kType},
  };
  for (const auto& c : kCases) {
    host::PokeValue(kRoot, kKey, "v", {c.type, c.data});
    EXPECT_EQ(c.read(), c.outcome) << testing::PrintToString(c.data);
  }
}

TEST_F(RegistryTest, CreatesTheKeyOnWritingAndSaysWhatFailed) {
  EXPECT_EQ(ReadNumber(), "50000000 Unable to open the key SOFTWARE\\Test");
  host::DenyRegistryWrites(true);
  EXPECT_FALSE(RegSetString(kRoot, kKey, "v", "x"));
  EXPECT_EQ(Failure(), kWrite);
  EXPECT_FALSE(RegCreate(kRoot, kKey).has_value());
  EXPECT_EQ(Failure(), "D Unable to create the key SOFTWARE\\Test");
  host::DenyRegistryWrites(false);

  EXPECT_TRUE(RegSetString(kRoot, kKey, "text", std::string("ab\0c", 4)));
  EXPECT_EQ(host::PeekValue(kRoot, kKey, "text")->data, (Bytes{'a', 'b', 0}));
  EXPECT_EQ(ReadNumber(), "50000000 Unable to open the value 'v' under the key SOFTWARE\\Test");
  host::FailRegistryWrites(true);
  EXPECT_FALSE(RegSetDword(kRoot, kKey, "v", 1));
  EXPECT_EQ(Failure(), kWrite);
}

}  // namespace
}  // namespace zyr
