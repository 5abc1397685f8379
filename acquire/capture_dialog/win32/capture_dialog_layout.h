// Where the controls of the capture dialog go.
#pragma once

#include <windows.h>

#include "controls/dialog_window.h"

namespace zyr {

// The buttons stand in a column at the right edge, as wide as the longest caption asks for, and
// draw together in a low window. The panels have the rest.
class CaptureDialogLayout {
 public:
  // `dialog` has its controls, and these their font.
  explicit CaptureDialogLayout(HWND dialog);

  // To be called when captions have changed, before the next Apply.
  void Measure();
  // When split, the thumbnails are beside the two other panels, which share one place; otherwise
  // all three do.
  void Apply(bool split) const;
  // Outer size at which nothing overlaps or is cut off.
  POINT LeastSize() const;

 private:
  // In pixels, as all sizes here.
  struct Spacing {
    int buttonHeight;
    int nearGap;   // between the buttons of a group
    int groupGap;  // between groups
  };

  Spacing SpacingFor(int clientHeight) const;
  int ColumnHeight(const Spacing& spacing) const;
  void PlaceButtons(ControlMoves& moves, const RECT& column) const;
  void PlacePanels(ControlMoves& moves, const RECT& area, bool split) const;

  HWND dialog_;
  int margin_ = 0;
  int columnWidth_ = 0;
  Spacing roomy_ = {};
  Spacing tight_ = {};
};

}  // namespace zyr
