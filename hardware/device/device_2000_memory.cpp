// The identity of the sensor, and its list of defects.
#include "foundation/support/error.h"
#include "foundation/support/phrase_lookup.h"
#include "hardware/device/correction_file.h"
#include "hardware/device/device_2000.h"
#include "hardware/device/logged_operation.h"
#include "hardware/failure.h"

namespace zyr {
namespace {

constexpr const char* kNoMemory = PhraseKey(
    "Could not read from the memory on the hardware.  Please check the hardware connection and "
    "then retry the operation.");
constexpr const char* kNoValidSensor = PhraseKey(
    "A valid sensor was not detected on the hardware.  Please check the hardware connection and "
    "then retry the operation.");
constexpr const char* kNoSensorId = PhraseKey(
    "Could not obtain the sensor ID from the hardware.  Please check the hardware connection and "
    "then retry the operation.");
constexpr const char* kSensorIdNotRead = PhraseKey(
    "Unable to read the sensor ID from the hardware.  Please check the hardware connection and "
    "then retry the operation.");
constexpr const char* kSensorNotReset = PhraseKey(
    "Unable to reset the sensor on the hardware.  Please check the hardware connection and then "
    "retry the operation.");
constexpr const char* kNoSensorSize = PhraseKey(
    "Unable to determine the size of the sensor attached to the hardware.  Please check the "
    "hardware connection and then retry the operation.");

}  // namespace

Result Device2000::GetSettingsFrom1WireMemory(bool* valid) {
  const LoggedOperation operation("Device2000::GetSettingsFrom1WireMemory()");
  *valid = false;
  uint32_t status = 0;
  Result result = CheckMemoryPresent(*port_, &status);
  if (Failed(result)) return FailWith(result, kNoMemory);
  if (status != kMemoryPresent) {
    result = CheckMemoryPresent(*port_, &status);
    if (Failed(result)) {
      // Not a failure: the sensor has no valid data, and the caller says so.
      FailWith(result, kNoMemory);
      return kOk;
    }
  }
  if (status != kMemoryPresent) {
    *valid = UseSettingsOfUser();
    return kOk;
  }
  result = CheckSensorID();
  if (Failed(result)) return FailWith(result, kNoValidSensor);
  ReadMacID(*port_, &mac_id_);
  *valid = true;
  return kOk;
}

// True if these name a sensor at all.
bool Device2000::UseSettingsOfUser() {
  SetProperty("hw_correction_data", "false");
  sensor_id_ = properties_.Get("sensor_id");
  GetSensorSize();
  // The list stays a text: only the list in a memory is for the repair of frames.
  defect_map_ = MakeTextDefects();
  LoadCorrectionFile(sensor_id_, &defect_text_);
  return !sensor_id_.empty();
}

Result Device2000::CheckSensorID() {
  Result result = port_->Echo(true);
  if (Failed(result)) return FailWith(result, kNoSensorId);
  std::string id;
  result = SIReadSensorID(&id);
  if (Failed(result)) return FailWith(result, kSensorIdNotRead);
  if (id == sensor_id_ && IsHardwareCorrection()) return kOk;
  sensor_id_ = id;
  defect_map_ = MakeTextDefects();  // another sensor's defects are not this one's
  properties_.Set("hw_correction_data", "true");
  properties_.Set("sensor_id", "");
  result = SensorReset();
  if (Failed(result)) return FailWith(result, kSensorNotReset);
  result = GetSensorSize();
  if (Failed(result)) return FailWith(result, kNoSensorSize);
  ReadDefectDataParams();
  return kOk;
}

Result Device2000::SIReadSensorID(std::string* id) {
  const Result result = ReadSensorIdentity();
  if (Failed(result)) return result;
  *id = directory_.id;
  return kOk;
}

Result Device2000::ReadSensorIdentity() {
  memory_image_.fill(0);
  if (Failed(ReadIdentityMemory(*port_, memory_image_.data(), kIdentityMemorySize, 0))) {
    return DEV_E_MEMORY;
  }
  directory_ = ParseDefectDataAddress(memory_image_);
  return kOk;
}

void Device2000::ReadDefectDataParams() {
  if (directory_.defect_text_length == 0) return;
  defect_text_ = DefectTextIn(memory_image_, directory_);
  if (Failed(defect_map_->LoadText(defect_text_, sensor_width_, sensor_height_))) {
    Log().WriteLine("   The list of defects breaks off");
  }
}

bool Device2000::MACID_HasChanged() {
  MacId mac{};
  ReadMacID(*port_, &mac);
  if (mac == mac_id_) return false;
  mac_id_ = mac;
  return true;
}

// Another sensor may have been plugged into the same controller.
void Device2000::RefreshIfSensorChanged() {
  if (!MACID_HasChanged()) return;
  bool valid = false;
  GetSettingsFrom1WireMemory(&valid);
}

}  // namespace zyr
