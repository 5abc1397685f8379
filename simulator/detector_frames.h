// The frames of one exposure: the scene, and what the detector adds to it.
#pragma once

#include <cstdint>
#include <vector>

#include "simulator/column_response.h"
#include "simulator/memory_303.h"
#include "simulator/physics.h"

namespace zyr::simulator {

struct DetectorModel {
  Geometry geometry{};
  std::vector<Defect> defects;
  std::vector<ColumnPolynomial> columns;  // 303 family
  const Gain* gain = nullptr;             // 303 family; null: a seam instead
};

struct Frames {
  std::vector<uint16_t> normal;
  std::vector<uint16_t> dark;
};
Frames MakeFrames(const DetectorOptions& options, const DetectorModel& model, const Scene& scene);

}  // namespace zyr::simulator
