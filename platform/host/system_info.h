// Test control of the system info double.
#pragma once

#include <optional>
#include <string>

#include "platform/system_info.h"

namespace zyr::platform::host {

struct SystemInfo {
  std::optional<std::string> computerName = "SURGERY1";
  std::optional<std::string> userName = "dentist";
  AddressLookup lookup = AddressLookup::kFound;
  std::string address = "192.168.1.20";
  OsVersion os = {6, 1, 7601, 2};
  std::optional<bool> wow64 = false;
};
void SetSystemInfo(const SystemInfo& info);

void ResetSystemInfo();

}  // namespace zyr::platform::host
