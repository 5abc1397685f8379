#include "controls/options/labelled_field.h"

#include <algorithm>

#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/text_size.h"

namespace zyr {

LabelledField::LabelledField(FieldPanel& panel, int firstId, const PageField& field)
    : FieldControl(panel, firstId), label_(MakeLabel(field.label)) {}

int LabelledField::FullLabelWidth() const {
  return label_ != nullptr ? static_cast<int>(TextSize(label_, WindowText(label_)).cx) : 0;
}

LabelledField::Slot LabelledField::PlaceLabel(const FieldPlace& place, int controlHeight) const {
  const int beside = place.labelWidth + Scaled(kFieldGap);
  if (label_ == nullptr || place.labelWidth <= 0 || place.width - beside < LeastWidth()) {
    return PlaceLabelAbove(place, controlHeight);
  }
  const int height = WrappedTextHeight(label_, WindowText(label_), place.labelWidth);
  const int row = std::max(height, controlHeight);
  PlaceWindow(label_, place.left, place.top + (row - height) / 2, place.labelWidth, height);
  return {place.left + beside, place.top + (row - controlHeight) / 2, place.width - beside,
          place.top + row};
}

LabelledField::Slot LabelledField::PlaceLabelAbove(const FieldPlace& place,
                                                   int controlHeight) const {
  int top = place.top;
  if (label_ != nullptr) {
    const int height = WrappedTextHeight(label_, WindowText(label_), place.width);
    PlaceWindow(label_, place.left, top, place.width, height);
    top += height + Scaled(kLabelGap);
  }
  return {place.left, top, place.width, top + controlHeight};
}

}  // namespace zyr
