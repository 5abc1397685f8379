#include "tools/makephantom/phantom.h"

#include <algorithm>
#include <cmath>

#include "tools/makephantom/exact_math.h"
#include "tools/makephantom/jaw.h"
#include "tools/makephantom/noise.h"

namespace zyr {
namespace {

// Linear attenuation at 65 kV, per millimetre.
constexpr double kEnamel = 0.31;
constexpr double kDentine = 0.108;
constexpr double kBone = 0.078;
constexpr double kSoft = 0.021;
constexpr double kMetal = 2.4;
constexpr double kRootFilling = 0.85;

constexpr double kFar = 1e9;

class Drawing {
 public:
  explicit Drawing(const PhantomSettings& settings)
      : settings_(settings),
        jaw_(PlanJaw(settings.seed)),
        scale_(settings.micrometresPerPixel / 1000),
        pixels_(size_t{settings.width} * settings.height) {}

  std::vector<uint16_t> Draw() {
    TraceAllTeeth();
    MeasureRootDistance();
    Expose();
    for (int pass = 0; pass < BlurPasses(); ++pass) Blur();
    return Develop();
  }

 private:
  double X(uint32_t column) const {
    const double x = (column + 0.5 - settings_.width / 2.0) * scale_ + kViewWidth / 2;
    return jaw_.mirrored ? kViewWidth - x : x;
  }
  double Y(uint32_t row) const {
    return (row + 0.5 - settings_.height / 2.0) * scale_ + kViewHeight / 2;
  }

  void TraceAllTeeth() {
    teeth_.reserve(pixels_.size());
    for (uint32_t row = 0; row < settings_.height; ++row) {
      for (uint32_t column = 0; column < settings_.width; ++column) {
        teeth_.push_back(TraceTeeth(jaw_, X(column), Y(row)));
      }
    }
  }

  // The exact distance of each pixel from the nearest root pixel: first along the columns, then for
  // each row the lower envelope of the parabolas that stand on the squared column distances.
  void MeasureRootDistance() {
    const uint32_t width = settings_.width;
    const uint32_t height = settings_.height;
    distance_.assign(pixels_.size(), kFar);
    for (uint32_t column = 0; column < width; ++column) {
      double steps = kFar;
      for (uint32_t row = 0; row < height; ++row) Step(row * size_t{width} + column, &steps);
      steps = kFar;
      for (uint32_t row = height; row-- > 0;) Step(row * size_t{width} + column, &steps);
    }
    std::vector<double> squares(width);
    for (uint32_t row = 0; row < height; ++row) {
      double* line = &distance_[row * size_t{width}];
      for (uint32_t column = 0; column < width; ++column) {
        squares[column] = line[column] < kFar ? line[column] * line[column] : kFar * kFar;
      }
      Envelope(squares, line);
    }
  }

  void Step(size_t index, double* steps) {
    *steps = teeth_[index].root > 0 ? 0 : std::min(*steps + 1, kFar);
    distance_[index] = std::min(distance_[index], *steps);
  }

  void Envelope(const std::vector<double>& squares, double* line) {
    const auto count = static_cast<int>(squares.size());
    std::vector<int> feet;
    std::vector<double> starts;
    for (int q = 0; q < count; ++q) {
      if (squares[q] >= kFar) continue;
      double start = -kFar;
      while (!feet.empty()) {
        const int p = feet.back();
        start = (squares[q] + double(q) * q - squares[p] - double(p) * p) / (2.0 * (q - p));
        if (start > starts.back()) break;
        feet.pop_back();
        starts.pop_back();
        start = -kFar;
      }
      feet.push_back(q);
      starts.push_back(start);
    }
    size_t at = 0;
    for (int q = 0; q < count; ++q) {
      if (feet.empty()) {
        line[q] = kFar;
        continue;
      }
      while (at + 1 < feet.size() && starts[at + 1] < q) ++at;
      line[q] = std::sqrt(squares[feet[at]] + double(q - feet[at]) * (q - feet[at])) * scale_;
    }
  }

