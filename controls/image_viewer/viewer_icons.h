// The pictures on the viewer's tool bars and of its mouse pointers, as strokes.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

#include "controls/icon_strokes.h"
#include "imaging/viewer/image_viewer_view.h"

namespace zyr {

struct ColoredStrokes {
  COLORREF color;
  IconStrokes strokes;
};
using IconDesign = std::vector<ColoredStrokes>;  // from below

enum class ViewerIcon {
  kFreeZoom,
  kZoomOut,
  kZoomToFit,
  kZoomIn,
  kFullScreen,
  kFullScreenExit,
  kBrightnessContrast,
  kGamma,
  kSpotMagnify,
  kSpotEnhance,
  kImageOperations,
  kPan,
};

// Opaque pixels of a button of that side, as RenderIcon gives them.
std::vector<uint32_t> DrawViewerIcon(ViewerIcon icon, int side, COLORREF background);

// In units of 1/32 of the pointer's side; the hot spot as well. Light with a dark edge, so that it
// is seen on any picture.
struct CursorDesign {
  IconPoint hotSpot;
  IconDesign layers;
};
CursorDesign DesignOfCursor(ViewerCursor cursor);

}  // namespace zyr
