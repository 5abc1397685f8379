#include "imaging/viewer/image_viewer_control.h"

#include <cmath>
#include <utility>

#include "imaging/image/packed_dib.h"
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/levels/invert.h"
#include "imaging/operations/masks/emboss.h"
#include "imaging/viewer/viewer_drag.h"
#include "imaging/viewer/viewer_tools.h"
#include "imaging/viewer/viewer_zoom.h"

namespace zyr {

CKIPImageViewerControl::CKIPImageViewerControl(ImageViewerView& view) : view_(view) {}

CKIPImageViewerControl::~CKIPImageViewerControl() = default;

// The image.

void CKIPImageViewerControl::SetImage(CKIPImage* image, bool resetZoom) {
  EndPress(true);
  picture_.SetSource(image);
  ShowNewImage(resetZoom);
}

void CKIPImageViewerControl::SetImage(std::unique_ptr<CKIPImage> image, bool resetZoom) {
  EndPress(true);
  picture_.SetSource(std::move(image));
  ShowNewImage(resetZoom);
}

void CKIPImageViewerControl::Clear() { SetImage(nullptr, true); }

void CKIPImageViewerControl::ShowNewImage(bool resetZoom) {
  brightness_ = contrast_ = 0;
  gammaX_ = gammaY_ = 0;
  pointer_ = {};
  wheelZoom_ = wheelScroll_ = 0;
  if (resetZoom || !HasImage()) zoom_ = 1.0;
  if (!HasImage() && tool_ != kToolPan) SetTool(kToolPan, false);
  ScrollTo(scroll_.x, scroll_.y);
  view_.Invalidate();
}

const CKIPImage* CKIPImageViewerControl::displayImage() const { return picture_.display(); }

void CKIPImageViewerControl::PictureChanged() { view_.InvalidateRect(GetImageRect()); }

void CKIPImageViewerControl::InvalidatePixels(const ViewRect& client) {
  const ViewRect pixels = ClientToImageRect(client);
  const ViewPoint first = ImageToClient({pixels.left, pixels.top});
  const ViewPoint last = ImageToClient({pixels.right, pixels.bottom});
  const ViewSize size = view_.ClientSize();
  view_.InvalidateRect(
      Intersection({first.x, first.y, last.x, last.y}, {0, 0, size.width, size.height}));
}

// Settings.

void CKIPImageViewerControl::SetTool(uint32_t tool, bool notify) {
  EndPress(true);
  if (HasImage() && (resetOnTool_ || picture_.display() == nullptr)) {
    picture_.ShowSource();
    PictureChanged();
  }
  tool_ = tool;
  view_.SetCursor(CursorOfTool(tool));
  if (notify) owner_.Post({kNoticeTool, tool, 0, {}});
}

void CKIPImageViewerControl::SetOwnerNotify(platform::Window window, uint32_t message) {
  owner_.Set(window, message);
}

void CKIPImageViewerControl::SetBrightnessContrast(int32_t brightness, int32_t contrast) {
  if (!HasImage()) return;
  const BrightnessContrast held = HeldBrightnessContrast(brightness, contrast);
  brightness_ = held.brightness;
  contrast_ = held.contrast;
  picture_.AdjustBrightnessContrast(brightness_, contrast_);
  PictureChanged();
  view_.PaintNow();
}

void CKIPImageViewerControl::SetGamma(double gammaX, double gammaY) {
  if (!HasImage()) return;
  gammaX_ = gammaX;
  gammaY_ = gammaY;
  picture_.AdjustGamma(gammaX_);
  PictureChanged();
  view_.PaintNow();
}

void CKIPImageViewerControl::EnterFullScreen() {
  if (HasImage() && fullScreenAllowed_ && !isFullScreen_) view_.OpenFullScreen();
}

void CKIPImageViewerControl::ExitFullScreen() { view_.CloseFullScreen(); }

// Coordinates.

ViewerGeometry CKIPImageViewerControl::Geometry() const {
  ViewerGeometry geometry;
  if (HasImage()) picture_.source()->GetSize(&geometry.imageWidth, &geometry.imageHeight);
  geometry.zoom = zoom_;
  geometry.client = view_.ClientSize();
  geometry.scroll = scroll_;
  return geometry;
}

// Of the middle of the client area's pixel.
ImagePoint CKIPImageViewerControl::ImageUnder(ViewPoint client) const {
  return Geometry().ImageAt(client.x + 0.5, client.y + 0.5);
}

ViewPoint CKIPImageViewerControl::ClientToImage(ViewPoint client, bool limit, double offset) const {
  return Geometry().ClientToImage(client, limit, offset);
}

ViewPoint CKIPImageViewerControl::ImageToClient(ViewPoint image) const {
  return Geometry().ImageToClient(image);
}

ViewRect CKIPImageViewerControl::ClientToImageRect(const ViewRect& client) const {
  return Geometry().DirtyImageRect(client);
}

ViewRect CKIPImageViewerControl::GetImageRect() const { return Geometry().VisiblePicture(); }

ViewRect CKIPImageViewerControl::GetScreenImageRect() const {
  ViewRect rect = GetImageRect();
  if (IsEmpty(rect)) return {};
  const ViewPoint origin = view_.ClientOrigin();
  return {rect.left + origin.x, rect.top + origin.y, rect.right + origin.x, rect.bottom + origin.y};
}

bool CKIPImageViewerControl::fitsWindow() const { return Geometry().Fits(); }

// Scrolling.

void CKIPImageViewerControl::Place(const Scrolled& scrolled) {
  if (placing_) return;
  placing_ = true;
  constexpr int kMostChanges = 4;  // a bar appears, then the other; a window may do as it likes
  for (int i = 0; i < kMostChanges; ++i) {
    const ViewerGeometry geometry = Geometry();
    scroll_ = scrolled(geometry);
    view_.SetScroll(geometry.Content(), scroll_);
    if (view_.ClientSize() == geometry.client) break;
  }
  placing_ = false;
}

void CKIPImageViewerControl::ScrollTo(double x, double y) {
  const ViewPoint before = scroll_;
  Place([=](const ViewerGeometry& geometry) { return geometry.HeldScroll(x, y); });
  // What the window moves takes drawings along that are bound to the pointer.
  if (scroll_ != before && (SpotIsActive() || BandIsActive())) view_.Invalidate();
}

void CKIPImageViewerControl::OnScroll(ViewPoint position) {
  if (HasImage()) ScrollTo(position.x, position.y);
}

void CKIPImageViewerControl::OnSize() {
  if (placing_) return;
  ScrollTo(scroll_.x, scroll_.y);
  view_.Invalidate();
}

// Zooming.

bool CKIPImageViewerControl::StoreZoom(double value, bool snap, const Scrolled& scrolled) {
  if (!HasImage() || std::isnan(value)) return false;
  const double zoom = snap && !isFullScreen_ ? SnappedZoom(value) : value;
  if (!(zoom > 0) || std::isinf(zoom)) return false;
  zoom_ = zoom;
  Place(scrolled);
  view_.Invalidate();
  return true;
}

void CKIPImageViewerControl::SetZoom(double value, bool snap) {
  const ViewPoint scroll = scroll_;
  const auto stay = [=](const ViewerGeometry& g) { return g.HeldScroll(scroll.x, scroll.y); };
  if (StoreZoom(value, snap, stay)) owner_.Post({kNoticeZoom, 0, 0, {}});
}

void CKIPImageViewerControl::ZoomCentred(double value, bool snap, ImagePoint point) {
  const auto centre = [=](const ViewerGeometry& g) {
    return g.ScrollFor(point, g.client.width / 2.0, g.client.height / 2.0);
  };
  if (StoreZoom(value, snap, centre)) owner_.Post({kNoticeZoom, 0, 0, {}});
}

void CKIPImageViewerControl::ZoomKeeping(double value, bool snap, ImagePoint point,
                                         ViewPoint client) {
  const auto keep = [=](const ViewerGeometry& g) {
    return g.ScrollFor(point, client.x + 0.5, client.y + 0.5);
  };
  // By reference, for which std::function needs no memory.
  if (StoreZoom(value, snap, std::cref(keep))) owner_.Post({kNoticeZoom, 0, 0, {}});
}

void CKIPImageViewerControl::ZoomIn() {
  const ViewSize client = view_.ClientSize();
  ZoomCentred(zoom_ * kZoomInFactor, true,
              Geometry().ImageAt(client.width / 2.0, client.height / 2.0));
}

void CKIPImageViewerControl::ZoomOut() {
  const ViewSize client = view_.ClientSize();
  ZoomCentred(zoom_ * kZoomOutFactor, true,
              Geometry().ImageAt(client.width / 2.0, client.height / 2.0));
}

void CKIPImageViewerControl::ZoomAt(double factor, ViewPoint anchor) {
  ZoomKeeping(zoom_ * factor, true, ImageUnder(anchor), anchor);
}

// Twice, for scroll bars that are not needed any more give their room.
bool CKIPImageViewerControl::StoreFitZoom() {
  const auto stay = [](const ViewerGeometry& g) { return g.HeldScroll(g.scroll.x, g.scroll.y); };
  const auto fit = [&] {
    const ViewerGeometry g = Geometry();
    return StoreZoom(FitZoom(g.imageWidth, g.imageHeight, g.client), false, stay);
  };
  return fit() && fit();
}

void CKIPImageViewerControl::ZoomToFit() {
  if (StoreFitZoom()) owner_.Post({kNoticeZoom, 0, 0, {}});
}

void CKIPImageViewerControl::ZoomToOneOrFit() {
  // First without scroll bars: the room they take does not count.
  if (!StoreFitZoom()) return;
  ViewerGeometry atOne = Geometry();
  atOne.zoom = 1.0;
  if (atOne.Fits()) {
    SetZoom(1.0, true);
  } else {
    ZoomToFit();
  }
}

// What the user chooses from the tool bars and the popup.

void CKIPImageViewerControl::OnCommand(uint32_t command) {
  if (command == kViewerFullScreen && isFullScreen_) return ExitFullScreen();
  if (!HasImage()) return;
  switch (command) {
    case kViewerZoomOut:
      return ZoomOut();
    case kViewerZoomIn:
      return ZoomIn();
    case kViewerZoomToFit:
      return ZoomToFit();
    case kViewerPan:
      return SetTool(kToolPan, true);
    case kViewerSpotMagnify:
      return SetTool(kToolSpotMagnify, true);
    case kViewerSpotEnhance:
      SetTool(kToolSpotEnhance, true);
      picture_.ShowGrey();
      return PictureChanged();
    case kViewerFullScreen:
      if (fullScreenAllowed_) return EnterFullScreen();
      return owner_.Post({kNoticeFullScreen, 0, 0, {}});
    case kViewerBrightnessContrast:
    case kViewerGamma:
      SetTool(command == kViewerGamma ? kToolGamma : kToolBrightnessContrast, true);
      picture_.ShowCopy();
      return PictureChanged();
    case kViewerImageOperations:
      return OnOperation(view_.TrackOperationsPopup());
    case kViewerMagnify:
      return SetTool(kToolMagnify, true);
    default:
      return;
  }
}

void CKIPImageViewerControl::OnOperation(uint32_t choice) {
  if (!HasImage()) return;
  switch (choice) {
    case kOperationOriginal:
      SetTool(kToolPan, true);
      picture_.ShowSource();
      break;
    case kOperationInvert:
      picture_.Show(Invert(picture_.display(), nullptr));
      break;
    case kOperationEmboss:
      picture_.Show(Emboss(picture_.source(), 135, 45, 0.85, nullptr));
      break;
    case kOperationAutoBrightnessContrast:
      picture_.Show(AutoBrightnessContrastDefault(picture_.source(), nullptr));
      break;
    case kOperationCopy:
      if (const CKIPImage* shown = picture_.display()) {
        if (const platform::GlobalHandle dib = PackedDibFromImage(*shown)) {
          view_.CopyToClipboard(dib);
        }
      }
      return;
    case kOperationColorizeStandard:
    case kOperationColorizeFire:
    case kOperationColorizeIce:
    case kOperationColorizeRedGreenBlue:
    case kOperationColorizeGreenRedBlue:
      spectrum_ = choice;
      SetTool(kToolSpotColorize, true);
      picture_.ShowGrey();
      break;
    default:
      return;
  }
  PictureChanged();
}

}  // namespace zyr
