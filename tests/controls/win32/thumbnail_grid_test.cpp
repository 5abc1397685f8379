#include "controls/thumbnail_grid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "resources/resource.h"

namespace zyr {
namespace {

constexpr int kButton = 1;  // the dialog's default

class Pictures : public ThumbnailSource {
 public:
  size_t Count() const override { return selected.size(); }
  bool IsSelected(size_t item) const override { return selected.at(item); }
  std::unique_ptr<CKIPImage> Picture(size_t item, uint32_t width, uint32_t height) override {
    EXPECT_LT(item, selected.size());
    asked.push_back(item);
    if (whileAsked) std::exchange(whileAsked, nullptr)();
    size = {static_cast<LONG>(width), static_cast<LONG>(height)};
    if (item == 1) return nullptr;
    if (item == 2) throw std::bad_alloc();
    auto picture = std::make_unique<CKIPImage>();
    picture->Create(width, height, 24);
    std::fill_n(picture->bits(), picture->dataSize(), uint8_t{0x5A});
    return picture;
  }

  std::vector<bool> selected;
  std::vector<size_t> asked;
  SIZE size = {};
  std::function<void()> whileAsked;
};

// A dialog with a grid of two rows of three and a default button.
class ThumbnailGridTest : public testing::Test {
 protected:
  ThumbnailGridTest() : grid_(std::make_unique<ThumbnailGrid>()) {
    dialog_ = CreateWindowExA(WS_EX_CONTROLPARENT, "#32770", "", WS_POPUP | WS_VISIBLE, 0, 0, 600,
                              400, nullptr, nullptr, nullptr, nullptr);
    SetWindowLongPtrA(dialog_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrA(dialog_, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(&Procedure));
    window_ = CreateWindowExA(0, THUMBNAIL_GRID_CLASS, "", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 0,
                              600, 350, dialog_, nullptr, GetModuleHandleA(nullptr), nullptr);
    CreateWindowExA(0, "BUTTON", "", WS_CHILD | WS_VISIBLE | BS_DEFPUSHBUTTON, 0, 350, 80, 30,
                    dialog_, reinterpret_cast<HMENU>(kButton), nullptr, nullptr);
    grid_->SetGrid(2, 3);
  }
  ~ThumbnailGridTest() override {
    Hold({});
    if (IsWindow(dialog_)) DestroyWindow(dialog_);
  }

  void Show(size_t count) {
    pictures_.selected.assign(count, false);
    grid_->Attach(window_, &pictures_);
    SetFocus(window_);
    ASSERT_EQ(GetFocus(), window_);
  }

  static void Dispatch(HWND dialog, MSG& message) {
    if (!IsDialogMessageA(dialog, &message)) {
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
  }

  void Pump() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) Dispatch(dialog_, message);
  }

  // Until nothing is left to be asked for.
  void PumpForPictures(size_t count) {
    const ULONGLONG end = GetTickCount64() + 10000;
    size_t quiet = 0;
    while (GetTickCount64() < end && (pictures_.asked.size() < count || quiet < 10)) {
      quiet = pictures_.asked.size() < count ? 0 : quiet + 1;
      Pump();
      Sleep(10);
    }
  }

  // Both are down for what follows.
  static void Hold(std::vector<int> keys) {
    BYTE state[256] = {};
    for (const int key : keys) state[key] = 0x80;
    SetKeyboardState(state);
  }

  void Press(WPARAM key, std::vector<int> held = {}) {
    Hold(std::move(held));
    MSG message = {window_, WM_KEYDOWN, key, 1, 0, {}};
    Dispatch(dialog_, message);
    Hold({});
  }

  LPARAM MiddleOf(size_t position) const {
    RECT client;
    GetClientRect(window_, &client);
    const auto column = static_cast<LONG>(position % 3);
    const auto row = static_cast<LONG>(position / 3);
    return MAKELPARAM(client.right * (2 * column + 1) / 6, client.bottom * (2 * row + 1) / 5);
  }

  void Click(size_t position, std::vector<int> held = {}, UINT message = WM_LBUTTONDOWN) {
    Hold(std::move(held));
    SendMessageA(window_, message, MK_LBUTTON, MiddleOf(position));
    Hold({});
  }

