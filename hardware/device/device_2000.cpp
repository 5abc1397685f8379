// The object itself, and how the sensor comes up.
#include "hardware/device/device_2000.h"

#include <utility>

#include "foundation/support/error.h"
#include "foundation/support/phrase_lookup.h"
#include "hardware/device/logged_operation.h"
#include "hardware/device/sensor_settings.h"
#include "hardware/failure.h"

namespace zyr {
namespace {

constexpr char kFamily[] = "2000";

constexpr const char* kNotReset = PhraseKey(
    "The usb connection to the hardware could not be reset.  Please check the hardware "
    "connection and then retry the operation.");
constexpr const char* kSensorNotReset = PhraseKey(
    "The sensor could not be reset.  Please check the hardware connection and then retry the "
    "operation.");
constexpr const char* kNoPower = PhraseKey(
    "The power command could not be sent to the hardware.  Please check the hardware connection "
    "and then retry the operation.");

constexpr uint8_t kPowerOn = 1;

// Those without a sensible empty value refuse it, and stay away until the sensor comes up.
constexpr const char* kSeededProperties[] = {
    "id",           "sensitivity",      "threshold",   "integration_time",
    "device_name",  "software_version", "cropping_on", "corner_fill",
    "corner_color", "capture_timeout",  "flush_time",  "binned"};

constexpr PropertyValue kFixedProperties[] = {{"sensitivity", "4"},
                                              {"threshold", "8"},
                                              {"integration_time", "300"},
                                              {"device_name", "USB-2000"},
                                              {"software_version", "1.03.03"},
                                              {"cropping_on", "true"},
                                              {"corner_fill", "true"},
                                              {"corner_color", "0"}};
constexpr PropertyValue kDefaultProperties[] = {{"capture_timeout", "600000"},
                                                {"flush_time", "5000"}};
constexpr PropertyValue kStartProperties[] = {{"binned", "false"}, {"hw_correction_data", "false"}};

}  // namespace

Device2000::Device2000(std::string path, std::unique_ptr<UsbPort> port, DeviceCallback callback)
    : port_(std::move(port)), path_(std::move(path)), callback_(std::move(callback)) {
  for (const char* name : kSeededProperties) Device2000::SetProperty(name, "");
}

Device2000::~Device2000() = default;

Result Device2000::QueryInterface(const InterfaceId& id, void** object) {
  if (object == nullptr) return kUnexpected;
  if (id != kUnknownInterface && id != kDeviceInterface) {
    *object = nullptr;
    return kNoInterface;
  }
  AddRef();
  *object = static_cast<Device*>(this);
  return kOk;
}

uint32_t Device2000::AddRef() { return ++references_; }

uint32_t Device2000::Release() {
  uint32_t count = references_;
  do {
    if (count == 0) return 0;
  } while (!references_.compare_exchange_weak(count, count - 1));
  if (count == 1) delete this;
  return count - 1;
}

Result Device2000::Open() {
  const LoggedOperation operation("Device2000::Open()");
  // Some failures have no text of their own, and an old one would mislead.
  SetErrorText(kErrorUnclassified, {});
  const Result opened = port_->Open(path_);
  return Failed(opened) ? opened : Init();
}

void Device2000::Close() { port_->Close(); }

int32_t Device2000::IsDevice2000Family() { return 1; }
int32_t Device2000::IsDeviceZYR303Family() { return 0; }

void Device2000::Notify(const std::string& text, int32_t code, int32_t percent) {
  if (callback_) callback_(text, code, percent);
}

Result Device2000::Init() {
  if (initialised_) return kOk;
  const LoggedOperation operation("Device2000::Init()");
  const Result awake = WakeUp();
  if (Failed(awake)) return awake;
  SensorSettings().CopyTo(kFamily, &properties_);
  SetProperties(kFixedProperties);
  SetDefaultProperties(kDefaultProperties);
  SetProperties(kStartProperties);
  properties_.Set("sensor_id", "");
  full_resolution_ = 1;
  bool valid = false;
  const Result read = GetSettingsFrom1WireMemory(&valid);
  if (Failed(read)) return read;
  initialised_ = true;
  family_id_ = kFamily;
  return kOk;
}

Result Device2000::WakeUp() {
  Result result = port_->Reset();
  if (Failed(result)) return FailWith(result, kNotReset);
  result = SensorReset();
  if (Failed(result)) return FailWith(result, kSensorNotReset);
  result = port_->Echo(false);
  if (Failed(result)) return result;
  defect_map_ = MakeTextDefects();
  result = port_->PowerCommand(kPowerOn);
  return Failed(result) ? FailWith(result, kNoPower) : kOk;
}

}  // namespace zyr
