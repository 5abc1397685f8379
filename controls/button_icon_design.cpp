#include "controls/button_icon_design.h"

#include <initializer_list>

#include "controls/icon_strokes.h"
#include "controls/paint.h"

namespace zyr {
namespace {

// The side of a design. Lines are one and a half units wide; those along the axes lie a quarter off
// the half units, so that on a plain screen one of their edges falls between two pixels.
constexpr double kSide = 18;
constexpr double kHalfWidth = 0.75;

enum class Accent { kBlue, kRed };

struct Design {
  IconStrokes ink;
  IconStrokes accent;
  Accent color = Accent::kBlue;
};

IconStrokes Path(std::initializer_list<IconPoint> points, double halfWidth = kHalfWidth) {
  return IconPath(points, halfWidth);
}

IconStrokes Rectangle(double left, double top, double right, double bottom,
                      double halfWidth = kHalfWidth) {
  return IconRectangle({left, top}, {right, bottom}, halfWidth);
}

// Clockwise, in quarters of a turn from the right.
IconStrokes Arc(IconPoint middle, double radius, double from, double to) {
  return IconArc(middle, radius, from, to, kHalfWidth);
}

IconStrokes Ring(IconPoint middle, double radius) { return Arc(middle, radius, 0, 4); }

IconStrokes Cross(IconPoint middle, double reach) {
  return Path({{middle.x - reach, middle.y - reach}, {middle.x + reach, middle.y + reach}}) +
         Path({{middle.x - reach, middle.y + reach}, {middle.x + reach, middle.y - reach}});
}

// The corners of a view finder around a target.
Design Acquire() {
  return {Path({{2.25, 5.75}, {2.25, 2.25}, {5.75, 2.25}}) +
              Path({{12.25, 2.25}, {15.75, 2.25}, {15.75, 5.75}}) +
              Path({{15.75, 12.25}, {15.75, 15.75}, {12.25, 15.75}}) +
              Path({{5.75, 15.75}, {2.25, 15.75}, {2.25, 12.25}}),
          IconDot({9, 9}, 3)};
}

// The same target on the first of several sheets.
Design AcquireSeries() {
  return {Rectangle(1.75, 5.75, 12.25, 16.25) + Path({{4.75, 2.25}, {15.75, 2.25}, {15.75, 13.25}}),
          IconDot({7, 11}, 2.5)};
}

// A flat sensor with its cable.
Design SelectSensor() {
  return {Rectangle(2.75, 1.75, 11.25, 11.75) + Arc({10, 11.75}, 3, 2, 1) +
              Path({{10, 14.75}, {13.25, 14.75}}) + Arc({13.25, 12.25}, 2.5, 1, 0) +
              Path({{15.75, 12.25}, {15.75, 9.25}}),
          Path({{5, 6.75}, {6.5, 8.25}, {9, 5.25}})};
}

Design DeleteSelected() {
  return {Path({{15.75, 7.75}, {15.75, 2.25}, {2.25, 2.25}, {2.25, 15.75}, {7.75, 15.75}}),
          Cross({13, 13}, 2.75), Accent::kRed};
}

Design DeleteAll() {
  return {Path({{2.25, 4.25}, {15.75, 4.25}}) +
              Path({{6.25, 4.25}, {6.25, 1.75}, {11.75, 1.75}, {11.75, 4.25}}) +
              Path({{3.75, 4.25}, {4.5, 16.25}, {13.5, 16.25}, {14.25, 4.25}}),
          Path({{7.25, 7.75}, {7.25, 12.75}}) + Path({{10.75, 7.75}, {10.75, 12.75}}),
          Accent::kRed};
}

Design Options() {
  return {Path({{1.75, 3.75}, {16.25, 3.75}}) + Path({{1.75, 9.25}, {16.25, 9.25}}) +
              Path({{1.75, 14.75}, {16.25, 14.75}}),
          IconDot({11.75, 3.75}, 2.1) + IconDot({5.25, 9.25}, 2.1) + IconDot({10.25, 14.75}, 2.1)};
}

Design Thumbnails() {
  return {Rectangle(10.75, 2.25, 15.75, 7.25) + Rectangle(2.25, 10.75, 7.25, 15.75) +
              Rectangle(10.75, 10.75, 15.75, 15.75),
          Rectangle(2.25, 2.25, 7.25, 7.25) + Rectangle(3.25, 3.25, 6.25, 6.25, 1) +
              IconDot({4.75, 4.75}, 2)};
}

Design Help() {
  return {Ring({9, 9}, 7.25),
          Arc({9, 7.1}, 2.3, 2, 4.6) + Path({{10.35, 8.95}, {9, 10.4}}) + IconDot({9, 12.9}, 0.95)};
}

Design ManualTrigger() {
  return {{},
          Path({{10.25, 1.5},
                {3.75, 10.25},
                {8.25, 10.25},
                {7.25, 16.5},
                {14.25, 7.25},
                {9.5, 7.25},
                {10.25, 1.5}})};
}

// Out of the frame.
Design Return() {
  return {Path({{8.75, 2.25}, {2.25, 2.25}, {2.25, 15.75}, {8.75, 15.75}}),
          Path({{6.75, 9}, {16, 9}}) + Path({{12.5, 5.5}, {16, 9}, {12.5, 12.5}})};
}

Design Cancel() { return {Cross({9, 9}, 5.25), {}}; }

Design Stop() {
  return {Ring({9, 9}, 7.25), Rectangle(7.75, 7.75, 10.25, 10.25, 1.6), Accent::kRed};
}

// A shape and its mirror image, with the mirror in between.
Design Flip() {
  return {Path({{9, 1.75}, {9, 4.25}}) + Path({{9, 7.75}, {9, 10.25}}) +
              Path({{9, 13.75}, {9, 16.25}}) +
              Path({{11.75, 4.25}, {16.25, 13.75}, {11.75, 13.75}, {11.75, 4.25}}),
          Path({{6.25, 4.25}, {1.75, 13.75}, {6.25, 13.75}, {6.25, 4.25}}) +
              Path({{5.25, 8.75}, {3.75, 12.5}, {5.25, 12.5}, {5, 10}}, 1)};
}

// An arrow around a point, clockwise.
Design Rotate() {
  return {IconDot({9, 9.75}, 1.5),
          Arc({9, 9.75}, 6, 0, 3.35) + Path({{11.75, 1.5}, {12.25, 5.25}, {8.5, 6}})};
}

// Half dark, half light.
Design Enhance() {
  return {Ring({9, 9}, 7), Arc({9, 9}, 4.6, 3, 5) + Arc({9, 9}, 3.4, 3, 5) +
                               Arc({9, 9}, 2.2, 3, 5) + Arc({9, 9}, 1, 3, 5) +
                               Path({{9.4, 4.6}, {9.4, 13.4}})};
}

Design Undo() {
  return {{},
          Path({{2.75, 6.75}, {11, 6.75}}) + Arc({11, 11}, 4.25, 3, 5) +
              Path({{11, 15.25}, {6.25, 15.25}}) + Path({{6.5, 2.75}, {2.5, 6.75}, {6.5, 10.75}})};
}

Design Accept() { return {{}, Path({{2.75, 9.75}, {7, 14}, {15.25, 4.25}}, 1)}; }

Design DesignOf(ButtonIcon icon) {
  switch (icon) {
    case ButtonIcon::kAcquire:
      return Acquire();
    case ButtonIcon::kAcquireSeries:
      return AcquireSeries();
    case ButtonIcon::kSelectSensor:
      return SelectSensor();
    case ButtonIcon::kDeleteSelected:
      return DeleteSelected();
    case ButtonIcon::kDeleteAll:
      return DeleteAll();
    case ButtonIcon::kOptions:
      return Options();
    case ButtonIcon::kThumbnails:
      return Thumbnails();
    case ButtonIcon::kHelp:
      return Help();
    case ButtonIcon::kManualTrigger:
      return ManualTrigger();
    case ButtonIcon::kReturn:
      return Return();
    case ButtonIcon::kCancel:
      return Cancel();
    case ButtonIcon::kStop:
      return Stop();
    case ButtonIcon::kFlip:
      return Flip();
    case ButtonIcon::kRotate:
      return Rotate();
    case ButtonIcon::kEnhance:
      return Enhance();
    case ButtonIcon::kUndo:
      return Undo();
    case ButtonIcon::kAccept:
      return Accept();
  }
  return {};
}

bool IsLight(COLORREF color) {
  return GetRValue(color) * 3 + GetGValue(color) * 6 + GetBValue(color) > 1280;
}

COLORREF ColorOf(Accent accent) {
  return accent == Accent::kRed ? RGB(0xBE, 0x3B, 0x35) : RGB(0x2F, 0x6F, 0xB3);
}

uint32_t Paler(uint32_t pixel) {
  constexpr uint32_t kPercent = 38;
  return (pixel >> 24) * kPercent / 100 << 24 | (pixel & 0xFFFFFF);
}

}  // namespace

bool ColorsAreTheUsers() {
  HIGHCONTRASTA contrast = {};
  contrast.cbSize = sizeof contrast;
  return (SystemParametersInfoA(SPI_GETHIGHCONTRAST, sizeof contrast, &contrast, 0) &&
          (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0) ||
         !IsLight(GetSysColor(COLOR_BTNFACE));
}

std::vector<uint32_t> DrawButtonIcon(ButtonIcon icon, int size, bool enabled) {
  const Design design = DesignOf(icon);
  const bool plain = ColorsAreTheUsers();
  const COLORREF text = GetSysColor(enabled || !plain ? COLOR_BTNTEXT : COLOR_GRAYTEXT);
  const COLORREF ink = plain ? text : Mix(text, GetSysColor(COLOR_BTNFACE), 25);
  const IconLayer layers[] = {{ink, design.ink},
                              {plain ? text : ColorOf(design.color), design.accent}};
  std::vector<uint32_t> pixels = RenderIcon(layers, size, {{0, 0}, size / kSide});
  if (!enabled && !plain) {
    for (uint32_t& pixel : pixels) pixel = Paler(pixel);
  }
  return pixels;
}

}  // namespace zyr
