#include "acquire/capture_dialog/win32/capture_dialog_view.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "acquire/capture_dialog/capture_dialog.h"
#include "acquire/capture_dialog/win32/thumbnail_grid_dialog.h"
#include "acquire/iface/status_sink.h"
#include "controls/dialog_window.h"
#include "controls/thumbnail_grid.h"
#include "platform/files.h"
#include "resources/resource.h"
#include "settings/store.h"
#include "tests/support/win32/window_test.h"

namespace zyr {
namespace {

class CaptureDialogViewTest : public testing::Test, public CaptureDialogOwner {
 protected:
  void SetUp() override {
    SetScanToPath(folder_);
    SetCheckForConflicts(false);
    SetReturnImmediatelyIfAvailable(false);
    SetProceedDirectlyToScan(false);
  }
  void TearDown() override {
    dialog_.reset();
    images_.DeleteAll();
    RemoveDirectoryA(folder_.c_str());
    SetScanToPath(userFolder_);
    SetCheckForConflicts(userChecks_);
    SetReturnImmediatelyIfAvailable(userReturns_);
    SetProceedDirectlyToScan(userScans_);
  }

  void NotifyXferReady() override { Notified(&xferReadies_); }
  void NotifyCloseDSReq() override { Notified(&closeRequests_); }
  bool IsDelivering() const override { return false; }
  void SetGrayscaleDepth(uint32_t) override {}
  void FillSettingsList(SettingsListControl*) const override {}
  void Notified(int* count) {
    ++*count;
    if (onNotify_) onNotify_();
  }

