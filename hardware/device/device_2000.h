// The 2000 family of sensors, and what the 303 family shares with it.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "hardware/correction/sensor_defects.h"
#include "hardware/correction/sensor_image.h"
#include "hardware/device/device.h"
#include "hardware/device/identity_memory.h"
#include "hardware/device/property_set.h"
#include "hardware/device/sensor_commands.h"
#include "hardware/usb/usb_port.h"

namespace zyr {

struct PropertyValue {
  const char* name;
  const char* value;
};

class Device2000 : public Device {
 public:
  Device2000(std::string path, std::unique_ptr<UsbPort> port, DeviceCallback callback);

  Result QueryInterface(const InterfaceId& id, void** object) override;
  uint32_t AddRef() override;
  uint32_t Release() override;
  ~Device2000() override;
  Result Open() override;
  void Close() override;
  Result CaptureImage() override;
  void ManualTrigger() override;
  Result GetImage(int32_t type, float parameter, SensorImage** image) override;
  Result GetImage(int32_t type, SensorImage** image) override;
  Result GetImage(SensorImage** image) override;
  int32_t GetDpiX() override;
  int32_t GetDpiY() override;
  std::string GetProperty(const std::string& name) override;
  Result SetProperty(const std::string& name, const std::string& value) override;
  int32_t IsDevice2000Family() override;
  int32_t IsDeviceZYR303Family() override;
  void Notify(const std::string& text, int32_t code, int32_t percent) override;

  // Gives a property its value again, or `value` if it has none, so that it takes effect.
  virtual void SetDefaultProperty(const std::string& name, const std::string& value);
  // Brings the sensor up; nothing if that was done before.
  virtual Result Init();
  virtual Result SensorReset();
  // Takes the size from the last letter of the sensor's identity.
  virtual Result GetSensorSize();
  virtual Result SetSensorSize(uint32_t code);
  // Brings identity and correction data up to date, which the family's memory holds. `valid` tells
  // whether a sensor was found.
  virtual Result GetSettingsFrom1WireMemory(bool* valid);
  // `image` keeps its content on failure.
  virtual Result DoGetImage(int32_t type, float parameter, SensorImage** image);

  // What the sensor was found to be; asks no hardware.
  const PropertySet& properties() const { return properties_; }
  const MemoryDirectory& directory() const { return directory_; }
  const SensorDefects* defects() const { return defect_map_.get(); }  // null without a list

 protected:
  void SetProperties(std::span<const PropertyValue> properties);
  void SetDefaultProperties(std::span<const PropertyValue> properties);
  static bool IsImageType(int32_t type);
  // Cuts the margins off if that is wanted, and if they leave anything.
  void CropIfWanted(SensorImage* image);
  // Gives a finished image to the caller.
  Result Deliver(Held<SensorImage> image, SensorImage** out);

  std::unique_ptr<UsbPort> port_;
  std::string path_;
  DeviceCallback callback_;
  PropertySet properties_{"BASE"};
  bool initialised_ = false;
  std::unique_ptr<SensorDefects> defect_map_;
  uint32_t binned_ = 0;
  uint32_t sensitivity_ = 0;
  uint8_t threshold_ = 0;
  uint32_t integration_time_ = 0;
  int32_t capture_timeout_ = 0;  // ms; negative is for ever
  int32_t flush_time_ = 0;       // ms
  bool cropping_on_ = false;
  bool corner_fill_ = false;
  uint32_t corner_color_ = 0;
  uint32_t corner_width_ = 90;
  uint32_t corner_height_ = 90;
  uint32_t sensor_height_ = 0;
  uint32_t sensor_width_ = 0;
  uint32_t size_code_ = 0;
  uint32_t full_resolution_ = 0;
  MacId mac_id_{};
  std::atomic<bool> trigger_requested_ = false;
  SensorImage dark_frame_;
  SensorImage normal_frame_;

 private:
  struct SteppedWait {
    const char* text;
    int32_t code;
    uint32_t step;  // ms
  };

  Result WakeUp();

  Result TakeEffect(const std::string& name, const std::string& value);
  int32_t Dpi(const char* pitchProperty) const;
  bool IsHardwareCorrection() const;
  bool IsBinned() const;

  void RefreshIfSensorChanged();
  bool MACID_HasChanged();
  bool UseSettingsOfUser();
  Result CheckSensorID();
  Result SIReadSensorID(std::string* id);
  Result ReadSensorIdentity();
  void ReadDefectDataParams();

  Result Arm();
  void WaitFlush(int64_t milliseconds);
  void WaitAdditional(int64_t milliseconds);
  void WaitInSteps(const SteppedWait& wait, int64_t milliseconds);
  bool WaitForCcdStatus(size_t count, int32_t timeout);
  Result ReadImage(SensorImage* frame);
  Result AbortCapture();

  std::atomic<uint32_t> references_ = 0;
  std::array<uint8_t, kIdentityMemorySize> memory_image_{};
  std::string defect_text_;
  MemoryDirectory directory_;
};

}  // namespace zyr
