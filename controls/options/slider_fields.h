// Fields with a slider.
#pragma once

#include "controls/options/field_control.h"

namespace zyr {

std::unique_ptr<FieldControl> MakeSliderField(FieldPanel& panel, int firstId,
                                              const PageField& field);
std::unique_ptr<FieldControl> MakeMaskField(FieldPanel& panel, int firstId, const PageField& field);

}  // namespace zyr
