#include "hardware/devmgr/port_choice.h"

#include <algorithm>
#include <optional>
#include <string>

#include "hardware/devmgr/device_path.h"
#include "platform/directories.h"
#include "platform/file_version.h"
#include "platform/registry.h"
#include "platform/system_info.h"

namespace zyr {
namespace {

constexpr uint16_t kPipeGeneration = 1;
constexpr uint16_t kEndpointGeneration = 3;

// File name of the driver, as its installation left it in the registry.
std::optional<std::string> DriverFile(const std::string& driverKey) {
  const auto key = platform::RegistryKey::Open(
      platform::RootKey::kLocalMachine, DriverRegistryPath(driverKey), platform::KeyAccess::kRead);
  const auto value = key ? key->Read("NTMPDriver") : std::nullopt;
  if (!value || value->type != platform::ValueType::kString) return std::nullopt;
  return std::string(value->data.begin(), std::find(value->data.begin(), value->data.end(), 0));
}

std::optional<uint16_t> DriverGeneration(platform::DeviceEnumeration& devices) {
  const auto driverKey = devices.DriverKey();
  if (!driverKey || driverKey->empty()) return std::nullopt;
  const auto file = DriverFile(*driverKey);
  if (!file) return std::nullopt;
  const auto version =
      platform::FixedFileVersion(platform::WindowsDirectory() + "\\System32\\Drivers\\" + *file);
  if (!version) return std::nullopt;
  return version->front();
}

}  // namespace

// Only the second generation has a 64-bit driver, which is the one that a 32-bit process on a
// 64-bit system meets; there the driver's file would not even be found, as System32 is another
// folder for that process.
std::unique_ptr<UsbPort> MakePortFor(platform::DeviceEnumeration& devices) {
  if (platform::RunsUnderWow64() == true) return MakeUsbPortEndpoint();
  const auto generation = DriverGeneration(devices);
  if (generation == kPipeGeneration) return MakeUsbPortPipe();
  if (generation == kEndpointGeneration) return MakeUsbPortEndpoint();
  return nullptr;
}

}  // namespace zyr
