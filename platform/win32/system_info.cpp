#include "platform/system_info.h"

#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

constexpr int kNameSize = 1024;
constexpr int kHostNameSize = 128;

std::optional<std::string> NameFrom(BOOL(WINAPI* get)(char*, DWORD*)) {
  char name[kNameSize] = {};
  DWORD size = sizeof name;
  if (!get(name, &size)) return std::nullopt;
  return name;
}

}  // namespace

std::optional<std::string> ComputerName() { return NameFrom(GetComputerNameA); }
std::optional<std::string> UserName() { return NameFrom(GetUserNameA); }

// The socket library is the application's to start. Where it did not, the name stays empty and the
// lookup fails.
AddressLookup FirstIpAddress(std::string* address) {
  char name[kHostNameSize] = {};
  gethostname(name, sizeof name - 1);
  const hostent* host = gethostbyname(name);
  if (host == nullptr) return AddressLookup::kNoHost;
  if (host->h_addr_list[0] == nullptr) return AddressLookup::kNoAddress;
  *address = inet_ntoa(*reinterpret_cast<const in_addr*>(host->h_addr_list[0]));
  return AddressLookup::kFound;
}

OsVersion OperatingSystemVersion() {
  OSVERSIONINFOA version = {};
  version.dwOSVersionInfoSize = sizeof version;
  if (!GetVersionExA(&version)) return {};
  return {version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber,
          version.dwPlatformId};
}

std::optional<bool> RunsUnderWow64() {
  BOOL answer = FALSE;
  if (!IsWow64Process(GetCurrentProcess(), &answer)) return std::nullopt;
  return answer != FALSE;
}

}  // namespace zyr::platform
