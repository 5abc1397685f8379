#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "foundation/support/error.h"
#include "foundation/support/format.h"
#include "foundation/support/little_endian.h"
#include "platform/host/host.h"
#include "settings/password/hardware_password.h"
#include "settings/password/password_dialog.h"
#include "settings/password/password_tries.h"

namespace zyr {
namespace {

namespace host = platform::host;
using platform::RegistryValue;
using platform::RootKey;
using platform::ValueType;

constexpr RootKey kRoot = RootKey::kLocalMachine;
constexpr char kKey[] = "SOFTWARE\\ZYR\\TWAIN";
constexpr char kValue[] = "HardwarePassword";
constexpr int64_t kStart = 1'800'000'000;
constexpr uint32_t kWaits[] = {1, 2, 4, 8, 16, 32, 60, 60};

std::vector<uint8_t> Stored() {
  const auto value = host::PeekValue(kRoot, kKey, kValue);
  return value ? value->data : std::vector<uint8_t>();
}
void Store(std::vector<uint8_t> bytes, ValueType type = ValueType::kBinary) {
  host::PokeValue(kRoot, kKey, kValue, {type, std::move(bytes)});
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
  EXPECT_FALSE(IsHardwarePasswordSet());
  EXPECT_FALSE(CheckHardwarePassword("x-ray vision"));
  for (const char* tooShort : {"", "abc"}) EXPECT_FALSE(SetHardwarePassword(tooShort));
  EXPECT_EQ(LastErrorText(), "The password must have at least 4 characters.");
  EXPECT_FALSE(IsHardwarePasswordSet());

  ASSERT_TRUE(SetHardwarePassword("x-ray vision"));
  const std::vector<uint8_t> first = Stored();
  EXPECT_EQ(first.size(), 56u);
  EXPECT_TRUE(IsHardwarePasswordSet());
  EXPECT_TRUE(CheckHardwarePassword("x-ray vision"));
  for (const auto& value : host::DumpRegistry(kRoot)) {
    EXPECT_EQ(std::string(value.value.data.begin(), value.value.data.end()).find("ray"),
              std::string::npos);
  }
  ASSERT_TRUE(SetHardwarePassword("x-ray vision"));
  EXPECT_NE(Stored(), first) << "the same salt twice";
  EXPECT_TRUE(CheckHardwarePassword("x-ray vision"));
  for (const char* wrong : {"X-ray vision", "", "x-ray visio", "x-ray vision "}) {
    EXPECT_FALSE(CheckHardwarePassword(wrong)) << wrong;
    EXPECT_GT(SecondsUntilNextTry(), 0u);
    host::AdvanceClock(60'000);
  }
  host::FailPasswordKeys(true);
  EXPECT_FALSE(CheckHardwarePassword("x-ray vision"));
  EXPECT_FALSE(SetHardwarePassword("other"));
  host::FailPasswordKeys(false);
  host::FailRandomBytes(true);
  EXPECT_FALSE(SetHardwarePassword("other"));
  host::DenyRegistryWrites(true);
  host::FailRandomBytes(false);
  EXPECT_FALSE(SetHardwarePassword("other"));
  EXPECT_EQ(LastErrorCode(), kErrorCannotWrite);
}

TEST_F(PasswordTest, ADamagedOneMatchesNothingAndStaysSet) {
  ASSERT_TRUE(SetHardwarePassword("x-ray vision"));
  const std::vector<uint8_t> good = Stored();
  const auto with = [&good](size_t at, uint32_t number) {
    std::vector<uint8_t> bytes = good;
    StoreLittleEndian(bytes.data() + at, number);
    return bytes;
  };
  std::vector<uint8_t> longer = good;
  longer.push_back(0);
  const std::vector<uint8_t> shorter(good.begin(), good.end() - 1);
  const std::vector<std::vector<uint8_t>> kUnreadable = {{},
                                                         {1},
                                                         std::vector<uint8_t>(56),
                                                         shorter,
                                                         longer,
                                                         with(0, 2),
                                                         with(4, 0),
                                                         with(4, 1),
                                                         with(4, 1'000'001),
                                                         with(4, 0xFFFFFFFF)};
  const int keys = host::DerivedPasswordKeys();
  const auto refused = [] {
    EXPECT_TRUE(IsHardwarePasswordSet());
    EXPECT_FALSE(CheckHardwarePassword("x-ray vision"));
    host::AdvanceClock(60'000);
  };
  for (const auto& bytes : kUnreadable) {
    Store(bytes);
    refused();
  }
  Store(good, ValueType::kString);
  refused();
  EXPECT_EQ(host::DerivedPasswordKeys(), keys) << "hours of work for a damaged value";
  for (const size_t at : {8u, 23u, 24u, 55u}) {
    std::vector<uint8_t> bytes = good;
    bytes[at] ^= 1;
    Store(bytes);
    refused();
  }
  Store(good);
  EXPECT_TRUE(CheckHardwarePassword("x-ray vision"));
}

TEST_F(PasswordTest, EachWrongTryLengthensTheWait) {
  for (const bool mayWrite : {true, false}) {
    ASSERT_TRUE(SetHardwarePassword("right"));
    host::DenyRegistryWrites(!mayWrite);
    for (const uint32_t seconds : kWaits) {
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
  EXPECT_EQ(second.SecondsLeft(), 32u);
  host::SetClock(kStart + 1'000'000);
  EXPECT_EQ(third.SecondsLeft(), 32u) << "the clock set forward shortened the wait";
  second.Forget();
  EXPECT_EQ(third.SecondsLeft(), 0u);
  PasswordTries fourth;
  EXPECT_EQ(fourth.SecondsLeft(), 0u);

  for (const uint32_t count : {7u, 33u, 0xFFFFFFFFu}) {
    host::PokeDword(kRoot, kKey, "HardwarePasswordTries", count);
    host::PokeDword(kRoot, kKey, "HardwarePasswordTriedAt", 0xFFFFFFFF);
    EXPECT_EQ(fourth.SecondsLeft(), 60u);
    fourth.AddWrongOne();
    EXPECT_EQ(PasswordTries().SecondsLeft(), 60u);
  }
}

// Runs a script in place of the user.
class RecordedPasswordView : public PasswordDialogView {
 public:
  bool Run(PasswordDialog* dialog, platform::Window, bool isNew) override {
    asked = isNew ? "new" : "known";
    dialog->OnInitDialog();
    acts(*dialog);
    return std::exchange(ended, false);
  }
  platform::Window window() const override { return nullptr; }
  void End(bool accepted) override { ended = accepted; }
  void SetMessage(const std::string& text) override { message = text; }
  std::string Password() const override { return password; }
  std::string Repetition() const override { return repetition; }
  void ClearPassword() override { password = repetition = ""; }
  void SetOKEnabled(bool enabled) override { okEnabled = enabled; }

  std::function<void(PasswordDialog&)> acts;
  std::string asked, message, password, repetition;
  bool okEnabled = true, ended = false;
};

const char kQuestion[] = "Enter the password that protects the hardware settings.";

std::string Wait(int seconds) {
  return FormatText("The password was wrong. Seconds until the next try: %d", seconds);
}

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

  RecordedPasswordView view_;
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
    EXPECT_EQ(view_.message, Wait(2));
    EXPECT_FALSE(view_.okEnabled);
    host::AdvanceClock(1000);
    dialog.OnTimer();
    EXPECT_EQ(view_.message, Wait(1));
    view_.password = "secret";
    dialog.OnOK();
    EXPECT_EQ(view_.password, "secret") << "taken before the wait was over";
  }));
  EXPECT_EQ(view_.asked, "known");
  EXPECT_TRUE(Run([this](PasswordDialog& dialog) {
    EXPECT_EQ(view_.message, Wait(1)) << "closing the window ended the wait";
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
