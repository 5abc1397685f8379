// The sensor selection dialog as a window.
#pragma once

#include <memory>

#include "acquire/sensor_selection/sensor_selection_view.h"

namespace zyr {

// A modal dialog with this module's resources, for one Run.
std::unique_ptr<SensorSelectionView> MakeWin32SensorSelectionView();

}  // namespace zyr
