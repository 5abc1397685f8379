// Where the controls of the capture dialog go when its window changes size.
#pragma once

#include <windows.h>

#include <vector>

namespace zyr {

// Starts from the places in the template: buttons keep their distance from the right edge, those in
// the lower half from the lower edge too, and the status panel takes the rest.
class CaptureDialogLayout {
 public:
  // The controls stand where the template puts them. `templateSize` is in dialog units.
  CaptureDialogLayout(HWND dialog, SIZE templateSize);

  void Apply() const;
  // Outer size at which nothing overlaps.
  POINT LeastSize() const { return leastSize_; }

 private:
  struct Place {
    HWND control;
    RECT start;  // in the dialog's client area
    bool isPanel;
    bool followsBottom;
  };

  HWND dialog_;
  SIZE startSize_;
  POINT leastSize_;
  std::vector<Place> places_;
};

}  // namespace zyr
