// Finds and drives USB sensors by the system's calls alone: it knows neither the module's classes
// nor the simulator's.
//
//   usb_probe list                 a line for each: IDENTITY PATH DRIVER-VERSION DESCRIPTION
//   usb_probe watch SECONDS COUNT  a line for each that comes or goes, until COUNT of them
//   usb_probe call pipes|endpoints PATH STEP...
//     reset         write:PIPE:HEX      read:PIPE:LENGTH     rows:COUNT:LENGTH (bulk reads, and
//     their sum) code:NUMBER   an unknown control code                  wait:MILLISECONDS
//     spawn:STEP    on another thread, whose line comes when it ends
//     die           the process ends as it is
//   A step prints "ok", the bytes that came, or "error NUMBER", and the milliseconds it took behind
//   a comma.
#include <windows.h>

#include <dbt.h>
#include <setupapi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

const GUID kUsbDevice = {
    0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};

std::string DriverVersion(HDEVINFO set, SP_DEVINFO_DATA* device) {
  char key[256] = {};
  char file[MAX_PATH] = {};
  DWORD size = sizeof file;
  if (!SetupDiGetDeviceRegistryPropertyA(set, device, SPDRP_DRIVER, nullptr,
                                         reinterpret_cast<BYTE*>(key), sizeof key, nullptr))
    return "no-driver-key";
  const std::string path = std::string("System\\CurrentControlSet\\Control\\Class\\") + key;
  if (RegGetValueA(HKEY_LOCAL_MACHINE, path.c_str(), "NTMPDriver", RRF_RT_REG_SZ, nullptr, file,
                   &size) != 0)
    return "no-driver-name";
  char windows[MAX_PATH] = {};
  GetWindowsDirectoryA(windows, MAX_PATH);
  const std::string driver = std::string(windows) + "\\System32\\Drivers\\" + file;
  DWORD ignored = 0;
  Bytes block(GetFileVersionInfoSizeA(driver.c_str(), &ignored));
  void* fixed = nullptr;
  UINT fixedSize = 0;
  if (block.empty() || !GetFileVersionInfoA(driver.c_str(), 0, block.size(), block.data()) ||
      !VerQueryValueA(block.data(), "\\", &fixed, &fixedSize))
    return "no-driver-file";
  return std::to_string(HIWORD(static_cast<VS_FIXEDFILEINFO*>(fixed)->dwFileVersionMS));
}

void List() {
  const HDEVINFO set =
      SetupDiGetClassDevsA(&kUsbDevice, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE);
  SP_DEVINFO_DATA device = {};
  device.cbSize = sizeof device;
  for (DWORD i = 0; SetupDiEnumDeviceInfo(set, i, &device); ++i) {
    SP_DEVICE_INTERFACE_DATA interfaceData = {};
    interfaceData.cbSize = sizeof interfaceData;
    alignas(8) char detailBytes[1024] = {};
    auto* detail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_A*>(detailBytes);
    detail->cbSize = sizeof *detail;
    char id[256] = {};
    char description[256] = {};
    if (!SetupDiEnumDeviceInterfaces(set, &device, &kUsbDevice, 0, &interfaceData) ||
        !(interfaceData.Flags & SPINT_ACTIVE))
      continue;
    SetupDiGetDeviceInterfaceDetailA(set, &interfaceData, detail, sizeof detailBytes, nullptr,
                                     nullptr);
    SetupDiGetDeviceInstanceIdA(set, &device, id, sizeof id, nullptr);
    SetupDiGetDeviceRegistryPropertyA(set, &device, SPDRP_DEVICEDESC, nullptr,
                                      reinterpret_cast<BYTE*>(description), sizeof description,
                                      nullptr);
    std::printf("%s %s %s %s\n", id, detail->DevicePath, DriverVersion(set, &device).c_str(),
                description);
  }
  SetupDiDestroyDeviceInfoList(set);
}

int toCome = 0;

std::string NameOf(const DEV_BROADCAST_DEVICEINTERFACE_A* change) {
  // An ANSI window gets wide names on some systems.
  const char* name = change->dbcc_name;
  if (name[0] != 0 && name[1] != 0) return name;
  std::string narrow;
  for (; name[0] != 0; name += 2) narrow.push_back(name[0]);
  return narrow;
}

LRESULT CALLBACK WatchProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_DEVICECHANGE &&
      (wParam == DBT_DEVICEARRIVAL || wParam == DBT_DEVICEREMOVECOMPLETE)) {
    const auto* change = reinterpret_cast<const DEV_BROADCAST_DEVICEINTERFACE_A*>(lParam);
    std::printf("%s %s\n", wParam == DBT_DEVICEARRIVAL ? "arrival" : "removal",
                NameOf(change).c_str());
    std::fflush(stdout);
    if (--toCome == 0) PostQuitMessage(0);
  }
  if (message == WM_TIMER) PostQuitMessage(1);
  return DefWindowProcA(window, message, wParam, lParam);
}

int Watch(unsigned seconds, int count) {
  toCome = count;
  WNDCLASSA windowClass = {};
  windowClass.lpfnWndProc = WatchProc;
  windowClass.lpszClassName = "UsbProbe";
  RegisterClassA(&windowClass);
  const HWND window = CreateWindowExA(0, "UsbProbe", "", WS_POPUP, 0, 0, 0, 0, HWND_MESSAGE,
                                      nullptr, nullptr, nullptr);
  DEV_BROADCAST_DEVICEINTERFACE_A filter = {};
  filter.dbcc_size = sizeof filter;
  filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
  filter.dbcc_classguid = kUsbDevice;
  if (!RegisterDeviceNotificationA(window, &filter, DEVICE_NOTIFY_WINDOW_HANDLE)) return 2;
  SetTimer(window, 1, seconds * 1000, nullptr);
  std::puts("watching");
  std::fflush(stdout);
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) DispatchMessageA(&message);
  return static_cast<int>(message.wParam);
}