  bool Open(HWND parent = nullptr) {
    dialog_ = std::make_shared<CaptureDialog>(*this, images_, sensors_, [this] {
      auto view = Win32CaptureDialogViews()();
      view_ = view.get();
      return view;
    });
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
  std::string TextOf(int id) const { return WindowText(Control(id)); }
  std::vector<HWND> VisibleControls() const {
    std::vector<HWND> controls;
    for (HWND control = GetWindow(Window(), GW_CHILD); control != nullptr;
         control = GetWindow(control, GW_HWNDNEXT)) {
      if (IsWindowVisible(control)) controls.push_back(control);
    }
    return controls;
  }
  RECT PlaceOf(HWND control) const { return test::PlaceIn(Window(), control); }
  void ExpectNoOverlap() const {
    RECT client;
    GetClientRect(Window(), &client);
    std::vector<RECT> places;
    for (const HWND control : VisibleControls()) {
      const RECT place = PlaceOf(control);
      RECT common;
      EXPECT_TRUE(IntersectRect(&common, &place, &client) && EqualRect(&common, &place));
      for (const RECT& other : places) EXPECT_FALSE(IntersectRect(&common, &place, &other));
      places.push_back(place);
    }
  }
  // Which of the panels are seen.
  std::set<int> Panels() const {
    std::set<int> panels;
    for (const int id : {IDC_STATUS_PANEL, IDC_EXPOSURE_PANEL, IDC_THUMBNAILS}) {
      if (IsWindowVisible(Control(id))) panels.insert(id);
    }
    return panels;
  }

  // What the machine's user has chosen.
  const std::string userFolder_ = GetScanToPath();
  const bool userChecks_ = GetCheckForConflicts();
  const bool userScans_ = GetProceedDirectlyToScan();
  const bool userReturns_ = GetReturnImmediatelyIfAvailable();

  const std::string folder_ = test::FolderOfTest("zyr-view");
  ImageCache images_;
  IFace sensors_{nullptr};
  std::shared_ptr<CaptureDialog> dialog_;
  CaptureDialogView* view_ = nullptr;  // the dialog's
  std::function<void()> onNotify_;
  int xferReadies_ = 0;
  int closeRequests_ = 0;
};

TEST_F(CaptureDialogViewTest, ShowsItsButtonsAndLines) {
  ASSERT_TRUE(Open());
  EXPECT_TRUE(IsWindowVisible(Window()));
  EXPECT_EQ(TextOf(ID_RETURN_IMAGES), "&Return Image(s)");
  EXPECT_EQ(TextOf(ID_CANCEL), "&Cancel");
  EXPECT_FALSE(IsWindowVisible(Control(ID_MANUAL_TRIGGER)));
  EXPECT_FALSE(IsWindowEnabled(Control(ID_RETURN_IMAGES)));
  EXPECT_EQ(GetFocus(), Control(ID_ACQUIRE_IMAGE));
  SendMessageA(Window(), WM_COMMAND, ID_RETURN_IMAGES, 0);  // Enter does not ask: no box comes up
  dialog_->ShowStatusDetail("a detail");
  const std::string lines = TextOf(IDC_STATUS_PANEL);
  EXPECT_EQ(lines.find("What Is This Message Area?\r\nAs the TWAIN source"), 0u);
  EXPECT_NE(lines.find("'Acquire Images' button.\na detail\r\n"), std::string::npos);

  view_->SetButtonCaption(kCommandCancel, "Stop Capture");
  std::set<char> mnemonics;
  for (const HWND control : VisibleControls()) {
    const std::string caption = WindowText(control);
    const size_t mark = caption.find('&');
    if (mark == std::string::npos) continue;
    EXPECT_TRUE(mnemonics.insert(caption[mark + 1]).second) << caption;
  }
  EXPECT_EQ(mnemonics.size(), 10u);
  EXPECT_EQ(TextOf(ID_CANCEL), "Stop &Capture");
}

TEST_F(CaptureDialogViewTest, ControlsShareTheWindowAtAnySize) {
  ASSERT_TRUE(Open());
  view_->SetButtonVisible(kCommandManualTrigger, true);
  for (const SIZE size : {SIZE{1, 1}, SIZE{700, 600}, SIZE{1100, 500}, SIZE{1000, 700}}) {
    SetWindowPos(Window(), nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER);
    for (const bool split : {true, false}) {
      view_->SetSplitLayout(split);
      EXPECT_EQ(VisibleControls().size(), split ? 13u : 12u);
      ExpectNoOverlap();
    }
  }
  const RECT before = PlaceOf(Control(ID_CANCEL));
  view_->SetButtonCaption(kCommandCancel, std::string(60, 'W'));
  const RECT after = PlaceOf(Control(ID_CANCEL));
  EXPECT_GT(after.right - after.left, before.right - before.left + 300);
  ExpectNoOverlap();
}

TEST_F(CaptureDialogViewTest, ShowsOnePanelOrTwo) {
  ASSERT_TRUE(Open());
  SetFocus(Control(IDC_STATUS_PANEL));
  view_->ShowPanel(CapturePanel::kExposure);
  EXPECT_EQ(Panels(), std::set<int>{IDC_EXPOSURE_PANEL});
  EXPECT_EQ(GetFocus(), Control(IDC_EXPOSURE_PANEL)) << "not where nobody sees it";
  view_->SetExposureText("Ready");
  EXPECT_EQ(TextOf(IDC_EXPOSURE_PANEL), "Ready");

  view_->SetSplitLayout(true);
  EXPECT_EQ(Panels(), (std::set<int>{IDC_STATUS_PANEL, IDC_THUMBNAILS}));
  view_->ShowPanel(CapturePanel::kExposure);
  view_->ShowPanel(CapturePanel::kThumbnails);
  EXPECT_EQ(Panels(), (std::set<int>{IDC_EXPOSURE_PANEL, IDC_THUMBNAILS}));
  view_->SetSplitLayout(false);
  EXPECT_EQ(Panels(), std::set<int>{IDC_THUMBNAILS});
}

TEST_F(CaptureDialogViewTest, DisabledButtonsLendTheKeyboard) {
  ASSERT_TRUE(Open());
  view_->SetButtonEnabled(kCommandAcquireImage, false);
  EXPECT_EQ(GetFocus(), Control(IDC_STATUS_PANEL));
  view_->SetButtonEnabled(kCommandAcquireImage, true);
  EXPECT_EQ(GetFocus(), Control(ID_ACQUIRE_IMAGE));

  view_->SetButtonEnabled(kCommandAcquireImage, false);
  view_->ShowPanel(CapturePanel::kExposure);
  view_->SetSplitLayout(true);
  view_->ShowPanel(CapturePanel::kExposure);
  view_->SetSplitLayout(false);
  EXPECT_NE(GetFocus(), Control(IDC_STATUS_PANEL));
  view_->SetButtonEnabled(kCommandAcquireImage, true);
  EXPECT_EQ(GetFocus(), Control(ID_ACQUIRE_IMAGE)) << "from panel to panel and back";

  view_->SetButtonEnabled(kCommandAcquireImage, false);
  SetFocus(Control(ID_HELP));
  view_->SetButtonEnabled(kCommandAcquireImage, true);
  EXPECT_EQ(GetFocus(), Control(ID_HELP)) << "the user has gone elsewhere";

  const HWND other = CreateWindowA("STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 9, 9, nullptr,
                                   nullptr, nullptr, nullptr);
  SetFocus(Control(ID_ACQUIRE_IMAGE));
  SetActiveWindow(other);
  view_->SetButtonEnabled(kCommandAcquireImage, false);
  EXPECT_FALSE(IsChild(Window(), GetFocus())) << "another window's keyboard is left alone";
  DestroyWindow(other);
}

TEST_F(CaptureDialogViewTest, AnswersTheCaptureThread) {
  ASSERT_TRUE(Open());
  StatusRecord record;
  record.title = "from";
  record.text = "elsewhere";
  LRESULT answer = -1;
  std::thread thread([&] {
    answer = SendMessageA(Window(), kMessageStatusLine, kStatusLineNew,
                          reinterpret_cast<LPARAM>(&record));
  });
  EXPECT_TRUE(test::WaitFor([&] { return answer == 2; })) << answer;
  thread.join();
  record.title = "rewritten";
  record.line = 0;
  SendMessageA(Window(), kMessageStatusLine, kStatusLineUpdate, reinterpret_cast<LPARAM>(&record));
  EXPECT_EQ(TextOf(IDC_STATUS_PANEL).find("rewritten\r\nelsewhere\r\nStep #1"), 0u);
  record.line = 3;
  SendMessageA(Window(), kMessageStatusLine, kStatusLineUpdate, reinterpret_cast<LPARAM>(&record));
  // Messages of the dialog manager that bear the same numbers.
  SendMessageA(Window(), DM_REPOSITION, 0, 0);
  SendMessageA(Window(), DM_SETDEFID, ID_CANCEL, 0);
  EXPECT_EQ(LOWORD(SendMessageA(Window(), DM_GETDEFID, 0, 0)), ID_CANCEL);
}

TEST_F(CaptureDialogViewTest, PassesTheSelectionOn) {
  PutImage();
  ASSERT_TRUE(Open());
  EXPECT_EQ(Panels(), std::set<int>{IDC_THUMBNAILS});
  EXPECT_FALSE(IsWindowEnabled(Control(ID_DELETE_SELECTED)));
  ThumbnailEvent event = {0, true};
  SendMessageA(Window(), kMessageThumbnail, kThumbnailSelectionChanged,
               reinterpret_cast<LPARAM>(&event));
  EXPECT_TRUE(images_.GetAt(0)->selected);
  EXPECT_TRUE(IsWindowEnabled(Control(ID_DELETE_SELECTED)));
}

// Gives the dialog above `owner` a choice of rows and presses a button, from its own loop.
class ThumbnailGridAnswer {
 public:
  ThumbnailGridAnswer(HWND owner, WPARAM row, WORD button) {
    owner_ = owner;
    row_ = row;
    button_ = button;
    timer_ = SetTimer(nullptr, 0, 10, Answer);
  }
  ~ThumbnailGridAnswer() { KillTimer(nullptr, timer_); }

