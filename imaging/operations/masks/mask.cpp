#include "imaging/operations/masks/mask.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <numeric>

#include "foundation/math/portable_math.h"

namespace zyr {
namespace {

// The greatest 32-bit number is odd: nothing wraps.
uint32_t OddSize(uint32_t size) { return size | 1; }

}  // namespace

CKIPMask::CKIPMask() { MakeIdentity(3); }

bool CKIPMask::Resize(uint32_t newColumns, uint32_t newRows) {
  weights.reset();
  rows = columns = 0;
  factor = 0;
  newColumns = OddSize(newColumns);
  newRows = OddSize(newRows);
  const uint64_t count = uint64_t{newRows} * newColumns;
  if (count > kMaxWeights) return false;
  weights.reset(new (std::nothrow) double[static_cast<size_t>(count)]());
  if (weights == nullptr) return false;
  rows = newRows;
  columns = newColumns;
  return true;
}

bool CKIPMask::MakeIdentity(uint32_t newColumns, uint32_t newRows) {
  if (!Resize(newColumns, newRows)) return false;
  SetCentre(1.0);
  factor = 1.0;
  return true;
}

bool CKIPMask::MakeSmooth(uint32_t newColumns, uint32_t newRows, int32_t percent) {
  if (!Resize(newColumns, newRows)) return false;
  const double p = percent * 0.01;
  Fill(p);
  SetCentre((1 - p) * rows * columns + 1);
  NormaliseFactor();
  return true;
}

bool CKIPMask::MakeSharpen(uint32_t newColumns, uint32_t newRows, int32_t percent) {
  if (!Resize(newColumns, newRows)) return false;
  const double p = percent * 0.01;
  FillByDistance(-1 - p);
  SetCentre(0);
  SetCentre(-Sum() * (2 / math::Pow(2, p)));
  NormaliseFactor();
  return true;
}

bool CKIPMask::MakeEdge(uint32_t newColumns, uint32_t newRows, double strength) {
  if (!Resize(newColumns, newRows)) return false;
  factor = 1.0;
  // Infinite for a single element, which is then overwritten.
  const double v = strength == 0 ? 1.0 : strength / (static_cast<double>(Count()) - 1);
  FillByDistance(-v);
  SetCentre(0);
  SetCentre(-Sum());
  return true;
}

void CKIPMask::Fill(double value) { std::fill_n(weights.get(), Count(), value); }

void CKIPMask::FillByDistance(double value) {
  for (size_t i = 0; i < Count(); ++i) {
    const uint32_t column = static_cast<uint32_t>(i % columns);
    const uint32_t row = static_cast<uint32_t>(i / columns);
    weights[i] = value / DistanceFromCentre(column, row);
  }
}

void CKIPMask::SetCentre(double value) {
  if (Count() != 0) weights[size_t{rows / 2} * columns + columns / 2] = value;
}

double CKIPMask::Sum() const {
  return std::accumulate(weights.get(), weights.get() + Count(), 0.0);
}

double CKIPMask::DistanceFromCentre(uint32_t column, uint32_t row) const {
  const double across = column - rows * 0.5;
  const double down = row - columns * 0.5;
  return std::sqrt(across * across + down * down);
}

void CKIPMask::NormaliseFactor() {
  factor = Sum();
  if (factor != 0) factor = 1 / factor;
}

}  // namespace zyr
