// CKIPMask: the weights of a neighbourhood filter.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace zyr {

// Sizes are odd: 0 becomes 1, an even size is raised by 1. A size without memory, or of more than
// kMaxWeights weights, leaves a mask without any (null, 0 x 0), which filters refuse; the functions
// that resize say so with false, and the others then do nothing. Percentages may lie outside 0 to
// 100; some give infinite weights.
class CKIPMask {
 public:
  static constexpr uint64_t kMaxWeights = uint64_t{1} << 24;  // 128 MB; 4095 x 4095

  CKIPMask();  // the 3 x 3 identity

  bool Resize(uint32_t newColumns, uint32_t newRows);  // all weights and the factor become 0
  bool MakeIdentity(uint32_t size) { return MakeIdentity(size, size); }
  bool MakeIdentity(uint32_t newColumns, uint32_t newRows);
  bool MakeSmooth(uint32_t size, int32_t percent) { return MakeSmooth(size, size, percent); }
  bool MakeSmooth(uint32_t newColumns, uint32_t newRows, int32_t percent);
  bool MakeSharpen(uint32_t size, int32_t percent) { return MakeSharpen(size, size, percent); }
  bool MakeSharpen(uint32_t newColumns, uint32_t newRows, int32_t percent);
  // The weights add up to 0: the response is meant to be added to the pixel.
  bool MakeEdge(uint32_t newColumns, uint32_t newRows, double strength);

  void Fill(double value);
  void FillByDistance(double value);  // each weight is value / distance
  void SetCentre(double value);
  double Sum() const;
  // From half the size, not from the middle element: the weights of a sharpened image are
  // deliberately lopsided. Rows and columns are crossed on masks that are not square.
  double DistanceFromCentre(uint32_t column, uint32_t row) const;

  std::unique_ptr<double[]> weights;  // row by row
  double factor = 1.0;                // of the weighted sum
  uint32_t rows = 0;
  uint32_t columns = 0;

 private:
  size_t Count() const { return weights == nullptr ? 0 : size_t{rows} * columns; }
  void NormaliseFactor();
};

}  // namespace zyr
