// Texts, and fields for texts.
#pragma once

#include "controls/options/field_control.h"

namespace zyr {

std::unique_ptr<FieldControl> MakeNoteField(FieldPanel& panel, int firstId, const PageField& field);
std::unique_ptr<FieldControl> MakeWarningField(FieldPanel& panel, int firstId,
                                               const PageField& field);
std::unique_ptr<FieldControl> MakeNumberField(FieldPanel& panel, int firstId,
                                              const PageField& field);
std::unique_ptr<FieldControl> MakePickedField(FieldPanel& panel, int firstId,
                                              const PageField& field);

}  // namespace zyr
