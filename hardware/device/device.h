// A sensor system as the rest of the program sees it.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "hardware/correction/sensor_image.h"
#include "hardware/counted.h"
#include "hardware/result.h"
#include "hardware/usb/usb_port.h"

namespace zyr {

inline constexpr InterfaceId kDeviceInterface{
    0x75540CB0, 0x2DD1, 0x402F, {0x95, 0x91, 0x8A, 0xE6, 0xFA, 0xEA, 0xBD, 0xBF}};

// Progress of a capture: called on the thread that captures.
enum NotificationCode : int32_t {
  kNotifyFlush = 2,
  kNotifyExposure = 3,
  kNotifyDownload = 4,
  kNotifyWait = 100,
  kNotifyPoll = 999,
};
using DeviceCallback = std::function<void(const std::string& text, int32_t code, int32_t percent)>;

enum ImageType : int32_t {
  UNPROCESSED_NORMAL_FRAME = 1,
  UNPROCESSED_DARK_FRAME = 2,
  OFFSET_CORRECTED = 3,
  OFFSET_DEFECT_CORRECTED = 4,
  OFFSET_DEFECT_HISTOGRAM_CORRECTED = 5,
};

// Set by whoever wants the capture under way to end: shortens its waits, and does not end it by
// itself. One for the process; any thread.
extern std::atomic<bool> abort_requested;

// Reference counted, born with no reference. Calls block while they speak to the hardware, and one
// thread at a time may make them. Only ManualTrigger, Close and the counting of references are for
// any thread at any time: closing ends a capture as unplugging does. On failure the last
// error holds a text for the user, which may be empty. A device that was unplugged or closed stays
// a whole object whose calls fail.
class Device {
 public:
  virtual Result QueryInterface(const InterfaceId& id, void** object) = 0;
  virtual uint32_t AddRef() = 0;
  virtual uint32_t Release() = 0;
  virtual ~Device() = default;
  virtual Result Open() = 0;
  virtual void Close() = 0;
  // Arms the sensor, waits for the exposure and fetches its frames.
  virtual Result CaptureImage() = 0;
  // Makes an armed sensor fire without X-rays, at its next poll.
  virtual void ManualTrigger() = 0;
  // The image of the last capture in one of the forms of ImageType, with one reference for the
  // caller. `parameter` has no effect.
  virtual Result GetImage(int32_t type, float parameter, SensorImage** image) = 0;
  virtual Result GetImage(int32_t type, SensorImage** image) = 0;
  virtual Result GetImage(SensorImage** image) = 0;
  virtual int32_t GetDpiX() = 0;
  virtual int32_t GetDpiY() = 0;
  // Reading the identity of a sensor may ask the hardware.
  virtual std::string GetProperty(const std::string& name) = 0;
  virtual Result SetProperty(const std::string& name, const std::string& value) = 0;
  virtual int32_t IsDevice2000Family() = 0;
  virtual int32_t IsDeviceZYR303Family() = 0;
  virtual void Notify(const std::string& text, int32_t code, int32_t percent) = 0;

  // What is known without asking the hardware; for the thread that makes the calls, and for what
  // the callback does.
  const std::string& family_id() const { return family_id_; }  // empty before the first Open
  const std::string& sensor_id() const { return sensor_id_; }

 protected:
  std::string family_id_;
  std::string sensor_id_;
};

// New devices, without a reference. `path` is what the port opens; there must be a port.
Device* NewDevice2000(const std::string& path, std::unique_ptr<UsbPort> port,
                      DeviceCallback callback);
Device* NewDeviceZYR303(const std::string& path, std::unique_ptr<UsbPort> port,
                        DeviceCallback callback);

}  // namespace zyr
