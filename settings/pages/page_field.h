// What a page of the options consists of, as data: a window that shows pages needs to know no more.
#pragma once

#include <cstdint>
#include <vector>

namespace zyr {

enum class FieldKind {
  kNote,     // a text
  kWarning,  // a text that stands out
  kCheckBox,
  kRadio,   // one of `choices`, all in view, below the label
  kChoice,  // one of `choices`, of which one is in view
  kSlider,  // with its value beside it
  kNumber,  // a field for digits
  kMask,    // the size of a mask, and a factor by a slider
  kPicked,  // a text that only the button "..." behind it changes
  kLines,   // a list of lines, one of which is selected
  kTable,   // names and values, read-only
  kButton,
};

// Texts are English; who shows them translates them. A label ends with its colon, if it has one.
struct PageField {
  uint32_t id = 0;  // unique in its page, from 1
  FieldKind kind = FieldKind::kNote;
  const char* label = "";
  std::vector<const char*> choices = {};  // of kRadio and kChoice
  int32_t least = 0;                      // of a slider, or the factor of a mask
  int32_t most = 0;
  uint32_t belongsTo = 0;  // shown indented below the check box of that number; 0 none
};

}  // namespace zyr
