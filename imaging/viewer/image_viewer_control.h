// CKIPImageViewerControl: the scrolling picture that the user zooms, pans and looks into. What it
// does; its window is in controls/image_viewer.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "imaging/image/image.h"
#include "imaging/viewer/image_viewer_view.h"
#include "imaging/viewer/viewer_geometry.h"
#include "imaging/viewer/viewer_notice.h"
#include "imaging/viewer/viewer_picture.h"
#include "platform/messages.h"

namespace zyr {

enum ViewerTool : uint32_t {
  kToolPan = 0,
  kToolMagnify = 1,
  kToolColorPicker = 2,
  kToolPixelProbe = 3,
  kToolFreeMagnify = 4,
  kToolSpotMagnify = 5,
  kToolSpotEnhance = 6,
  kToolSpotColorize = 7,
  kToolBrightnessContrast = 8,
  kToolGamma = 9,
  kToolRectangle = 10,
  kToolRectangle2 = 11,
  // Panning while a button is held with Ctrl; on release the tool before comes back.
  kToolPanFromMagnify = 1000,
  kToolPanFromProbe = 1001,
  kToolPanFromRectangle = 1002,
  kToolPanFromRectangle2 = 1003,
};

enum ViewerToolBarBits : uint32_t {
  kToolBarZoomIn = 0x1,
  kToolBarZoomOut = 0x2,
  kToolBarZoomToFit = 0x4,
  kToolBarFullScreen = 0x8,
  kToolBarBrightnessContrast = 0x10,
  kToolBarGamma = 0x20,
  kToolBarSpotMagnify = 0x40,
  kToolBarSpotEnhance = 0x80,
  kToolBarImageOperations = 0x100,
  kToolBarPan = 0x200,
  kToolBarFreeZoom = 0x400,
};

enum ViewerCommand : uint32_t {
  kViewerZoomOut = 1,
  kViewerZoomIn = 2,
  kViewerZoomToFit = 3,
  kViewerPan = 4,
  kViewerSpotMagnify = 5,
  kViewerSpotEnhance = 6,
  kViewerFullScreen = 7,
  kViewerBrightnessContrast = 8,
  kViewerGamma = 9,
  kViewerImageOperations = 10,
  kViewerMagnify = 11,
};

// Choices of the operations popup.
enum ViewerOperation : uint32_t {
  kOperationOriginal = 1,
  kOperationInvert = 2,
  kOperationEmboss = 3,
  kOperationAutoBrightnessContrast = 4,
  kOperationCopy = 5,
  kOperationColorizeStandard = 6,
  kOperationColorizeFire = 7,
  kOperationColorizeIce = 8,
  kOperationColorizeRedGreenBlue = 9,
  kOperationColorizeGreenRedBlue = 10,
};

struct MouseKeys {
  bool control = false;
  bool shift = false;
};

// Without an image the operations on it do nothing and coordinates are 0, 0; the settings (tool,
// tool bars, owner, spot, full screen) are kept. One thread, the window's.
class CKIPImageViewerControl {
 public:
  explicit CKIPImageViewerControl(ImageViewerView& view);  // which must outlive this object
  ~CKIPImageViewerControl();
  CKIPImageViewerControl(const CKIPImageViewerControl&) = delete;
  CKIPImageViewerControl& operator=(const CKIPImageViewerControl&) = delete;

  // Shows an image that stays the caller's and alive until the next one, or, as a unique pointer,
  // one that is taken over. Ends a drag, keeps the tool. Null and an invalid image clear.
  void SetImage(CKIPImage* image, bool resetZoom);
  void SetImage(std::unique_ptr<CKIPImage> image, bool resetZoom);
  void Clear();  // and back to the pan tool and scale 1
  // What is shown now, perhaps derived from what was given; null without an image, and when there
  // was no memory or no way to derive one, until the next image or tool.
  const CKIPImage* displayImage() const;

  // Ends a drag. With `notify` the owner hears of it. The user's own choices always tell it.
  void SetTool(uint32_t tool, bool notify);
  uint32_t tool() const { return tool_; }
  // Choosing a tool drops what is derived and shows the given image again.
  void SetResetOnTool(bool reset) { resetOnTool_ = reset; }
  void SetToolBarsAllowed(uint32_t bits) {
    toolBarsAllowed_ = bits;
    view_.UpdateToolBars();
  }
  uint32_t toolBarsAllowed() const { return toolBarsAllowed_; }
  // Changes are posted to the window with this message; viewer_notice.h reads them.
  void SetOwnerNotify(platform::Window window, uint32_t message);

  // Any scale above 0, or with `snap` the step for it, but never in full screen. The scroll
  // position stays where it can. Each of these tells the owner.
  void SetZoom(double value, bool snap);
  double GetZoom() const { return zoom_; }
  void ZoomIn();
  void ZoomOut();
  void ZoomToFit();
  void ZoomToOneOrFit();
  // As the wheel does, by steps: the image point under `anchor` stays there.
  void ZoomAt(double factor, ViewPoint anchor);

