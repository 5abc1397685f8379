#include "hardware/correction/column_pattern.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace zyr {
namespace {

constexpr uint32_t kEdge = 10;  // outermost rows and columns that have no say
constexpr size_t kFirstRepaired = 4;
constexpr double kLimit = 4;  // standard deviations

constexpr size_t kCopied = 4;      // columns at either end that stay as they are
constexpr size_t kMostReach = 20;  // of the Gaussian to either side
constexpr size_t kBlock = 16;      // a fixed count, which is what compilers vectorise

// exp(-j^2 / (2 sigma^2)) with sigma = 30 / sqrt(8 ln 2), which is 2^(-j^2 / 225). Constants, as
// the exponential functions of C libraries differ in the last bit.
constexpr std::array<double, kMostReach + 1> kGaussian = {1.0,
                                                          0.9969240862100921,
                                                          0.9877529959958377,
                                                          0.9726549474122855,
                                                          0.9519045934537708,
                                                          0.9258747122872905,
                                                          0.8950250709279725,
                                                          0.8598889270616107,
                                                          0.8210577223003156,
                                                          0.7791645796604999,
                                                          0.7348672461377994,
                                                          0.688831117541916,
                                                          0.6417129487814521,
                                                          0.5941457918240557,
                                                          0.5467256203072339,
                                                          0.5,
                                                          0.4544590543915457,
                                                          0.4105288611501578,
                                                          0.3685673043227753,
                                                          0.32886230454856386,
                                                          0.29163225989402913};

void AddRow(const uint16_t* __restrict row, uint32_t* __restrict sums, size_t count) {
  size_t i = 0;
  for (; i + kBlock <= count; i += kBlock) {
    for (size_t k = 0; k < kBlock; ++k) sums[i + k] += row[i + k];
  }
  for (; i < count; ++i) sums[i] += row[i];
}

double Mean(const double* first, const double* last) {
  double sum = 0;
  for (const double* value = first; value != last; ++value) sum += *value;
  return sum / static_cast<double>(last - first);
}

double StandardDeviation(const double* first, const double* last, double mean) {
  double sum = 0;
  for (const double* value = first; value != last; ++value) {
    sum += (*value - mean) * (*value - mean);
  }
  return std::sqrt(sum / static_cast<double>(last - first));
}

// Of the columns `first` to `last`, whose means stand out. The step takes the whole of the right
// neighbour's mean and not the difference between the neighbours: that is how sensors have been
// corrected ever since, and images of one sensor stay comparable.
void RepairRun(size_t first, size_t last, std::vector<double>* means) {
  std::vector<double>& mean = *means;
  const auto count = static_cast<double>(last - first + 1);
  const double step = last + 1 < mean.size() ? mean[last + 1] - mean[first - 1] / count : 0.0;
  double value = mean[first - 1];
  for (size_t x = first; x <= last; ++x) mean[x] = value += step;
}

// A kernel that reaches so many columns to either side; its weights add up to 1.
struct Kernel {
  explicit Kernel(size_t columns) : reach(columns) {
    double sum = 0;
    for (size_t tap = 0; tap <= 2 * reach; ++tap) sum += WeightOf(tap);
    for (size_t tap = 0; tap <= 2 * reach; ++tap) weights[tap] = WeightOf(tap) / sum;
  }
  double WeightOf(size_t tap) const { return kGaussian[tap < reach ? reach - tap : tap - reach]; }
  double At(const double* centre) const {
    double sum = 0;
    for (size_t tap = 0; tap <= 2 * reach; ++tap) sum += weights[tap] * (centre - reach)[tap];
    return sum;
  }

  size_t reach;
  std::array<double, 2 * kMostReach + 1> weights;
};

// Without the outermost rows.
std::vector<double> ColumnMeans(const SensorImage& dark) {
  const size_t width = dark.GetWidth();
  const uint32_t end = dark.GetHeight() - kEdge;
  std::vector<double> means(width);
  std::vector<uint32_t> sums(width);
  constexpr uint32_t kMostRows = 65536;  // before a sum could overflow
  for (uint32_t y = kEdge; y < end;) {
    std::fill(sums.begin(), sums.end(), 0u);
    const uint32_t stop = y + std::min(end - y, kMostRows);
    for (; y < stop; ++y) AddRow(dark.Row(y), sums.data(), width);
    for (size_t x = 0; x < width; ++x) means[x] += sums[x];
  }
  for (double& mean : means) mean /= end - kEdge;
  return means;
}

// By a Gaussian with a full width at half height of 30 columns.
std::vector<double> SmoothColumnMeans(const std::vector<double>& means) {
  const size_t width = means.size();
  std::vector<double> smooth = means;
  for (size_t reach = 0; reach < kMostReach; ++reach) {
    const Kernel kernel(reach);
    const size_t left = kCopied + reach;
    const size_t right = width - 1 - left;
    smooth[left] = kernel.At(&means[left]);
    smooth[right] = kernel.At(&means[right]);
  }
  const Kernel kernel(kMostReach);
  for (size_t x = kCopied + kMostReach; x + kCopied + kMostReach < width; ++x) {
    smooth[x] = kernel.At(&means[x]);
  }
  return smooth;
}

}  // namespace

void RepairColumnMeans(std::vector<double>* means) {
  const size_t width = means->size();
  const double* const first = means->data() + kEdge;
  const double* const last = means->data() + (width - kEdge);
  const double mean = Mean(first, last);
  const double reach = kLimit * StandardDeviation(first, last, mean);
  const auto standsOut = [&, low = mean - reach, high = mean + reach](size_t x) {
    return (*means)[x] < low || (*means)[x] > high;
  };
  for (size_t x = kFirstRepaired; x < width; ++x) {
    if (!standsOut(x)) continue;
    size_t end = x;
    while (end + 1 < width && standsOut(end + 1)) ++end;
    RepairRun(x, end, means);
    x = end;
  }
}

std::vector<double> ColumnPattern(const SensorImage& dark) {
  std::vector<double> pattern = ColumnMeans(dark);
  RepairColumnMeans(&pattern);
  const std::vector<double> smooth = SmoothColumnMeans(pattern);
  for (size_t x = 0; x < pattern.size(); ++x) pattern[x] -= smooth[x];
  return pattern;
}

}  // namespace zyr
