#include "platform/device_bus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/win32/system.h"
#include "tests/platform/device_bus_contract.h"
// After the system's headers.
#include <dbt.h>

namespace zyr::platform {
namespace {

using ::testing::ElementsAre;

// The monitor's window, which a session without a desktop keeps elsewhere.
HWND MonitorWindow() {
  const HWND window = FindWindowExA(nullptr, nullptr, "KUsbWnd", nullptr);
  return window != nullptr ? window : FindWindowExA(HWND_MESSAGE, nullptr, "KUsbWnd", nullptr);
}

// What the system sends along with a device's arrival or removal.
template <typename Character>
std::vector<uint64_t> Broadcast(const std::basic_string<Character>& path, bool terminated = true,
                                DWORD type = DBT_DEVTYP_DEVICEINTERFACE) {
  constexpr size_t kNameOffset = offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name);
  const size_t nameSize = (path.size() + (terminated ? 1 : 0)) * sizeof(Character);
  // Behind the end stands what must not be read.
  std::vector<uint64_t> block((kNameOffset + nameSize) / 8 + 2, 0x7A7A7A7A7A7A7A7A);
  DEV_BROADCAST_HDR header = {static_cast<DWORD>(kNameOffset + nameSize), type, 0};
  auto* bytes = reinterpret_cast<char*>(block.data());
  std::memcpy(bytes, &header, sizeof header);
  std::memcpy(bytes + kNameOffset, path.c_str(), nameSize);
  return block;
}

void Send(WPARAM what, const std::vector<uint64_t>& broadcast) {
  SendMessageA(MonitorWindow(), WM_DEVICECHANGE, what, reinterpret_cast<LPARAM>(broadcast.data()));
}

TEST(DeviceMonitorWin32, TakesPathsInNarrowAndWideCharacters) {
  std::vector<std::string> heard;
  MonitorFailure failure;
  std::unique_ptr<DeviceMonitor> monitor = MonitorUsbDevices(
      [&](const std::string& path, bool removed) {
        heard.push_back((removed ? "-" : "+") + path);
        if (path == "throw") throw std::runtime_error("must stay inside");
        if (path == "end") monitor.reset();
      },
      &failure);
  ASSERT_NE(monitor, nullptr);
  Send(DBT_DEVICEARRIVAL, Broadcast<char>("\\\\?\\usb#a"));
  Send(DBT_DEVICEREMOVECOMPLETE, Broadcast<wchar_t>(L"\\\\?\\USB#B"));
  Send(DBT_DEVICEARRIVAL, Broadcast<char>("unterminated", false));
  Send(DBT_DEVICEARRIVAL, Broadcast<wchar_t>(L"wide unterminated", false));
  Send(DBT_DEVICEARRIVAL, Broadcast<char>("throw"));
  // Other things than an interface's coming or going.
  Send(DBT_DEVICEQUERYREMOVE, Broadcast<char>("a"));
  Send(DBT_DEVICEARRIVAL, Broadcast<char>("a", true, DBT_DEVTYP_VOLUME));
  Send(DBT_DEVICEARRIVAL, Broadcast<char>("", false));
  SendMessageA(MonitorWindow(), WM_DEVICECHANGE, DBT_DEVICEARRIVAL, 0);
  Send(DBT_DEVICEREMOVECOMPLETE, Broadcast<char>("end"));
  EXPECT_THAT(heard, ElementsAre("+\\\\?\\usb#a", "-\\\\?\\USB#B", "+unterminated",
                                 "+wide unterminated", "+throw", "-end"));
  EXPECT_EQ(MonitorWindow(), nullptr);
}

}  // namespace
}  // namespace zyr::platform
