#include "controls/icon_button.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <set>
#include <vector>

#include "controls/activation_context.h"
#include "controls/button_icon_design.h"
#include "controls/dialog_font.h"
#include "controls/vector_icon.h"

namespace zyr {
namespace {

std::vector<ButtonIcon> AllIcons() {
  std::vector<ButtonIcon> icons;
  for (int i = 0; i <= static_cast<int>(ButtonIcon::kStop); ++i) {
    icons.push_back(static_cast<ButtonIcon>(i));
  }
  return icons;
}

uint32_t Opacity(uint32_t pixel) { return pixel >> 24; }

// The darkest pixel of a picture on white.
int DarkestOf(HIMAGELIST images, int index) {
  const HDC screen = GetDC(nullptr);
  const HDC dc = CreateCompatibleDC(screen);
  const int size = Scaled(18);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, size, size);
  const HGDIOBJ previous = SelectObject(dc, bitmap);
  PatBlt(dc, 0, 0, size, size, WHITENESS);
  ImageList_Draw(images, index, dc, 0, 0, ILD_TRANSPARENT);
  int darkest = 255;
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) darkest = std::min<int>(darkest, GetGValue(GetPixel(dc, x, y)));
  }
  DeleteObject(SelectObject(dc, previous));
  DeleteDC(dc);
  ReleaseDC(nullptr, screen);
  return darkest;
}

TEST(VectorIcon, LayersCoverEachOtherWithSmoothEdges) {
  constexpr IconStroke kWide[] = {{{0, 2}, {4, 2}, 1.5}};
  constexpr IconStroke kDot[] = {{{2, 2}, {2, 2}, 0.5}};
  const IconLayer layers[] = {{RGB(10, 20, 30), kWide}, {RGB(200, 100, 0), kDot}};
  const auto pixels = RenderIcon(layers, 4, {{0, 0}, 1});
  EXPECT_EQ(pixels[0], 0x800A141Eu);  // the edge runs through the middle of the row
  EXPECT_EQ(pixels[4 + 0], 0xFF0A141Eu);
  EXPECT_EQ(RenderIcon(layers, 8, {{0, 0}, 2})[0] >> 24, 0u);
  const auto opaque = RenderIcon(layers, 4, {{0, 0}, 1}, RGB(255, 255, 255));
  EXPECT_EQ(opaque[0], 0xFF858A8Fu);
  EXPECT_GT((opaque[5] >> 16 & 0xFF), 0x0Au);  // something of the dot
}

TEST(ButtonIconDesign, EveryIconIsItsOwnAndLeavesItsEdgeFree) {
  for (const int size : {16, 18, 27, 36}) {
    std::set<std::vector<uint32_t>> seen;
    for (const ButtonIcon icon : AllIcons()) {
      const auto pixels = DrawButtonIcon(icon, size, true);
      ASSERT_EQ(pixels.size(), static_cast<size_t>(size) * size);
      EXPECT_TRUE(seen.insert(pixels).second);
      EXPECT_TRUE(std::any_of(pixels.begin(), pixels.end(),
                              [](uint32_t pixel) { return Opacity(pixel) == 255; }));
      for (int i = 0; i < size; ++i) {  // nothing is cut off
        EXPECT_LT(Opacity(pixels[i]), 128u);
        EXPECT_LT(Opacity(pixels[i * size]), 128u);
        EXPECT_LT(Opacity(pixels[i * size + size - 1]), 128u);
        EXPECT_LT(Opacity(pixels[(size - 1) * size + i]), 128u);
      }
      for (const uint32_t pixel : DrawButtonIcon(icon, size, false)) {
        ASSERT_LT(Opacity(pixel), 128u);
      }
    }
  }
}

TEST(ButtonIcons, GiveEveryStateItsPictureAndCanBeReplaced) {
  const ActivationContext look;
  const HWND button = CreateWindowA("BUTTON", "&Stop", WS_POPUP | BS_PUSHBUTTON, 0, 0, 150, 30,
                                    nullptr, nullptr, nullptr, nullptr);
  ASSERT_NE(button, nullptr);
  {
    ButtonIcons icons;
    HIMAGELIST former = nullptr;
    for (const ButtonIcon icon : {ButtonIcon::kCancel, ButtonIcon::kStop}) {
      icons.Set(button, icon);
      BUTTON_IMAGELIST place = {};
      ASSERT_TRUE(SendMessageA(button, BCM_GETIMAGELIST, 0, reinterpret_cast<LPARAM>(&place)));
      EXPECT_NE(place.himl, former);
      former = place.himl;
      int width = 0;
      int height = 0;
      EXPECT_TRUE(ImageList_GetIconSize(place.himl, &width, &height));
      ASSERT_EQ(ImageList_GetImageCount(place.himl), 6);
      EXPECT_LT(DarkestOf(place.himl, 0), 90);
      EXPECT_GT(DarkestOf(place.himl, 3), 120);  // disabled
      EXPECT_EQ(width, Scaled(18));
      EXPECT_EQ(height, Scaled(18));
    }
    char caption[20];
    GetWindowTextA(button, caption, sizeof caption);
    EXPECT_STREQ(caption, "&Stop");
    LOGFONTW large = MessageFont();
    large.lfHeight = -Scaled(40);
    const Font font(large);
    SendMessageA(button, WM_SETFONT, reinterpret_cast<WPARAM>(font.handle()), FALSE);
    icons.Set(button, ButtonIcon::kStop);
    BUTTON_IMAGELIST place = {};
    SendMessageA(button, BCM_GETIMAGELIST, 0, reinterpret_cast<LPARAM>(&place));
    int width = 0;
    int height = 0;
    ImageList_GetIconSize(place.himl, &width, &height);
    EXPECT_GE(height, Scaled(40)) << "as high as the letters";
    DestroyWindow(button);
  }
}

}  // namespace
}  // namespace zyr
