// What the machine says of itself.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zyr::platform {

std::optional<std::string> ComputerName();
std::optional<std::string> UserName();

// The machine's first address in dotted form. kNoHost: the name service does not know the machine,
// or was never started in this process; kNoAddress: it knows the machine but no address.
enum class AddressLookup { kFound, kNoHost, kNoAddress };
AddressLookup FirstIpAddress(std::string* address);

struct OsVersion {
  uint32_t major = 0;
  uint32_t minor = 0;
  uint32_t build = 0;
  uint32_t platform = 0;
};
OsVersion OperatingSystemVersion();

// Whether this is a 32-bit process on a 64-bit system; null if the system does not say.
std::optional<bool> RunsUnderWow64();

}  // namespace zyr::platform
