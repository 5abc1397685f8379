// Fields that take what height is left.
#pragma once

#include "controls/options/field_control.h"

namespace zyr {

std::unique_ptr<FieldControl> MakeLinesField(FieldPanel& panel, int firstId,
                                             const PageField& field);
std::unique_ptr<FieldControl> MakeTableField(FieldPanel& panel, int firstId,
                                             const PageField& field);

}  // namespace zyr
