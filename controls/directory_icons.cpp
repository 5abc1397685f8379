#include "controls/directory_icons.h"

#include <cmath>
#include <initializer_list>
#include <numbers>

#include "controls/button_icon_design.h"
#include "controls/icon_strokes.h"

namespace zyr {
namespace {

// The side of a design. Lines are a unit wide and lie on half units, so that on a plain screen they
// fill whole pixels.
constexpr double kSide = 16;
constexpr double kHalfWidth = 0.5;

constexpr COLORREF kDriveColor = RGB(0x55, 0x5B, 0x63);
constexpr COLORREF kDriveBody = RGB(0xE3, 0xE6, 0xEA);
constexpr COLORREF kAccent = RGB(0x2F, 0x6F, 0xB3);
constexpr COLORREF kFolderColor = RGB(0xB0, 0x7D, 0x24);
constexpr COLORREF kFolderBody = RGB(0xF6, 0xD6, 0x86);

struct Design {
  IconStrokes body;
  IconStrokes lines;
  IconStrokes accent = {};
};

IconStrokes Path(std::initializer_list<IconPoint> points, double halfWidth = kHalfWidth) {
  return IconPath(points, halfWidth);
}

Design Folder() {
  return {
      Path({{2.5, 6.5}, {13.5, 6.5}}, 1) + Path({{3.5, 9.5}, {12.5, 9.5}}, 3) +
          Path({{2.5, 4}, {5.5, 4}}, 1),
      Path(
          {{1.5, 12.5}, {1.5, 3.5}, {6, 3.5}, {7.5, 5.5}, {14.5, 5.5}, {14.5, 12.5}, {1.5, 12.5}})};
}

// A flat box with a lamp.
Design FixedDrive() {
  return {Path({{3, 9}, {13, 9}}, 2.5),
          Path({{1.5, 5.5}, {14.5, 5.5}, {14.5, 11.5}, {1.5, 11.5}, {1.5, 5.5}}),
          IconDot({11.75, 8.75}, 1.1)};
}

// The same with an arrow out of it.
Design RemovableDrive() {
  return {Path({{3, 12}, {13, 12}}, 2),
          Path({{1.5, 9.5}, {14.5, 9.5}, {14.5, 14.5}, {1.5, 14.5}, {1.5, 9.5}}),
          Path({{8, 2.5}, {5.5, 5.5}, {10.5, 5.5}, {8, 2.5}}, 0.8) + Path({{8, 3.5}, {8, 5.5}}, 1)};
}

// The same at the end of a line.
Design NetworkDrive() {
  return {Path({{3, 5}, {13, 5}}, 2),
          Path({{1.5, 2.5}, {14.5, 2.5}, {14.5, 7.5}, {1.5, 7.5}, {1.5, 2.5}}) +
              Path({{8.5, 8}, {8.5, 12}}),
          Path({{1.5, 13.5}, {14.5, 13.5}}, 0.6) + IconDot({8.5, 13.5}, 1.6)};
}

// A disc: its edge in many short lines.
Design OpticalDrive() {
  constexpr int kPieces = 32;
  constexpr double kRadius = 6.5;
  const auto at = [](int piece) {
    const double angle = 2 * std::numbers::pi * piece / kPieces;
    return IconPoint{8 + kRadius * std::cos(angle), 8 + kRadius * std::sin(angle)};
  };
  IconStrokes edge;
  for (int i = 0; i < kPieces; ++i) edge.push_back({at(i), at(i + 1), kHalfWidth});
  return {IconDot({8, 8}, kRadius), edge, IconDot({8, 8}, 2)};
}

Design DesignOf(DirectoryKind kind) {
  switch (kind) {
    case DirectoryKind::kFixedDrive:
      return FixedDrive();
    case DirectoryKind::kRemovableDrive:
      return RemovableDrive();
    case DirectoryKind::kNetworkDrive:
      return NetworkDrive();
    case DirectoryKind::kOpticalDrive:
      return OpticalDrive();
    case DirectoryKind::kFolder:
      break;
  }
  return Folder();
}

}  // namespace

Icon DrawDirectoryIcon(DirectoryKind kind, int size) {
  const Design design = DesignOf(kind);
  const bool isFolder = kind == DirectoryKind::kFolder;
  const bool plain = ColorsAreTheUsers();
  const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
  const IconLayer layers[] = {{plain      ? GetSysColor(COLOR_WINDOW)
                               : isFolder ? kFolderBody
                                          : kDriveBody,
                               design.body},
                              {plain      ? text
                               : isFolder ? kFolderColor
                                          : kDriveColor,
                               design.lines},
                              {plain ? text : kAccent, design.accent}};
  return IconFromPixels(RenderIcon(layers, size, {{0, 0}, size / kSide}), size);
}

}  // namespace zyr
