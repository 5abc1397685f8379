#include "controls/image_viewer/image_viewer_window.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "controls/dialog_font.h"
#include "controls/image_viewer/viewer_cursors.h"
#include "controls/image_viewer/viewer_icons.h"
#include "controls/image_viewer/viewer_tool_bars.h"
#include "platform/clipboard.h"
#include "resources/resource.h"
#include "tests/support/win32/window_test.h"

namespace zyr {
namespace {

constexpr uint32_t kAllButtons = 0x7FF;
constexpr int kAround = 1;  // buttons before and behind the viewer
constexpr int kBehind = 2;

// Every pixel tells where it is.
std::unique_ptr<CKIPImage> Map(uint32_t width, uint32_t height) {
  auto image = std::make_unique<CKIPImage>();
  image->Create(width, height, 24);
  for (uint32_t y = 0; y < height; ++y) {
    for (uint32_t x = 0; x < width; ++x) {
      image->SetRgb(x, y, RGB(x & 0xFF, y & 0xFF, (x >> 8) << 4 | y >> 8));
    }
  }
  return image;
}

class ImageViewerTest : public testing::Test {
 protected:
  void SetUp() override {
    dialog_ = CreateWindowA("#32770", "", WS_POPUP | WS_VISIBLE, 40, 40, 700, 500, nullptr, nullptr,
                            nullptr, nullptr);
    CreateWindowA("BUTTON", "", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 0, 50, 20, dialog_,
                  reinterpret_cast<HMENU>(INT_PTR{kAround}), nullptr, nullptr);
    viewer_ = std::make_unique<ImageViewerWindow>();
    window_ = CreateWindowA(IMAGE_VIEWER_CLASS, "", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 10, 30, 640,
                            440, dialog_, nullptr, nullptr, nullptr);
    ASSERT_NE(window_, nullptr);
    CreateWindowA("BUTTON", "", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 60, 0, 50, 20, dialog_,
                  reinterpret_cast<HMENU>(INT_PTR{kBehind}), nullptr, nullptr);
    viewer_->Attach(window_);
    SetForegroundWindow(dialog_);
    SetFocus(window_);
  }
  void TearDown() override {
    viewer_.reset();
    if (IsWindow(dialog_)) DestroyWindow(dialog_);
    EXPECT_EQ(GetCapture(), nullptr);
  }

  CKIPImageViewerControl& Viewer() { return viewer_->viewer(); }
  void ShowMap(uint32_t width, uint32_t height) {
    map_ = Map(width, height);
    Viewer().SetImage(map_.get(), true);
  }
  HWND Bar(int index) const { return GetDlgItem(window_, ViewerToolBars::kFirstId + index); }
  HWND Button(uint32_t command) const {
    for (int i = 0; i < 2; ++i) {
      if (HWND button = GetDlgItem(Bar(i), static_cast<int>(command))) return button;
    }
    return nullptr;
  }
  // What bars consist of, from left to right.
  std::vector<int> ButtonsOf(HWND bar) const {
    std::vector<std::pair<LONG, int>> found;
    for (HWND b = GetWindow(bar, GW_CHILD); b != nullptr; b = GetWindow(b, GW_HWNDNEXT)) {
      RECT place;
      GetWindowRect(b, &place);
      found.emplace_back(place.top * 4096 + place.left, GetDlgCtrlID(b));
    }
    std::sort(found.begin(), found.end());
    std::vector<int> ids;
    for (const auto& [place, id] : found) ids.push_back(id);
    return ids;
  }
  void Press(WPARAM key) { test::PressKey(dialog_, key); }
  void Click(UINT message, int x, int y, WPARAM keys = MK_LBUTTON) {
    SendMessageA(window_, message, keys, MAKELPARAM(x, y));
  }
  bool Has(LONG_PTR style) const { return (GetWindowLongPtrA(window_, GWL_STYLE) & style) != 0; }
  // The picture's pixel that the window shows at a place; what stands there must be its.
  void ExpectPixelOfMap(int x, int y) {
    const ViewPoint at = Viewer().ClientToImage({x, y}, false, 0.5);
    const HDC dc = GetDC(window_);
    EXPECT_EQ(GetPixel(dc, x, y + Strip()),
              RGB(at.x & 0xFF, at.y & 0xFF, (at.x >> 8) << 4 | at.y >> 8))
        << x << ", " << y << " shows " << at.x << ", " << at.y;
    ReleaseDC(window_, dc);
  }
  int Strip() const {
    RECT bars = {};
    if (Bar(0) != nullptr) GetWindowRect(Bar(0), &bars);
    return static_cast<int>(bars.bottom - bars.top);
  }
  HWND FullScreen() const { return FindWindowA("CKIPImageViewerControlFullScreenWnd", nullptr); }

