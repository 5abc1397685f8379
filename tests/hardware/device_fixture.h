// A device on a scripted sensor, with the clock stopped.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "foundation/support/error.h"
#include "hardware/device/device.h"
#include "hardware/device/sensor_settings.h"
#include "platform/host/host.h"
#include "tests/hardware/scripted_driver.h"

namespace zyr::test {

class DeviceTest : public testing::Test {
 protected:
  using Asked = std::vector<std::string>;

  void SetUp() override {
    platform::host::ResetAll();
    platform::host::SetClock(1'000'000);
    platform::host::PutDriver(kPath, sensor_);
    PutSettings("");
    abort_requested = false;
  }
  void TearDown() override {
    device_.reset();
    abort_requested = false;
    EXPECT_EQ(platform::host::OpenDriverHandles(), 0u);
    platform::host::ResetClock();
  }

  // Both families, with these attributes over all of them.
  void PutSettings(const std::string& attributes) {
    platform::host::PutFile(
        "C:\\Windows\\TWAIN_32\\ZYR\\settings.xml",
        "<a><SENSOR id='2000'/><SENSOR id='LUMORAY'/><Debug " + attributes + "/></a>");
    SensorSettings().Load();
  }

  // A sensor of the 2000 family with this identity, which begins with "CCD".
  void PutIdentity(const std::string& id, const std::string& defects = "") {
    std::fill(sensor_->memory.begin(), sensor_->memory.end(), uint8_t{0});
    sensor_->PutText(0x20, "X" + id);
    sensor_->PutText(0x40, "newd");
    sensor_->memory[0x44] = static_cast<uint8_t>(defects.size());
    sensor_->PutText(0x46, defects);
  }

  Result Open2000() { return Open(NewDevice2000); }
  Result Open303() { return Open(NewDeviceZYR303); }

  Result Open(Device* (*make)(const std::string&, std::unique_ptr<UsbPort>, DeviceCallback)) {
    Device* made = make(
        kPath, MakeUsbPortPipe(), [this](const std::string& text, int32_t code, int32_t percent) {
          notes_.push_back(std::to_string(code) + " " + std::to_string(percent) + " " + text);
          onNote_(code);
        });
    made->AddRef();
    device_.reset(made);
    return device_->Open();
  }

  // What was asked since the last call.
  Asked TakeAsked() {
    Asked taken;
    taken.swap(sensor_->asked);
    return taken;
  }

  static constexpr char kPath[] = "\\\\?\\usb#sensor";
  std::shared_ptr<ScriptedDriver> sensor_ = std::make_shared<ScriptedDriver>();
  Held<Device> device_;
  std::vector<std::string> notes_;
  std::function<void(int32_t code)> onNote_ = [](int32_t) {};
};

}  // namespace zyr::test
