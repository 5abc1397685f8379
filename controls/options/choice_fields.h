// Fields that are clicked.
#pragma once

#include "controls/options/field_control.h"

namespace zyr {

std::unique_ptr<FieldControl> MakeCheckBoxField(FieldPanel& panel, int firstId,
                                                const PageField& field);
std::unique_ptr<FieldControl> MakeRadioField(FieldPanel& panel, int firstId,
                                             const PageField& field);
std::unique_ptr<FieldControl> MakeChoiceField(FieldPanel& panel, int firstId,
                                              const PageField& field);
std::unique_ptr<FieldControl> MakeButtonField(FieldPanel& panel, int firstId,
                                              const PageField& field);

}  // namespace zyr