  // From within whatever loop runs then.
  void TakeAwayInAMoment(bool viewerFirst) {
    test_ = this;
    SetTimer(nullptr, 0, 50, viewerFirst ? TakeViewerAway : TakeWindowsAway);
  }
  static void CALLBACK TakeViewerAway(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    test_->viewer_.reset();
    test_->map_.reset();
  }
  static void CALLBACK TakeWindowsAway(HWND, UINT, UINT_PTR timer, DWORD) {
    DestroyWindow(test_->dialog_);
    TakeViewerAway(nullptr, 0, timer, 0);
  }

  static std::string TextOf(HWND window) {
    char text[256];
    return {text, text + GetWindowTextA(window, text, sizeof text)};
  }
  // The choices of a menu in their order; 0 is a separator, -1 a submenu.
  static std::vector<int> ChoicesOf(HMENU menu) {
    std::vector<int> choices;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
      choices.push_back(static_cast<int>(GetMenuItemID(menu, i)));
    }
    return choices;
  }
  static void CALLBACK LookAtPopup(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    const HWND popup = FindWindowA("#32768", nullptr);
    const auto menu = reinterpret_cast<HMENU>(SendMessageA(popup, MN_GETHMENU, 0, 0));
    popupChoices_ = ChoicesOf(menu);
    spectrumChoices_ = ChoicesOf(GetSubMenu(menu, GetMenuItemCount(menu) - 1));
    EndMenu();
  }

