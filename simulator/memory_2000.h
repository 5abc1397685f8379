// The identity memory of the 2000 family.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/physics.h"

namespace zyr::simulator {

// Lines of "x y kind" with the coordinates of the list: y counts from the bottom, and everything
// stands one lower than it is, except lines at the very edge.
std::string DefectText(const std::vector<Defect>& defects, const Geometry& geometry);

// Writes the directory into an erased memory: something of the maker's, the identity (at most 15
// characters) and the defect list, which is cut where the directory must end.
void WriteMemory2000(const std::string& identity, const std::string& defectText,
                     std::vector<uint8_t>* memory);

}  // namespace zyr::simulator
