// One lower tooth as X-rays meet it from the side.
#pragma once

#include <cstdint>

namespace zyr {

enum class ToothKind { kIncisor, kCanine, kPremolar, kMolar };

// Lengths in millimetres, in the picture's plane: x to the right, y down. The crown is up, the
// roots are down.
struct Tooth {
  ToothKind kind = ToothKind::kPremolar;
  double x = 0;  // where the long axis meets the neck
  double neckY = 0;
  double tilt = 0;   // radians, small; positive leans the crown to the right
  double width = 7;  // of the crown
  double crownHeight = 8;
  double rootLength = 14;
  double rootBend = 0;   // how far the tip is off the axis
  bool filling = false;  // amalgam
  bool metalCrown = false;
  bool rootFilling = false;
  int cariesSide = 0;  // -1 left, 1 right, 0 none
  uint64_t seed = 0;   // of its small irregularities
};

// How many millimetres of what a ray meets.
struct ToothPath {
  double enamel = 0;
  double dentine = 0;
  double metal = 0;
  double rootFilling = 0;
  double root = 0;  // below the neck, whatever it is filled with: bone has no room there
};

ToothPath TraceTooth(const Tooth& tooth, double x, double y);

// The tip of the root; of a molar, the left one.
void RootTip(const Tooth& tooth, double* x, double* y);

}  // namespace zyr
