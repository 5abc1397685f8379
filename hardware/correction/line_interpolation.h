// Repair of bad lines by interpolation between the nearest good pixels on both sides.
#pragma once

#include "hardware/correction/weighted_repair.h"

namespace zyr {

// A pixel with a good one on one side only, or on none, goes to `repair`, which is of the same
// mask. The time taken grows with the size of the frame, however the defects lie.
void InterpolateRows(const DefectMask& mask, WeightedRepair* repair);
void InterpolateColumns(const DefectMask& mask, WeightedRepair* repair);

}  // namespace zyr
