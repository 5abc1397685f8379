#include "hardware/correction/sensor_defects.h"

#include "hardware/correction/defect_mask.h"
#include "hardware/correction/weighted_repair.h"

namespace zyr {

void SensorDefects::Apply(SensorImage* image, bool binned) {
  DefectList scaled;
  if (binned) {
    scaled = defects_;
    scaled.Scale(0.5, false);
  }
  const DefectList& list = binned ? scaled : defects_;
  const DefectMask mask(list, image->GetWidth(), image->GetHeight());
  WeightedRepair repair(mask, image);
  for (const auto& [x, y] : list.Pixels()) repair.RepairPixel(x, y);
  RepairLines(mask, &repair);
}

void SensorDefects::Clear() {
  defects_.Clear();
  calibration_.clear();
}

}  // namespace zyr
