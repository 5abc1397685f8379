#include <cstddef>
#include <cstring>
#include <string>
#include <utility>

#include "platform/device_bus.h"
#include "platform/own_module.h"
#include "platform/win32/device_bus.h"
// After the system's headers.
#include <dbt.h>

namespace zyr::platform {
namespace {

constexpr char kWindowClass[] = "KUsbWnd";

std::string Narrow(const wchar_t* text, int length) {
  const int size = WideCharToMultiByte(CP_ACP, 0, text, length, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<size_t>(size), '\0');
  WideCharToMultiByte(CP_ACP, 0, text, length, narrow.data(), size, nullptr, nullptr);
  return narrow;
}

// Empty if the message is about something else. Some systems hand a window that registered for
// narrow characters the wide form: there the second byte of the name is 0.
std::string DevicePathOf(LPARAM broadcast) {
  constexpr size_t kNameOffset = offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name);
  const auto* header = reinterpret_cast<const DEV_BROADCAST_HDR*>(broadcast);
  if (header == nullptr || header->dbch_devicetype != DBT_DEVTYP_DEVICEINTERFACE ||
      header->dbch_size <= kNameOffset) {
    return {};
  }
  const size_t size = header->dbch_size - kNameOffset;
  const char* name = reinterpret_cast<const char*>(header) + kNameOffset;
  const bool wide = size > 1 && name[0] != 0 && name[1] == 0;
  if (!wide) return std::string(name, strnlen(name, size));
  std::wstring text(size / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), name, text.size() * sizeof(wchar_t));
  return Narrow(text.c_str(), static_cast<int>(wcsnlen(text.c_str(), text.size())));
}

LRESULT CALLBACK MonitorProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Registered for this module, and so anew after it was unloaded. A class left over is as good.
bool RegisterWindowClass() {
  WNDCLASSEXA windowClass = {};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = MonitorProcedure;
  windowClass.hInstance = OwnModule();
  windowClass.lpszClassName = kWindowClass;
  return RegisterClassExA(&windowClass) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

// A session without a desktop has no top-level windows, but windows for messages alone, and device
// changes reach those too. The error is that of the first attempt.
HWND MakeWindow(void* monitor, DWORD* error) {
  const auto make = [monitor](HWND parent) {
    return CreateWindowExA(0, kWindowClass, nullptr, WS_POPUP, 0, 0, 0, 0, parent, nullptr,
                           OwnModule(), monitor);
  };
  HWND window = make(nullptr);
  if (window != nullptr) return window;
  *error = GetLastError();
  return make(HWND_MESSAGE);
}

class Monitor : public DeviceMonitor {
 public:
  explicit Monitor(DeviceChange onChange) : onChange_(std::move(onChange)) {}
  ~Monitor() override;
  Monitor(const Monitor&) = delete;
  Monitor& operator=(const Monitor&) = delete;

  bool Start(MonitorFailure* failure);
  const DeviceChange& onChange() const { return onChange_; }

 private:
  DeviceChange onChange_;
  bool registered_ = false;
  HWND window_ = nullptr;
  HDEVNOTIFY notification_ = nullptr;
};

bool Monitor::Start(MonitorFailure* failure) {
  registered_ = RegisterWindowClass();
  if (!registered_) {
    *failure = {MonitorStep::kRegisterClass, GetLastError()};
    return false;
  }
  DWORD error = 0;
  window_ = MakeWindow(this, &error);
  if (window_ == nullptr) {
    *failure = {MonitorStep::kCreateWindow, error};
    return false;
  }
  DEV_BROADCAST_DEVICEINTERFACE_A filter = {};
  static_assert(sizeof filter == 0x20);
  filter.dbcc_size = sizeof filter;
  filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
  filter.dbcc_classguid = kUsbDeviceInterface;
  notification_ = RegisterDeviceNotificationA(window_, &filter, DEVICE_NOTIFY_WINDOW_HANDLE);
  if (notification_ == nullptr) *failure = {MonitorStep::kRegisterNotification, GetLastError()};
  return notification_ != nullptr;
}

// A window dies on its own thread only. On another one it must not lead into this module any more,
// which may be about to be unloaded, and goes when its thread looks for messages.
Monitor::~Monitor() {
  if (ProcessIsEnding()) return;
  if (notification_ != nullptr) UnregisterDeviceNotification(notification_);
  if (window_ != nullptr) {
    SetWindowLongPtrA(window_, GWLP_USERDATA, 0);
    if (!DestroyWindow(window_)) {
      SetWindowLongPtrA(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(DefWindowProcA));
      PostMessageA(window_, WM_CLOSE, 0, 0);
    }
  }
  if (registered_) UnregisterClassA(kWindowClass, OwnModule());
}

// On a copy of the function: the call may destroy the monitor. No exception may pass through the
// system's frames, and a change that could not be handled shows at the next one.
void TellMonitor(HWND window, LPARAM broadcast, bool removed) noexcept {
  const WindowVisit visit;
  const auto* monitor = reinterpret_cast<Monitor*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  if (monitor == nullptr) return;
  try {
    const std::string path = DevicePathOf(broadcast);
    const DeviceChange onChange = monitor->onChange();
    if (!path.empty()) onChange(path, removed);
  } catch (...) {
  }
}

LRESULT CALLBACK MonitorProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_NCCREATE) {
    const auto* creation = reinterpret_cast<const CREATESTRUCTA*>(lParam);
    SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
  } else if (message == WM_DEVICECHANGE &&
             (wParam == DBT_DEVICEARRIVAL || wParam == DBT_DEVICEREMOVECOMPLETE)) {
    TellMonitor(window, lParam, wParam == DBT_DEVICEREMOVECOMPLETE);
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

}  // namespace

std::unique_ptr<DeviceMonitor> MonitorUsbDevices(DeviceChange onChange, MonitorFailure* failure) {
  auto monitor = std::make_unique<Monitor>(std::move(onChange));
  if (!monitor->Start(failure)) return nullptr;
  return monitor;
}

}  // namespace zyr::platform
