#include "simulator/tool/win32/installation.h"

#include <windows.h>

#include <cfgmgr32.h>
#include <newdev.h>
#include <setupapi.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <vector>

#include "simulator/tool/win32/bus_port.h"

namespace zyr::simulator {
namespace {

constexpr char kHardwareId[] = "root\\ZyrSimBus";
constexpr char kBusInf[] = "zyrsimbus.inf";
constexpr char kSensorInf[] = "zyrsensor.inf";
constexpr char kBusFile[] = "zyrsimbus.sys";
constexpr char kServiceName[] = "ZyrSimBus";
// What the sensors' INF tells programs to look at; one of several versions of it is copied there.
constexpr char kVersionFile[] = "zyrusb.sys";
// Stands in both INFs and nobody else's.
constexpr char kInfMark[] = "ZyrSimulatorFiles";
constexpr char kSensorIds[] = "USB\\VID_082E&PID_";

const GUID kSystemClass = {
    0x4D36E97D, 0xE325, 0x11CE, {0xBF, 0xC1, 0x08, 0x00, 0x2B, 0xE1, 0x03, 0x18}};

std::string Failure(const std::string& what, DWORD error) {
  return what + " (system error " + std::to_string(error) + ").";
}

std::string SourceFolder() {
  char path[MAX_PATH] = {};
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  std::string folder = path;
  return folder.substr(0, folder.find_last_of("\\/") + 1) + "simulator\\";
}

std::string WindowsFolder(const char* below) {
  char path[MAX_PATH] = {};
  GetWindowsDirectoryA(path, MAX_PATH);
  return std::string(path) + "\\" + below;
}

std::string DriverPath(const char* file) { return WindowsFolder("System32\\drivers\\") + file; }

// A list of devices, given back to the system at the end.
class DeviceSet {
 public:
  explicit DeviceSet(HDEVINFO set) : set_(set) {}
  ~DeviceSet() {
    if (IsValid()) SetupDiDestroyDeviceInfoList(set_);
  }
  DeviceSet(const DeviceSet&) = delete;
  DeviceSet& operator=(const DeviceSet&) = delete;

  bool IsValid() const { return set_ != INVALID_HANDLE_VALUE; }
  HDEVINFO get() const { return set_; }