 private:
  static void CALLBACK Answer(HWND, UINT, UINT_PTR, DWORD) {
    const HWND dialog = GetLastActivePopup(owner_);
    const HWND rows = GetDlgItem(dialog, IDC_THUMBNAIL_ROWS);
    if (rows == nullptr) return;
    SendMessageA(rows, CB_SETCURSEL, row_, 0);
    SendMessageA(dialog, WM_COMMAND, button_, 0);
  }

  static inline HWND owner_;
  static inline WPARAM row_;
  static inline WORD button_;
  UINT_PTR timer_;
};

TEST_F(CaptureDialogViewTest, AsksForRowsAndColumns) {
  ASSERT_TRUE(Open());
  {
    const ThumbnailGridAnswer answer(Window(), 4, IDOK);
    const auto size = view_->AskForThumbnailGrid({2, 1000});
    ASSERT_TRUE(size);
    EXPECT_EQ(size->rows, 5u);
    EXPECT_EQ(size->columns, kMostThumbnailColumns);
  }
  const ThumbnailGridAnswer answer(Window(), 4, IDCANCEL);
  EXPECT_FALSE(view_->AskForThumbnailGrid({2, 3}));
  EXPECT_TRUE(IsWindowEnabled(Window()));
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
  EXPECT_TRUE(test::WaitFor([this] { return xferReadies_ == 2; }));

  SetFocus(Control(ID_RETURN_IMAGES));
  images_.DeleteAll();
  SendMessageA(Window(), kMessageRefreshThumbnails, 0, 0);
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
