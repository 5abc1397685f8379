// Which pixels and lines of a detector are bad.
#pragma once

#include <cstdint>
#include <vector>

#include "simulator/physics.h"

namespace zyr::simulator {

// The first row below the seam of a 303 detector.
uint32_t SeamRow(Size size, uint32_t height);

// Lines first. They keep clear of the seam, whose strength is measured on the two rows beside it.
std::vector<Defect> ChooseDefects(const DetectorOptions& options, const Geometry& geometry);

}  // namespace zyr::simulator
