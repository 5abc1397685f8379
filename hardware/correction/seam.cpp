#include "hardware/correction/seam.h"

#include <numeric>

#include "hardware/correction/integer_part.h"

namespace zyr {
namespace {

constexpr uint32_t kRows = 119;
constexpr double kStep = 0.008333333767950535;  // one part in 120, in the precision of old

uint32_t RowsBelowSeam(uint32_t sizeCode) { return sizeCode == 0 || sizeCode == 2 ? 409 : 535; }

double SumOfRow(const SensorImage& image, uint32_t y) {
  const uint16_t* const row = image.Row(y);
  return static_cast<double>(std::accumulate(row, row + image.GetWidth(), uint64_t{0}));
}

void MultiplyRow(uint16_t* row, uint32_t width, double factor) {
  for (uint32_t x = 0; x < width; ++x) {
    row[x] = static_cast<uint16_t>(IntegerPart(row[x] * factor));
  }
}

}  // namespace

void CorrectSeam(SensorImage* image, uint32_t sizeCode) {
  const uint32_t below = RowsBelowSeam(sizeCode);
  if (image->GetHeight() <= below) return;
  const uint32_t seam = image->GetHeight() - below;
  const double sumBelow = SumOfRow(*image, seam);
  if (sumBelow == 0) return;
  const double ratio = SumOfRow(*image, seam - 1) / sumBelow;
  const double step = (1 - ratio) * kStep;
  double factor = ratio;
  for (uint32_t y = seam; y < seam + kRows; ++y) {
    MultiplyRow(image->Row(y), image->GetWidth(), factor);
    factor += step;
    if (factor >= 1.0 || factor <= -1.0) break;
  }
}

}  // namespace zyr
