// The choice of a mask for an image operation.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>

#include "controls/mnemonics.h"
#include "controls/window_class.h"

namespace zyr {

// A child window with a choice of sizes, at first 3 by 3, and a slider for the factor, at first 50
// of 0 to 100. It tells its parent by WM_COMMAND when the user has changed one of them. Window
// class MASK_OPERATION_CLASS. User-interface thread only; once the window is gone, operations do
// nothing.
class CKCTRLPMaskOperation {
 public:
  static constexpr WORD kChanged = 1;  // the notification code
  // Identifiers of the controls in the window.
  enum Part { kSize = 1, kFactor, kFactorValue, kSizeLabel, kFactorLabel };

  CKCTRLPMaskOperation();
  ~CKCTRLPMaskOperation();
  CKCTRLPMaskOperation(const CKCTRLPMaskOperation&) = delete;
  CKCTRLPMaskOperation& operator=(const CKCTRLPMaskOperation&) = delete;

  // The labels get mnemonics that are free. The window must not outlive this object. Null if there
  // can be none.
  HWND Create(HWND parent, int id, HFONT font, Mnemonics& mnemonics);
  HWND window() const { return window_; }

  // A size that is not offered yet is added.
  void SetMaskSize(uint32_t size);
  uint32_t MaskSize() const { return size_; }
  // The factor is brought within them.
  void SetFactorLimits(int32_t least, int32_t most);
  void SetFactor(int32_t factor);
  int32_t Factor() const { return factor_; }

  // In pixels. The labels stand in a column; both labels on one line need LabelWidth.
  int LabelWidth() const;
  int LeastWidth() const;  // without the labels
  // Arranges the controls in that width, and gives the height that it takes; the caller sizes the
  // window.
  int Arrange(int width, int labelWidth) const;

 private:
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  HWND Make(Part part, const char* className, DWORD style, const char* text, HFONT font);
  HWND Item(Part part) const { return GetDlgItem(window_, part); }
  int IndexOf(uint32_t size) const;
  int AddSize(uint32_t size) const;
  void OnSizeChosen();
  void OnSlider();
  void ShowFactor() const;
  void Tell() const;

  std::shared_ptr<const WindowClass> class_;
  HWND window_ = nullptr;
  uint32_t size_ = 3;
  int32_t factor_ = 50;
  int32_t leastFactor_ = 0;
  int32_t mostFactor_ = 100;
};

}  // namespace zyr
