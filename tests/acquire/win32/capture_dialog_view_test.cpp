#include "acquire/capture_dialog/win32/capture_dialog_view.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "acquire/capture_dialog/capture_dialog.h"
#include "platform/files.h"
#include "resources/resource.h"
#include "settings/store.h"

namespace zyr {
namespace {

constexpr DWORD kPatience = 10'000;  // milliseconds

class CaptureDialogViewTest : public testing::Test, public CaptureDialogOwner {
 protected:
  void SetUp() override {
    char temp[MAX_PATH];
    GetTempPathA(sizeof temp, temp);
    folder_ = std::string(temp) + "zyr-view-" + std::to_string(GetCurrentProcessId());
    SetScanToPath(folder_);
    SetCheckForConflicts(false);
    SetReturnImmediatelyIfAvailable(false);
  }
  void TearDown() override {
    dialog_.reset();
    images_.DeleteAll();
    RemoveDirectoryA(folder_.c_str());
    SetScanToPath(userFolder_);
    SetCheckForConflicts(userChecks_);
    SetReturnImmediatelyIfAvailable(userReturns_);
  }

  void NotifyXferReady() override { Notified(&xferReadies_); }
  void NotifyCloseDSReq() override { Notified(&closeRequests_); }
  void Notified(int* count) {
    ++*count;
    if (onNotify_) onNotify_();
  }

  bool Open(HWND parent = nullptr) {
    dialog_ = std::make_shared<CaptureDialog>(*this, images_, Win32CaptureDialogViews());
    return dialog_->Create(parent);
  }
  void PutImage() {
    CachedImage image;
    image.width = image.height = 4;
    image.bitsPerPixel = 8;
    image.fileName = GetScanToPath() + "\\CACHEDRAW.RAW";
    image.SetPixelData(std::vector<uint8_t>(16));
    ASSERT_TRUE(image.Save());
  }
  HWND Window() const { return static_cast<HWND>(dialog_->window()); }
  HWND Control(int id) const { return GetDlgItem(Window(), id); }
  std::string TextOf(int id) const {
    char text[4096] = {};
    GetWindowTextA(Control(id), text, sizeof text);
    return text;
  }
  bool WaitFor(const std::function<bool()>& condition) const {
    const DWORD start = GetTickCount();
    while (!condition() && GetTickCount() - start < kPatience) {
      MSG message;
      while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&message);
      Sleep(1);
    }
    return condition();
  }

  // What the machine's user has chosen.
  const std::string userFolder_ = GetScanToPath();
  const bool userChecks_ = GetCheckForConflicts();
  const bool userReturns_ = GetReturnImmediatelyIfAvailable();

  std::string folder_;
  ImageCache images_;
  std::shared_ptr<CaptureDialog> dialog_;
  std::function<void()> onNotify_;
  int xferReadies_ = 0;
  int closeRequests_ = 0;
};

TEST_F(CaptureDialogViewTest, ShowsItsButtonsAndLines) {
  ASSERT_TRUE(Open());
  EXPECT_TRUE(IsWindowVisible(Window()));
  EXPECT_EQ(TextOf(ID_RETURN_IMAGES), "Return Image(s)");
  EXPECT_FALSE(IsWindowVisible(Control(ID_MANUAL_TRIGGER)));
  EXPECT_FALSE(IsWindowEnabled(Control(ID_RETURN_IMAGES)));
  dialog_->ShowStatusDetail("a detail");
  const std::string lines = TextOf(IDC_STATUS_PANEL);
  EXPECT_EQ(lines.find("What Is This Message Area?\r\nAs the TWAIN source"), 0u);
  EXPECT_NE(lines.find("'Acquire Images' button.\na detail\r\n"), std::string::npos);
}

TEST_F(CaptureDialogViewTest, ControlsShareTheWindowAtAnySize) {
  ASSERT_TRUE(Open());
  for (const SIZE size : {SIZE{1, 1}, SIZE{700, 600}, SIZE{1000, 700}}) {
    SetWindowPos(Window(), nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER);
    RECT client;
    GetClientRect(Window(), &client);
    std::vector<RECT> places;
    for (HWND control = GetWindow(Window(), GW_CHILD); control != nullptr;
         control = GetWindow(control, GW_HWNDNEXT)) {
      RECT place;
      GetWindowRect(control, &place);
      MapWindowPoints(nullptr, Window(), reinterpret_cast<POINT*>(&place), 2);
      RECT common;
      EXPECT_TRUE(IntersectRect(&common, &place, &client) && EqualRect(&common, &place));
      for (const RECT& other : places) EXPECT_FALSE(IntersectRect(&common, &place, &other));
      places.push_back(place);
    }
    EXPECT_EQ(places.size(), 12u);
  }
}

TEST_F(CaptureDialogViewTest, ClosesByButtonBySystemAndByEscape) {
  const std::function<void()> ways[] = {
      [this] { SendMessageA(Control(ID_CANCEL), BM_CLICK, 0, 0); },
      [this] { SendMessageA(Window(), WM_CLOSE, 0, 0); },
      [this] {
        MSG escape = {Window(), WM_KEYDOWN, VK_ESCAPE, 0, 0, {}};
        IsDialogMessageA(Window(), &escape);
      }};
  // Applications name any window as the parent.
  const HWND gone = CreateWindowA("STATIC", "", 0, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
  DestroyWindow(gone);
  const HWND parents[] = {nullptr, gone, GetDesktopWindow()};
  for (size_t i = 0; i < std::size(ways); ++i) {
    closeRequests_ = 0;
    ASSERT_TRUE(Open(parents[i]));
    const HWND window = Window();
    ways[i]();
    EXPECT_EQ(closeRequests_, 1);
    EXPECT_FALSE(IsWindow(window));
  }
  dialog_->ShowInfo("after", "the window");
  dialog_->ShowStatusDetail("is gone");
  dialog_->RefreshButtons();
}

TEST_F(CaptureDialogViewTest, ReturnsImagesByButtonAndByTimer) {
  PutImage();
  ASSERT_TRUE(Open());
  SendMessageA(Control(ID_RETURN_IMAGES), BM_CLICK, 0, 0);
  EXPECT_EQ(xferReadies_, 1);
  SetReturnImmediatelyIfAvailable(true);
  ASSERT_TRUE(Open());
  EXPECT_TRUE(WaitFor([this] { return xferReadies_ == 2; }));

  SetFocus(Control(ID_RETURN_IMAGES));
  images_.DeleteAll();
  SendMessageA(Window(), CaptureDialog::kMessageRefreshThumbnails, 0, 0);
  EXPECT_FALSE(IsWindowEnabled(Control(ID_RETURN_IMAGES)));
  EXPECT_EQ(GetFocus(), Control(IDC_STATUS_PANEL)) << "the keyboard stays in the dialog";
}

TEST_F(CaptureDialogViewTest, MayBeLetGoFromInsideItsOwnEvents) {
  PutImage();
  onNotify_ = [this] { dialog_.reset(); };
  for (const int id : {ID_RETURN_IMAGES, ID_CANCEL}) {
    ASSERT_TRUE(Open());
    const HWND window = Window();
    SendMessageA(window, WM_COMMAND, static_cast<WPARAM>(id), 0);
    EXPECT_EQ(dialog_, nullptr);
    EXPECT_FALSE(IsWindow(window));
  }
}

}  // namespace
}  // namespace zyr
