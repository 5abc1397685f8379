#include "platform/usb_driver.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "platform/host/host.h"
#include "tests/platform/usb_driver_contract.h"

namespace zyr::platform {
namespace {

class ScriptedDriver : public host::FakeDriver {
 public:
  using Script = std::function<DriverAnswer(uint8_t* output, size_t size)>;
  explicit ScriptedDriver(Script script) : script_(std::move(script)) {}

  DriverAnswer Control(uint32_t, uint8_t*, size_t, uint8_t* output, size_t size) override {
    return script_(output, size);
  }

 private:
  Script script_;
};

void Put(const std::string& path, ScriptedDriver::Script script) {
  host::PutDriver(path, std::make_shared<ScriptedDriver>(std::move(script)));
}

DriverAnswer Call(DriverHandle driver) {
  uint8_t output[2] = {};
  return ControlDriver(driver, kRefusedCode, nullptr, 0, output, sizeof output);
}

}  // namespace

std::string RefusingDriverPath() {
  host::ResetAll();
  Put("refusing", [](uint8_t*, size_t) { return DriverAnswer{false, 1}; });
  return "REFUSING";
}

namespace {

TEST(UsbDriverDouble, AnUnpluggedDeviceFailsEvenTheCallUnderWay) {
  host::ResetAll();
  bool unplug = false;
  Put("a", [&](uint8_t* output, size_t size) {
    EXPECT_EQ(size, 2u);
    output[1] = 7;
    if (unplug) host::TakeDriver("A");
    return DriverAnswer{true, 0};
  });
  const DriverHandle old = OpenDriver("a");
  EXPECT_TRUE(Call(old).done);
  unplug = true;
  const DriverAnswer answer = Call(old);
  EXPECT_FALSE(answer.done);
  EXPECT_EQ(answer.error, host::kNotConnected);
  EXPECT_EQ(OpenDriver("a"), nullptr);
  Put("a", [](uint8_t*, size_t) { return DriverAnswer{true, 0}; });
  EXPECT_EQ(Call(old).error, host::kNotConnected);
  const DriverHandle fresh = OpenDriver("a");
  EXPECT_TRUE(Call(fresh).done);
  EXPECT_EQ(host::OpenDriverHandles(), 2u);
  CloseDriver(old);
  CloseDriver(old);
  EXPECT_EQ(host::OpenDriverHandles(), 1u);
  host::ResetAll();
  EXPECT_EQ(host::OpenDriverHandles(), 0u);
  CloseDriver(fresh);
}

}  // namespace
}  // namespace zyr::platform
