// The defects of one frame, laid out for asking after each pixel.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "hardware/correction/defect_list.h"

namespace zyr {

class DefectMask {
 public:
  // What lies outside a frame of `width` x `height` pixels is left out.
  DefectMask(const DefectList& list, uint32_t width, uint32_t height);

  int64_t width() const { return width_; }
  int64_t height() const { return height_; }
  bool Contains(int64_t x, int64_t y) const {
    return x >= 0 && x < width_ && y >= 0 && y < height_;
  }
  // Inside the frame and not defective.
  bool IsGood(int64_t x, int64_t y) const { return Contains(x, y) && !defective_[At(x, y)]; }
  // The bad lines in ascending order, each once.
  const std::vector<int64_t>& badRows() const { return badRows_; }
  const std::vector<int64_t>& badColumns() const { return badColumns_; }

 private:
  size_t At(int64_t x, int64_t y) const { return static_cast<size_t>(y * width_ + x); }

  int64_t width_;
  int64_t height_;
  std::vector<int64_t> badRows_;
  std::vector<int64_t> badColumns_;
  std::vector<bool> defective_;
};

}  // namespace zyr
