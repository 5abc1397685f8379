#include "controls/status_icon.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

namespace zyr {
namespace {

// Positions in radii of the disc from its middle, y down.
struct Point {
  double x = 0;
  double y = 0;
};

// A line with round ends; of no length it is a dot.
struct Stroke {
  Point from;
  Point to;
  double halfWidth;
};

struct Design {
  COLORREF disc;
  std::span<const Stroke> sign;
};

constexpr Stroke kLetterI[] = {{{0, -0.42}, {0, -0.42}, 0.12}, {{0, -0.06}, {0, 0.44}, 0.095}};
constexpr Stroke kCross[] = {{{-0.3, -0.3}, {0.3, 0.3}, 0.095}, {{-0.3, 0.3}, {0.3, -0.3}, 0.095}};
constexpr Stroke kChevron[] = {{{-0.13, -0.36}, {0.21, 0}, 0.095},
                               {{0.21, 0}, {-0.13, 0.36}, 0.095}};
constexpr Stroke kTick[] = {{{-0.4, 0.02}, {-0.12, 0.3}, 0.095},
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

double DistanceTo(const Stroke& stroke, Point p) {
  const Point along = {stroke.to.x - stroke.from.x, stroke.to.y - stroke.from.y};
  const Point offset = {p.x - stroke.from.x, p.y - stroke.from.y};
  const double length2 = along.x * along.x + along.y * along.y;
  const double t =
      length2 == 0 ? 0 : std::clamp((offset.x * along.x + offset.y * along.y) / length2, 0.0, 1.0);
  return std::hypot(offset.x - t * along.x, offset.y - t * along.y);
}

// How much of a pixel lies inside a shape whose edge is `distance` pixels away, positive outside.
double Coverage(double distance) { return std::clamp(0.5 - distance, 0.0, 1.0); }

double SignCoverage(std::span<const Stroke> sign, Point p, double radius) {
  double coverage = 0;
  for (const Stroke& stroke : sign) {
    coverage = std::max(coverage, Coverage((DistanceTo(stroke, p) - stroke.halfWidth) * radius));
  }
  return coverage;
}

double Blend(double from, double to, double share) { return from + (to - from) * share; }

// As a 32-bit bitmap holds it.
uint32_t PixelOf(const Design& design, COLORREF background, double disc, double sign) {
  const auto channel = [&](int behind, int front) {
    const double blended = Blend(Blend(behind, front, disc), 255, sign);
    return static_cast<uint32_t>(blended + 0.5);
  };
  return channel(GetRValue(background), GetRValue(design.disc)) << 16 |
         channel(GetGValue(background), GetGValue(design.disc)) << 8 |
         channel(GetBValue(background), GetBValue(design.disc));
}

}  // namespace

void DrawStatusIcon(HDC target, int x, int y, int size, StatusIcon icon, COLORREF background) {
  const Design design = DesignOf(icon);
  const double radius = size / 2.0 - 0.5;
  std::vector<uint32_t> pixels;
  pixels.reserve(static_cast<size_t>(size) * size);
  for (int row = 0; row < size; ++row) {
    for (int column = 0; column < size; ++column) {
      const Point p = {(column + 0.5 - size / 2.0) / radius, (row + 0.5 - size / 2.0) / radius};
      const double disc = Coverage((std::hypot(p.x, p.y) - 1) * radius);
      pixels.push_back(PixelOf(design, background, disc, SignCoverage(design.sign, p, radius)));
    }
  }
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = size;
  info.bmiHeader.biHeight = -size;  // first row on top
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  SetDIBitsToDevice(target, x, y, size, size, 0, 0, 0, size, pixels.data(), &info, DIB_RGB_COLORS);
}

}  // namespace zyr
