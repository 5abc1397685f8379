// What both implementations of the bus service keep to, whatever is plugged in.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "platform/device_bus.h"
#include "platform/wait_cursor.h"

namespace zyr::platform {

TEST(DeviceBusContract, AnEnumerationComesToItsEnd) {
  uint32_t error = 0;
  const auto devices = EnumerateUsbDevices(&error);
  ASSERT_NE(devices, nullptr) << error;
  const WaitCursor busy;
  while (devices->Next()) {
    EXPECT_FALSE(devices->InstanceId().value_or("").empty());
    EXPECT_FALSE(devices->Path().value_or("").empty());
  }
  EXPECT_EQ(devices->Error(), kNoMoreItems);
  EXPECT_FALSE(devices->Next());
}

TEST(DeviceBusContract, AMonitorStartsAgainAfterItsEnd) {
  MonitorFailure failure;
  for (int round = 0; round < 3; ++round) {
    const auto monitor = MonitorUsbDevices([](const std::string&, bool) {}, &failure);
    EXPECT_NE(monitor, nullptr) << static_cast<int>(failure.step) << ' ' << failure.error;
  }
}

}  // namespace zyr::platform
