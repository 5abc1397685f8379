#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/drawing.h"
#include "platform/progress_window.h"
#include "platform/win32/system.h"
#include "platform/window_placement.h"
// After the system's headers.
#include <commctrl.h>

namespace zyr::platform {
namespace {

BOOL CALLBACK CollectProgress(HWND window, LPARAM found) {
  if (FindWindowExA(window, nullptr, PROGRESS_CLASSA, nullptr) != nullptr) {
    reinterpret_cast<std::vector<HWND>*>(found)->push_back(window);
  }
  return TRUE;
}

std::vector<HWND> ProgressFrames() {
  std::vector<HWND> found;
  EnumThreadWindows(GetCurrentThreadId(), CollectProgress, reinterpret_cast<LPARAM>(&found));
  return found;
}

LRESULT PositionOf(HWND frame) {
  return SendMessageA(FindWindowExA(frame, nullptr, PROGRESS_CLASSA, nullptr), PBM_GETPOS, 0, 0);
}

// A dialog box without a template, active.
class Owner {
 public:
  Owner()
      : window_(CreateWindowExA(0, "#32770", "owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 20, 400,
                                300, nullptr, nullptr, nullptr, nullptr)) {
    SetActiveWindow(window_);
  }
  ~Owner() { DestroyWindow(window_); }
  Owner(const Owner&) = delete;
  Owner& operator=(const Owner&) = delete;

  HWND window() const { return window_; }

