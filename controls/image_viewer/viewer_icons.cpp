#include "controls/image_viewer/viewer_icons.h"

#include <utility>

namespace zyr {
namespace {

constexpr COLORREF kLight = RGB(0xE6, 0xE6, 0xE6);
constexpr COLORREF kAccent = RGB(0x7F, 0xBF, 0xFF);
constexpr COLORREF kDark = RGB(0x10, 0x10, 0x10);
constexpr COLORREF kWhite = RGB(0xFF, 0xFF, 0xFF);

// Buttons: designs of 24 units within the 40 of a button. Those along the axes lie so that on a
// plain screen their edges fall between two pixels.
constexpr double kButton = 40;
constexpr double kMargin = 8;
constexpr double kHalfWidth = 1;

// Pointers.
constexpr double kThin = 0.75;
constexpr double kEdge = 1.1;

IconStrokes Plus(IconPoint at, double reach, double halfWidth) {
  return IconPath({{at.x - reach, at.y}, {at.x + reach, at.y}}, halfWidth) +
         IconPath({{at.x, at.y - reach}, {at.x, at.y + reach}}, halfWidth);
}

IconStrokes Lens(IconPoint at, double radius, double handle, double halfWidth) {
  const double start = at.x + radius * 0.74;
  const double rise = at.y - at.x;
  return IconRing(at, radius, halfWidth) +
         IconPath({{start, start + rise}, {start + handle, start + handle + rise}},
                  halfWidth * 1.4);
}

// Four corners of a frame, `reach` long.
IconStrokes Corners(double low, double high, double reach, double halfWidth) {
  return IconPath({{low, low + reach}, {low, low}, {low + reach, low}}, halfWidth) +
         IconPath({{high - reach, low}, {high, low}, {high, low + reach}}, halfWidth) +
         IconPath({{high, high - reach}, {high, high}, {high - reach, high}}, halfWidth) +
         IconPath({{low + reach, high}, {low, high}, {low, high - reach}}, halfWidth);
}

// The right half of a disc.
IconStrokes HalfDisc(IconPoint at, double radius, double halfWidth) {
  IconStrokes strokes = IconPath({{at.x, at.y - radius}, {at.x, at.y + radius}}, halfWidth);
  for (double r = radius; r > 0; r -= halfWidth) {
    strokes = std::move(strokes) + IconArc(at, r, -1, 1, halfWidth);
  }
  return strokes;
}

IconStrokes Rays(IconPoint at, double from, double to, double halfWidth) {
  constexpr double kDiagonal = 0.7071;
  IconStrokes strokes;
  for (const auto& [x, y] : std::initializer_list<IconPoint>{{1, 0},
                                                             {kDiagonal, kDiagonal},
                                                             {0, 1},
                                                             {-kDiagonal, kDiagonal},
                                                             {-1, 0},
                                                             {-kDiagonal, -kDiagonal},
                                                             {0, -1},
                                                             {kDiagonal, -kDiagonal}}) {
    strokes.push_back(
        {{at.x + x * from, at.y + y * from}, {at.x + x * to, at.y + y * to}, halfWidth});
  }
  return strokes;
}

// Axes and the curve between them.
IconStrokes Axes(double low, double high, double halfWidth) {
  return IconPath({{low, low}, {low, high}, {high, high}}, halfWidth);
}

IconStrokes GammaCurve(double low, double high, double halfWidth) {
  return IconArc({high, high}, high - low, 2, 3, halfWidth);
}

// An open hand, 24 units high.
IconStrokes Hand() {
  constexpr double kFinger = 1.35;
  return IconPath({{8, 13}, {7, 6.2}}, kFinger) + IconPath({{11, 12}, {10.8, 3.4}}, kFinger) +
         IconPath({{14, 12}, {14.5, 3.9}}, kFinger) + IconPath({{17, 13}, {18.2, 6.8}}, kFinger) +
         IconPath({{9, 17.5}, {4.1, 12.6}}, kFinger) + IconPath({{9.9, 14.2}, {15.2, 14.2}}, 3.2) +
         IconPath({{11, 18}, {14, 18}}, 3.2);
}

// Four arrows along the diagonals, from the middle or towards it.
IconStrokes DiagonalArrows(bool outward) {
  IconStrokes strokes;
  for (const auto& [x, y] : std::initializer_list<IconPoint>{{1, 1}, {-1, 1}, {-1, -1}, {1, -1}}) {
    const auto at = [&](double dx, double dy) { return IconPoint{12 + x * dx, 12 + y * dy}; };
    const double tip = outward ? 9 : 3;
    const double barb = outward ? 4 : 8;
    strokes = std::move(strokes) + IconPath({at(3, 3), at(9, 9)}, kHalfWidth) +
              IconPath({at(barb, tip), at(tip, tip), at(tip, barb)}, kHalfWidth);
  }
  return strokes;
}

IconStrokes Sparkle(IconPoint at, double reach, double halfWidth) {
  return Plus(at, reach, halfWidth);
}

IconDesign FreeZoom() {
  return {{kLight, Lens({10, 10}, 7, 7, kHalfWidth)},
          {kAccent, IconPath({{8, 6.6}, {8, 12.6}, {12.4, 10.6}, {8, 6.6}}, 0.8) +
                        IconPath({{9, 9}, {9.6, 10.6}}, 0.9)}};
}

IconDesign ZoomOut() {
  return {{kLight, Lens({10, 10}, 7, 7, kHalfWidth)},
          {kAccent, IconPath({{7, 10}, {13, 10}}, kHalfWidth)}};
}

IconDesign ZoomIn() {
  return {{kLight, Lens({10, 10}, 7, 7, kHalfWidth)}, {kAccent, Plus({10, 10}, 3, kHalfWidth)}};
}

IconDesign ZoomToFit() {
  return {{kLight, Corners(3, 21, 5, kHalfWidth)},
          {kAccent, IconRectangle({8, 8}, {16, 16}, kHalfWidth)}};
}

IconDesign FullScreen() { return {{kLight, DiagonalArrows(true)}}; }

IconDesign FullScreenExit() { return {{kAccent, DiagonalArrows(false)}}; }

IconDesign BrightnessContrast() {
  return {{kLight, Rays({12, 12}, 8.2, 10.4, kHalfWidth) + IconRing({12, 12}, 5, kHalfWidth)},
          {kLight, HalfDisc({12, 12}, 4.4, 0.7)}};
}

IconDesign Gamma() {
  return {{kLight, Axes(3, 21, kHalfWidth)}, {kAccent, GammaCurve(6.5, 20, kHalfWidth)}};
}

IconDesign SpotMagnify() {
  return {{kLight, IconPath({{6, 21}, {3, 21}, {3, 3}, {21, 3}, {21, 6}}, kHalfWidth)},
          {kAccent, Lens({13, 13}, 5, 5.2, kHalfWidth)}};
}

IconDesign SpotEnhance() {
  return {{kLight, IconRectangle({3, 3}, {21, 21}, kHalfWidth)},
          {kAccent, IconRing({12, 12}, 5, kHalfWidth) + HalfDisc({12, 12}, 4.4, 0.7)}};
}

// A wand.
IconDesign ImageOperations() {
  return {
      {kLight, IconPath({{4, 20}, {14, 10}}, 1.4)},
      {kAccent, Sparkle({17, 6.5}, 3, 0.9) + Sparkle({8, 6}, 2, 0.8) + Sparkle({19, 15}, 2, 0.8)}};
}

IconDesign Pan() { return {{kLight, Hand()}}; }

IconDesign DesignOf(ViewerIcon icon) {
  switch (icon) {
    case ViewerIcon::kFreeZoom:
      return FreeZoom();
    case ViewerIcon::kZoomOut:
      return ZoomOut();
    case ViewerIcon::kZoomToFit:
      return ZoomToFit();
    case ViewerIcon::kZoomIn:
      return ZoomIn();
    case ViewerIcon::kFullScreen:
      return FullScreen();
    case ViewerIcon::kFullScreenExit:
      return FullScreenExit();
    case ViewerIcon::kBrightnessContrast:
      return BrightnessContrast();
    case ViewerIcon::kGamma:
      return Gamma();
    case ViewerIcon::kSpotMagnify:
      return SpotMagnify();
    case ViewerIcon::kSpotEnhance:
      return SpotEnhance();
    case ViewerIcon::kImageOperations:
      return ImageOperations();
    case ViewerIcon::kPan:
      return Pan();
  }
  return {};
}

// White on a dark edge.
IconDesign Edged(const IconStrokes& strokes) {
  return {{kDark, WidenedBy(strokes, kEdge)}, {kWhite, strokes}};
}

IconDesign operator+(IconDesign a, const IconDesign& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// A cross that leaves the pixel in its middle free.
IconStrokes OpenCross(IconPoint at, double from, double to, double halfWidth) {
  return IconPath({{at.x - to, at.y}, {at.x - from, at.y}}, halfWidth) +
         IconPath({{at.x + from, at.y}, {at.x + to, at.y}}, halfWidth) +
         IconPath({{at.x, at.y - to}, {at.x, at.y - from}}, halfWidth) +
         IconPath({{at.x, at.y + from}, {at.x, at.y + to}}, halfWidth);
}

// Tools for a spot: where its middle will be, and below it what it does.
constexpr IconPoint kSpotHot = {9.5, 9.5};
constexpr IconPoint kBadge = {21.5, 21.5};

IconDesign SpotCross() { return Edged(OpenCross(kSpotHot, 2.5, 7, kThin)); }

CursorDesign MoveCursor() { return {{16.5, 16.5}, Edged(MovedBy(Hand(), {4, 4}))}; }

CursorDesign MagnifyCursor() {
  return {{12.5, 12.5},
          Edged(Lens({12.5, 12.5}, 8, 9, kHalfWidth)) + Edged(Plus({12.5, 12.5}, 3.5, kThin))};
}

// The tip of the pipette is at the lower left.
CursorDesign DripperCursor() {
  const IconStrokes outline =
      IconPath({{18.5, 13.5}, {9.5, 22.5}}, 2.7) + IconPath({{8.5, 23.5}, {5.5, 26.5}}, 1.2) +
      IconPath({{16, 9}, {23, 16}}, 1.3) + IconPath({{21.5, 10.5}, {24.5, 7.5}}, 3.2);
  return {{4.5, 27.5},
          Edged(outline) + IconDesign{{kDark, IconPath({{16, 16}, {9.8, 22.2}}, 1.1)}}};
}

CursorDesign PixelCrossCursor() {
  return {{15.5, 15.5}, Edged(OpenCross({15.5, 15.5}, 3.5, 12.5, kThin))};
}

CursorDesign MagnifySpotCursor() {
  return {kSpotHot, SpotCross() + Edged(Lens({20.5, 20.5}, 4.5, 5, kThin))};
}

CursorDesign EnhanceSpotCursor() {
  return {kSpotHot,
          SpotCross() + Edged(IconRing(kBadge, 6, kThin) + HalfDisc(kBadge, 5.4, kThin)) +
              IconDesign{{kDark, MovedBy(ScaledBy(HalfDisc({0, 0}, 4.6, kThin), -1), kBadge)}}};
}

CursorDesign ColorizeSpotCursor() {
  const IconPoint dots[] = {
      {kBadge.x, kBadge.y - 3.6}, {kBadge.x - 3.8, kBadge.y + 3}, {kBadge.x + 3.8, kBadge.y + 3}};
  const IconStrokes all = IconDot(dots[0], 3.2) + IconDot(dots[1], 3.2) + IconDot(dots[2], 3.2);
  return {kSpotHot, SpotCross() + Edged(WidenedBy(all, 0.6)) +
                        IconDesign{{RGB(0xE8, 0x3A, 0x30), IconDot(dots[0], 3)},
                                   {RGB(0x2F, 0xA8, 0x4F), IconDot(dots[1], 3)},
                                   {RGB(0x2E, 0x7B, 0xE6), IconDot(dots[2], 3)}}};
}

CursorDesign BrightnessContrastCursor() {
  constexpr IconPoint kMiddle = {15.5, 15.5};
  return {kMiddle,
          Edged(Rays(kMiddle, 10, 12.5, kThin) + IconRing(kMiddle, 6, kHalfWidth)) +
              IconDesign{{kDark, IconDot(kMiddle, 5)}, {kWhite, HalfDisc(kMiddle, 5, kThin)}}};
}

CursorDesign GammaCursor() {
  return {{15.5, 15.5}, Edged(Axes(6.5, 26.5, kThin)) + Edged(GammaCurve(9.5, 25.5, kThin))};
}

}  // namespace

std::vector<uint32_t> DrawViewerIcon(ViewerIcon icon, int side, COLORREF background) {
  const IconDesign design = DesignOf(icon);
  std::vector<IconLayer> layers;
  for (const ColoredStrokes& layer : design) layers.push_back({layer.color, layer.strokes});
  const double scale = side / kButton;
  return RenderIcon(layers, side, {{kMargin * scale, kMargin * scale}, scale}, background);
}

CursorDesign DesignOfCursor(ViewerCursor cursor) {
  switch (cursor) {
    case ViewerCursor::kMove:
      return MoveCursor();
    case ViewerCursor::kMagnify:
      return MagnifyCursor();
    case ViewerCursor::kDripper:
      return DripperCursor();
    case ViewerCursor::kPixelCross:
      return PixelCrossCursor();
    case ViewerCursor::kMagnifySpot:
      return MagnifySpotCursor();
    case ViewerCursor::kEnhanceSpot:
      return EnhanceSpotCursor();
    case ViewerCursor::kColorizeSpot:
      return ColorizeSpotCursor();
    case ViewerCursor::kBrightnessContrast:
      return BrightnessContrastCursor();
    case ViewerCursor::kGamma:
      return GammaCursor();
    case ViewerCursor::kArrow:
    case ViewerCursor::kCross:
    case ViewerCursor::kHidden:
      break;
  }
  return {};
}

}  // namespace zyr
