#include "controls/mask_operation.h"

// After the system's header.
#include <commctrl.h>

#include <algorithm>
#include <string>

#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/paint.h"
#include "controls/text_size.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/resources.h"
#include "resources/resource.h"

namespace zyr {
namespace {

constexpr uint32_t kSizes[] = {3, 5, 7, 9};
constexpr LPARAM kPageStep = 10;

// Pixels of a plain screen.
constexpr int kGap = 8;
constexpr int kLeastSlider = 100;
constexpr int kSliderHeight = 24;
constexpr int kAroundChoice = 16;  // beside the text and the arrow

std::string SizeText(uint32_t size) {
  const auto pixels = static_cast<long>(size);
  return FormatText(GetFormatPhrase("%ldx%ld").c_str(), pixels, pixels);
}

// In the middle of a row. Gives the row's height.
int PlaceLabel(HWND label, int top, int width, int rowHeight) {
  const int height = WrappedTextHeight(label, WindowText(label), width);
  const int row = std::max(height, rowHeight);
  PlaceWindow(label, 0, top + (row - height) / 2, width, height);
  return row;
}

}  // namespace

CKCTRLPMaskOperation::CKCTRLPMaskOperation()
    : class_(SharedWindowClass(
          MASK_OPERATION_CLASS,
          GuardedProcedure<CKCTRLPMaskOperation, &CKCTRLPMaskOperation::Handle>)) {}

CKCTRLPMaskOperation::~CKCTRLPMaskOperation() {
  if (window_ != nullptr) DestroyWindow(window_);
}

HWND CKCTRLPMaskOperation::Create(HWND parent, int id, HFONT font, Mnemonics& mnemonics) {
  window_ = CreateWindowExA(WS_EX_CONTROLPARENT, MASK_OPERATION_CLASS, "",
                            WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 0, 0, parent,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                            static_cast<HINSTANCE>(platform::OwnResources()), nullptr);
  if (window_ == nullptr) return nullptr;
  SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  Make(kSizeLabel, "STATIC", SS_LEFT | WS_GROUP, mnemonics.Mark(GetPhrase("Mask Size:")).c_str(),
       font);
  Make(kSize, "COMBOBOX", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, "", font);
  Make(kFactorLabel, "STATIC", SS_LEFT | WS_GROUP, mnemonics.Mark(GetPhrase("Factor:")).c_str(),
       font);
  Make(kFactor, TRACKBAR_CLASSA, TBS_HORZ | TBS_BOTH | TBS_NOTICKS | WS_TABSTOP, "", font);
  Make(kFactorValue, "STATIC", SS_RIGHT | SS_NOPREFIX, "", font);
  for (const uint32_t size : kSizes) AddSize(size);
  SendMessageA(Item(kFactor), TBM_SETPAGESIZE, 0, kPageStep);
  SetMaskSize(size_);
  SetFactorLimits(leastFactor_, mostFactor_);
  return window_;
}

HWND CKCTRLPMaskOperation::Make(Part part, const char* className, DWORD style, const char* text,
                                HFONT font) {
  const HWND control =
      CreateWindowExA(0, className, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, window_,
                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(part)),
                      static_cast<HINSTANCE>(platform::OwnResources()), nullptr);
  SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  return control;
}

