#include "imaging/viewer/viewer_tools.h"

#include "imaging/viewer/image_viewer_control.h"

namespace zyr {

ViewerCursor CursorOfTool(uint32_t tool) {
  switch (tool) {
    case kToolPan:
    case kToolPanFromMagnify:
    case kToolPanFromProbe:
    case kToolPanFromRectangle:
    case kToolPanFromRectangle2:
      return ViewerCursor::kMove;
    case kToolMagnify:
      return ViewerCursor::kMagnify;
    case kToolColorPicker:
      return ViewerCursor::kDripper;
    case kToolPixelProbe:
      return ViewerCursor::kPixelCross;
    case kToolSpotMagnify:
      return ViewerCursor::kMagnifySpot;
    case kToolSpotEnhance:
      return ViewerCursor::kEnhanceSpot;
    case kToolSpotColorize:
      return ViewerCursor::kColorizeSpot;
    case kToolBrightnessContrast:
      return ViewerCursor::kBrightnessContrast;
    case kToolGamma:
      return ViewerCursor::kGamma;
    case kToolRectangle:
    case kToolRectangle2:
      return ViewerCursor::kCross;
    default:  // the free magnifier too, until it is pressed
      return ViewerCursor::kArrow;
  }
}

bool IsPanTool(uint32_t tool) {
  return tool == kToolPan || (tool >= kToolPanFromMagnify && tool <= kToolPanFromRectangle2);
}

bool IsSpotTool(uint32_t tool) { return tool >= kToolSpotMagnify && tool <= kToolSpotColorize; }

bool IsRectangleTool(uint32_t tool) { return tool == kToolRectangle || tool == kToolRectangle2; }

uint32_t TemporaryPanOf(uint32_t tool) {
  switch (tool) {
    case kToolMagnify:
      return kToolPanFromMagnify;
    case kToolPixelProbe:
      return kToolPanFromProbe;
    case kToolRectangle:
      return kToolPanFromRectangle;
    case kToolRectangle2:
      return kToolPanFromRectangle2;
    default:
      return tool;
  }
}

uint32_t ToolBehind(uint32_t temporaryPan) {
  switch (temporaryPan) {
    case kToolPanFromMagnify:
      return kToolMagnify;
    case kToolPanFromProbe:
      return kToolPixelProbe;
    case kToolPanFromRectangle:
      return kToolRectangle;
    case kToolPanFromRectangle2:
      return kToolRectangle2;
    default:
      return temporaryPan;
  }
}

}  // namespace zyr
