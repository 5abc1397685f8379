// How the pictures of the buttons look.
#pragma once

#include <cstdint>
#include <vector>

#include "controls/icon_button.h"

namespace zyr {

// `size` rows of `size` pixels as RenderIcon gives them, in colours that go with the system's
// buttons.
std::vector<uint32_t> DrawButtonIcon(ButtonIcon icon, int size, bool enabled);

// Whether the user has chosen colours that pictures have to keep to.
bool ColorsAreTheUsers();

}  // namespace zyr
