// The user interface's side: everything but the capture thread.
#include "acquire/iface/iface.h"

#include <utility>

#include "foundation/log/log.h"
#include "foundation/support/error.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "hardware/device/sensor_settings.h"
#include "platform/ascii.h"
#include "platform/own_module.h"
#include "platform/prompt.h"
#include "settings/store.h"

namespace zyr {
namespace {

// Milliseconds that a capture which was given up gets to notice it, before the next one begins.
constexpr uint32_t kLastCapturePatience = 5000;

int32_t Fail(const char* text) {
  SetErrorText(kErrorUnclassified, GetPhrase(text));
  return 0;
}

int32_t FailToCreate(const DeviceEntry& device) {
  SetError(kErrorUnclassified,
           "Unable to create ZYR device for device id: %s ( %s ). Please be sure that the %s "
           "hardware is plugged in and correctly configured and then retry the operation.",
           device.sensorId.c_str(), device.deviceId.c_str(), device.name.c_str());
  return 0;
}

int32_t FailToOpen(const DeviceEntry& device) {
  SetError(kErrorUnclassified,
           "Unable to open ZYR device: %s ( %s ). Please be sure that the %s hardware is plugged "
           "in and correctly configured and then retry the operation.",
           device.sensorId.c_str(), device.deviceId.c_str(), device.name.c_str());
  return 0;
}

int32_t FailToStart() {
  return Fail(PhraseKey("The system was unable to create the necessary callback thread."));
}

bool IsBlank(const std::string& text) {
  return text.find_first_not_of(" \t\r\n\v\f") == std::string::npos;
}

DeviceEntry SelectedDevice() {
  return {GetSelectedSensorNAME(), GetSelectedSensorID(), GetSelectedSensorHWID()};
}

std::string Number(uint32_t value) { return FormatText("%lu", Lu(value)); }

}  // namespace

IFace::IFace(DevMgr* deviceManager) : deviceManager_(deviceManager) {}

IFace::~IFace() {
  if (deviceManager_ != nullptr && !platform::ProcessIsEnding()) deviceManager_->Finalize();
}

int32_t IFace::Initialize() {
  if (deviceManager_ == nullptr)
    return Fail(PhraseKey("Unable to initialize ZYR hardware interface."));
  if (initialised_) return 1;
  if (!SensorSettings().Load()) return ShowInitializeFailure();
  DevMgr& manager = *deviceManager_;
  const Result result =
      manager.Initialize([this](const std::string& text, int32_t code, int32_t percent) {
        OnNotify(text, code, percent);
      });
  if (Failed(result)) {
    deviceManager_ = nullptr;  // before the box, during which calls may come
    manager.Finalize();
    return ShowInitializeFailure();
  }
  initialised_ = true;
  return 1;
}

int32_t IFace::ShowInitializeFailure() const {
  const std::string format = GetFormatPhrase("Unable to initialize ZYR Device manager. %s");
  platform::ShowPrompt(nullptr, FormatText(format.c_str(), LastErrorText().c_str()),
                       GetPhrase("Unable To Use ZYR Hardware"), platform::PromptKind::kError);
  return 0;
}

uint32_t IFace::GetDevices(std::vector<DeviceEntry>* devices) {
  devices->clear();
  if (deviceManager_ == nullptr) return 0;
  for (uint32_t i = 0; i < deviceManager_->GetDeviceCount(); ++i) {
    DeviceEntry entry;
    if (!deviceManager_->GetDevice(i, &entry.name, &entry.deviceId, &entry.sensorId)) continue;
    Log().WriteLine("Device %lu: '%s', '%s', '%s'", Lu(i), entry.name.c_str(),
                    entry.sensorId.c_str(), entry.deviceId.c_str());
    devices->push_back(std::move(entry));
  }
  return static_cast<uint32_t>(devices->size());
}

int32_t IFace::IsDeviceAvailable(const std::string& deviceId) {
  if (Initialize() == 0) return Fail(PhraseKey("Unable to initialize ZYR hardware interface."));
  std::vector<DeviceEntry> devices;
  if (GetDevices(&devices) == 0) {
    return Fail(PhraseKey("No ZYR devices detected. Please check your hardware connection."));
  }
  for (const DeviceEntry& device : devices) {
    if (EqualIgnoringCase(device.deviceId, deviceId)) return 1;
  }
  return 0;
}

int32_t IFace::CreateLumoDevice() {
  const DeviceEntry selected = SelectedDevice();
  return CreateLumoDevice(selected.name, selected.sensorId, selected.deviceId);
}

int32_t IFace::CreateLumoDevice(const std::string& name, const std::string& sensorId,
                                const std::string& deviceId) {
  const DeviceEntry wanted{name, sensorId, deviceId};
  ForgetCapture();
  device_.reset();
  if (IsBlank(deviceId)) {
    return Fail(PhraseKey(
        "No viable ZYR sensor was selected in the sensor options; the selected sensor system may "
        "no longer be available"));
  }
  // The thread of a capture that was given up may still be speaking to the same device. A call that
  // comes meanwhile may have begun another one.
  if (!WaitForCaptureThread(kLastCapturePatience) || device_ != nullptr) {
    return FailToCreate(wanted);
  }
  Device* device = nullptr;
  if (deviceManager_ == nullptr || Failed(deviceManager_->CreateDevice(deviceId, &device))) {
    return FailToCreate(wanted);
  }
  device_.reset(device);
  if (Failed(device_->Open())) {
    device_.reset();
    return FailToOpen(wanted);
  }
  return 1;
}

void IFace::CloseZYRHardware() {
  ForgetCapture();
  if (device_ == nullptr) return;
  const Held<Device> device = std::move(device_);
  device->Close();
}

// The device would keep a trigger that nothing waits for, and fire the next capture with it.
void IFace::ManualTrigger() {
  const auto capture = CurrentCapture();
  if (capture == nullptr) return;
  capture->triggerWanted = true;
  PassTrigger(*capture);
}

void IFace::PassTrigger(Capture& capture) {
  if (capture.waiting && capture.triggerWanted.exchange(false)) capture.device->ManualTrigger();
}

int32_t IFace::SetCaptureConfigurationPreferences() {
  const DeviceEntry selected = SelectedDevice();
  return SetCaptureConfigurationPreferences(selected.name, selected.sensorId, selected.deviceId);
}

int32_t IFace::SetCaptureConfigurationPreferences(const std::string& name, const std::string&,
                                                  const std::string&) {
  if (device_ == nullptr) return Fail(PhraseKey("No ZYR hardware was opened"));
  if (EqualIgnoringCase(name, "2000") &&
      Apply({"binned", GetBinning("ZYR2000") ? "true" : "false",
             PhraseKey("Unable to set binning state for ZYR device.")}) == 0) {
    return 0;
  }
  const std::string system = name == "LUMORAY" ? "ZYR303" : "ZYR2000";
  const Preference preferences[] = {
      {"sensitivity", Number(GetSensitivity(system)),
       PhraseKey("Unable to set detection sensitivity for ZYR device.")},
      {"threshold", Number(GetThreshold(system)),
       PhraseKey("Unable to set detection threshold for ZYR device.")},
      {"integration_time", Number(GetIntegrationTime(system)),
       PhraseKey("Unable to set integration time for ZYR device.")},
  };
  for (const Preference& preference : preferences) {
    if (Apply(preference) == 0) return 0;
  }
  return 1;
}

int32_t IFace::Apply(const Preference& preference) {
  const Result result = device_->SetProperty(preference.property, preference.value);
  return Failed(result) ? Fail(preference.failure) : 1;
}

int32_t IFace::CaptureImage(platform::Window dialog) {
  if (dialog == nullptr || IsCapturing()) return Fail(PhraseKey("An internal error occurred"));
  if (device_ == nullptr) return Fail(PhraseKey("No ZYR hardware was opened"));
  const auto capture = std::make_shared<Capture>();
  device_->AddRef();
  capture->device.reset(device_.get());
  capture->dialog = dialog;
  // In a series the last thread has nothing left but to end.
  if (!WaitForCaptureThread(kLastCapturePatience) || IsCapturing()) return FailToStart();
  dialog_ = dialog;
  LoadStamp();  // here, where the choice of the module to look in is nobody else's
  {
    const std::lock_guard lock(mutex_);
    capture_ = capture;
  }
  captureThread_ =
      platform::StartThread([this, capture] { return RunCaptureProc(*capture); }, nullptr);
  if (captureThread_ == nullptr) {
    ForgetCapture();
    return FailToStart();
  }
  captureThread_->MakeTimeCritical();
  return 1;
}

bool IFace::IsCapturing() const {
  const auto capture = CurrentCapture();
  return capture != nullptr && capture->capturing;
}

// The wait handles sent messages, from which calls may come that replace the thread.
bool IFace::WaitForCaptureThread(uint32_t milliseconds) {
  const auto thread = captureThread_;
  return thread == nullptr || thread->Join(milliseconds);
}

bool IFace::EndCapture(uint32_t milliseconds) {
  abort_requested = true;  // ends the waits that speak to no hardware
  CloseZYRHardware();      // and this those that do
  const bool isOver = WaitForCaptureThread(milliseconds);
  abort_requested = false;
  // In the queue of a window that goes, the image would be nobody's.
  platform::FreeBlock(TakeFinishBack());
  if (isOver) dialog_ = nullptr;
  return isOver;
}

platform::GlobalHandle IFace::TakeImageOver(uint32_t milliseconds) {
  const auto capture = CurrentCapture();
  if (capture == nullptr || !capture->exposed) return nullptr;
  return WaitForCaptureThread(milliseconds) ? TakeFinishBack() : nullptr;
}

platform::GlobalHandle IFace::TakeFinishBack() const {
  uintptr_t failed = 0;
  intptr_t image = 0;
  if (!platform::TakePosted(dialog_, kMessageCaptureFinished, &failed, &image)) return nullptr;
  return reinterpret_cast<platform::GlobalHandle>(image);
}

// Its thread may go on for a while, unheard.
void IFace::ForgetCapture() {
  const std::lock_guard lock(mutex_);
  if (capture_ == nullptr) return;
  capture_->dialog = nullptr;
  capture_->capturing = false;
  capture_ = nullptr;
}

std::shared_ptr<IFace::Capture> IFace::CurrentCapture() const {
  const std::lock_guard lock(mutex_);
  return capture_;
}

IFace& SensorInterface() {
  static IFace interface(&DeviceManager());
  return interface;
}

}  // namespace zyr
