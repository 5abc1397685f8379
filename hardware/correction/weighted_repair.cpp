#include "hardware/correction/weighted_repair.h"

namespace zyr {
namespace {

struct Neighbour {
  int8_t dx;
  int8_t dy;
  uint8_t weight;
};

constexpr Neighbour kFirstRing[] = {{0, -1, 100}, {0, 1, 100}, {-1, 0, 100}, {1, 0, 100},
                                    {-1, -1, 50}, {1, -1, 50}, {-1, 1, 50},  {1, 1, 50}};
constexpr Neighbour kSecondRing[] = {{0, -2, 33},  {0, 2, 33},  {-2, 0, 33}, {2, 0, 33},
                                     {-1, -2, 25}, {1, -2, 25}, {-1, 2, 25}, {1, 2, 25},
                                     {-2, -1, 25}, {-2, 1, 25}, {2, -1, 25}, {2, 1, 25},
                                     {-2, -2, 10}, {2, -2, 10}, {-2, 2, 10}, {2, 2, 10}};
// With that many neighbours or fewer a pixel looks further afield.
constexpr uint32_t kTooFew = 2;

}  // namespace

WeightedRepair::WeightedRepair(const DefectMask& mask, SensorImage* image)
    : mask_(mask),
      bottomRow_(image->GetHeight() == 0 ? nullptr : image->Row(image->GetHeight() - 1)),
      rowPixels_(image->GetRowPixels()) {}

void WeightedRepair::ClearSums() { weightedSum_ = neighbourCount_ = weightSum_ = 0; }

bool WeightedRepair::AddNeighbour(int64_t x, int64_t y, uint32_t weight) {
  if (!mask_.IsGood(x, y)) return false;
  ++neighbourCount_;
  weightSum_ += weight;
  weightedSum_ += PixelAt(x, y) * weight;
  return true;
}

void WeightedRepair::WriteRepair(int64_t x, int64_t y) {
  if (neighbourCount_ == 0) return;
  const double mean = static_cast<double>(weightedSum_) / weightSum_;
  PixelAt(x, y) = static_cast<uint16_t>(mean + 0.5);
}

void WeightedRepair::RepairPixel(int64_t x, int64_t y) {
  ClearSums();
  if (!mask_.Contains(x, y)) return;
  for (const auto& [dx, dy, weight] : kFirstRing) AddNeighbour(x + dx, y + dy, weight);
  if (neighbourCount_ <= kTooFew) {
    for (const auto& [dx, dy, weight] : kSecondRing) AddNeighbour(x + dx, y + dy, weight);
  }
  WriteRepair(x, y);
}

void WeightedRepair::RepairLinePixel(int64_t x, int64_t y, bool isRow) {
  ClearSums();
  if (!mask_.Contains(x, y)) return;
  const int64_t dx = isRow ? 0 : 1;
  const int64_t dy = isRow ? 1 : 0;
  for (const int64_t side : {-1, 1}) {
    if (!AddNeighbour(x + side * dx, y + side * dy, 10)) {
      AddNeighbour(x + 2 * side * dx, y + 2 * side * dy, 4);
    }
  }
  for (const int64_t across : {-1, 1}) {
    for (const int64_t along : {-1, 1}) AddNeighbour(x + across, y + along, 2);
  }
  if (neighbourCount_ <= kTooFew) RepairPixel(x, y);  // leaves its own sums
  WriteRepair(x, y);
}

void WeightedRepair::RepairRowPixel(int64_t x, int64_t y) { RepairLinePixel(x, y, true); }

void WeightedRepair::RepairColumnPixel(int64_t x, int64_t y) { RepairLinePixel(x, y, false); }

}  // namespace zyr
