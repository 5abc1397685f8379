#include "platform/usb_driver.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "platform/host/host.h"
#include "tests/platform/usb_driver_contract.h"

namespace zyr::platform {
namespace {

struct ScriptedDriver : host::FakeDriver {
  explicit ScriptedDriver(std::function<DriverAnswer()> answer) : answer(std::move(answer)) {}
  DriverAnswer Control(uint32_t, uint8_t*, size_t, uint8_t*, size_t) override { return answer(); }
  std::function<DriverAnswer()> answer;
};

void PutScripted(const std::string& path, std::function<DriverAnswer()> answer) {
  host::PutDriver(path, std::make_shared<ScriptedDriver>(std::move(answer)));
}

DriverAnswer Call(DriverHandle driver) {
  return ControlDriver(driver, kRefusedCode, nullptr, 0, nullptr, 0);
}

}  // namespace

std::string RefusingDriverPath() {
  host::ResetAll();
  PutScripted("refusing", [] { return DriverAnswer{false, 1}; });
  return "REFUSING";
}

namespace {

TEST(UsbDriverDouble, AnUnpluggedDeviceFailsEvenTheCallUnderWay) {
  host::ResetAll();
  PutScripted("a", [] {
    host::TakeDriver("A");
    return DriverAnswer{true, 0};
  });
  const DriverHandle old = OpenDriver("a");
  EXPECT_EQ(Call(old).error, host::kNotConnected);
  EXPECT_EQ(OpenDriver("a"), nullptr);
  PutScripted("a", [] { return DriverAnswer{true, 0}; });
  EXPECT_EQ(Call(old).error, host::kNotConnected);
  EXPECT_TRUE(Call(OpenDriver("a")).done);
  EXPECT_EQ(host::OpenDriverHandles(), 2u);
  CloseDriver(old);
  CloseDriver(old);
  EXPECT_EQ(host::OpenDriverHandles(), 1u);
  host::ResetAll();
  EXPECT_EQ(host::OpenDriverHandles(), 0u);
}

}  // namespace
}  // namespace zyr::platform
