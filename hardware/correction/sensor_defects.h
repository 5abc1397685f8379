// What is known to be bad on a sensor, and its repair.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "hardware/correction/defect_list.h"
#include "hardware/correction/sensor_image.h"
#include "hardware/result.h"

namespace zyr {

class DefectMask;
class WeightedRepair;

// Coefficients of one column's offset polynomial.
struct CalibrationTriple {
  int32_t a = 0;
  int32_t b = 0;
  int32_t c = 0;
};

// Loaded from a sensor's memory; the two families have different forms of it, and refuse the
// other's with kNotImplemented. One thread.
class SensorDefects {
 public:
  virtual ~SensorDefects() = default;

  // Both replace what was loaded before. What stands ahead of a fault remains; the result then is
  // kUnexpected. `width` and `height` are the sensor's, in pixels.
  virtual Result LoadText(std::string_view text, uint32_t width, uint32_t height) = 0;
  virtual Result LoadBinary(const uint8_t* data, size_t size, uint32_t reserved1,
                            uint32_t reserved2) = 0;
  // Repairs `image` in place. With `binned` the coordinates count as those of a sensor with twice
  // the image's resolution.
  virtual void Apply(SensorImage* image, bool binned);

  const DefectList& defects() const { return defects_; }
  const std::vector<CalibrationTriple>& calibration() const { return calibration_; }

 protected:
  void Clear();

  DefectList defects_;
  std::vector<CalibrationTriple> calibration_;

 private:
  // Follows on the repair of the single pixels.
  virtual void RepairLines(const DefectMask& mask, WeightedRepair* repair) const = 0;
};

std::unique_ptr<SensorDefects> MakeTextDefects();    // of the 2000 family
std::unique_ptr<SensorDefects> MakeBinaryDefects();  // of the 303 family

}  // namespace zyr
