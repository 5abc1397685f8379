// The rows of an image, as what its scaled picture is made of.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "imaging/image/image.h"

namespace zyr {

// A row has one plane or more of bytes. Of an image with a grey palette these are its levels, which
// get their colours at the end; others have blue, green and red. An index without a palette entry
// is black; of an image without any palette the lowest is black and the highest is white.
class PictureRows {
 public:
  // The columns of each row that are wanted. The image must outlive this object.
  PictureRows(const CKIPImage& image, int32_t firstColumn, int32_t columns);

  size_t planes() const { return areLevels_ ? 1 : 3; }
  // Valid until another row is asked for.
  const uint8_t* Plane(int32_t y, size_t plane);
  void Colors(int32_t y, uint32_t* target) const;
  // The colours of `count` pixels whose planes lie `count` bytes apart.
  void Finish(const uint8_t* bytes, size_t count, uint32_t* target) const;

 private:
  void ColorLevels(const uint8_t* levels, size_t count, uint32_t* target) const;

  const CKIPImage& image_;
  const size_t first_;
  const size_t columns_;
  std::array<uint32_t, 256> colors_{};
  bool areLevels_ = false;
  bool isIdentity_ = false;
  std::vector<uint32_t> row_;
  std::vector<uint8_t> planes_;
  int32_t rowInPlanes_ = -1;
};

}  // namespace zyr
