#include "platform/host/system_info.h"

namespace zyr::platform {
namespace {

host::SystemInfo& TheInfo() {
  static host::SystemInfo info;
  return info;
}

}  // namespace

std::optional<std::string> ComputerName() { return TheInfo().computerName; }
std::optional<std::string> UserName() { return TheInfo().userName; }

AddressLookup FirstIpAddress(std::string* address) {
  if (TheInfo().lookup == AddressLookup::kFound) *address = TheInfo().address;
  return TheInfo().lookup;
}

OsVersion OperatingSystemVersion() { return TheInfo().os; }
std::optional<bool> RunsUnderWow64() { return TheInfo().wow64; }

namespace host {

void SetSystemInfo(const SystemInfo& info) { TheInfo() = info; }
void ResetSystemInfo() { TheInfo() = {}; }

}  // namespace host
}  // namespace zyr::platform
