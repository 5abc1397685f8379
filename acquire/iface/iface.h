// IFace: the one object through which the dialogs reach the sensors.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "hardware/devmgr/dev_mgr.h"
#include "imaging/image/image.h"
#include "platform/global_memory.h"
#include "platform/messages.h"
#include "platform/thread.h"

namespace zyr {

// Posted to the dialog of a capture.
// The sensor is armed and the X-ray may be fired: wParam 1.
inline constexpr uint32_t kMessageExposureReady = 1035;
// The last that is heard of a capture. wParam 0 and the handle of a packed DIB, which now is the
// window's, or 0 without memory; or wParam 1 and 0: failed or aborted.
inline constexpr uint32_t kMessageCaptureFinished = 1034;

// Notifications of a device that none sends at present.
inline constexpr int32_t kNotifyRemoved = 5;
inline constexpr int32_t kNotifyInserted = 6;

struct DeviceEntry {
  std::string name;      // of the family: "2000", "LUMORAY"
  std::string sensorId;  // of the sensor itself
  std::string deviceId;  // instance identity
};

// One capture: Initialize, CreateLumoDevice, SetCaptureConfigurationPreferences, CaptureImage; then
// the finish message; then CloseZYRHardware. All calls on the user interface's thread, which must
// handle messages while a capture runs. Those that return a flag answer 1, or 0 with a text for the
// user as the last error. Status lines go through CaptureStatus().
class IFace {
 public:
  explicit IFace(DevMgr* deviceManager);  // which must outlive this object; may be null
  ~IFace();  // ends the manager's following of changes; a capture must be over by now
  IFace(const IFace&) = delete;
  IFace& operator=(const IFace&) = delete;

  // Finds and opens the sensors, unless that is done. Tells of failures in a message box; one of
  // the manager's is final.
  int32_t Initialize();
  uint32_t GetDevices(std::vector<DeviceEntry>* devices);
  // Another number whenever a sensor has come or gone.
  uint32_t GetDeviceChanges() const {
    return deviceManager_ != nullptr ? deviceManager_->GetChanges() : 0;
  }
  int32_t IsDeviceAvailable(const std::string& deviceId);
  // Opens the sensor that the user has selected, or one given.
  int32_t CreateLumoDevice();
  int32_t CreateLumoDevice(const std::string& name, const std::string& sensorId,
                           const std::string& deviceId);
  // A capture under way fails at its next transfer, and posts nothing any more.
  void CloseZYRHardware();
  // Any time. Before the sensor is armed it counts from then on; without a capture that waits, or
  // will, for its exposure it is void.
  void ManualTrigger();
  // Hands the user's preferences to the open device.
  int32_t SetCaptureConfigurationPreferences();
  int32_t SetCaptureConfigurationPreferences(const std::string& name, const std::string& sensorId,
                                             const std::string& deviceId);
  // Starts the capture on a thread of its own.
  int32_t CaptureImage(platform::Window dialog);

  bool IsCapturing() const;
  // False if the thread of the last capture still runs after so many milliseconds.
  bool WaitForCaptureThread(uint32_t milliseconds);
  // Gives up whatever capture runs and closes the hardware; harmless if none does. To be called
  // before the dialog's window or the module goes: no thread may run in code that is unloaded.
  // A finish message that the window has not handled is taken back, with its image. Messages that
  // are sent meanwhile are handled. False if the thread still runs after so many milliseconds; it
  // can be asked again. The abort flag is clear afterwards.
  bool EndCapture(uint32_t milliseconds);
  // For before EndCapture: the image of a capture whose exposure has been made, which nobody should
  // have to make again, instead of its finish message. Waits for it as long as that; null if there
  // is none by then. The caller's, as with the message.
  platform::GlobalHandle TakeImageOver(uint32_t milliseconds);

  // What the devices call, on the capture thread.
  void OnNotify(const std::string& text, int32_t code, int32_t percent);
  // The frame as a packed DIB in which bone is bright, with the levels spread and, if the module
  // has one, the maker's mark. The flag has no effect. Null with the last error set.
  platform::GlobalHandle ProcessBitmapToImage(const SensorImage& image, int32_t familyFlag);

 private:
  // What a capture thread needs. It outlives its device's closing here.
  struct Capture {
    Held<Device> device;
    std::atomic<platform::Window> dialog = nullptr;
    std::atomic<bool> capturing = true;
    std::atomic<bool> finished = false;  // the finish message is out
    std::atomic<bool> waiting = false;   // for the exposure
    std::atomic<bool> triggerWanted = false;
    std::atomic<bool> exposed = false;
  };
  // One property of a device and its value; `failure` is said if the device refuses it.
  struct Preference {
    const char* property;
    std::string value;
    const char* failure;
  };

  int32_t ShowInitializeFailure() const;
  void ForgetCapture();
  platform::GlobalHandle TakeFinishBack() const;
  static void PassTrigger(Capture& capture);
  int32_t Apply(const Preference& preference);
  std::shared_ptr<Capture> CurrentCapture() const;

  // On the capture thread.
  uint32_t RunCaptureProc(Capture& capture);
  uint32_t CaptureProc(Capture& capture);
  uint32_t FailCapture(Capture& capture);
  void DeliverImage(Capture& capture, Held<SensorImage> image);
  static bool PostFinish(Capture& capture, uintptr_t failed, platform::GlobalHandle image);
  void OnExposure(Capture& capture, const std::string& sensor, int32_t percent);
  void OnRemoved(Capture& capture, const std::string& sensor, const std::string& text);

  void LoadStamp();

  bool initialised_ = false;
  Held<Device> device_;
  std::shared_ptr<platform::Thread> captureThread_;  // held by whoever waits for it, too
  std::unique_ptr<CKIPImage> stamp_;
  bool stampSought_ = false;
  platform::Window dialog_ = nullptr;  // of the last capture, until EndCapture
  DevMgr* deviceManager_;
  mutable std::mutex mutex_;  // guards capture_ itself, not what it points to
  std::shared_ptr<Capture> capture_;
};

// The one of the process, over DeviceManager(); constructed at first use.
IFace& SensorInterface();

}  // namespace zyr
