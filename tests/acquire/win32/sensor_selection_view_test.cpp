#include "acquire/sensor_selection/win32/sensor_selection_view.h"

#include <windows.h>
// After the system's header.
#include <commctrl.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "acquire/sensor_selection/sensor_selection.h"
#include "resources/resource.h"
#include "tests/support/win32/window_test.h"

namespace zyr {
namespace {

// Sensors without hardware.
class ListedSensors : public DevMgr {
 public:
  Result Initialize(DeviceCallback) override { return kOk; }
  Result Finalize() override { return kOk; }
  uint32_t GetDeviceCount() override { return static_cast<uint32_t>(sensors_.size()); }
  bool GetDevice(uint32_t index, std::string* name, std::string* instanceId,
                 std::string* sensorId) override {
    *name = sensors_[index].name;
    *instanceId = sensors_[index].deviceId;
    *sensorId = sensors_[index].sensorId;
    return true;
  }
  uint32_t GetChanges() const override { return changes_; }

  void Set(std::vector<DeviceEntry> sensors) {
    sensors_ = std::move(sensors);
    ++changes_;
  }

 private:
  std::vector<DeviceEntry> sensors_;
  uint32_t changes_ = 0;
};

const DeviceEntry k2000{"2000", "00010001A", "USB\\VID_082E&PID_2000\\0001"};
const DeviceEntry k303{"LUMORAY", "a sensor with a long identity, as some have",
                       "USB\\VID_082E&PID_1005\\5&2C4FB8D1&0&NOT-SHORT-EITHER"};

class SensorSelectionViewTest : public test::ModalDialogTest {
 protected:
  bool Run(Acts acts, HWND owner = nullptr) {
    return RunWith(std::move(acts), [&] { return dialog_.Run(owner); });
  }
  HWND Window() const override { return static_cast<HWND>(view_->window()); }
  void Close() override { view_->End(false); }
  HWND List() const { return Control(IDC_SENSOR_LIST); }
  int RowCount() const { return ListView_GetItemCount(List()); }
  void DoubleClick(int row) const {
    NMITEMACTIVATE click = {};
    click.hdr = {List(), IDC_SENSOR_LIST, static_cast<UINT>(NM_DBLCLK)};
    click.iItem = row;
    SendMessageA(Window(), WM_NOTIFY, IDC_SENSOR_LIST, reinterpret_cast<LPARAM>(&click));
  }
  void ExpectNoColumnIsClipped() const {
    const char* const titles[] = {"Device Name", "Sensor ID", "Device ID"};
    for (int column = 0; column < 3; ++column) {
      const int width = ListView_GetColumnWidth(List(), column);
      EXPECT_GT(width, ListView_GetStringWidth(List(), titles[column]) + 12) << titles[column];
      for (int row = 0; row < RowCount(); ++row) {
        char text[256];
        ListView_GetItemText(List(), row, column, text, sizeof text);
        EXPECT_GT(width, ListView_GetStringWidth(List(), text)) << text;
      }
    }
  }

