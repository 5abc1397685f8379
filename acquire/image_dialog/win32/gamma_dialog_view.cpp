#include "acquire/image_dialog/win32/gamma_dialog_view.h"

#include <windows.h>
// After the system's header.
#include <commctrl.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "acquire/image_dialog/gamma_dialog.h"
#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/image_viewer/image_viewer_window.h"
#include "controls/mnemonics.h"
#include "controls/modal_dialog.h"
#include "controls/text_size.h"
#include "resources/resource.h"

namespace zyr {
namespace {

static_assert(IDC_BRIGHTNESS_SLIDER == kSliderBrightness);
static_assert(IDC_CONTRAST_SLIDER == kSliderContrast);
static_assert(IDC_GAMMA_SLIDER == kSliderGamma);

struct SliderRow {
  int slider;
  int label;
  int value;
};
constexpr SliderRow kRows[] = {
    {IDC_BRIGHTNESS_SLIDER, IDC_BRIGHTNESS_LABEL, IDC_BRIGHTNESS_VALUE},
    {IDC_CONTRAST_SLIDER, IDC_CONTRAST_LABEL, IDC_CONTRAST_VALUE},
    {IDC_GAMMA_SLIDER, IDC_GAMMA_LABEL, IDC_GAMMA_VALUE},
};
constexpr int kControls = 3 * static_cast<int>(std::size(kRows)) + 3;

constexpr UINT_PTR kPreviewTimer = 1;
constexpr LPARAM kPageStep = 10;
constexpr uint32_t kToolBars =
    kToolBarZoomIn | kToolBarZoomOut | kToolBarZoomToFit | kToolBarPan | kToolBarFreeZoom;

// Pixels of a plain screen.
constexpr int kMargin = 8;
constexpr int kSliderRow = 32;
constexpr int kBelowSlider = 8;  // where its ticks are
constexpr SIZE kButton = {84, 26};
constexpr int kAroundCaption = 24;
constexpr SIZE kLeast = {420, 400};
constexpr SIZE kFirst = {640, 700};
constexpr int kPercentOfScreen = 85;

const char kWidestValue[] = "-100 ";

int TextWidth(HWND window, const std::string& text) {
  return static_cast<int>(TextSize(window, text).cx);
}

const SliderRow* RowOf(uint32_t slider) {
  const auto row = std::find_if(
      std::begin(kRows), std::end(kRows),
      [slider](const SliderRow& known) { return known.slider == static_cast<int>(slider); });
  return row != std::end(kRows) ? row : nullptr;
}

class Win32GammaDialogView : public GammaDialogView, private ModalDialog {
 public:
  bool Run(GammaDialog* dialog, platform::Window owner) override;
  platform::Window window() const override { return hwnd(); }
  void End(bool accepted) override { EndModal(accepted); }

  CKIPImageViewerControl& viewer() override { return viewer_.viewer(); }
  void SetSliderRange(uint32_t slider, int32_t least, int32_t most, int32_t position) override;
  int32_t SliderPosition(uint32_t slider) const override;
  void SetSliderLabel(uint32_t slider, const std::string& text) override;
  void StartTimer(uint32_t milliseconds) override;
  void StopTimer() override;

 private:
  void Initialise() override;
  INT_PTR Handle(UINT message, WPARAM wParam, LPARAM lParam) override;
  void OnGone() override { StopTimer(); }

  void MeasureTexts();
  void Place();
  SIZE WithFrame(SIZE client) const;
  void Arrange() const;
  void PlaceRow(ControlMoves& moves, const SliderRow& row, const RECT& area) const;
  LRESULT Send(uint32_t slider, UINT message, WPARAM wParam, LPARAM lParam) const {
    return SendMessageA(Control(static_cast<int>(slider)), message, wParam, lParam);
  }

