// A simulated sensor from the moment it is plugged in to the finished image, through the device
// manager, on a stopped clock.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "foundation/support/error.h"
#include "foundation/support/format.h"
#include "hardware/device/sensor_settings.h"
#include "hardware/devmgr/dev_mgr.h"
#include "platform/host/host.h"
#include "tests/support/simulated_sensor.h"

namespace zyr::test {

inline SensorToPlug Sensor(simulator::Family family, simulator::Size size,
                           simulator::Generation generation) {
  SensorToPlug what;
  what.detector.family = family;
  what.detector.size = size;
  what.generation = generation;
  return what;
}

class SensorSession {
 public:
  explicit SensorSession(const SensorToPlug& what) : sensor_(Prepared(what)) {}
  ~SensorSession() {
    image_.reset();
    device_.reset();
  }

  SimulatedSensor& sensor() { return sensor_; }
  const SensorImage* image() const { return image_.get(); }

  // What the user is told of a failure; empty after a success.
  std::string BringUp() {
    platform::host::ResetPrompts();
    manager_.Initialize({});
    return TakeDevice();
  }
  // The same after a replugging, which the manager is told of.
  std::string BringUpAgain() {
    image_.reset();
    device_.reset();
    platform::host::ResetPrompts();
    sensor_.Unplug();
    sensor_.AnnounceRemoval();
    sensor_.Replug();
    sensor_.AnnounceArrival();
    return TakeDevice();
  }
  // Code and text of a failure; empty after a success.
  std::string Capture(const std::string& binned = "false") {
    device_->SetProperty("binned", binned);
    Result result = device_->CaptureImage();
    if (Failed(result)) return Failure(result);
    SensorImage* image = nullptr;
    result = device_->GetImage(OFFSET_DEFECT_HISTOGRAM_CORRECTED, &image);
    image_.reset(image);
    return Failed(result) ? Failure(result) : "";
  }

 private:
  static const SensorToPlug& Prepared(const SensorToPlug& what) {
    platform::host::ResetAll();
    platform::host::SetClock(1'700'000'000);
    SensorSettings() = {};
    PutSensorSettings("capture_timeout=\"15000\"");
    EXPECT_TRUE(SensorSettings().Load()) << LastErrorText();
    return what;
  }

  static std::string Failure(Result result) {
    return FormatText("%08lX ", Lu(static_cast<uint32_t>(result))) + LastErrorText();
  }

  std::string TakeDevice() {
    Device* device = nullptr;
    if (!Failed(manager_.CreateDevice(sensor_.instanceId(), &device))) {
      device_.reset(device);
      return {};
    }
    const auto prompts = platform::host::ShownPrompts();
    return prompts.empty() ? "no sensor, and nothing said" : prompts.back().text;
  }

  SimulatedSensor sensor_;
  DevMgr manager_;
  Held<Device> device_;
  Held<SensorImage> image_;
};

}  // namespace zyr::test