int CKCTRLPMaskOperation::IndexOf(uint32_t size) const {
  const LRESULT count = SendMessageA(Item(kSize), CB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    if (SendMessageA(Item(kSize), CB_GETITEMDATA, static_cast<WPARAM>(i), 0) ==
        static_cast<LRESULT>(size)) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

// In order. Gives its index.
int CKCTRLPMaskOperation::AddSize(uint32_t size) const {
  const HWND choice = Item(kSize);
  const LRESULT count = SendMessageA(choice, CB_GETCOUNT, 0, 0);
  LRESULT at = 0;
  while (at < count && SendMessageA(choice, CB_GETITEMDATA, static_cast<WPARAM>(at), 0) <
                           static_cast<LRESULT>(size)) {
    ++at;
  }
  at = SendMessageA(choice, CB_INSERTSTRING, static_cast<WPARAM>(at),
                    reinterpret_cast<LPARAM>(SizeText(size).c_str()));
  SendMessageA(choice, CB_SETITEMDATA, static_cast<WPARAM>(at), static_cast<LPARAM>(size));
  return static_cast<int>(at);
}

void CKCTRLPMaskOperation::SetMaskSize(uint32_t size) {
  if (window_ == nullptr) return;
  const int known = IndexOf(size);
  const int index = known >= 0 ? known : AddSize(size);
  SendMessageA(Item(kSize), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
  size_ = size;
}

void CKCTRLPMaskOperation::SetFactorLimits(int32_t least, int32_t most) {
  if (window_ == nullptr) return;
  leastFactor_ = least;
  mostFactor_ = std::max(least, most);
  SendMessageA(Item(kFactor), TBM_SETRANGEMIN, FALSE, leastFactor_);
  SendMessageA(Item(kFactor), TBM_SETRANGEMAX, FALSE, mostFactor_);
  SetFactor(factor_);
}

void CKCTRLPMaskOperation::SetFactor(int32_t factor) {
  if (window_ == nullptr) return;
  factor_ = std::clamp(factor, leastFactor_, mostFactor_);
  SendMessageA(Item(kFactor), TBM_SETPOS, TRUE, factor_);
  ShowFactor();
}

void CKCTRLPMaskOperation::ShowFactor() const {
  SetWindowTextA(Item(kFactorValue), std::to_string(factor_).c_str());
}

int CKCTRLPMaskOperation::LabelWidth() const {
  int width = 0;
  for (const Part part : {kSizeLabel, kFactorLabel}) {
    const HWND label = Item(part);
    width = std::max(width, static_cast<int>(TextSize(label, WindowText(label)).cx));
  }
  return width;
}

int CKCTRLPMaskOperation::LeastWidth() const { return Scaled(kLeastSlider) + Scaled(kGap) * 6; }

int CKCTRLPMaskOperation::Arrange(int width, int labelWidth) const {
  if (window_ == nullptr) return 0;
  const int gap = Scaled(kGap);
  const int left = labelWidth + gap;
  const HWND choice = Item(kSize);
  const int choiceHeight = WindowHeight(choice);
  const int choiceWidth = static_cast<int>(TextSize(choice, SizeText(99)).cx) +
                          GetSystemMetrics(SM_CXVSCROLL) + Scaled(kAroundChoice);
  int row = PlaceLabel(Item(kSizeLabel), 0, labelWidth, choiceHeight);
  PlaceWindow(choice, left, (row - choiceHeight) / 2, std::min(choiceWidth, width - left),
              choiceHeight);

  const HWND value = Item(kFactorValue);
  const int valueHeight = LineHeight(value);
  const int valueWidth =
      std::max(static_cast<int>(TextSize(value, std::to_string(leastFactor_)).cx),
               static_cast<int>(TextSize(value, std::to_string(mostFactor_)).cx)) +
      gap;
  const int top = row + gap;
  const int sliderHeight = Scaled(kSliderHeight);
  row = PlaceLabel(Item(kFactorLabel), top, labelWidth, std::max(sliderHeight, valueHeight));
  PlaceWindow(Item(kFactor), left, top + (row - sliderHeight) / 2, width - left - valueWidth,
              sliderHeight);
  PlaceWindow(value, width - valueWidth, top + (row - valueHeight) / 2, valueWidth, valueHeight);
  return top + row;
}

void CKCTRLPMaskOperation::OnSizeChosen() {
  const LRESULT index = SendMessageA(Item(kSize), CB_GETCURSEL, 0, 0);
  if (index < 0) return;
  const auto size = static_cast<uint32_t>(
      SendMessageA(Item(kSize), CB_GETITEMDATA, static_cast<WPARAM>(index), 0));
  if (size == size_) return;
  size_ = size;
  Tell();
}

void CKCTRLPMaskOperation::OnSlider() {
  const auto factor = static_cast<int32_t>(SendMessageA(Item(kFactor), TBM_GETPOS, 0, 0));
  if (factor == factor_) return;
  factor_ = factor;
  ShowFactor();
  Tell();
}

void CKCTRLPMaskOperation::Tell() const {
  SendMessageA(GetParent(window_), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(window_), kChanged),
               reinterpret_cast<LPARAM>(window_));
}

LRESULT CKCTRLPMaskOperation::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
  const HWND window = window_;
  switch (message) {
    case WM_COMMAND:
      if (LOWORD(wParam) == kSize && HIWORD(wParam) == CBN_SELCHANGE) OnSizeChosen();
      return 0;
    case WM_HSCROLL:
      OnSlider();
      return 0;
    case WM_ENABLE:
      for (HWND child = GetWindow(window, GW_CHILD); child != nullptr;
           child = GetWindow(child, GW_HWNDNEXT)) {
        EnableWindow(child, wParam != FALSE);
      }
      return 0;
    case WM_ERASEBKGND:
      return FillWindow(window, reinterpret_cast<HDC>(wParam), GetSysColor(COLOR_BTNFACE));
    case WM_DESTROY:
      SetWindowLongPtrA(window, GWLP_USERDATA, 0);
      window_ = nullptr;
      return 0;
    default:
      return DefWindowProcA(window, message, wParam, lParam);
  }
}

}  // namespace zyr