 private:
  HDEVINFO set_;
};

SP_DEVINFO_DATA EmptyDevice() {
  SP_DEVINFO_DATA device = {};
  device.cbSize = sizeof device;
  return device;
}

bool StartsWith(const char* text, const char* head) {
  return _strnicmp(text, head, std::strlen(head)) == 0;
}

// The devices of the set for which `matches` holds, plugged in or not, are taken out of the system.
template <typename Matches>
void RemoveDevices(HDEVINFO set, Matches matches) {
  SP_DEVINFO_DATA device = EmptyDevice();
  std::vector<SP_DEVINFO_DATA> found;
  for (DWORD i = 0; SetupDiEnumDeviceInfo(set, i, &device); ++i) {
    if (matches(&device)) found.push_back(device);
  }
  for (SP_DEVINFO_DATA& each : found) SetupDiCallClassInstaller(DIF_REMOVE, set, &each);
}

bool HasBusId(HDEVINFO set, SP_DEVINFO_DATA* device) {
  char id[256] = {};
  return SetupDiGetDeviceRegistryPropertyA(set, device, SPDRP_HARDWAREID, nullptr,
                                           reinterpret_cast<BYTE*>(id), sizeof id - 2, nullptr) &&
         _stricmp(id, kHardwareId) == 0;
}

bool IsSensor(HDEVINFO set, SP_DEVINFO_DATA* device) {
  char id[MAX_DEVICE_ID_LEN] = {};
  return SetupDiGetDeviceInstanceIdA(set, device, id, sizeof id, nullptr) &&
         StartsWith(id, kSensorIds);
}

bool IsBusRegistered() {
  const DeviceSet set(SetupDiGetClassDevsA(&kSystemClass, nullptr, nullptr, 0));
  if (!set.IsValid()) return false;
  SP_DEVINFO_DATA device = EmptyDevice();
  for (DWORD i = 0; SetupDiEnumDeviceInfo(set.get(), i, &device); ++i) {
    if (HasBusId(set.get(), &device)) return true;
  }
  return false;
}

std::string CopyVersionFile(uint32_t version) {
  const std::string from = SourceFolder() + "zyrusb" + std::to_string(version) + ".sys";
  const std::string to = DriverPath(kVersionFile);
  if (CopyFileA(from.c_str(), to.c_str(), FALSE)) return {};
  return Failure(from + " cannot be copied to " + to, GetLastError());
}

std::string RegisterBus() {
  const DeviceSet set(SetupDiCreateDeviceInfoList(&kSystemClass, nullptr));
  if (!set.IsValid()) return Failure("No device can be made", GetLastError());
  // Two zeros end the list of ids.
  const std::string ids(kHardwareId, sizeof kHardwareId);
  const std::string list = ids + '\0';
  SP_DEVINFO_DATA device = EmptyDevice();
  if (!SetupDiCreateDeviceInfoA(set.get(), "root\\ZyrSimBus\\0", &kSystemClass, nullptr, nullptr, 0,
                                &device) ||
      !SetupDiSetDeviceRegistryPropertyA(set.get(), &device, SPDRP_HARDWAREID,
                                         reinterpret_cast<const BYTE*>(list.data()),
                                         static_cast<DWORD>(list.size())) ||
      !SetupDiCallClassInstaller(DIF_REGISTERDEVICE, set.get(), &device))
    return Failure("The bus cannot be registered", GetLastError());
  return {};
}

std::string InstallDrivers() {
  const std::string folder = SourceFolder();
  const std::string sensorInf = folder + kSensorInf;
  if (!SetupCopyOEMInfA(sensorInf.c_str(), folder.c_str(), SPOST_PATH, 0, nullptr, 0, nullptr,
                        nullptr))
    return Failure(sensorInf + " cannot be installed", GetLastError());
  const std::string why = RegisterBus();
  if (!why.empty()) return why;
  const std::string busInf = folder + kBusInf;
  BOOL restart = FALSE;
  if (!UpdateDriverForPlugAndPlayDevicesA(nullptr, kHardwareId, busInf.c_str(), INSTALLFLAG_FORCE,
                                          &restart))
    return Failure(busInf + " cannot be installed", GetLastError());
  return {};
}

template <typename Condition>
bool WaitUntil(Condition condition) {
  constexpr int kSteps = 1500;  // of 10 ms
  for (int step = 0; step < kSteps; ++step) {
    if (condition()) return true;
    Sleep(10);
  }
  return false;
}

bool BusRuns() { return OpenBusPort() != nullptr; }

void RemoveService() {
  const SC_HANDLE manager = OpenSCManagerA(nullptr, nullptr, SC_MANAGER_CONNECT);
  if (manager == nullptr) return;
  if (const SC_HANDLE service = OpenServiceA(manager, kServiceName, SERVICE_STOP | DELETE)) {
    SERVICE_STATUS status = {};
    ControlService(service, SERVICE_CONTROL_STOP, &status);
    DeleteService(service);
    CloseServiceHandle(service);
  }
  CloseServiceHandle(manager);
}

// Windows keeps its copies of INFs under names of its own.
void RemoveInfs() {
  const std::string folder = WindowsFolder("inf\\");
  WIN32_FIND_DATAA found = {};
  const HANDLE search = FindFirstFileA((folder + "oem*.inf").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  std::vector<std::string> ours;
  do {
    std::ifstream file(folder + found.cFileName, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    if (text.find(kInfMark) != std::string::npos) ours.push_back(found.cFileName);
  } while (FindNextFileA(search, &found));
  FindClose(search);
  for (const std::string& name : ours) {
    SetupUninstallOEMInfA(name.c_str(), SUOI_FORCEDELETE, nullptr);
  }
}

}  // namespace

std::string InstallBus(uint32_t driverVersion) {
  std::string why = CopyVersionFile(driverVersion);
  if (!why.empty()) return why;
  if (!IsBusRegistered()) why = InstallDrivers();
  if (!why.empty()) return why;
  if (!WaitUntil(BusRuns)) return "The bus does not start.";
  return {};
}

std::string RemoveBus() {
  {
    const DeviceSet set(SetupDiGetClassDevsA(&kSystemClass, nullptr, nullptr, 0));
    if (set.IsValid())
      RemoveDevices(set.get(),
                    [&](SP_DEVINFO_DATA* device) { return HasBusId(set.get(), device); });
  }
  const bool gone = WaitUntil([] { return !BusRuns(); });
  RemoveService();
  {
    const DeviceSet set(SetupDiGetClassDevsA(nullptr, "USB", nullptr, DIGCF_ALLCLASSES));
    if (set.IsValid())
      RemoveDevices(set.get(),
                    [&](SP_DEVINFO_DATA* device) { return IsSensor(set.get(), device); });
  }
  RemoveInfs();
  DeleteFileA(DriverPath(kBusFile).c_str());
  DeleteFileA(DriverPath(kVersionFile).c_str());
  return gone ? "" : "The bus goes on running until this Windows is restarted.";
}

uint32_t InstalledVersion() {
  const std::string path = DriverPath(kVersionFile);
  DWORD ignored = 0;
  std::vector<uint8_t> block(GetFileVersionInfoSizeA(path.c_str(), &ignored));
  void* fixed = nullptr;
  UINT size = 0;
  if (block.empty() ||
      !GetFileVersionInfoA(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
      !VerQueryValueA(block.data(), "\\", &fixed, &size) || size < sizeof(VS_FIXEDFILEINFO))
    return 0;
  return HIWORD(static_cast<const VS_FIXEDFILEINFO*>(fixed)->dwFileVersionMS);
}

}  // namespace zyr::simulator
