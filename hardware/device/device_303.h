// The 303 family of sensors: other sizes, its own memory and its own corrections.
#pragma once

#include <memory>
#include <string>

#include "hardware/correction/correct_303.h"
#include "hardware/device/block_chain.h"
#include "hardware/device/device_2000.h"

namespace zyr {

class DeviceZYR303 : public Device2000 {
 public:
  using Device2000::Device2000;

  ~DeviceZYR303() override;
  // Binning, identity and the source of the corrections are the sensor's own: setting them has no
  // effect.
  std::string GetProperty(const std::string& name) override;
  Result SetProperty(const std::string& name, const std::string& value) override;
  int32_t IsDevice2000Family() override;
  int32_t IsDeviceZYR303Family() override;
  Result Init() override;
  Result SetSensorSize(uint32_t code) override;  // 0 for a C sensor, 1 for a D sensor
  Result GetSettingsFrom1WireMemory(bool* valid) override;
  Result DoGetImage(int32_t type, float parameter, SensorImage** image) override;

  const SensorDefects* calibration() const { return calibration_map_.get(); }  // null without any
  const PdiRecord& gain() const { return pdi_; }

 private:
  Result TakeIdentity(const std::string& identity);
  Result SetSizeByIdentity();
  Result LoadCorrections(std::span<uint8_t> memory);
  Result TakeBlocks(const std::vector<MemoryBlock>& blocks);
  void TakeCalibration(std::unique_ptr<SensorDefects> calibration);
  Held<SensorImage> Corrected() const;

  std::unique_ptr<SensorDefects> calibration_map_;  // null without usable calibration
  bool initialised_303_ = false;
  PdiRecord pdi_;
};

}  // namespace zyr
