// What both implementations of the driver service keep to.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/usb_driver.h"

namespace zyr::platform {

// Path of something that opens, and answers kRefusedCode with an error other than 6.
std::string RefusingDriverPath();
inline constexpr uint32_t kRefusedCode = 0x222031;

TEST(UsbDriverContract, OnlyWhatIsThereOpens) {
  for (const char* missing : {"", "\\\\?\\usb#vid_082e&pid_2000#9999#{0}", "no such device"}) {
    EXPECT_EQ(OpenDriver(missing), nullptr) << missing;
  }
  CloseDriver(nullptr);
  const DriverAnswer answer = ControlDriver(nullptr, kRefusedCode, nullptr, 0, nullptr, 0);
  EXPECT_FALSE(answer.done);
  EXPECT_EQ(answer.error, 6u);
}

TEST(UsbDriverContract, HandlesAreOneAnothersEqualsAndLiveUntilClosed) {
  const std::string path = RefusingDriverPath();
  const DriverHandle first = OpenDriver(path);
  const DriverHandle second = OpenDriver(path);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(first, second);
  CloseDriver(first);
  uint8_t bytes[4] = {};
  const DriverAnswer answer =
      ControlDriver(second, kRefusedCode, bytes, sizeof bytes, bytes, sizeof bytes);
  EXPECT_FALSE(answer.done);
  EXPECT_NE(answer.error, 6u);
  CloseDriver(second);
  EXPECT_EQ(ControlDriver(second, kRefusedCode, nullptr, 0, nullptr, 0).error, 6u);
}

}  // namespace zyr::platform
