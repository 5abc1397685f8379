// Which pixels, rows and columns of a sensor are bad.
#pragma once

#include <compare>
#include <cstdint>
#include <set>
#include <vector>

namespace zyr {

struct DefectPixel {
  int32_t x = 0;
  int32_t y = 0;

  friend auto operator<=>(const DefectPixel&, const DefectPixel&) = default;
};

// Coordinates come from a sensor's memory: any may lie outside the frame or be negative. Adding and
// looking up take logarithmic time, whatever the memory holds. One thread.
class DefectList {
 public:
  // Each is skipped if what it adds is known already; a pixel, too, if a bad line covers it.
  void AddPixel(int32_t x, int32_t y);
  void AddColumn(int32_t x);
  void AddRow(int32_t y);

  bool IsDefective(int32_t x, int32_t y) const;

  // All coordinates times `factor`, cut to an integer, with `rounded` after adding 0.5. What is
  // then listed twice stays so.
  void Scale(double factor, bool rounded);
  void Clear();

  // In the order of adding, without those that a line covers.
  std::vector<DefectPixel> Pixels() const;
  const std::vector<int32_t>& rows() const { return rows_; }
  const std::vector<int32_t>& columns() const { return columns_; }

 private:
  bool IsOnLine(int32_t x, int32_t y) const;

  std::vector<DefectPixel>
      pixels_;  // covered ones stay, as looking through them all costs too much
  std::vector<int32_t> rows_;
  std::vector<int32_t> columns_;
  std::set<DefectPixel> knownPixels_;
  std::set<int32_t> knownRows_;
  std::set<int32_t> knownColumns_;
};

}  // namespace zyr
