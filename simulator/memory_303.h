// The calibration memory of the 303 family.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/column_response.h"
#include "simulator/physics.h"

namespace zyr::simulator {

// The dark signal counts (quadratic v^2 + linear v + constant) fold at the exposure v.
struct Gain {
  int32_t constant = 0;   // in 10^-2
  int32_t linear = 0;     // in 10^-6
  int32_t quadratic = 0;  // in 10^-10

  double At(double level) const {
    return 1e-10 * quadratic * level * level + 1e-6 * linear * level + 0.01 * constant;
  }
};

struct Calibration303 {
  std::string identity;     // at most 16 characters
  std::string description;  // at most 16
  std::vector<ColumnPolynomial> columns;
  const Gain* gain = nullptr;  // null: switched off
};

// Writes everything into an erased memory.
void WriteMemory303(const Calibration303& calibration, const std::vector<Defect>& defects,
                    const Geometry& geometry, std::vector<uint8_t>* memory);

}  // namespace zyr::simulator