  // Of the given image, in percent, held to -128 to 128.
  void SetBrightnessContrast(int32_t brightness, int32_t contrast);
  // All colours get gammaX, of which 0 changes nothing; gammaY is only remembered.
  void SetGamma(double gammaX, double gammaY);
  int32_t brightness() const { return brightness_; }
  int32_t contrast() const { return contrast_; }
  double gammaX() const { return gammaX_; }
  double gammaY() const { return gammaY_; }
  // 25, 50, 100, 150 or 200 pixels of the screen, 2 to 5 times; other values change nothing.
  void SetSpot(uint32_t size, uint32_t magnification);
  uint32_t spotSize() const { return spotSize_; }
  uint32_t spotMagnification() const { return spotMagnification_; }
  uint32_t spectrum() const { return spectrum_; }
  void EnterFullScreen();
  void ExitFullScreen();
  bool isFullScreen() const { return isFullScreen_; }
  // This is the control of the full screen window.
  void SetFullScreen(bool isFullScreen) { isFullScreen_ = isFullScreen; }
  void SetFullScreenAllowed(bool allowed) { fullScreenAllowed_ = allowed; }  // so at first

  // With `limit` results are held inside the image; the offset is the client pixel's point that
  // counts: 0 its left upper corner, 0.5 its middle.
  ViewPoint ClientToImage(ViewPoint client, bool limit, double offset = 0) const;
  ViewPoint ImageToClient(ViewPoint image) const;
  ViewRect ClientToImageRect(const ViewRect& client) const;  // DirtyImageRect of viewer_geometry.h
  ViewRect GetImageRect() const;        // of the picture's visible part, in the client area
  ViewRect GetScreenImageRect() const;  // on the screen
  bool fitsWindow() const;

  // Events of the view.
  void OnSize();
  void OnScroll(ViewPoint position);  // the user has moved a scroll bar
  void OnCommand(uint32_t command);
  void OnOperation(uint32_t choice);
  void OnLeftDown(ViewPoint point, MouseKeys keys);
  void OnLeftDoubleClick(ViewPoint point, MouseKeys keys);
  void OnMouseMove(ViewPoint point, MouseKeys keys);
  void OnLeftUp(ViewPoint point, MouseKeys keys);
  void OnRightDown(ViewPoint point, MouseKeys keys);
  void OnWheel(ViewPoint point, int32_t notches120, MouseKeys keys);
  void OnCaptureLost();

  // Draws what the client rectangle `clip` shows into `pixels`: blue, green, red, 0 per pixel, rows
  // from the top, without gaps; what lies beside the picture gets `background` (0x00RRGGBB). An
  // active spot and the frame of a rectangle that is being drawn are part of it.
  void Paint(const ViewRect& clip, uint32_t background, uint32_t* pixels) const;

 private:
  using Scrolled = std::function<ViewPoint(const ViewerGeometry&)>;

  struct Press {
    bool active = false;
    ViewPoint client;  // where the button went down, and the scroll position and scale then
    ImagePoint image;
    ViewPoint scroll;
    double zoom = 1;
  };

  bool HasImage() const { return picture_.source() != nullptr; }
  ViewerGeometry Geometry() const;
  ImagePoint ImageUnder(ViewPoint client) const;
  void ShowNewImage(bool resetZoom);
  void PictureChanged();
  // With what ClientToImageRect adds, so that no magnified pixel is redrawn in parts.
  void InvalidatePixels(const ViewRect& client);
  // Scrolls to what `scrolled` says for the client area, however scroll bars change it.
  void Place(const Scrolled& scrolled);
  void ScrollTo(double x, double y);
  bool StoreZoom(double value, bool snap, const Scrolled& scrolled);
  bool StoreFitZoom();
  void ZoomCentred(double value, bool snap, ImagePoint point);
  void ZoomKeeping(double value, bool snap, ImagePoint point, ViewPoint client);
  void ZoomToRect(const ViewRect& client);

  void StartPress(ViewPoint point);
  void EndPress(bool releaseMouse);
  void Drag(ViewPoint previous);
  void ReportColor(ViewPoint point, uint32_t code);
  bool SpotIsActive() const;
  bool BandIsActive() const;
  ViewRect SpotRect(ViewPoint middle) const;
  ViewRect BandRect(ViewPoint corner) const;
  void PaintSpot(const ViewRect& clip, uint32_t* pixels) const;

  ImageViewerView& view_;
  ViewerPicture picture_;
  ViewerOwner owner_;
  double zoom_ = 1;
  ViewPoint scroll_;
  bool placing_ = false;
  uint32_t tool_ = kToolPan;
  bool resetOnTool_ = false;
  uint32_t toolBarsAllowed_ = 0;
  int32_t brightness_ = 0;
  int32_t contrast_ = 0;
  double gammaX_ = 0;
  double gammaY_ = 0;
  uint32_t spotSize_ = 100;
  uint32_t spotMagnification_ = 2;
  uint32_t spectrum_ = kOperationColorizeStandard;
  bool isFullScreen_ = false;
  bool fullScreenAllowed_ = true;
  Press press_;
  ViewPoint pointer_;
  // Parts of a notch of the wheel that have not moved anything yet.
  int32_t wheelZoom_ = 0;
  int32_t wheelScroll_ = 0;
};

}  // namespace zyr