  // The share of the rays that comes through to each pixel.
  void Expose() {
    for (uint32_t row = 0; row < settings_.height; ++row) {
      for (uint32_t column = 0; column < settings_.width; ++column) {
        const size_t index = row * size_t{settings_.width} + column;
        const double x = X(column);
        const double y = Y(row);
        const JawPath path = TraceJaw(jaw_, teeth_[index], x, y, distance_[index]);
        const double stopped = kEnamel * path.tooth.enamel + kDentine * path.tooth.dentine +
                               kMetal * path.tooth.metal + kRootFilling * path.tooth.rootFilling +
                               kBone * path.bone + kSoft * path.soft;
        pixels_[index] = static_cast<float>(ExactExp(-stopped) * BeamStrength(x, y) + kScatter);
      }
    }
  }

  // Stronger on the cathode's side, the lower one here, and towards the middle.
  static double BeamStrength(double x, double y) {
    const double dx = (x - kViewWidth / 2) / kViewWidth;
    const double dy = (y - kViewHeight / 2) / kViewHeight;
    return 1 + 0.13 * dy - 0.10 * (dx * dx + dy * dy);
  }

  // The focal spot and the light in the scintillator spread an edge by about 45 micrometres.
  int BlurPasses() const {
    const double deviation = 0.045 / scale_;
    return std::clamp(static_cast<int>(deviation * deviation * 2), 0, 24);
  }

  // 1 2 1 both ways: a variance of half a pixel squared.
  void Blur() {
    const uint32_t width = settings_.width;
    const uint32_t height = settings_.height;
    for (uint32_t row = 0; row < height; ++row) {
      BlurLine(&pixels_[row * size_t{width}], width);
    }
    // Side by side, so that neighbouring columns share the memory that each row fetches.
    std::vector<float> above(pixels_.begin(), pixels_.begin() + width);
    for (uint32_t row = 0; row < height; ++row) {
      float* line = &pixels_[row * size_t{width}];
      const float* below = row + 1 < height ? line + width : line;
      for (uint32_t column = 0; column < width; ++column) {
        const float self = line[column];
        line[column] = (above[column] + below[column]) * 0.25f + self * 0.5f;
        above[column] = self;
      }
    }
  }

  static void BlurLine(float* line, uint32_t count) {
    float before = line[0];
    for (uint32_t i = 0; i < count; ++i) {
      float& pixel = line[i];
      const float after = i + 1 < count ? line[i + 1] : pixel;
      const float self = pixel;
      pixel = (before + after) * 0.25f + self * 0.5f;
      before = self;
    }
  }

  std::vector<uint16_t> Develop() const {
    RandomStream random(HashBits(settings_.seed + 77));
    std::vector<uint16_t> samples(pixels_.size());
    for (size_t i = 0; i < samples.size(); ++i) samples[i] = Tone(Counted(pixels_[i], &random));
    return samples;
  }

  // Rays come in quanta: the noise grows as the square root of their number. The electronics adds a
  // little.
  static double Counted(double share, RandomStream* random) {
    constexpr double kQuanta = 7000;
    return share + std::sqrt(share / kQuanta) * random->Normal() + 0.0012 * random->Normal();
  }

  // Turned over, so that what stops the rays is bright, and spread over the 12 bits with room at
  // both ends.
  static uint16_t Tone(double share) {
    constexpr double kOpen = 0.86;
    constexpr double kShut = 0.045;
    const double bright = Clamp01((kOpen - share) / (kOpen - kShut));
    return static_cast<uint16_t>(bright * 3960 + 40.5);
  }

  static constexpr double kScatter = 0.05;

  const PhantomSettings settings_;
  const Jaw jaw_;
  const double scale_;  // mm a pixel
  std::vector<ToothPath> teeth_;
  std::vector<double> distance_;  // mm
  std::vector<float> pixels_;
};

}  // namespace

std::vector<uint16_t> DrawPhantom(const PhantomSettings& settings) {
  return Drawing(settings).Draw();
}

}  // namespace zyr
