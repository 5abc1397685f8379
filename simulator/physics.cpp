#include "simulator/physics.h"

#include <utility>

#include "simulator/column_response.h"
#include "simulator/detector_defects.h"
#include "simulator/detector_frames.h"
#include "simulator/memory_2000.h"
#include "simulator/memory_303.h"
#include "simulator/random.h"

namespace zyr::simulator {
namespace {

constexpr uint64_t kIdentityStream = 6;
constexpr uint8_t kErased = 0xFF;
constexpr Gain kGain{100, 70, 60};

std::string Digits(uint32_t number, size_t count) {
  std::string text(count, '0');
  for (size_t i = count; i-- > 0; number /= 10) text[i] = static_cast<char>('0' + number % 10);
  return text;
}

void MakeIdentity(const DetectorOptions& options, Detector* detector) {
  Random random(options.seed, kIdentityStream + (uint64_t{options.family} << 8) + options.size);
  const auto letter = static_cast<char>('A' + options.size);
  const uint32_t number = random.Below(10'000'000);
  detector->identity = (options.family == kFamily303 ? "LR" : "CCD") + Digits(number, 7) + letter;
  for (uint8_t& byte : detector->macId) byte = static_cast<uint8_t>(random.Bits());
}

}  // namespace

Detector MakeDetector(const DetectorOptions& options, const Scene& scene) {
  Detector detector;
  detector.memory.assign(kMemorySize, kErased);
  DetectorModel model;
  model.geometry = GeometryOf(options.family, options.size);
  if (model.geometry.width == 0) return detector;

  MakeIdentity(options, &detector);
  model.defects = ChooseDefects(options, model.geometry);
  if (options.family == kFamily303) {
    model.columns = ChooseColumnPolynomials(options, model.geometry.width);
    model.gain = options.gain ? &kGain : nullptr;
    WriteMemory303({detector.identity, "simulated", model.columns, model.gain}, model.defects,
                   model.geometry, &detector.memory);
  } else if (options.memory) {
    WriteMemory2000(detector.identity, DefectText(model.defects, model.geometry),
                    &detector.memory);
  } else {
    detector.identity.clear();
  }
  Frames frames = MakeFrames(options, model, scene);
  detector.normal = std::move(frames.normal);
  detector.dark = std::move(frames.dark);
  detector.defects = std::move(model.defects);
  return detector;
}

Setup SetupOf(const DetectorOptions& options, const Detector& detector) {
  Setup setup;
  setup.family = options.family;
  setup.size = options.size;
  setup.hasMemory = options.memory || options.family == kFamily303 ? 1 : 0;
  for (size_t i = 0; i < sizeof(setup.macId); ++i) setup.macId[i] = detector.macId[i];
  setup.memory = detector.memory.data();
  setup.normal = detector.normal.empty() ? nullptr : detector.normal.data();
  setup.dark = detector.dark.empty() ? nullptr : detector.dark.data();
  return setup;
}

}  // namespace zyr::simulator
