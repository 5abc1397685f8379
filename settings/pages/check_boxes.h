// Check boxes that each stand for one setting.
#pragma once

#include <cstdint>
#include <span>

#include "settings/pages/page_controls.h"
#include "settings/pages/page_field.h"

namespace zyr {

struct CheckBoxSetting {
  uint32_t field;
  const char* label;
  bool (*get)();
  bool (*set)(bool value);
};

inline PageField FieldOf(const CheckBoxSetting& box) {
  return {box.field, FieldKind::kCheckBox, box.label};
}

inline void LoadCheckBoxes(PageControls& controls, std::span<const CheckBoxSetting> boxes) {
  for (const CheckBoxSetting& box : boxes) controls.SetValue(box.field, box.get() ? 1 : 0);
}

// Writes on after a failure: what can be kept is kept.
inline bool SaveCheckBoxes(const PageControls& controls, std::span<const CheckBoxSetting> boxes) {
  bool saved = true;
  for (const CheckBoxSetting& box : boxes) saved &= box.set(controls.Value(box.field) == 1);
  return saved;
}

}  // namespace zyr
