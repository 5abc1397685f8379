// What the viewer makes of the mouse.
#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "imaging/viewer/image_viewer_control.h"
#include "imaging/viewer/viewer_drag.h"
#include "imaging/viewer/viewer_tools.h"
#include "imaging/viewer/viewer_zoom.h"

namespace zyr {
namespace {

constexpr int32_t kWheelNotch = 120;

// Whole notches, which are taken out of `rest`.
int32_t TakeNotches(int32_t& rest, int32_t delta) {
  rest = static_cast<int32_t>(std::clamp<int64_t>(int64_t{rest} + delta, -0xFFFF, 0xFFFF));
  const int32_t notches = rest / kWheelNotch;
  rest %= kWheelNotch;
  return notches;
}

double WheelFactor(int32_t notches) {
  constexpr int32_t kMostNotches = 16;  // from the smallest step to the greatest
  double factor = 1;
  for (int32_t i = std::min(std::abs(notches), kMostNotches); i > 0; --i) {
    factor *= notches > 0 ? kZoomInFactor : kZoomOutFactor;
  }
  return factor;
}

}  // namespace

void CKIPImageViewerControl::StartPress(ViewPoint point) {
  EndPress(true);  // the release of an earlier one may have been missed
  pointer_ = point;
  press_ = {true, point, ImageUnder(point), scroll_, zoom_};
  view_.CaptureMouse(true);
}

void CKIPImageViewerControl::EndPress(bool releaseMouse) {
  if (!press_.active) return;
  // The image may be gone already, so where it lies is not asked.
  if (SpotIsActive()) view_.InvalidateRect(SpotRect(pointer_));
  if (BandIsActive()) view_.InvalidateRect(RectBetween(press_.client, pointer_));
  press_.active = false;
  tool_ = ToolBehind(tool_);
  view_.SetCursor(CursorOfTool(tool_));
  if (releaseMouse) view_.CaptureMouse(false);
}

void CKIPImageViewerControl::OnLeftDown(ViewPoint point, MouseKeys keys) {
  if (!HasImage()) return;
  StartPress(point);
  if (keys.control) tool_ = TemporaryPanOf(tool_);
  if (IsPanTool(tool_)) {
    view_.SetCursor(ViewerCursor::kMove);
  } else if (IsSpotTool(tool_)) {
    view_.SetCursor(ViewerCursor::kHidden);
    InvalidatePixels(SpotRect(point));
  } else if (IsRectangleTool(tool_)) {
    InvalidatePixels(BandRect(point));
  } else if (tool_ == kToolMagnify) {
    ZoomCentred(zoom_ * kZoomInFactor, true, press_.image);
  } else if (tool_ == kToolFreeMagnify) {
    view_.SetCursor(ViewerCursor::kMagnify);
  } else if (tool_ == kToolColorPicker) {
    ReportColor(point, kNoticeColor);
  } else if (tool_ == kToolPixelProbe) {
    ReportColor(point, kNoticeProbe);
  }
}

void CKIPImageViewerControl::OnLeftDoubleClick(ViewPoint point, MouseKeys keys) {
  if (!HasImage()) return;
  if (!IsSpotTool(tool_)) return OnLeftDown(point, keys);  // quick clicks are clicks too
  EndPress(true);
  view_.TrackSpotPopup();
}

void CKIPImageViewerControl::OnMouseMove(ViewPoint point, MouseKeys) {
  if (!HasImage()) return;
  const ViewPoint previous = std::exchange(pointer_, point);
  if (press_.active) return Drag(previous);
  if (tool_ == kToolPixelProbe) ReportColor(point, kNoticeProbe);
}

void CKIPImageViewerControl::Drag(ViewPoint previous) {
  const ViewPoint point = pointer_;
  if (IsPanTool(tool_)) {
    return ScrollTo(static_cast<double>(press_.scroll.x) + press_.client.x - point.x,
                    static_cast<double>(press_.scroll.y) + press_.client.y - point.y);
  }
  switch (tool_) {
    case kToolColorPicker:
      return ReportColor(point, kNoticeColor);
    case kToolPixelProbe:
      return ReportColor(point, kNoticeProbe);
    case kToolFreeMagnify:
      return ZoomKeeping(DraggedZoom(press_.zoom, press_.client.y, point.y), false, press_.image,
                         press_.client);
    case kToolSpotMagnify:
    case kToolSpotEnhance:
    case kToolSpotColorize:
      InvalidatePixels(SpotRect(previous));
      return InvalidatePixels(SpotRect(point));
    case kToolBrightnessContrast: {
      const auto value = DraggedBrightnessContrast(GetImageRect(), press_.client, point);
      return SetBrightnessContrast(value.brightness, value.contrast);
    }
    case kToolGamma: {
      const GammaPair value = DraggedGamma(GetImageRect(), press_.client, point);
      return SetGamma(value.x, value.y);
    }
    case kToolRectangle:
    case kToolRectangle2:
      InvalidatePixels(BandRect(previous));
      return InvalidatePixels(BandRect(point));
    default:
      return;
  }
}

void CKIPImageViewerControl::OnLeftUp(ViewPoint point, MouseKeys keys) {
  if (!press_.active) return;
  if (point != pointer_) OnMouseMove(point, keys);
  const bool hasBand = BandIsActive();
  const ViewRect band = BandRect(point);
  EndPress(true);
  if (hasBand) ZoomToRect(band);
}

void CKIPImageViewerControl::OnCaptureLost() { EndPress(false); }

void CKIPImageViewerControl::OnRightDown(ViewPoint point, MouseKeys) {
  if (press_.active || (tool_ != kToolMagnify && tool_ != kToolFreeMagnify)) return;
  ZoomCentred(zoom_ * kZoomOutFactor, true, ImageUnder(point));
}

void CKIPImageViewerControl::OnWheel(ViewPoint point, int32_t notches120, MouseKeys keys) {
  if (!HasImage() || press_.active) return;
  const bool scrolls = keys.control || keys.shift;
  const int32_t notches = TakeNotches(scrolls ? wheelScroll_ : wheelZoom_, notches120);
  if (notches == 0) return;
  if (!scrolls) return ZoomAt(WheelFactor(notches), point);
  const ViewSize client = view_.ClientSize();
  const double way = std::max((keys.shift ? client.width : client.height) / 8, 1);
  ScrollTo(scroll_.x - (keys.shift ? way * notches : 0),
           scroll_.y - (keys.shift ? 0 : way * notches));
}

// Nothing beside the picture, and where the palette has no colour.
void CKIPImageViewerControl::ReportColor(ViewPoint point, uint32_t code) {
  const ViewPoint pixel = ClientToImage(point, false, 0.5);
  const CKIPImage* image = picture_.display();
  if (image == nullptr || pixel != ClientToImage(point, true, 0.5)) return;
  PaletteEntry color;
  if (!image->GetColorChecked(pixel.x, pixel.y, &color)) return;
  owner_.Post(
      {code, 0, color.red | ColorRef{color.green} << 8 | ColorRef{color.blue} << 16, pixel});
}

void CKIPImageViewerControl::SetSpot(uint32_t size, uint32_t magnification) {
  constexpr uint32_t kSizes[] = {25, 50, 100, 150, 200};
  if (std::find(std::begin(kSizes), std::end(kSizes), size) == std::end(kSizes)) return;
  if (magnification < 2 || magnification > 5) return;
  if (SpotIsActive()) InvalidatePixels(SpotRect(pointer_));
  spotSize_ = size;
  spotMagnification_ = magnification;
  if (SpotIsActive()) InvalidatePixels(SpotRect(pointer_));
}

bool CKIPImageViewerControl::SpotIsActive() const { return press_.active && IsSpotTool(tool_); }

bool CKIPImageViewerControl::BandIsActive() const {
  return press_.active && IsRectangleTool(tool_);
}

ViewRect CKIPImageViewerControl::SpotRect(ViewPoint middle) const {
  const auto size = static_cast<int32_t>(spotSize_);
  // Of no use beyond what a screen can have, and so they cannot overflow.
  const int32_t left = std::clamp(middle.x, -0x10000000, 0x10000000) - size / 2;
  const int32_t top = std::clamp(middle.y, -0x10000000, 0x10000000) - size / 2;
  return {left, top, left + size, top + size};
}

ViewRect CKIPImageViewerControl::BandRect(ViewPoint corner) const {
  return Intersection(RectBetween(press_.client, corner), GetImageRect());
}

void CKIPImageViewerControl::ZoomToRect(const ViewRect& client) {
  constexpr int32_t kLeastSide = 4;  // less was a click
  if (client.right - client.left < kLeastSide || client.bottom - client.top < kLeastSide) return;
  const ViewerGeometry geometry = Geometry();
  const double fit =
      std::min(static_cast<double>(geometry.client.width) / (client.right - client.left),
               static_cast<double>(geometry.client.height) / (client.bottom - client.top));
  const ImagePoint middle = geometry.ImageAt(client.left + (client.right - client.left) / 2.0,
                                             client.top + (client.bottom - client.top) / 2.0);
  ZoomCentred(std::min(zoom_ * fit, std::max(zoom_, kGreatestZoom)), false, middle);
}

}  // namespace zyr
