#include "controls/status_icon.h"

#include "controls/vector_icon.h"

namespace zyr {
namespace {

// In radii of the disc from its middle.
struct Design {
  COLORREF disc;
  std::span<const IconStroke> sign;
};

constexpr IconStroke kDisc[] = {{{0, 0}, {0, 0}, 1}};
constexpr IconStroke kLetterI[] = {{{0, -0.42}, {0, -0.42}, 0.12}, {{0, -0.06}, {0, 0.44}, 0.095}};
constexpr IconStroke kCross[] = {{{-0.3, -0.3}, {0.3, 0.3}, 0.095},
                                 {{-0.3, 0.3}, {0.3, -0.3}, 0.095}};
constexpr IconStroke kChevron[] = {{{-0.13, -0.36}, {0.21, 0}, 0.095},
                                   {{0.21, 0}, {-0.13, 0.36}, 0.095}};
constexpr IconStroke kTick[] = {{{-0.4, 0.02}, {-0.12, 0.3}, 0.095},
                                {{-0.12, 0.3}, {0.4, -0.26}, 0.095}};

Design DesignOf(StatusIcon icon) {
  switch (icon) {
    case StatusIcon::kError:
      return {RGB(0xBE, 0x3B, 0x35), kCross};
    case StatusIcon::kStep:
      return {RGB(0x7C, 0x86, 0x90), kChevron};
    case StatusIcon::kFinal:
      return {RGB(0x3A, 0x8C, 0x5A), kTick};
    case StatusIcon::kInformation:
      break;
  }
  return {RGB(0x2F, 0x6F, 0xB3), kLetterI};
}

}  // namespace

void DrawStatusIcon(HDC target, int x, int y, int size, StatusIcon icon, COLORREF background) {
  const Design design = DesignOf(icon);
  const IconLayer layers[] = {{design.disc, kDisc}, {RGB(255, 255, 255), design.sign}};
  const double middle = size / 2.0;
  DrawIconPixels(target, x, y, size,
                 RenderIcon(layers, size, {{middle, middle}, middle - 0.5}, background));
}

}  // namespace zyr
