#include "controls/exposure_panel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "resources/resource.h"

namespace zyr {
namespace {

// The text is white on the surface. Where the window shows ink, in its own coordinates.
RECT InkOf(HWND window) {
  RECT client;
  GetClientRect(window, &client);
  RECT ink = {client.right, client.bottom, 0, 0};
  const HDC dc = GetDC(window);
  for (LONG y = 0; y < client.bottom; ++y) {
    for (LONG x = 0; x < client.right; ++x) {
      if (GetPixel(dc, x, y) != RGB(255, 255, 255)) continue;
      ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x),
             std::max(ink.bottom, y)};
    }
  }
  ReleaseDC(window, dc);
  return ink;
}

// Rows with ink that others without it keep apart.
int BandsOf(HWND window) {
  RECT client;
  GetClientRect(window, &client);
  const HDC dc = GetDC(window);
  int bands = 0;
  bool inked = false;
  for (LONG y = 0; y < client.bottom; ++y) {
    const bool above = inked;
    inked = false;
    for (LONG x = 0; x < client.right && !inked; ++x) {
      inked = GetPixel(dc, x, y) == RGB(255, 255, 255);
    }
    bands += inked && !above ? 1 : 0;
  }
  ReleaseDC(window, dc);
  return bands;
}

TEST(ExposurePanelTest, FitsItsTextToTheWindow) {
  ExposurePanel panel;
  const HWND window = CreateWindowA(EXPOSURE_PANEL_CLASS, "", WS_POPUP | WS_VISIBLE, 0, 0, 1, 1,
                                    nullptr, nullptr, nullptr, nullptr);
  ASSERT_NE(window, nullptr);
  panel.Attach(window);
  panel.SetText("Ready For X-ray Exposure");
  for (const SIZE size : {SIZE{0, 0}, SIZE{1, 1}, SIZE{500, 9}}) {
    SetWindowPos(window, nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER);
    UpdateWindow(window);
  }
  for (const SIZE size : {SIZE{300, 320}, SIZE{600, 160}}) {
    SetWindowPos(window, nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER);
    UpdateWindow(window);
    const RECT ink = InkOf(window);
    EXPECT_GT(ink.left, 5);
    EXPECT_GT(ink.top, 5);
    EXPECT_LT(ink.right, size.cx - 5);
    EXPECT_LT(ink.bottom, size.cy - 5);
    EXPECT_GT(ink.right - ink.left, size.cx / 2) << "large";
    EXPECT_GT(ink.bottom - ink.top, size.cy * 2 / 5);
    EXPECT_LE(std::abs(ink.top + ink.bottom - size.cy), size.cy / 5) << "in the middle";
  }
  SetWindowPos(window, nullptr, 0, 0, 600, 600, SWP_NOZORDER);
  UpdateWindow(window);
  EXPECT_EQ(BandsOf(window), 3) << "the sign's dot and two lines, for a little size";
  DestroyWindow(window);
  panel.SetText("nobody sees it");
}

}  // namespace
}  // namespace zyr
