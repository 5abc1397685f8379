// The sensors that are plugged in.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hardware/counted.h"
#include "hardware/device/device.h"
#include "hardware/result.h"
#include "platform/device_bus.h"

namespace zyr {

inline constexpr InterfaceId kDevMgrInterface{
    0x0CB8DEBB, 0x412E, 0x451A, {0xA8, 0xC9, 0x57, 0xB8, 0x3F, 0xFE, 0x2B, 0x8B}};

inline constexpr uint16_t kZyrVendor = 0x082E;
inline constexpr uint16_t kProduct303 = 0x1005;
inline constexpr uint16_t kProduct2000 = 0x2000;

// Makes the device, without a reference, of a product; null if there is none.
using DeviceMaker = std::function<Device*(uint16_t product, const std::string& path,
                                          std::unique_ptr<UsbPort> port, DeviceCallback callback)>;
Device* MakeDeviceOfProduct(uint16_t product, const std::string& path,
                            std::unique_ptr<UsbPort> port, DeviceCallback callback);

// Keeps one open device for each sensor on the USB bus and follows their coming and going, as long
// as its thread, the one that initialises it, handles window messages. All calls on that thread.
// Opening a sensor takes seconds. One that cannot be opened is told to the user in a message box,
// during which window messages are handled: callers must bear calls that come from there.
//
// References are counted for form's sake: the object is not destroyed with the last one.
class DevMgr {
 public:
  explicit DevMgr(DeviceMaker makeDevice = MakeDeviceOfProduct);
  DevMgr(const DevMgr&) = delete;
  DevMgr& operator=(const DevMgr&) = delete;

  virtual Result QueryInterface(const InterfaceId& id, void** object);
  virtual uint32_t AddRef();
  virtual uint32_t Release();
  // Finds and opens the sensors, whose families SensorSettings must know by now. 1, at once if it
  // was done before; on failure it can be tried again. The last error is set then, unless the list
  // of devices broke off. `callback` goes to every device.
  virtual Result Initialize(DeviceCallback callback);
  // Ends the following of changes; devices stay.
  virtual Result Finalize();
  // The open device of an instance identity, in any letters' case, with one reference for the
  // caller; it outlives the sensor's removal as a closed device. On failure the last error is set
  // and `device` left alone.
  virtual Result CreateDevice(const std::string& instanceId, Device** device);
  virtual uint32_t GetDeviceCount();
  // Name of the family ("2000", "LUMORAY"), instance identity and sensor identity of the index-th
  // sensor in the order of discovery. May ask the hardware, so it is not for while that sensor
  // captures. False, with the outputs left alone, if there are not so many.
  virtual bool GetDevice(uint32_t index, std::string* name, std::string* instanceId,
                         std::string* sensorId);
  // How often the list of sensors has changed so far.
  virtual uint32_t GetChanges() const;

  // Releases the devices. Waits for nothing, so it may run while the module is being unloaded.
  virtual ~DevMgr();

 private:
  struct DeviceRecord {
    std::string instanceId;
    std::string name;
    Held<Device> device;
  };

  Result InstallMonitor();
  Result CreateDevices();
  Result ScanBus();
  void AddSensor(platform::DeviceEnumeration& devices);
  std::unique_ptr<DeviceRecord> TryCreateDevice(uint16_t product, std::unique_ptr<UsbPort> port,
                                                const std::string& path,
                                                const std::string& instanceId) const;
  bool OpenSensor(const DeviceRecord& record) const;
  void OnDevicesChanged(const std::string& path, bool removed);
  void DropDevice(const std::string& instanceId);
  std::vector<DeviceRecord>::iterator FindRecord(const std::string& instanceId);
  bool WentDuringScan(const std::string& instanceId) const;

  DeviceMaker makeDevice_;
  uint32_t references_ = 0;
  std::vector<DeviceRecord> records_;
  uint32_t changes_ = 0;  // of records_
  bool initialised_ = false;
  DeviceCallback callback_;
  bool scanning_ = false;
  bool scanWanted_ = false;
  std::vector<std::string> goneDuringScan_;  // instance identities
  std::unique_ptr<platform::DeviceMonitor> monitor_;
};

// The one manager of the process, constructed at first use.
DevMgr& DeviceManager();

}  // namespace zyr
