#include "platform/host/usb_driver.h"

#include <map>
#include <mutex>
#include <utility>

#include "platform/ascii.h"

namespace zyr::platform {
namespace {

constexpr uintptr_t kFirstHandle = 0x1000;
constexpr uintptr_t kHandleStep = 4;

struct Attached {
  std::shared_ptr<host::FakeDriver> driver;
  std::mutex turn;      // held while the driver serves a call
  bool present = true;  // guarded by the table's mutex
};

struct Table {
  std::mutex mutex;
  std::map<std::string, std::shared_ptr<Attached>> devices;  // by path in lower case
  std::map<DriverHandle, std::shared_ptr<Attached>> handles;
  uintptr_t nextHandle = kFirstHandle;
};

Table& TheTable() {
  static Table table;
  return table;
}

// With the table's mutex held.
void Detach(Table& table, const std::string& path) {
  const auto found = table.devices.find(path);
  if (found == table.devices.end()) return;
  found->second->present = false;
  table.devices.erase(found);
}

std::shared_ptr<Attached> BehindHandle(DriverHandle handle) {
  Table& table = TheTable();
  const std::lock_guard lock(table.mutex);
  const auto found = table.handles.find(handle);
  return found == table.handles.end() ? nullptr : found->second;
}

bool IsPresent(const Attached& device) {
  const std::lock_guard lock(TheTable().mutex);
  return device.present;
}

}  // namespace

DriverHandle OpenDriver(const std::string& path) {
  Table& table = TheTable();
  const std::lock_guard lock(table.mutex);
  const auto found = table.devices.find(LowerAscii(path));
  if (found == table.devices.end()) return nullptr;
  const auto handle = reinterpret_cast<DriverHandle>(table.nextHandle);
  table.nextHandle += kHandleStep;
  table.handles[handle] = found->second;
  return handle;
}

void CloseDriver(DriverHandle driver) {
  const std::lock_guard lock(TheTable().mutex);
  TheTable().handles.erase(driver);
}

DriverAnswer ControlDriver(DriverHandle driver, uint32_t code, void* input, size_t inputSize,
                           void* output, size_t outputSize) {
  const std::shared_ptr<Attached> device = BehindHandle(driver);
  if (device == nullptr) return {false, host::kInvalidHandle};
  const std::lock_guard turn(device->turn);
  if (!IsPresent(*device)) return {false, host::kNotConnected};
  const DriverAnswer answer = device->driver->Control(code, static_cast<uint8_t*>(input), inputSize,
                                                      static_cast<uint8_t*>(output), outputSize);
  return IsPresent(*device) ? answer : DriverAnswer{false, host::kNotConnected};
}

namespace host {

void PutDriver(const std::string& path, std::shared_ptr<FakeDriver> driver) {
  auto device = std::make_shared<Attached>();
  device->driver = std::move(driver);
  Table& table = TheTable();
  const std::lock_guard lock(table.mutex);
  Detach(table, LowerAscii(path));
  table.devices[LowerAscii(path)] = std::move(device);
}

void TakeDriver(const std::string& path) {
  const std::lock_guard lock(TheTable().mutex);
  Detach(TheTable(), LowerAscii(path));
}

size_t OpenDriverHandles() {
  const std::lock_guard lock(TheTable().mutex);
  return TheTable().handles.size();
}

void ResetUsbDrivers() {
  Table& table = TheTable();
  const std::lock_guard lock(table.mutex);
  for (auto& [path, device] : table.devices) device->present = false;
  table.devices.clear();
  table.handles.clear();
}

}  // namespace host
}  // namespace zyr::platform