  static inline std::vector<int> popupChoices_, spectrumChoices_;
  static inline ImageViewerTest* test_ = nullptr;
  HWND dialog_ = nullptr;
  HWND window_ = nullptr;
  std::unique_ptr<CKIPImage> map_;
  std::unique_ptr<ImageViewerWindow> viewer_;
};

TEST_F(ImageViewerTest, ScrollsAndPaintsWhatIsUncovered) {
  ShowMap(1500, 1000);
  EXPECT_TRUE(Has(WS_HSCROLL) && Has(WS_VSCROLL));
  for (const auto& [message, request] :
       std::vector<std::pair<UINT, WPARAM>>{{WM_HSCROLL, SB_LINEDOWN},
                                            {WM_VSCROLL, SB_PAGEDOWN},
                                            {WM_HSCROLL, SB_PAGEDOWN},
                                            {WM_VSCROLL, SB_LINEUP},
                                            {WM_HSCROLL, SB_LINEUP},
                                            {WM_VSCROLL, SB_BOTTOM}}) {
    SendMessageA(window_, message, request, 0);
    UpdateWindow(window_);
    for (const int x : {3, 39, 45, 300, 600}) {
      for (const int y : {2, 38, 44, 200, 410}) ExpectPixelOfMap(x, y);
    }
  }
  Viewer().SetToolBarsAllowed(kAllButtons);  // above the picture
  UpdateWindow(window_);
  Click(WM_LBUTTONDOWN, 300, 200);
  EXPECT_EQ(GetCapture(), window_);
  Click(WM_MOUSEMOVE, 340, 230);  // both ways at once
  UpdateWindow(window_);
  for (const int x : {3, 39, 45, 300}) ExpectPixelOfMap(x, x / 2);
  Click(WM_LBUTTONUP, 340, 230, 0);
  EXPECT_EQ(GetCapture(), nullptr);
  Viewer().SetToolBarsAllowed(0);
  SCROLLINFO info = {sizeof info, SIF_POS, 0, 0, 0, 0, 0};
  GetScrollInfo(window_, SB_HORZ, &info);
  EXPECT_EQ(info.nPos, Viewer().ClientToImage({0, 0}, false).x);

  // A bar that needs room may call for the other one, and both go together.
  RECT all;
  SendMessageA(window_, WM_KEYDOWN, VK_HOME, 0);
  ShowMap(10, 10);
  GetClientRect(window_, &all);
  EXPECT_FALSE(Has(WS_HSCROLL) || Has(WS_VSCROLL));
  ShowMap(static_cast<uint32_t>(all.right), static_cast<uint32_t>(all.bottom));
  EXPECT_FALSE(Has(WS_HSCROLL) || Has(WS_VSCROLL));
  ShowMap(static_cast<uint32_t>(all.right) + 1, static_cast<uint32_t>(all.bottom));
  EXPECT_TRUE(Has(WS_HSCROLL) && Has(WS_VSCROLL));
  ShowMap(static_cast<uint32_t>(all.right), static_cast<uint32_t>(all.bottom) + 1);
  EXPECT_TRUE(Has(WS_HSCROLL) && Has(WS_VSCROLL));
}

TEST_F(ImageViewerTest, KeysScrollAndZoom) {
  ShowMap(1500, 1000);
  SendMessageA(window_, WM_KEYDOWN, VK_RIGHT, 0);
  EXPECT_EQ(Viewer().ClientToImage({0, 0}, false).x, Scaled(40));
  SendMessageA(window_, WM_CHAR, '0', 0);
  EXPECT_TRUE(Viewer().fitsWindow());
  SendMessageA(window_, WM_CHAR, '+', 0);
  EXPECT_FALSE(Viewer().fitsWindow());
  const ViewRect seen = Viewer().GetImageRect();
  const ViewPoint middle = Viewer().ClientToImage({seen.right / 2, seen.bottom / 2}, false);
  SendMessageA(window_, WM_CHAR, '1', 0);
  EXPECT_EQ(Viewer().GetZoom(), 1.0);
  const ViewPoint now = Viewer().ClientToImage({seen.right / 2, seen.bottom / 2}, false);
  EXPECT_NEAR(now.x, middle.x, 20);
  EXPECT_NEAR(now.y, middle.y, 20);
  SendMessageA(window_, WM_MOUSEWHEEL, MAKEWPARAM(0, 60), MAKELPARAM(300, 300));
  EXPECT_EQ(Viewer().GetZoom(), 1.0) << "half a notch";
  SendMessageA(window_, WM_MOUSEWHEEL, MAKEWPARAM(0, 60), MAKELPARAM(300, 300));
  EXPECT_GT(Viewer().GetZoom(), 1.4);
}

TEST_F(ImageViewerTest, LosesTheMouseToOthersWithoutHarm) {
  ShowMap(1500, 1000);
  Click(WM_LBUTTONDOWN, 300, 200);
  SetCapture(GetDlgItem(dialog_, kAround));
  Click(WM_MOUSEMOVE, 100, 100);
  EXPECT_EQ(Viewer().ClientToImage({0, 0}, false), ViewPoint{}) << "the drag is over";
  ReleaseCapture();
}

TEST_F(ImageViewerTest, HasTheAllowedButtonsInTheirOrder) {
  EXPECT_EQ(Bar(0), nullptr) << "not needed so far";
  ShowMap(300, 300);
  Viewer().SetToolBarsAllowed(kAllButtons);
  EXPECT_EQ(ButtonsOf(Bar(0)), (std::vector<int>{ViewerToolBars::kExpander, 11, 1, 3, 2, 7}));
  EXPECT_EQ(ButtonsOf(Bar(1)), (std::vector<int>{ViewerToolBars::kExpander, 8, 9, 5, 6, 10, 4}));
  SendMessageA(Button(kViewerZoomIn), BM_CLICK, 0, 0);
  EXPECT_GT(Viewer().GetZoom(), 1.4);
  EXPECT_EQ(GetFocus(), window_) << "pressed by the mouse, it gives the keyboard back";
  SendMessageA(Button(kViewerGamma), BM_CLICK, 0, 0);
  EXPECT_EQ(Viewer().tool(), kToolGamma);
  EXPECT_EQ(TextOf(Button(kViewerZoomOut)), "Reduces the magnification of the image");
  EXPECT_EQ(TextOf(Button(kViewerMagnify)),  // as it is known, misspelt
            "Enables you to magnifiy the image by clicking with the left and right mouse buttons.");

  const int open = Strip();
  for (int i = 0; i < 2; ++i) {
    SendMessageA(GetDlgItem(Bar(i), ViewerToolBars::kExpander), BM_CLICK, 0, 0);
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(Bar(i), i == 0 ? 2 : 8)));
  }
  EXPECT_LT(Strip(), open / 2) << "the picture gets the room";
  Viewer().SetToolBarsAllowed(kToolBarPan);
  EXPECT_EQ(Bar(0), nullptr);
  EXPECT_EQ(ButtonsOf(Bar(1)), (std::vector<int>{ViewerToolBars::kExpander, 4}));
  MoveWindow(window_, 0, 0, 3, 3, TRUE);
  Viewer().SetToolBarsAllowed(0);
  EXPECT_EQ(Bar(1), nullptr);
}

