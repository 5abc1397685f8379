// A stretch of lower jaw with its teeth.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/makephantom/tooth.h"

namespace zyr {

constexpr double kViewWidth = 26;   // mm
constexpr double kViewHeight = 36;  // mm

struct Jaw {
  uint64_t seed = 0;
  std::vector<Tooth> teeth;  // from left to right
  bool mirrored = false;     // drawn as planned, seen from the other side
  double canalY = 31;        // of the nerve's canal in the middle, mm from the top
  bool canal = true;
};

// The teeth that a seed gives: molars, premolars or front teeth, sound or not.
Jaw PlanJaw(uint64_t seed);

// How many millimetres of each substance a ray meets.
struct JawPath {
  ToothPath tooth;
  double bone = 0;
  double soft = 0;
};

// `toRoot` is the distance in mm from the nearest root, 0 inside one.
JawPath TraceJaw(const Jaw& jaw, const ToothPath& tooth, double x, double y, double toRoot);
ToothPath TraceTeeth(const Jaw& jaw, double x, double y);

}  // namespace zyr
