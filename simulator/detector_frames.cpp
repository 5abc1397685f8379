#include "simulator/detector_frames.h"

#include <algorithm>
#include <cmath>

#include "simulator/detector_defects.h"
#include "simulator/random.h"

namespace zyr::simulator {
namespace {

constexpr uint64_t kDarkStream = 3;
constexpr uint64_t kNoiseStream = 4;
constexpr uint64_t kDefectValueStream = 5;

constexpr double kWhite = 4095;

// Levels.
constexpr double kReadNoise = 2;
constexpr double kQuantumNoise = 0.05;  // of the square root of the signal
constexpr double kPixelPattern = 4;     // deviation of the pixels' dark signals
constexpr double kColumnPattern = 8;    // 2000 family; of the columns'

constexpr double kSeamRatio = 0.9;
constexpr double kSeamStep = 1.0 / 120;  // per row, of what is missing to 1
constexpr uint32_t kSeamRows = 119;

uint16_t Quantized(double level) {
  return static_cast<uint16_t>(std::clamp(level + 0.5, 0.0, kWhite));
}

// What the pixels collect without X-rays: warmer towards one corner and the lower edge.
std::vector<double> DarkSignal(const DetectorOptions& options, const Geometry& geometry) {
  Random random(options.seed, kDarkStream);
  std::vector<double> columnOffset(geometry.width);
  if (options.family == kFamily2000) {
    for (double& offset : columnOffset) offset = kColumnPattern * random.Normal();
  }
  std::vector<double> signal;
  signal.reserve(size_t{geometry.width} * geometry.height);
  for (uint32_t y = 0; y < geometry.height; ++y) {
    const double down = static_cast<double>(y) / geometry.height;
    for (uint32_t x = 0; x < geometry.width; ++x) {
      const double across = static_cast<double>(x) / geometry.width;
      signal.push_back(70 + 40 * across * (1 - 0.5 * down) + 50 * down * down + columnOffset[x] +
                       kPixelPattern * random.Normal());
    }
  }
  return signal;
}

// By how much the rows below the seam see less than they show.
double SeamFactor(uint32_t rowsBelow) {
  if (rowsBelow >= kSeamRows) return 1;
  return kSeamRatio + rowsBelow * kSeamStep * (1 - kSeamRatio);
}

class Exposure {
 public:
  Exposure(const DetectorOptions& options, const DetectorModel& model)
      : options_(options), model_(model), dark_(DarkSignal(options, model.geometry)) {}

  Frames Make(const Scene& scene) {
    Random noise(options_.seed, kNoiseStream + (options_.exposure << 8));
    Frames frames;
    frames.normal.reserve(dark_.size());
    frames.dark.reserve(dark_.size());
    size_t i = 0;
    for (uint32_t y = 0; y < model_.geometry.height; ++y) {
      for (uint32_t x = 0; x < model_.geometry.width; ++x, ++i) {
        const double signal = SignalAt(scene, x, y);
        const double spread = kReadNoise + kQuantumNoise * std::sqrt(signal);
        frames.normal.push_back(
            Quantized(Collected(signal, x, dark_[i]) + spread * noise.Normal()));
        frames.dark.push_back(Quantized(Collected(0, x, dark_[i]) + kReadNoise * noise.Normal()));
      }
    }
    SpoilDefects(&frames);
    return frames;
  }

 private:
  double SignalAt(const Scene& scene, uint32_t x, uint32_t y) const {
    if (x >= scene.width || y >= scene.height) return 0;
    const size_t at = size_t{y} * scene.width + x;
    if (at >= scene.samples.size()) return 0;
    const double level = std::min<double>(scene.samples[at], kWhite);
    if (options_.family != kFamily303 || model_.gain != nullptr) return level;
    const uint32_t seam = SeamRow(options_.size, model_.geometry.height);
    return y < seam ? level : level / SeamFactor(y - seam);
  }

  // What the read-out finds in a pixel of column `x`.
  double Collected(double signal, uint32_t x, double dark) const {
    if (options_.family != kFamily303) return signal + dark;
    double level = signal + dark;
    if (model_.gain != nullptr && signal > 0) {
      for (int round = 0; round < 3; ++round) level = signal + model_.gain->At(level) * dark;
    }
    return ReadThrough(model_.columns[x], level);
  }

  enum class Fault { kDead, kHot, kWeak };

  void Spoil(Frames* frames, Fault fault, uint32_t x, uint32_t y) const {
    // A pixel that is far too hot would upset the 303's column statistics.
    const uint16_t hot = options_.family == kFamily303 ? 1200 : 4095;
    const size_t at = size_t{y} * model_.geometry.width + x;
    switch (fault) {
      case Fault::kDead:
        frames->normal[at] = 0;
        frames->dark[at] = 0;
        break;
      case Fault::kHot:
        frames->normal[at] = hot;
        frames->dark[at] = hot;
        break;
      case Fault::kWeak: {
        const int dark = frames->dark[at];
        const int signal = std::max(0, frames->normal[at] - dark);
        frames->normal[at] = static_cast<uint16_t>(dark + signal * 2 / 5);
        break;
      }
    }
  }

  // Lines are dead or weak, pixels hot as well.
  void SpoilDefects(Frames* frames) const {
    Random random(options_.seed, kDefectValueStream);
    for (const Defect& defect : model_.defects) {
      const uint32_t pick = random.Below(6);
      const Fault lineFault = pick % 2 == 0 ? Fault::kDead : Fault::kWeak;
      const Fault pixelFault = pick % 3 == 2 ? Fault::kHot : lineFault;
      switch (defect.kind) {
        case kBadPixel:
          Spoil(frames, pixelFault, defect.x, defect.y);
          break;
        case kBadColumn:
          for (uint32_t y = 0; y < model_.geometry.height; ++y) {
            Spoil(frames, lineFault, defect.x, y);
          }
          break;
        case kBadRow:
          for (uint32_t x = 0; x < model_.geometry.width; ++x) {
            Spoil(frames, lineFault, x, defect.y);
          }
          break;
      }
    }
  }

  const DetectorOptions& options_;
  const DetectorModel& model_;
  const std::vector<double> dark_;
};

}  // namespace

Frames MakeFrames(const DetectorOptions& options, const DetectorModel& model, const Scene& scene) {
  return Exposure(options, model).Make(scene);
}

}  // namespace zyr::simulator