TEST_F(ImageViewerTest, IsReachedByTheKeyboardInAllItsParts) {
  ShowMap(300, 300);
  Viewer().SetToolBarsAllowed(kAllButtons);
  Press(VK_TAB);
  EXPECT_EQ(GetFocus(), Button(kViewerMagnify));
  Press(VK_RIGHT);
  Press(VK_RETURN);
  EXPECT_LT(Viewer().GetZoom(), 1.0);
  EXPECT_EQ(GetFocus(), Button(kViewerZoomOut)) << "for the next press";
  Press(VK_TAB);
  EXPECT_EQ(GetFocus(), Button(kViewerBrightnessContrast));
  Press(VK_END);
  EXPECT_EQ(GetFocus(), Button(kViewerPan));
  Press(VK_TAB);
  EXPECT_EQ(GetFocus(), GetDlgItem(dialog_, kBehind));
  SetFocus(GetDlgItem(dialog_, kAround));
  Press(VK_TAB);
  EXPECT_EQ(GetFocus(), window_);
}

TEST_F(ImageViewerTest, FullScreenShowsThePictureAndGivesTheKeyboardBack) {
  ShowMap(300, 300);
  Viewer().SetSpot(50, 4);
  EXPECT_EQ(FullScreen(), nullptr);
  Viewer().OnCommand(kViewerFullScreen);
  ASSERT_NE(FullScreen(), nullptr);
  RECT place;
  GetWindowRect(FullScreen(), &place);
  EXPECT_EQ(place.right - place.left, GetSystemMetrics(SM_CXSCREEN));
  EXPECT_EQ(place.bottom - place.top, GetSystemMetrics(SM_CYSCREEN));
  const HWND inner = GetWindow(FullScreen(), GW_CHILD);
  EXPECT_EQ(GetFocus(), inner);
  EXPECT_EQ(ButtonsOf(GetDlgItem(inner, ViewerToolBars::kFirstId)),
            (std::vector<int>{ViewerToolBars::kExpander, 7}));
  EXPECT_EQ(TextOf(GetDlgItem(GetDlgItem(inner, ViewerToolBars::kFirstId), 7)),
            "Exists full screen view.");

  // The picture goes while it is shown, and another one takes its place.
  auto other = Map(200, 100);
  Viewer().SetImage(other.get(), true);
  map_.reset();
  UpdateWindow(inner);
  Press(VK_ESCAPE);
  test::Pump();
  EXPECT_EQ(FullScreen(), nullptr);
  EXPECT_EQ(GetFocus(), window_);

  Viewer().OnCommand(kViewerFullScreen);
  Viewer().Clear();
  EXPECT_EQ(FullScreen(), nullptr) << "nothing to show";
  Viewer().OnCommand(kViewerFullScreen);
  EXPECT_EQ(FullScreen(), nullptr);
}

