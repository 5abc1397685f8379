#include "simulator/column_response.h"

#include <algorithm>

#include "simulator/random.h"

namespace zyr::simulator {
namespace {

constexpr uint64_t kColumnStream = 2;

constexpr double kScale = 1e-7;
constexpr double kOffset = 14 / kScale;     // 14 levels either way, whatever is read
constexpr double kSlope = 0.008 / kScale;   // 32 levels at 4000
constexpr double kBend = 2.5e-7 / kScale;   // 4 levels at 4000

constexpr int32_t kReach = 15;    // columns either way over which the pattern is without a mean
constexpr int32_t kMargin = 26;   // columns at the edges over which it fades

// Even random numbers from about -1 to 1 without their local mean.
std::vector<double> Pattern(Random& random, int32_t width) {
  std::vector<double> white(static_cast<size_t>(width));
  for (double& value : white) value = random.Even();
  std::vector<double> pattern(white.size());
  for (int32_t x = 0; x < width; ++x) {
    const int32_t left = std::max(0, x - kReach);
    const int32_t right = std::min(width - 1, x + kReach);
    double sum = 0;
    for (int32_t i = left; i <= right; ++i) sum += white[static_cast<size_t>(i)];
    const double local = white[static_cast<size_t>(x)] - sum / (right - left + 1);
    const int32_t fromEdge = std::clamp(std::min(x, width - 1 - x) - 4, 0, kMargin);
    pattern[static_cast<size_t>(x)] = local * fromEdge / kMargin;
  }
  return pattern;
}

}  // namespace

std::vector<ColumnPolynomial> ChooseColumnPolynomials(const DetectorOptions& options,
                                                      uint32_t width) {
  Random random(options.seed, kColumnStream);
  const auto columns = static_cast<int32_t>(width);
  const std::vector<double> offsets = Pattern(random, columns);
  const std::vector<double> slopes = Pattern(random, columns);
  const std::vector<double> bends = Pattern(random, columns);
  std::vector<ColumnPolynomial> polynomials(width);
  for (uint32_t x = 0; x < width; ++x) {
    polynomials[x] = {static_cast<int32_t>(kOffset * offsets[x]),
                      static_cast<int32_t>(kSlope * slopes[x]),
                      static_cast<int32_t>(kBend * bends[x])};
  }
  return polynomials;
}

// The polynomial is of the reading itself and nearly flat: a few rounds settle it.
double ReadThrough(const ColumnPolynomial& column, double level) {
  double reading = level;
  for (int round = 0; round < 4; ++round) {
    reading = level + kScale * ((column.c * reading + column.b) * reading + column.a);
  }
  return reading;
}

}  // namespace zyr::simulator
