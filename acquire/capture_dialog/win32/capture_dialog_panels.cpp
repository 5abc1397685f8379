#include "acquire/capture_dialog/win32/capture_dialog_panels.h"

#include <algorithm>

#include "controls/dialog_window.h"
#include "resources/resource.h"

namespace zyr {
namespace {

constexpr CapturePanel kPanels[] = {CapturePanel::kStatus, CapturePanel::kExposure,
                                    CapturePanel::kThumbnails};

StatusIcon IconOf(StatusKind kind) {
  switch (kind) {
    case kStatusError:
      return StatusIcon::kError;
    case kStatusStep:
      return StatusIcon::kStep;
    case kStatusFinal:
      return StatusIcon::kFinal;
    case kStatusInformation:
      break;
  }
  return StatusIcon::kInformation;
}

}  // namespace

void CaptureDialogPanels::Attach(HWND dialog, ThumbnailSource* images) {
  dialog_ = dialog;
  status_.Attach(Window(CapturePanel::kStatus));
  exposure_.Attach(Window(CapturePanel::kExposure));
  thumbnails_.Attach(Window(CapturePanel::kThumbnails), images);
}

void CaptureDialogPanels::SetSplit(bool split) {
  split_ = split;
  beside_ = CapturePanel::kStatus;
  Apply();
}

void CaptureDialogPanels::Show(CapturePanel panel) {
  panel_ = panel;
  if (panel != CapturePanel::kThumbnails) beside_ = panel;
  Apply();
}

HWND CaptureDialogPanels::Seen() const { return Window(split_ ? beside_ : panel_); }

// A panel that has no use for the wheel passes it to its parent, and so back to here.
LRESULT CaptureDialogPanels::OnWheel(WPARAM wParam, LPARAM lParam) {
  if (turning_) return 0;
  HWND turned = Seen();
  for (const CapturePanel panel : kPanels) {
    RECT place;
    GetWindowRect(Window(panel), &place);
    const POINT pointer = {static_cast<SHORT>(LOWORD(lParam)), static_cast<SHORT>(HIWORD(lParam))};
    if (IsShown(panel) && PtInRect(&place, pointer)) turned = Window(panel);
  }
  turning_ = true;
  const LRESULT result = SendMessageA(turned, WM_MOUSEWHEEL, wParam, lParam);
  turning_ = false;
  return result;
}

int32_t CaptureDialogPanels::AddStatus(StatusKind kind, const std::string& title,
                                       const std::string& text) {
  return status_.Add(IconOf(kind), title, text);
}

HWND CaptureDialogPanels::Window(CapturePanel panel) const {
  switch (panel) {
    case CapturePanel::kExposure:
      return GetDlgItem(dialog_, IDC_EXPOSURE_PANEL);
    case CapturePanel::kThumbnails:
      return GetDlgItem(dialog_, IDC_THUMBNAILS);
    case CapturePanel::kStatus:
      break;
  }
  return GetDlgItem(dialog_, IDC_STATUS_PANEL);
}

bool CaptureDialogPanels::IsShown(CapturePanel panel) const {
  if (!split_) return panel == panel_;
  return panel == beside_ || panel == CapturePanel::kThumbnails;
}

// The keyboard goes from a panel that is hidden to the one that takes its place.
void CaptureDialogPanels::Apply() {
  const HWND focused = GetFocus();
  for (const CapturePanel panel : kPanels) {
    if (IsShown(panel)) ShowWindow(Window(panel), SW_SHOWNA);
  }
  for (const CapturePanel panel : kPanels) {
    if (IsShown(panel)) continue;
    if (focused != nullptr && focused == Window(panel)) MoveFocusTo(Seen());
    ShowWindow(Window(panel), SW_HIDE);
  }
  UpdateWindow(Seen());
}

}  // namespace zyr