  std::string Caption() const {
    char text[100];
    GetWindowTextA(window_, text, sizeof text);
    return text;
  }

  // What the dialog has been told since.
  std::string Told() { return std::exchange(told_, {}); }

  Pictures pictures_;
  std::unique_ptr<ThumbnailGrid> grid_;
  HWND dialog_;
  HWND window_;
  std::function<void()> onEvent_;

 private:
  static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    auto& test = *reinterpret_cast<ThumbnailGridTest*>(GetWindowLongPtrA(dialog, GWLP_USERDATA));
    if (message == WM_COMMAND && LOWORD(wParam) == kButton) test.told_ += "button ";
    if (message == kMessageThumbnail) test.OnEvent(wParam, lParam);
    return FALSE;
  }

  void OnEvent(WPARAM word, LPARAM lParam) {
    const ThumbnailEvent event = *reinterpret_cast<const ThumbnailEvent*>(lParam);
    if (word == kThumbnailSelectionChanged) {
      told_ += event.selected ? "+" : "-";
      if (event.item < pictures_.selected.size()) pictures_.selected[event.item] = event.selected;
    } else {
      told_ += word == kThumbnailOpenedByMouse ? "mouse " : "key ";
    }
    told_ += std::to_string(event.item) + " ";
    if (onEvent_) onEvent_();
  }

