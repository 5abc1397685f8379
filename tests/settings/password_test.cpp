#include <gtest/gtest.h>

#include "foundation/support/error.h"
#include "foundation/support/little_endian.h"
#include "platform/host/host.h"
#include "settings/password/hardware_password.h"
#include "settings/password/password_dialog.h"
#include "settings/password/password_tries.h"
#include "tests/settings/recorded_pages.h"

namespace zyr {
namespace {

namespace host = platform::host;
using platform::RootKey;
using platform::ValueType;

constexpr RootKey kRoot = RootKey::kLocalMachine;
constexpr char kKey[] = "SOFTWARE\\ZYR\\TWAIN";
constexpr char kValue[] = "HardwarePassword";
constexpr int64_t kStart = 1'800'000'000;

std::vector<uint8_t> Stored() {
  const auto value = host::PeekValue(kRoot, kKey, kValue);
  return value ? value->data : std::vector<uint8_t>();
}
void Store(const std::vector<uint8_t>& bytes, ValueType type = ValueType::kBinary) {
  host::PokeValue(kRoot, kKey, kValue, {type, bytes});
}

class PasswordTest : public testing::Test {
 protected:
  // The wrong tries that a test leaves behind are forgotten with a new password.
  void SetUp() override {
    host::ResetAll();
    host::SetClock(kStart);
    ASSERT_TRUE(SetHardwarePassword("any at all"));
    host::RemoveValue(kRoot, kKey, kValue);
  }
  void TearDown() override {
    EXPECT_EQ(host::OpenRegistryKeys(), 0);
    host::ResetAll();
    host::PokeDword(kRoot, kKey, "HardwarePasswordTriedAt", 1);
    EXPECT_EQ(SecondsUntilNextTry(), 0u);
  }
};

TEST_F(PasswordTest, IsKeptAsASaltedHash) {
  EXPECT_FALSE(CheckHardwarePassword("x-ray vision"));
  for (const char* tooShort : {"", "abc"}) EXPECT_FALSE(SetHardwarePassword(tooShort));
  EXPECT_EQ(LastErrorText(), "The password must have at least 4 characters.");
  EXPECT_FALSE(IsHardwarePasswordSet());

  ASSERT_TRUE(SetHardwarePassword("x-ray vision"));
  const std::vector<uint8_t> first = Stored();
  EXPECT_TRUE(IsHardwarePasswordSet());
  EXPECT_TRUE(CheckHardwarePassword("x-ray vision"));
  EXPECT_EQ(std::string(first.begin(), first.end()).find("ray"), std::string::npos);
  ASSERT_TRUE(SetHardwarePassword("x-ray vision"));
  EXPECT_NE(Stored(), first) << "the same salt twice";
  EXPECT_TRUE(CheckHardwarePassword("x-ray vision"));
  for (const char* wrong : {"X-ray vision", "", "x-ray visio", "x-ray vision "}) {
    EXPECT_FALSE(CheckHardwarePassword(wrong)) << wrong;
    EXPECT_GT(SecondsUntilNextTry(), 0u);
    host::AdvanceClock(60'000);
  }
  for (const auto fail :
       {host::FailPasswordKeys, host::FailRandomBytes, host::DenyRegistryWrites}) {
    fail(true);
    EXPECT_FALSE(SetHardwarePassword("other"));
    EXPECT_EQ(CheckHardwarePassword("x-ray vision"), fail != host::FailPasswordKeys);
    fail(false);
    host::AdvanceClock(60'000);
  }
}

TEST_F(PasswordTest, ADamagedOneMatchesNothingAndStaysSet) {
  ASSERT_TRUE(SetHardwarePassword("x-ray vision"));
  const std::vector<uint8_t> good = Stored();
  const int keys = host::DerivedPasswordKeys();
  const auto refused = [](const std::vector<uint8_t>& bytes, ValueType type) {
    Store(bytes, type);
    EXPECT_TRUE(IsHardwarePasswordSet());
    EXPECT_FALSE(CheckHardwarePassword("x-ray vision"));
    host::AdvanceClock(60'000);
  };
  for (const size_t size : {0u, 1u, 55u, 57u}) {
    std::vector<uint8_t> bytes = good;
    bytes.resize(size);
    refused(bytes, ValueType::kBinary);
  }
  // Another version, then numbers of rounds.
  for (const auto& [at, number] :
       {std::pair{0u, 2u}, {4u, 0u}, {4u, 1u}, {4u, 1'000'001u}, {4u, 0xFFFFFFFFu}}) {
    std::vector<uint8_t> bytes = good;
    StoreLittleEndian(bytes.data() + at, number);
    refused(bytes, ValueType::kBinary);
  }
  refused(good, ValueType::kString);
  EXPECT_EQ(host::DerivedPasswordKeys(), keys) << "hours of work for a damaged value";
  for (const size_t at : {8u, 23u, 24u, 55u}) {
    std::vector<uint8_t> bytes = good;
    bytes[at] ^= 1;
    refused(bytes, ValueType::kBinary);
  }
  Store(good);
  EXPECT_TRUE(CheckHardwarePassword("x-ray vision"));
}

TEST_F(PasswordTest, EachWrongTryLengthensTheWait) {
  for (const bool mayWrite : {true, false}) {
    ASSERT_TRUE(SetHardwarePassword("right"));
    host::DenyRegistryWrites(!mayWrite);
    for (const uint32_t seconds : {1, 2, 4, 8, 16, 32, 60, 60}) {
      EXPECT_FALSE(CheckHardwarePassword("wrong"));
      EXPECT_EQ(SecondsUntilNextTry(), seconds);
      host::AdvanceClock(1000 * seconds - 1);
      EXPECT_EQ(SecondsUntilNextTry(), 1u);
      EXPECT_FALSE(CheckHardwarePassword("right")) << "before the wait is over";
      host::AdvanceClock(1);
      EXPECT_EQ(SecondsUntilNextTry(), 0u);
    }
    EXPECT_TRUE(CheckHardwarePassword("right"));
    EXPECT_FALSE(CheckHardwarePassword("wrong"));
    EXPECT_EQ(SecondsUntilNextTry(), 1u);
    host::DenyRegistryWrites(false);
  }
  EXPECT_TRUE(SetHardwarePassword("new one"));
  EXPECT_EQ(SecondsUntilNextTry(), 0u);
}

TEST_F(PasswordTest, TheWaitOutlivesTheProgramAndAClockSetAnew) {
  PasswordTries first;
  for (int i = 0; i < 4; ++i) first.AddWrongOne();
  host::AdvanceClock(3000);
  PasswordTries second;  // as another program has it, or this one when it is started again
  EXPECT_EQ(second.SecondsLeft(), 5u);
  second.AddWrongOne();
  EXPECT_EQ(first.SecondsLeft(), 16u);

  host::SetClock(kStart - 1'000'000);
  EXPECT_EQ(second.SecondsLeft(), 16u);
  PasswordTries third;
  EXPECT_EQ(third.SecondsLeft(), 16u);
  host::AdvanceClock(16'000);
  EXPECT_EQ(third.SecondsLeft(), 0u);

  third.AddWrongOne();
  host::SetClock(kStart + 1'000'000);
  EXPECT_EQ(third.SecondsLeft(), 32u) << "the clock set forward shortened the wait";
  second.Forget();
  EXPECT_EQ(third.SecondsLeft(), 0u);

  for (const uint32_t count : {7u, 33u, 0xFFFFFFFFu}) {
    host::PokeDword(kRoot, kKey, "HardwarePasswordTries", count);
    host::PokeDword(kRoot, kKey, "HardwarePasswordTriedAt", 0xFFFFFFFF);
    EXPECT_EQ(third.SecondsLeft(), 60u);
    third.AddWrongOne();
    EXPECT_EQ(PasswordTries().SecondsLeft(), 60u);
  }
}

const char kQuestion[] = "Enter the password that protects the hardware settings.";
const std::string kWait = "The password was wrong. Seconds until the next try: ";

class PasswordDialogTest : public PasswordTest {
 protected:
  bool Run(std::function<void(PasswordDialog&)> acts) {
    view_.acts = std::move(acts);
    view_.okEnabled = true;
    return dialog_.Run(nullptr);
  }
  void Enter(const char* password, const char* repetition = "") {
    view_.password = password;
    view_.repetition = repetition;
    dialog_.OnOK();
    EXPECT_EQ(view_.password + view_.repetition, "");
  }

  test::RecordedPasswordView view_;
  PasswordDialog dialog_{view_};
};

TEST_F(PasswordDialogTest, WhoMayWriteSetsTheFirstOne) {
  EXPECT_TRUE(Run([this](PasswordDialog& dialog) {
    EXPECT_TRUE(view_.message.starts_with("The hardware settings have no password yet."));
    Enter("", "");
    EXPECT_EQ(view_.message, "The password must have at least 4 characters.");
    Enter("secret", "secreT");
    EXPECT_EQ(view_.message, "The two passwords differ. Enter the same password twice.");
    host::FailRegistryWrites(true);
    Enter("secret", "secret");
    EXPECT_EQ(view_.message, LastErrorText());
    EXPECT_EQ(LastErrorCode(), kErrorCannotWrite);
    dialog.OnTimer();
    host::FailRegistryWrites(false);
    EXPECT_FALSE(view_.ended || IsHardwarePasswordSet());
    Enter("secret", "secret");
  }));
  EXPECT_EQ(view_.asked, "new");
  EXPECT_TRUE(CheckHardwarePassword("secret"));

  host::RemoveValue(kRoot, kKey, kValue);
  host::DenyRegistryWrites(true);
  view_.asked = "";
  EXPECT_FALSE(Run([](PasswordDialog&) {}));
  EXPECT_EQ(view_.asked, "");
  ASSERT_EQ(host::ShownPrompts().size(), 1u);
  EXPECT_TRUE(host::ShownPrompts()[0].text.starts_with("The hardware settings are protected"));
}

TEST_F(PasswordDialogTest, AWrongOneHasToWait) {
  ASSERT_TRUE(SetHardwarePassword("secret"));
  EXPECT_FALSE(Run([this](PasswordDialog& dialog) {
    EXPECT_EQ(view_.message, kQuestion);
    Enter("");
    EXPECT_EQ(SecondsUntilNextTry(), 0u) << "nothing was tried";
    Enter("Secret");
    host::AdvanceClock(1000);
    dialog.OnTimer();
    EXPECT_TRUE(view_.okEnabled);
    Enter("Secret");
    EXPECT_EQ(view_.message, kWait + "2");
    EXPECT_FALSE(view_.okEnabled);
    host::AdvanceClock(1000);
    dialog.OnTimer();
    EXPECT_EQ(view_.message, kWait + "1");
    view_.password = "secret";
    dialog.OnOK();
    EXPECT_EQ(view_.password, "secret") << "taken before the wait was over";
  }));
  EXPECT_EQ(view_.asked, "known");
  EXPECT_TRUE(Run([this](PasswordDialog& dialog) {
    EXPECT_EQ(view_.message, kWait + "1") << "closing the window ended the wait";
    EXPECT_FALSE(view_.okEnabled);
    host::AdvanceClock(1000);
    dialog.OnTimer();
    EXPECT_EQ(view_.message, kQuestion);
    EXPECT_TRUE(view_.okEnabled);
    Enter("secret");
  }));
}

}  // namespace
}  // namespace zyr
