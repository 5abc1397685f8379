#include "hardware/device/device_303.h"

#include <iterator>

#include "foundation/support/files.h"
#include "hardware/device/logged_operation.h"
#include "hardware/device/sensor_settings.h"
#include "hardware/failure.h"
#include "platform/ascii.h"

namespace zyr {
namespace {

constexpr char kFamily[] = "LUMORAY";

constexpr PropertyValue kFixedProperties[] = {{"sensitivity", "7"},
                                              {"threshold", "160"},
                                              {"integration_time", "350"},
                                              {"device_name", "LumoRay II"},
                                              {"software_version", "1.03.03"},
                                              {"cropping_on", "true"},
                                              {"corner_fill", "false"},
                                              {"corner_color", "0"}};
constexpr PropertyValue kDefaultProperties[] = {{"capture_timeout", "600000"},
                                                {"flush_time", "2000"}};
constexpr PropertyValue kPixelPitch[] = {{"micron_resX", "33"}, {"micron_resY", "33"}};

struct SensorSize {
  uint32_t sizeCode;
  const char* letter;
  uint32_t width;  // pixels
  uint32_t height;
  uint8_t command;
};
constexpr SensorSize kSizes[] = {{2, "C", 616, 944, 0x25}, {3, "D", 798, 1070, 0x29}};

}  // namespace

DeviceZYR303::~DeviceZYR303() = default;

std::string DeviceZYR303::GetProperty(const std::string& name) {
  if (name == "sensor_id") return sensor_id_;
  if (name == "hw_correction_data") return "true";
  return Device2000::GetProperty(name);
}

Result DeviceZYR303::SetProperty(const std::string& name, const std::string& value) {
  for (const char* own : {"binned", "sensor_id", "hw_correction_data"}) {
    if (EqualIgnoringCase(name, own)) return kOk;
  }
  return Device2000::SetProperty(name, value);
}

int32_t DeviceZYR303::IsDevice2000Family() { return 0; }
int32_t DeviceZYR303::IsDeviceZYR303Family() { return 1; }

Result DeviceZYR303::Init() {
  if (initialised_303_) return kOk;
  const LoggedOperation operation("DeviceZYR303::Init()");
  Result result = port_->Reset();
  if (Failed(result)) return result;
  result = SensorReset();
  if (Failed(result)) return result;
  SensorSettings().CopyTo(kFamily, &properties_);
  SetProperties(kFixedProperties);
  SetDefaultProperties(kDefaultProperties);
  SetProperties(kPixelPitch);
  bool valid = false;
  result = GetSettingsFrom1WireMemory(&valid);
  if (Failed(result)) return result;
  properties_.Set("hw_correction_data", "true");
  full_resolution_ = 1;
  initialised_303_ = true;
  family_id_ = kFamily;
  sensor_id_ = properties_.Get("sensor_id");
  return kOk;
}

Result DeviceZYR303::SetSensorSize(uint32_t code) {
  if (code >= std::size(kSizes)) return DEV_E_BAD_SIZE;
  const SensorSize& size = kSizes[code];
  size_code_ = size.sizeCode;
  sensor_width_ = size.width;
  sensor_height_ = size.height;
  full_resolution_ = 1;
  properties_.Set("sensor_size", size.letter);
  return SendSensorSize(*port_, size.command);
}

Result DeviceZYR303::DoGetImage(int32_t type, float, SensorImage** image) {
  if (!IsImageType(type)) return DEV_E_BAD_IMAGE_TYPE;
  Held<SensorImage> result = type >= OFFSET_DEFECT_CORRECTED  ? Corrected()
                             : type == UNPROCESSED_DARK_FRAME ? dark_frame_.Clone()
                                                              : normal_frame_.Clone();
  if (result == nullptr) return kOutOfMemory;
  if (type == OFFSET_CORRECTED) result->Subtract(dark_frame_, 0);
  CropIfWanted(result.get());
  if (corner_fill_) {
    result->FillCorners(corner_width_, corner_height_, static_cast<uint16_t>(corner_color_));
  }
  return Deliver(std::move(result), image);
}

Held<SensorImage> DeviceZYR303::Corrected() const {
  Held<SensorImage> result =
      Correct303(normal_frame_, dark_frame_, calibration_map_.get(), pdi_, size_code_);
  if (result != nullptr && defect_map_ != nullptr) {
    defect_map_->Apply(result.get(), full_resolution_ == 0);
  }
  return result;
}

}  // namespace zyr