  GammaDialog* dialog_ = nullptr;
  HWND owner_ = nullptr;
  ImageViewerWindow viewer_;
  int labelWidth_ = 0;
  int valueWidth_ = 0;
  int buttonWidth_ = 0;
};

bool Win32GammaDialogView::Run(GammaDialog* dialog, platform::Window owner) {
  const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_BAR_CLASSES};
  InitCommonControlsEx(&classes);
  dialog_ = dialog;
  owner_ = UsableOwner(owner);
  return RunModal(IDD_GAMMA_DIALOG, owner);
}

// One tick between those at the ends: where a slider changes nothing.
void Win32GammaDialogView::SetSliderRange(uint32_t slider, int32_t least, int32_t most,
                                          int32_t position) {
  Send(slider, TBM_SETRANGEMIN, FALSE, least);
  Send(slider, TBM_SETRANGEMAX, FALSE, most);
  Send(slider, TBM_SETPAGESIZE, 0, kPageStep);
  Send(slider, TBM_SETTIC, 0, position);
  // It stands at 0 already, and may not have seen where that is now.
  Send(slider, TBM_SETPOS, FALSE, least);
  Send(slider, TBM_SETPOS, TRUE, position);
}

int32_t Win32GammaDialogView::SliderPosition(uint32_t slider) const {
  return static_cast<int32_t>(Send(slider, TBM_GETPOS, 0, 0));
}

void Win32GammaDialogView::SetSliderLabel(uint32_t slider, const std::string& text) {
  const SliderRow* const row = RowOf(slider);
  if (row != nullptr) SetWindowTextA(Control(row->value), text.c_str());
}

void Win32GammaDialogView::StartTimer(uint32_t milliseconds) {
  if (hwnd() != nullptr) SetTimer(hwnd(), kPreviewTimer, milliseconds, nullptr);
}

void Win32GammaDialogView::StopTimer() {
  if (hwnd() != nullptr) KillTimer(hwnd(), kPreviewTimer);
}

void Win32GammaDialogView::Initialise() {
  viewer_.Attach(Control(IDC_GAMMA_VIEWER));
  viewer().SetToolBarsAllowed(kToolBars);
  MeasureTexts();
  Place();
  dialog_->OnInitDialog();
  SetFocus(Control(IDC_BRIGHTNESS_SLIDER));
}

void Win32GammaDialogView::MeasureTexts() {
  Mnemonics mnemonics;
  for (const SliderRow& row : kRows) {
    const HWND label = Control(row.label);
    MarkCaption(label, mnemonics);
    labelWidth_ = std::max(labelWidth_, TextWidth(label, WindowText(label)));
  }
  valueWidth_ = TextWidth(Control(kRows[0].value), kWidestValue);
  buttonWidth_ = Scaled(kButton.cx);
  for (const int button : {IDOK, IDCANCEL}) {
    const int text = TextWidth(Control(button), WindowText(Control(button)));
    buttonWidth_ = std::max(buttonWidth_, text + Scaled(kAroundCaption));
  }
}

SIZE Win32GammaDialogView::WithFrame(SIZE client) const {
  return WithFrameOnScreen(hwnd(), {Scaled(client.cx), Scaled(client.cy)});
}

void Win32GammaDialogView::Place() {
  const RECT screen = WorkAreaOf(owner_ != nullptr ? owner_ : hwnd());
  const LONG most = (screen.bottom - screen.top) * kPercentOfScreen / 100;
  const SIZE first = WithFrame(kFirst);
  ResizeWindow(hwnd(), first.cx, std::min(first.cy, most));
  CenterAbove(hwnd(), owner_);
}

void Win32GammaDialogView::Arrange() const {
  const int margin = Scaled(kMargin);
  RECT client;
  GetClientRect(hwnd(), &client);
  InflateRect(&client, -margin, -margin);
  const LONG buttonsTop = client.bottom - Scaled(kButton.cy);
  const LONG rowHeight = Scaled(kSliderRow);
  const LONG rowsTop = buttonsTop - margin - rowHeight * static_cast<LONG>(std::size(kRows));

  ControlMoves moves(hwnd(), kControls);
  moves.Move(IDC_GAMMA_VIEWER, {client.left, client.top, client.right, rowsTop - margin});
  RECT area = {client.left, rowsTop, client.right, rowsTop + rowHeight};
  for (const SliderRow& row : kRows) {
    PlaceRow(moves, row, area);
    OffsetRect(&area, 0, static_cast<int>(rowHeight));
  }
  RECT button = {client.right - buttonWidth_, buttonsTop, client.right, client.bottom};
  moves.Move(IDCANCEL, button);
  OffsetRect(&button, -buttonWidth_ - margin, 0);
  moves.Move(IDOK, button);
}

// The texts are level with what the user drags.
void Win32GammaDialogView::PlaceRow(ControlMoves& moves, const SliderRow& row,
                                    const RECT& area) const {
  const int margin = Scaled(kMargin);
  const LONG labelRight = area.left + labelWidth_;
  const LONG valueLeft = area.right - valueWidth_;
  const LONG textBottom = area.bottom - Scaled(kBelowSlider);
  moves.Move(row.label, {area.left, area.top, labelRight, textBottom});
  moves.Move(row.slider, {labelRight + margin, area.top, valueLeft - margin, area.bottom});
  moves.Move(row.value, {valueLeft, area.top, area.right, textBottom});
}

INT_PTR Win32GammaDialogView::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_HSCROLL:
      dialog_->OnSlider();
      return TRUE;
    case WM_TIMER:
      if (wParam != kPreviewTimer) return FALSE;
      StopTimer();
      dialog_->OnTimer();
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDOK) dialog_->OnOK();
      if (LOWORD(wParam) == IDCANCEL) dialog_->OnCancel();
      return TRUE;
    case WM_SIZE:
      if (wParam != SIZE_MINIMIZED) Arrange();
      return TRUE;
    case WM_GETMINMAXINFO:
      SetLeastSize(lParam, WithFrame(kLeast));
      return TRUE;
    case WM_MOUSEWHEEL:
      SendMessageA(Control(IDC_GAMMA_VIEWER), message, wParam, lParam);
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

std::unique_ptr<GammaDialogView> MakeWin32GammaDialogView() {
  return std::make_unique<Win32GammaDialogView>();
}

}  // namespace zyr
