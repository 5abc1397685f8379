#include "platform/device_bus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/host/host.h"
#include "tests/platform/device_bus_contract.h"

namespace zyr::platform {
namespace {

using ::testing::ElementsAre;

TEST(DeviceBusDouble, MonitorsHearUntilTheyEndEvenFromWithin) {
  host::ResetAll();
  std::vector<std::string> heard;
  MonitorFailure failure;
  std::unique_ptr<DeviceMonitor> monitors[2];
  for (auto& monitor : monitors) {
    const auto hear = [&](const std::string& path, bool removed) {
      heard.push_back(removed ? "-" + path : "+" + path);
      if (!removed) return;
      monitors[0].reset();
      monitors[1].reset();
    };
    monitor = MonitorUsbDevices(hear, &failure);
  }
  EXPECT_EQ(host::ActiveMonitors(), 2u);
  host::AnnounceChange("a", false);
  host::AnnounceChange("b", true);
  host::AnnounceChange("c", true);
  EXPECT_THAT(heard, ElementsAre("+a", "+a", "-b"));
  EXPECT_EQ(host::ActiveMonitors(), 0u);
}

}  // namespace
}  // namespace zyr::platform
