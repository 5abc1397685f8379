// Repair of defective pixels from their neighbours, each weighing the more the nearer it is.
#pragma once

#include <cstdint>

#include "hardware/correction/defect_mask.h"
#include "hardware/correction/sensor_image.h"

namespace zyr {

// Works in place. Only good pixels are looked at and only defective ones are written, so that the
// order of the repairs doesn't matter. A pixel without a good neighbour keeps its value, and one
// outside the frame is passed over. The list's y counts from the bottom row of the frame.
class WeightedRepair {
 public:
  // Both must outlive this; the mask is of the image's size.
  WeightedRepair(const DefectMask& mask, SensorImage* image);

  // Of a pixel by itself, on a bad row, on a bad column.
  void RepairPixel(int64_t x, int64_t y);
  void RepairRowPixel(int64_t x, int64_t y);
  void RepairColumnPixel(int64_t x, int64_t y);

  // By the list's coordinates, which must lie inside the frame.
  uint16_t& PixelAt(int64_t x, int64_t y) { return bottomRow_[x - y * rowPixels_]; }

 private:
  // One neighbour at the most from each side of a bad line, then those at the corners.
  void RepairLinePixel(int64_t x, int64_t y, bool isRow);
  void ClearSums();
  bool AddNeighbour(int64_t x, int64_t y, uint32_t weight);
  void WriteRepair(int64_t x, int64_t y);

  const DefectMask& mask_;
  uint16_t* bottomRow_;
  int64_t rowPixels_;
  uint32_t weightedSum_ = 0;
  uint32_t neighbourCount_ = 0;
  uint32_t weightSum_ = 0;
};

}  // namespace zyr