TEST_F(ImageViewerTest, OffersTheOperationsInTheirOrder) {
  ShowMap(300, 300);
  SetTimer(nullptr, 0, 50, LookAtPopup);
  Viewer().OnCommand(kViewerImageOperations);
  EXPECT_EQ(popupChoices_, (std::vector<int>{1, 5, 0, 2, 4, 3, 0, 6, -1}));
  EXPECT_EQ(spectrumChoices_, (std::vector<int>{6, 7, 8, 9, 10}));
}

// While a popup or the full screen stands, the application may take everything away.
TEST_F(ImageViewerTest, SurvivesItsEndWithinItsOwnEvents) {
  for (const bool viewerFirst : {true, false}) {
    for (const bool spot : {true, false}) {
      ShowMap(300, 300);
      Viewer().SetToolBarsAllowed(kAllButtons);
      TakeAwayInAMoment(viewerFirst);
      if (spot) {
        Viewer().SetTool(kToolSpotMagnify, false);
        Click(WM_LBUTTONDBLCLK, 100, 100);
      } else {
        SendMessageA(Button(kViewerImageOperations), BM_CLICK, 0, 0);
      }
      EXPECT_EQ(viewer_, nullptr);
      TearDown();
      SetUp();
    }
    ShowMap(300, 300);
    Viewer().OnCommand(kViewerFullScreen);
    ASSERT_NE(FullScreen(), nullptr);
    Press(VK_ESCAPE);
    if (!viewerFirst) DestroyWindow(dialog_);
    viewer_.reset();
    EXPECT_EQ(FullScreen(), nullptr);
    test::Pump();
    TearDown();
    SetUp();
  }
}

TEST_F(ImageViewerTest, CopiesThePictureToTheClipboard) {
  ShowMap(30, 20);
  Viewer().OnOperation(kOperationCopy);
  ASSERT_TRUE(OpenClipboard(dialog_));
  const HANDLE dib = GetClipboardData(CF_DIB);
  ASSERT_NE(dib, nullptr);
  const auto* header = static_cast<const BITMAPINFOHEADER*>(GlobalLock(dib));
  EXPECT_EQ(header->biWidth, 30);
  EXPECT_EQ(header->biBitCount, 24);
  GlobalUnlock(dib);
  EmptyClipboard();
  CloseClipboard();
  const platform::GlobalHandle block = platform::AllocateMovable(40, true);
  EXPECT_FALSE(platform::PutDibOnClipboard(nullptr, block));
  EXPECT_EQ(platform::BlockSize(block), 0u) << "freed";
}

TEST(ViewerPictures, AreTheirOwnAndNotCutOff) {
  std::set<std::vector<uint32_t>> seen;
  constexpr COLORREF kBack = RGB(0x40, 0x40, 0x40);
  for (int i = 0; i <= static_cast<int>(ViewerIcon::kPan); ++i) {
    const auto pixels = DrawViewerIcon(static_cast<ViewerIcon>(i), 40, kBack);
    EXPECT_TRUE(seen.insert(pixels).second);
    for (size_t at = 0; at < 40; ++at) {
      EXPECT_EQ(pixels[at], 0xFF404040u);
      EXPECT_EQ(pixels[at * 40], 0xFF404040u);
    }
  }
  ViewerCursors cursors;
  std::set<HCURSOR> handles = {cursors.Get(ViewerCursor::kArrow)};
  for (int i = static_cast<int>(ViewerCursor::kMove); i <= static_cast<int>(ViewerCursor::kGamma);
       ++i) {
    const HCURSOR cursor = cursors.Get(static_cast<ViewerCursor>(i));
    EXPECT_TRUE(handles.insert(cursor).second) << "neither the arrow nor another tool's";
    ICONINFO info;
    ASSERT_TRUE(GetIconInfo(cursor, &info));
    EXPECT_GT(info.xHotspot, 0u);
    EXPECT_LT(info.yHotspot, static_cast<DWORD>(Scaled(32)));
    DeleteObject(info.hbmMask);
    DeleteObject(info.hbmColor);
  }
  EXPECT_EQ(cursors.Get(ViewerCursor::kHidden), nullptr);
}

}  // namespace
}  // namespace zyr
