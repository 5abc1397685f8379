#include "hardware/correction/defect_list.h"

#include <limits>

namespace zyr {
namespace {

int32_t Scaled(int32_t coordinate, double factor, bool rounded) {
  const double scaled = coordinate * factor + (rounded ? 0.5 : 0.0);
  constexpr int32_t kLeast = std::numeric_limits<int32_t>::min();
  constexpr int32_t kGreatest = std::numeric_limits<int32_t>::max();
  if (!(scaled > kLeast)) return kLeast;  // not a number, too
  return scaled < kGreatest ? static_cast<int32_t>(scaled) : kGreatest;
}

}  // namespace

bool DefectList::IsOnLine(int32_t x, int32_t y) const {
  return knownColumns_.contains(x) || knownRows_.contains(y);
}

void DefectList::AddPixel(int32_t x, int32_t y) {
  if (!IsOnLine(x, y) && knownPixels_.insert({x, y}).second) pixels_.push_back({x, y});
}

void DefectList::AddColumn(int32_t x) {
  if (knownColumns_.insert(x).second) columns_.push_back(x);
}

void DefectList::AddRow(int32_t y) {
  if (knownRows_.insert(y).second) rows_.push_back(y);
}

bool DefectList::IsDefective(int32_t x, int32_t y) const {
  return IsOnLine(x, y) || knownPixels_.contains({x, y});
}

void DefectList::Scale(double factor, bool rounded) {
  const auto scale = [&](int32_t& coordinate) { coordinate = Scaled(coordinate, factor, rounded); };
  pixels_ = Pixels();  // whom a line covers is settled before
  for (DefectPixel& pixel : pixels_) {
    scale(pixel.x);
    scale(pixel.y);
  }
  for (int32_t& row : rows_) scale(row);
  for (int32_t& column : columns_) scale(column);
  knownPixels_ = {pixels_.begin(), pixels_.end()};
  knownRows_ = {rows_.begin(), rows_.end()};
  knownColumns_ = {columns_.begin(), columns_.end()};
}

void DefectList::Clear() { *this = DefectList(); }

std::vector<DefectPixel> DefectList::Pixels() const {
  std::vector<DefectPixel> pixels;
  for (const DefectPixel& pixel : pixels_) {
    if (!IsOnLine(pixel.x, pixel.y)) pixels.push_back(pixel);
  }
  return pixels;
}

}  // namespace zyr