 private:
  HWND window_;
};

TEST(ProgressWindowWin32, AppearsLateAboveTheActiveWindowAndLeavesItActive) {
  const Owner owner;
  ASSERT_EQ(GetActiveWindow(), owner.window());
  {
    const uint64_t start = GetTickCount64();
    ProgressWindow progress("Preparing Image");
    progress.Advance(0.25);
    const bool early = GetTickCount64() - start < 300;  // not on a busy machine
    const std::vector<HWND> frames = ProgressFrames();
    ASSERT_EQ(frames.size(), 1u);
    EXPECT_TRUE(!early || !IsWindowVisible(frames[0]));
    EXPECT_EQ(GetWindow(frames[0], GW_OWNER), owner.window());
    Sleep(350);
    PostMessageA(owner.window(), WM_APP, 0, 0);
    progress.Advance(0.5);
    EXPECT_TRUE(IsWindowVisible(frames[0]));
    EXPECT_EQ(PositionOf(frames[0]), 50);
    progress.Advance(7);
    EXPECT_EQ(PositionOf(frames[0]), 100);
    EXPECT_EQ(GetActiveWindow(), owner.window());
    EXPECT_FALSE(GetUpdateRect(frames[0], nullptr, FALSE));
    MSG message;
    EXPECT_TRUE(PeekMessageA(&message, owner.window(), WM_APP, WM_APP, PM_REMOVE));
  }
  EXPECT_TRUE(ProgressFrames().empty());
}

TEST(ProgressWindowWin32, OutlivesItsOwner) {
  auto owner = std::make_unique<Owner>();
  ProgressWindow progress("text");
  owner.reset();
  Sleep(350);
  progress.Advance(1);
  EXPECT_TRUE(ProgressFrames().empty());
}

TEST(WindowPlacementWin32, RoundTripsAndRepairsTheLength) {
  const Owner owner;
  auto bytes = PlacementOf(owner.window());
  ASSERT_TRUE(bytes);
  EXPECT_EQ((*bytes)[0], 44);
  EXPECT_FALSE(IsMinimised(owner.window()));
  (*bytes)[0] = 0;  // length
  const PlacementBytes moved = [&] {
    PlacementBytes copy = *bytes;
    copy[28] = static_cast<uint8_t>(copy[28] + 9);  // left edge
    copy[36] = static_cast<uint8_t>(copy[36] + 9);  // right edge
    return copy;
  }();
  ApplyPlacement(owner.window(), moved);
  const auto after = PlacementOf(owner.window());
  ASSERT_TRUE(after);
  EXPECT_EQ((*after)[28], moved[28]);
  EXPECT_EQ((*after)[36], moved[36]);
  EXPECT_FALSE(PlacementOf(nullptr));
  EXPECT_GT(CurrentScreen().right, CurrentScreen().left);
}

// A 32-bit picture in memory to draw into, top row first.
class Canvas {
 public:
  Canvas(int width, int height) : context_(CreateCompatibleDC(nullptr)), width_(width) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    bitmap_ = CreateDIBSection(context_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    pixels_ = static_cast<const uint32_t*>(bits);
    previous_ = SelectObject(context_, bitmap_);
  }
  ~Canvas() {
    SelectObject(context_, previous_);
    DeleteObject(bitmap_);
    DeleteDC(context_);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  HDC context() const { return context_; }
  uint32_t At(int x, int y) const { return pixels_[y * width_ + x] & 0xFFFFFF; }

 private:
  HDC context_;
  int width_;
  HBITMAP bitmap_ = nullptr;
  const uint32_t* pixels_ = nullptr;
  HGDIOBJ previous_ = nullptr;
};

TEST(DrawingWin32, BottomUpBitmapsOfEachDepthStandUpright) {
  const uint8_t palette[] = {10, 20, 30, 0, 40, 50, 60, 0};  // blue, green, red
  const uint32_t dark = 0x1E140A;
  const uint32_t light = 0x3C3228;
  const uint8_t bits8[] = {0, 0, 1, 9, 1, 1, 0, 9};  // bottom row, top row
  const uint8_t bits1[] = {0x20, 9, 9, 9, 0xC0, 9, 9, 9};
  const uint8_t bits24[] = {10, 20, 30, 10, 20, 30, 40, 50, 60, 9, 9, 9,
                            40, 50, 60, 40, 50, 60, 10, 20, 30, 9, 9, 9};
  for (const DibView& dib :
       {DibView{3, 2, 1, palette, 2, bits1}, DibView{3, 2, 8, palette, 2, bits8},
        DibView{3, 2, 24, nullptr, 0, bits24}}) {
    const Canvas canvas(5, 4);
    ASSERT_TRUE(DrawDib(canvas.context(), {1, 1, 3, 2}, dib, {0, 0, 3, 2})) << dib.bitsPerPixel;
    EXPECT_EQ(canvas.At(1, 1), light) << dib.bitsPerPixel;
    EXPECT_EQ(canvas.At(3, 1), dark) << dib.bitsPerPixel;
    EXPECT_EQ(canvas.At(1, 2), dark) << dib.bitsPerPixel;
    EXPECT_EQ(canvas.At(3, 2), light) << dib.bitsPerPixel;
    EXPECT_EQ(canvas.At(0, 0), 0u);
    EXPECT_EQ(canvas.At(4, 3), 0u);
  }
  const DibView dib = {3, 2, 8, palette, 2, bits8};
  EXPECT_FALSE(DrawDib(nullptr, {0, 0, 3, 2}, dib, {0, 0, 3, 2}));
}

TEST(DrawingWin32, PartsCountFromTheTopAndANegativeHeightTurnsThemOver) {
  const uint8_t bits[] = {4, 0, 0, 0, 3, 0, 0, 0, 2, 0, 0, 0, 1, 0, 0, 0};  // bottom row first
  const DibView dib = {1, 4, 24, nullptr, 0, bits};
  const std::pair<DrawRect, uint32_t> cases[] = {
      {{0, 0, 1, 2}, 1}, {{0, 1, 1, 2}, 2}, {{0, 0, 1, -4}, 4}, {{0, 1, 1, -2}, 3}};
  for (const auto& [from, top] : cases) {
    const Canvas canvas(1, 4);
    const int height = std::abs(from.height);
    ASSERT_TRUE(DrawDib(canvas.context(), {0, 0, 1, height}, dib, from));
    EXPECT_EQ(canvas.At(0, 0), top);
    EXPECT_EQ(canvas.At(0, 1), from.height < 0 ? top - 1 : top + 1);
  }
}

}  // namespace
}  // namespace zyr::platform
