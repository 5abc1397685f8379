// What is inside a simulated sensor: its memory, and the frames that an exposure of it gives, made
// from a model of the detector.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/sensor.h"

namespace zyr::simulator {

// A radiograph that the sensor shall see: 12-bit samples of the sensor's geometry, in the order in
// which it is read: the bottom row of the picture first. Film polarity or not is the caller's
// affair; the detector gives back what it saw.
struct Scene {
  uint32_t width = 0;
  uint32_t height = 0;
  std::vector<uint16_t> samples;
};

struct DetectorOptions {
  Family family = kFamily2000;
  Size size = kSizeD;
  uint64_t seed = 1;       // of the defects, patterns and noise; fixed for one physical sensor
  uint64_t exposure = 0;   // of the noise of one exposure
  bool memory = true;      // 2000 family: the sensor has an identity memory
  bool gain = false;       // 303 family: dark signal that grows with the exposure instead of a seam
};

enum DefectKind : uint32_t { kBadPixel = 0, kBadColumn = 2, kBadRow = 3 };
struct Defect {
  DefectKind kind = kBadPixel;
  uint32_t x = 0;  // pixels from the left; 0 for a row
  uint32_t y = 0;  // rows from the first one read; 0 for a column
};

// One physical sensor. The same options and scene give the same bytes on every machine.
struct Detector {
  std::string identity;  // as its memory tells it; empty without one
  uint8_t macId[8] = {};
  std::vector<uint8_t> memory;  // kMemorySize bytes: identity, defects, calibration, gain
  std::vector<uint16_t> normal;  // frames of the exposure, as Setup wants them
  std::vector<uint16_t> dark;
  std::vector<Defect> defects;  // that the frames show and the memory lists
};
// A scene of another geometry is cut off, or filled up with black, on its right and lower sides.
// The frames are empty for a size that the family does not have.
Detector MakeDetector(const DetectorOptions& options, const Scene& scene);

// The driver's view of it, with no time for anything; `detector` must outlive it.
Setup SetupOf(const DetectorOptions& options, const Detector& detector);

}  // namespace zyr::simulator