  std::string told_;
};

TEST_F(ThumbnailGridTest, EachChangeOfTheSelectionIsToldOnItsOwn) {
  Show(8);
  Click(1);
  EXPECT_EQ(Told(), "+1 ");
  Click(4, {VK_CONTROL});
  EXPECT_EQ(Told(), "+4 ");
  Click(2, {VK_SHIFT});
  EXPECT_EQ(Told(), "-1 +2 +3 ");
  Press(VK_DOWN, {VK_SHIFT});
  EXPECT_EQ(Told(), "-2 -3 +5 ");
  Press(VK_DOWN);
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(Caption(), "Items 4 through 8 of 8");
  Press(VK_SPACE);
  EXPECT_EQ(Told(), "+7 ");
  Press('A', {VK_CONTROL});
  EXPECT_EQ(Told(), "+0 +1 +2 +3 +6 ");
  Click(5);  // the empty place below
  EXPECT_EQ(Told(), "-0 -1 -2 -3 -4 -5 -6 -7 ");
  Press(VK_HOME);
  EXPECT_EQ(Caption(), "Items 1 through 6 of 8");

  pictures_.selected[3] = true;
  grid_->Refresh();
  Click(3, {VK_CONTROL});
  EXPECT_EQ(Told(), "-3 ");
}

TEST_F(ThumbnailGridTest, EnterOpensAnImageAndPressesTheDefaultButtonWithoutOne) {
  Show(0);
  EXPECT_EQ(Caption(), "<No Images>");
  Press(VK_RETURN);
  Pump();
  EXPECT_EQ(Told(), "button ");
  for (const WPARAM key : {VK_SPACE, VK_DOWN, VK_END, VK_NEXT}) Press(key, {VK_SHIFT});
  Click(0);
  EXPECT_EQ(Told(), "");

  Show(8);
  Press(VK_RIGHT);
  Press(VK_RETURN);
  Pump();
  EXPECT_EQ(Told(), "key 1 ");
  Click(4, {}, WM_LBUTTONDBLCLK);
  Click(4, {VK_CONTROL}, WM_LBUTTONDBLCLK);
  EXPECT_EQ(Told(), "mouse 4 +4 ");
}

TEST_F(ThumbnailGridTest, PicturesAreAskedForOnlyInViewAndOnceForEachSize) {
  Show(1000);
  EXPECT_TRUE(pictures_.asked.empty());
  PumpForPictures(6);
  EXPECT_EQ(pictures_.asked, (std::vector<size_t>{0, 1, 2, 3, 4, 5}));
  const SIZE former = pictures_.size;
  Press(VK_END);
  PumpForPictures(10);
  std::sort(pictures_.asked.begin() + 6, pictures_.asked.end());
  EXPECT_EQ(std::vector<size_t>(pictures_.asked.begin() + 6, pictures_.asked.end()),
            (std::vector<size_t>{996, 997, 998, 999}));
  Press(VK_HOME);  // still there
  PumpForPictures(10);
  EXPECT_EQ(pictures_.asked.size(), 10u);
  for (int page = 0; page < 6; ++page) {
    SendMessageA(window_, WM_VSCROLL, SB_PAGEDOWN, 0);
    PumpForPictures(10 + 6 * (page + 1));
  }
  Press(VK_UP);  // forgotten meanwhile
  PumpForPictures(10 + 36 + 6);
  EXPECT_EQ(pictures_.asked.size(), 10u + 36 + 6);

  pictures_.asked.clear();
  pictures_.whileAsked = [&] {  // for an item that will then be another one
    grid_->Refresh();
    UpdateWindow(window_);
    SendMessageA(window_, WM_TIMER, 1, 0);
    EXPECT_EQ(pictures_.asked.size(), 1u);
  };
  grid_->Refresh();
  PumpForPictures(7);
  EXPECT_EQ(pictures_.asked.size(), 7u);

  grid_->SetGrid(1, 1);
  pictures_.asked.clear();
  PumpForPictures(1);
  EXPECT_EQ(pictures_.asked, (std::vector<size_t>{0}));
  EXPECT_GT(pictures_.size.cx, 2 * former.cx);
  const HDC dc = GetDC(window_);
  EXPECT_EQ(GetPixel(dc, 200, 100), COLORREF{RGB(0x5A, 0x5A, 0x5A)});
  ReleaseDC(window_, dc);
}

TEST_F(ThumbnailGridTest, ScrollsByRowsWithABarOnlyWhenThereIsMore) {
  const auto hasBar = [&] { return (GetWindowLongPtrA(window_, GWL_STYLE) & WS_VSCROLL) != 0; };
  const auto wheel = [&](int delta) {
    SendMessageA(window_, WM_MOUSEWHEEL, MAKEWPARAM(0, delta), 0);
    return Caption();
  };
  Show(6);
  EXPECT_FALSE(hasBar());
  pictures_.selected.resize(13);
  grid_->Refresh();
  EXPECT_TRUE(hasBar());
  EXPECT_EQ(Caption(), "Items 10 through 13 of 13");  // what is new is seen
  EXPECT_EQ(wheel(70), "Items 10 through 13 of 13");
  EXPECT_EQ(wheel(50), "Items 7 through 12 of 13");
  EXPECT_EQ(wheel(-60), "Items 7 through 12 of 13");
  EXPECT_EQ(wheel(12000), "Items 1 through 6 of 13");
  EXPECT_EQ(wheel(-240), "Items 7 through 12 of 13");
  grid_->SetGrid(1, 2);
  EXPECT_EQ(Caption(), "Items 7 through 8 of 13");
  grid_->SetGrid(0, 4000000000u);
  EXPECT_EQ(Caption(), "Items 1 through 13 of 13");
  EXPECT_FALSE(hasBar());
}

// Whatever the parent does with an event: the rest of the events must not reach into nothing.
TEST_F(ThumbnailGridTest, ParentMayDoAnythingWithinAnEvent) {
  Show(8);
  onEvent_ = [&] {
    pictures_.selected.assign(2, false);
    grid_->Refresh();
  };
  Press('A', {VK_CONTROL});
  EXPECT_EQ(Told(), "+0 ");
  EXPECT_EQ(Caption(), "Items 1 through 2 of 2");
  onEvent_ = [&] { grid_->Refresh(); };
  Press('A', {VK_CONTROL});
  EXPECT_EQ(Told(), "+0 +1 ");

  onEvent_ = nullptr;
  for (const bool byKey : {false, true}) {
    Show(8);
    pictures_.selected.clear();  // and no Refresh
    byKey ? Press(VK_RETURN) : Click(1);
  }
  UpdateWindow(window_);
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(Caption(), "<No Images>");

  Show(8);
  onEvent_ = [&] {
    DestroyWindow(window_);
    grid_->Refresh();
    grid_->SetGrid(3, 3);
    grid_.reset();
  };
  Press('A', {VK_CONTROL});
  EXPECT_EQ(Told(), "+0 ");
  WNDCLASSA left;
  EXPECT_FALSE(GetClassInfoA(GetModuleHandleA(nullptr), THUMBNAIL_GRID_CLASS, &left));
}

}  // namespace
}  // namespace zyr