std::mutex printing;

class Caller {
 public:
  Caller(bool pipes, HANDLE device) : pipes_(pipes), device_(device) {}

  void Run(const std::string& step) {
    if (step.rfind("spawn:", 0) == 0) {
      threads_.emplace_back([this, rest = step.substr(6)] { Run(rest); });
      return;
    }
    const ULONGLONG start = GetTickCount64();
    const std::string outcome = Outcome(step);
    const std::lock_guard lock(printing);
    std::printf("%s: %s, %u ms\n", step.c_str(), outcome.c_str(),
                static_cast<unsigned>(GetTickCount64() - start));
    std::fflush(stdout);
  }
  void Join() {
    for (std::thread& thread : threads_) thread.join();
  }

 private:
  std::string Outcome(const std::string& step) {
    const std::vector<std::string> parts = Split(step);
    if (parts[0] == "wait") {
      Sleep(std::stoul(parts[1]));
      return "ok";
    }
    if (parts[0] == "die") TerminateProcess(GetCurrentProcess(), 9);
    if (parts[0] == "reset") return Word(Control(pipes_ ? 0x222031 : 0x220030, nullptr, nullptr));
    if (parts[0] == "code")
      return Word(Control(std::stoul(parts[1], nullptr, 0), nullptr, nullptr));
    if (parts[0] == "rows") return Rows(std::stoul(parts[1]), std::stoul(parts[2]));
    const unsigned pipe = std::stoul(parts[1]);
    if (parts[0] == "write") {
      Bytes bytes = FromHexadecimal(parts[2]);
      return Word(Transfer(pipe, &bytes));
    }
    Bytes bytes(std::stoul(parts[2]));
    const DWORD error = Transfer(pipe, &bytes);
    return error != 0 ? Word(error) : Hexadecimal(bytes);
  }

  std::string Rows(unsigned count, unsigned length) {
    unsigned sum = 0;
    for (unsigned row = 0; row < count; ++row) {
      Bytes bytes(length);
      const DWORD error = Transfer(3, &bytes);
      if (error != 0) return "row " + std::to_string(row) + ", " + Word(error);
      for (const unsigned char byte : bytes) sum = sum * 31 + byte;
    }
    return std::to_string(sum);
  }

  DWORD Transfer(unsigned pipe, Bytes* bytes) {
    if (pipes_) {
      Bytes input = {static_cast<unsigned char>(pipe), 0, 0, 0};
      return Control(0x22204E, &input, bytes);
    }
    static const unsigned char endpoints[] = {0x01, 0x81, 0x02, 0x86};
    Bytes record(38);
    record[0x0D] = endpoints[pipe];
    record[0x1E] = 38;
    for (int i = 0; i < 4; ++i)
      record[0x22 + i] = static_cast<unsigned char>(bytes->size() >> 8 * i);
    record.insert(record.end(), bytes->begin(), bytes->end());
    const DWORD error = Control(0x220024, &record, &record);
    std::copy(record.begin() + 38, record.end(), bytes->begin());
    return error;
  }

  DWORD Control(DWORD code, Bytes* input, Bytes* output) {
    DWORD returned = 0;
    const auto data = [](Bytes* bytes) { return bytes == nullptr ? nullptr : bytes->data(); };
    const auto size = [](Bytes* bytes) { return bytes == nullptr ? 0 : bytes->size(); };
    if (DeviceIoControl(device_, code, data(input), size(input), data(output), size(output),
                        &returned, nullptr))
      return 0;
    return GetLastError();
  }

  static std::string Word(DWORD error) {
    return error == 0 ? "ok" : "error " + std::to_string(error);
  }
  static std::vector<std::string> Split(const std::string& text) {
    std::vector<std::string> parts(1);
    for (const char c : text) {
      if (c == ':') {
        parts.emplace_back();
      } else {
        parts.back().push_back(c);
      }
    }
    return parts;
  }
  static Bytes FromHexadecimal(const std::string& text) {
    Bytes bytes;
    for (size_t i = 0; i + 1 < text.size(); i += 2)
      bytes.push_back(static_cast<unsigned char>(std::stoul(text.substr(i, 2), nullptr, 16)));
    return bytes;
  }
  // The first eight say enough.
  static std::string Hexadecimal(const Bytes& bytes) {
    std::string text;
    for (size_t i = 0; i < std::min<size_t>(bytes.size(), 8); ++i) {
      char part[4];
      std::snprintf(part, sizeof part, "%02X ", bytes[i]);
      text += part;
    }
    if (!text.empty()) text.pop_back();
    return text;
  }

  bool pipes_;
  HANDLE device_;
  std::vector<std::thread> threads_;
};

int Call(const std::string& way, const char* path, char** steps) {
  const HANDLE device =
      CreateFileA(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                  OPEN_EXISTING, 0, nullptr);
  if (device == INVALID_HANDLE_VALUE) {
    std::printf("open: error %u\n", static_cast<unsigned>(GetLastError()));
    return 1;
  }
  Caller caller(way == "pipes", device);
  for (; *steps != nullptr; ++steps) caller.Run(*steps);
  caller.Join();
  CloseHandle(device);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "list") {
    List();
    return 0;
  }
  if (command == "watch" && argc == 4) return Watch(std::atoi(argv[2]), std::atoi(argv[3]));
  if (command == "call" && argc > 4) return Call(argv[2], argv[3], argv + 4);
  std::puts("usage: usb_probe list | watch SECONDS COUNT | call pipes|endpoints PATH STEP...");
  return 2;
}
