#include "hardware/devmgr/dev_mgr.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "foundation/log/log.h"
#include "foundation/support/error.h"
#include "foundation/support/files.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "hardware/device/sensor_settings.h"
#include "hardware/devmgr/device_path.h"
#include "hardware/devmgr/port_choice.h"
#include "hardware/failure.h"
#include "platform/ascii.h"
#include "platform/prompt.h"
#include "platform/wait_cursor.h"

namespace zyr {
namespace {

constexpr Result kInitialised = 1;

const char* MonitorFailureText(platform::MonitorStep step) {
  switch (step) {
    case platform::MonitorStep::kRegisterClass:
      return PhraseKey(
          "The monitor class could not be registered with the operating system (OS error = "
          "%lu).");
    case platform::MonitorStep::kCreateWindow:
      return PhraseKey("The monitor class could not be created (OS error = %lu).");
    case platform::MonitorStep::kRegisterNotification:
      break;
  }
  return PhraseKey("The monitor class could not be registered (OS error = %lu).");
}

bool IsSensor(const UsbIdentity& usb) {
  return usb.vendor == kZyrVendor && (usb.product == kProduct303 || usb.product == kProduct2000);
}

// The families' names in the settings file.
std::string FamilyOf(uint16_t product) {
  return product == kProduct303 ? "LUMORAY" : FormatText("%x", product);
}

std::string Capitals(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

void ShowUnusable(const std::string& text) {
  platform::ShowPrompt(nullptr, text, GetPhrase("Unable To Use ZYR Hardware"),
                       platform::PromptKind::kError);
}

class Raised {
 public:
  explicit Raised(bool* flag) : flag_(flag) { *flag_ = true; }
  ~Raised() { *flag_ = false; }
  Raised(const Raised&) = delete;
  Raised& operator=(const Raised&) = delete;

 private:
  bool* flag_;
};

}  // namespace

Device* MakeDeviceOfProduct(uint16_t product, const std::string& path,
                            std::unique_ptr<UsbPort> port, DeviceCallback callback) {
  switch (product) {
    case kProduct2000:
      return NewDevice2000(path, std::move(port), std::move(callback));
    case kProduct303:
      return NewDeviceZYR303(path, std::move(port), std::move(callback));
    default:
      return nullptr;
  }
}

DevMgr::DevMgr(DeviceMaker makeDevice) : makeDevice_(std::move(makeDevice)) {}
DevMgr::~DevMgr() = default;

Result DevMgr::QueryInterface(const InterfaceId& id, void** object) {
  if (object == nullptr) return kUnexpected;
  *object = nullptr;
  if (id != kUnknownInterface && id != kDevMgrInterface) return kNoInterface;
  AddRef();
  *object = this;
  return kOk;
}

uint32_t DevMgr::AddRef() { return ++references_; }

uint32_t DevMgr::Release() {
  if (references_ > 0) --references_;
  return references_;
}

Result DevMgr::Initialize(DeviceCallback callback) {
  if (initialised_) return kInitialised;
  callback_ = std::move(callback);
  Result result = InstallMonitor();
  if (!Failed(result)) result = CreateDevices();
  if (Failed(result)) return result;
  initialised_ = true;
  return kInitialised;
}

Result DevMgr::Finalize() {
  monitor_.reset();
  return kOk;
}

Result DevMgr::CreateDevice(const std::string& instanceId, Device** device) {
  const auto record = FindRecord(instanceId);
  if (record == records_.end()) {
    return FailWith(
        kNoInterface,
        PhraseKey("Unable to find the interface to the selected hardware.  Please check the "
                  "connection to the hardware and then retry the operation."));
  }
  record->device->AddRef();
  *device = record->device.get();
  return kOk;
}

uint32_t DevMgr::GetDeviceCount() { return static_cast<uint32_t>(records_.size()); }

// Asking the hardware comes last, with a reference of its own: the sensor may go meanwhile, and its
// record with it.
bool DevMgr::GetDevice(uint32_t index, std::string* name, std::string* instanceId,
                       std::string* sensorId) {
  if (index >= records_.size()) return false;
  const DeviceRecord& record = records_[index];
  *name = record.name;
  *instanceId = record.instanceId;
  record.device->AddRef();
  const Held<Device> device(record.device.get());
  *sensorId = device->GetProperty("sensor_id");
  return true;
}

uint32_t DevMgr::GetChanges() const { return changes_; }

Result DevMgr::InstallMonitor() {
  if (monitor_ != nullptr) return kOk;
  platform::MonitorFailure failure;
  monitor_ = platform::MonitorUsbDevices(
      [this](const std::string& path, bool removed) { OnDevicesChanged(path, removed); }, &failure);
  if (monitor_ != nullptr) return kOk;
  SetError(kErrorUnclassified, MonitorFailureText(failure.step), Lu(failure.error));
  return ResultOfSystemError(failure.error);
}

// A sensor may come while a message box of this very scan stands: the bus is scanned once more
// then, and not from within.
Result DevMgr::CreateDevices() {
  scanWanted_ = true;
  if (scanning_) return kOk;
  const platform::WaitCursor busy;
  const Raised scanning(&scanning_);
  Result result = kOk;
  while (std::exchange(scanWanted_, false)) result = ScanBus();
  return result;
}

Result DevMgr::ScanBus() {
  goneDuringScan_.clear();
  uint32_t error = 0;
  const auto devices = platform::EnumerateUsbDevices(&error);
  if (devices == nullptr) {
    SetError(kErrorUnclassified, "No devices could be located on this computer (OS error = %lu).",
             Lu(error));
    return ResultOfSystemError(error);
  }
  while (devices->Next()) AddSensor(*devices);
  const uint32_t end = devices->Error();
  return end == platform::kNoMoreItems ? kOk : ResultOfSystemError(end);
}

// Passes over what is no sensor, is known already, or is not fully installed: a device has neither
// description nor driver until then. What cannot be used for want of a driver or of settings is a
// matter of the installation, and only the log tells of it.
void DevMgr::AddSensor(platform::DeviceEnumeration& devices) {
  const auto instanceId = devices.InstanceId();
  if (!instanceId || instanceId->empty()) return;
  const UsbIdentity usb = UsbIdentityOf(*instanceId);
  if (!IsSensor(usb) || FindRecord(*instanceId) != records_.end()) return;
  if (WentDuringScan(*instanceId)) return;
  const auto path = devices.Path();
  if (!path || !devices.Description()) return;
  auto port = MakePortFor(devices);
  if (port == nullptr) {
    Log().WriteLine("DevMgr::AddSensor()::No known driver: %s", instanceId->c_str());
    return;
  }
  auto record = TryCreateDevice(usb.product, std::move(port), *path, *instanceId);
  if (record == nullptr) {
    Log().WriteLine("DevMgr::AddSensor()::No settings: %s", instanceId->c_str());
  } else if (OpenSensor(*record)) {
    records_.push_back(std::move(*record));
    ++changes_;
  }
}

// Null for a family that the settings do not know.
std::unique_ptr<DevMgr::DeviceRecord> DevMgr::TryCreateDevice(uint16_t product,
                                                              std::unique_ptr<UsbPort> port,
                                                              const std::string& path,
                                                              const std::string& instanceId) const {
  const PropertySet* family = SensorSettings().Find(FamilyOf(product));
  if (family == nullptr) return nullptr;
  Device* device = makeDevice_(product, path, std::move(port), callback_);
  if (device == nullptr) return nullptr;
  device->AddRef();
  return std::make_unique<DeviceRecord>(
      DeviceRecord{instanceId, Capitals(family->name()), Held<Device>(device)});
}

// False, with the device closed, if it is of no use or was unplugged meanwhile.
bool DevMgr::OpenSensor(const DeviceRecord& record) const {
  if (Failed(record.device->Open())) {
    ShowUnusable(FormatText(
        GetFormatPhrase("The ZYR %s hardware could not be properly opened.\n\n%s").c_str(),
        record.name.c_str(), LastErrorText().c_str()));
  } else if (record.device->GetProperty("sensor_id").empty()) {
    ShowUnusable(FormatText(GetFormatPhrase("The ZYR %s hardware could not be properly opened.  "
                                            "Please check the hardware and then retry the "
                                            "operation.")
                                .c_str(),
                            record.name.c_str()));
  } else if (!WentDuringScan(record.instanceId)) {
    return true;
  }
  record.device->Close();
  return false;
}

// Every USB device of the machine is announced here, whoever made it.
void DevMgr::OnDevicesChanged(const std::string& path, bool removed) {
  const auto instanceId = InstanceIdOfPath(path);
  if (!instanceId) return;
  if (!removed) {
    CreateDevices();
    return;
  }
  if (scanning_) goneDuringScan_.push_back(*instanceId);
  DropDevice(*instanceId);
}

// The record goes first: closing may take its time.
void DevMgr::DropDevice(const std::string& instanceId) {
  const auto found = FindRecord(instanceId);
  if (found == records_.end()) return;
  const DeviceRecord gone = std::move(*found);
  records_.erase(found);
  ++changes_;
  gone.device->Close();
}

std::vector<DevMgr::DeviceRecord>::iterator DevMgr::FindRecord(const std::string& instanceId) {
  return std::find_if(records_.begin(), records_.end(), [&](const DeviceRecord& record) {
    return EqualIgnoringCase(record.instanceId, instanceId);
  });
}

bool DevMgr::WentDuringScan(const std::string& instanceId) const {
  return std::any_of(goneDuringScan_.begin(), goneDuringScan_.end(),
                     [&](const std::string& gone) { return EqualIgnoringCase(gone, instanceId); });
}

DevMgr& DeviceManager() {
  static DevMgr manager;
  return manager;
}

}  // namespace zyr