  ListedSensors manager_;
  IFace sensors_{&manager_};
  std::unique_ptr<SensorSelectionView> view_ = MakeWin32SensorSelectionView();
  SensorSelection dialog_{sensors_, *view_};
};

TEST_F(SensorSelectionViewTest, IsUsedByKeyboardAndByMouse) {
  manager_.Set({k2000, k303});
  const HWND gone = CreateWindowA("STATIC", "", 0, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
  DestroyWindow(gone);
  const auto look = [this] {
    EXPECT_EQ(GetFocus(), List());
    EXPECT_EQ(RowCount(), 2);
    ExpectNoColumnIsClipped();
  };
  EXPECT_TRUE(Run({look, [this] { Press(VK_DOWN); }, [this] { Press(VK_RETURN); }}, gone));
  EXPECT_EQ(dialog_.selected.deviceId, k303.deviceId);

  EXPECT_FALSE(Run({[this] { EXPECT_EQ(view_->SelectedRow(), 1u); },
                    [this] { DoubleClick(-1); },  // below the rows
                    [this] { Press(VK_UP); }, [this] { Press(VK_ESCAPE); }}));
  EXPECT_EQ(dialog_.selected.deviceId, k303.deviceId);

  EXPECT_TRUE(Run({[this] { view_->SelectRow(0); }, [this] { DoubleClick(0); }}));
  EXPECT_EQ(dialog_.selected.deviceId, k2000.deviceId);

  manager_.Set({k2000});
  dialog_.auto_close = true;
  EXPECT_TRUE(Run({})) << "no act: it is not seen";
}

TEST_F(SensorSelectionViewTest, ShowsWhatIsPluggedInMeanwhile) {
  const auto plug = [this] {
    EXPECT_FALSE(IsWindowVisible(List()));
    EXPECT_EQ(GetFocus(), Control(IDOK));
    manager_.Set({k303, k2000});
    SendMessageA(Window(), WM_TIMER, 1, 0);
    EXPECT_TRUE(IsWindowVisible(List()));
    EXPECT_EQ(GetFocus(), List());
    Press(VK_DOWN);
  };
  const auto unplug = [this] {
    SetFocus(Control(IDCANCEL));
    manager_.Set({k2000});
    SendMessageA(Window(), WM_TIMER, 1, 0);
    EXPECT_EQ(GetFocus(), Control(IDCANCEL));
    EXPECT_EQ(view_->SelectedRow(), 0u);
    ExpectNoColumnIsClipped();
    SendMessageA(Control(IDOK), BM_CLICK, 0, 0);
  };
  EXPECT_TRUE(Run({plug, unplug}));
  EXPECT_EQ(dialog_.selected.deviceId, k2000.deviceId);
}

TEST_F(SensorSelectionViewTest, GetsLargerWithItsListAndNoSmaller) {
  manager_.Set({k2000, k303});
  const auto placeOf = [](HWND window) {
    RECT place;
    GetWindowRect(window, &place);
    return place;
  };
  const auto resize = [&] {
    const auto setSize = [&](int width, int height) {
      SetWindowPos(Window(), nullptr, 0, 0, width, height, SWP_NOZORDER);
    };
    const RECT first = placeOf(Window());
    const SIZE size = {first.right - first.left, first.bottom - first.top};
    setSize(size.cx, size.cy);
    const RECT list = placeOf(List());
    const RECT cancel = placeOf(Control(IDCANCEL));
    setSize(size.cx + 90, size.cy + 70);
    EXPECT_EQ(placeOf(List()).left, list.left);
    EXPECT_EQ(placeOf(List()).right, list.right + 90);
    EXPECT_EQ(placeOf(List()).bottom, list.bottom + 70);
    EXPECT_EQ(placeOf(Control(IDCANCEL)).left, cancel.left + 90);
    EXPECT_EQ(placeOf(Control(IDCANCEL)).bottom, cancel.bottom + 70);
    ExpectNoColumnIsClipped();
    setSize(50, 50);
    EXPECT_EQ(placeOf(Window()).right, size.cx);
    EXPECT_EQ(placeOf(List()).bottom, list.bottom);
  };
  EXPECT_FALSE(Run({resize, [this] { Press(VK_ESCAPE); }}));
}

TEST_F(SensorSelectionViewTest, EndsWhenItsOwnerIsDestroyedBehindIt) {
  manager_.Set({k2000, k303});
  const HWND owner = CreateWindowA("STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 200, 100, nullptr,
                                   nullptr, nullptr, nullptr);
  const auto destroy = [owner] {
    EXPECT_FALSE(IsWindowEnabled(owner));
    DestroyWindow(owner);
  };
  EXPECT_FALSE(Run({destroy}, owner));
  EXPECT_TRUE(dialog_.selected.deviceId.empty());
}

}  // namespace
}  // namespace zyr
