// A field with a label in front of its control, or above it.
#pragma once

#include "controls/options/field_control.h"

namespace zyr {

class LabelledField : public FieldControl {
 protected:
  // What is left for the control beside or below the label.
  struct Slot {
    int left;
    int top;
    int width;
    int bottom;  // of the row
  };

  LabelledField(FieldPanel& panel, int firstId, const PageField& field);

  HWND label() const { return label_; }
  int FullLabelWidth() const;  // on one line
  // Beside the control, if the label has a column and the control enough room left.
  Slot PlaceLabel(const FieldPlace& place, int controlHeight) const;
  Slot PlaceLabelAbove(const FieldPlace& place, int controlHeight) const;

 private:
  HWND label_;
};

}  // namespace zyr
