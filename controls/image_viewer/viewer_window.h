// The window's side of an ImageViewerWindow.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "controls/image_viewer/full_screen_window.h"
#include "controls/image_viewer/viewer_cursors.h"
#include "controls/image_viewer/viewer_tool_bars.h"
#include "controls/window_class.h"
#include "imaging/viewer/image_viewer_control.h"

namespace zyr {

// The window's side. It outlives the ImageViewerWindow while one of its messages is being handled:
// whoever hears of the viewer's events may let go of both. So every step from which others run
// comes last, or looks afterwards at what is left.
class ViewerWindow : public std::enable_shared_from_this<ViewerWindow>, public ImageViewerView {
 public:
  ViewerWindow();

  void Attach(HWND window, std::function<void()> leave);
  void Detach();
  CKIPImageViewerControl& viewer() { return control_; }

  ViewSize ClientSize() const override;
  ViewPoint ClientOrigin() const override;
  void SetScroll(ViewSize content, ViewPoint position) override;
  void Invalidate() override;
  void InvalidateRect(const ViewRect& client) override;
  void PaintNow() override;
  void SetCursor(ViewerCursor cursor) override;
  void CaptureMouse(bool capture) override;
  void CopyToClipboard(platform::GlobalHandle packedDib) override;
  void UpdateToolBars() override;
  uint32_t TrackOperationsPopup() override;
  void TrackSpotPopup() override;
  bool OpenFullScreen() override;
  void CloseFullScreen() override;

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  std::optional<LRESULT> HandleMouse(UINT message, WPARAM wParam, LPARAM lParam);

  bool Alive() const { return window_ != nullptr; }
  bool IsFullScreen() const { return leave_ != nullptr; }
  RECT Client() const;
  RECT PictureArea() const;
  ViewSize SizeWithoutScrollBars() const;
  ViewPoint PointOf(LPARAM lParam) const;

  bool ShowScrollBars(ViewSize content);
  void UpdateScrollBar(int bar, int32_t content, int32_t page, int32_t position);
  void ScrollPixels(ViewPoint distance);
  void ScrollTo(ViewPoint position);
  void OnScrollBar(int bar, int request);
  void OnHorizontalWheel(int delta);

  void ArrangeToolBars();
  void OnSize();
  void OnCommand(WORD command, HWND button);
  LRESULT DialogCode(WPARAM key) const;
  void OnKey(WPARAM key);
  void OnCharacter(WPARAM character);
  void MoveFocusByTab(bool back);
  void ShowOneToOne();
  void OnContextMenu(LPARAM lParam);
  void OnLeftDown(UINT message, ViewPoint point, MouseKeys keys);
  void OnCaptureChanged(HWND to);

  POINT PopupPlace() const;
  void GiveToFullScreen(CKIPImageViewerControl& other);
  void FollowInFullScreen();
  void OnDestroy();
  void Paint();
  void ShowFocus() const;

  std::shared_ptr<const WindowClass> class_;
  HWND window_ = nullptr;
  std::function<void()> leave_;
  ViewerCursors cursors_;
  ViewerCursor cursor_ = ViewerCursor::kArrow;
  std::unique_ptr<ViewerToolBars> toolBars_;
  uint32_t toolBarsShown_ = 0;
  int top_ = 0;  // where the picture's area begins, below the tool bars
  ViewSize content_;
  ViewPoint position_;
  std::vector<uint32_t> pixels_;
  bool settingScrollBars_ = false;
  bool captured_ = false;
  bool popupStands_ = false;
  std::unique_ptr<CKIPImageViewerControlFullScreenWnd> fullScreen_;
  const CKIPImage* handedOver_ = nullptr;  // to the full screen window
  CKIPImageViewerControl control_{*this};  // last: it may call back from the first moment
};

}  // namespace zyr
