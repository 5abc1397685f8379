// Pictures out of what a source hands over.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "tools/images/grey_picture.h"
#include "twain/twain_types.h"

namespace zyr {

// From the memory block of a native transfer: a packed bitmap of 8 bits with its colour table, or
// of 16 bits of grey. Null with the reason in `error` for anything else and for a block that is too
// small.
std::optional<GreyPicture> PictureFromDib(std::span<const uint8_t> block, std::string* error);

// Puts a picture together from the strips of a memory transfer.
class StripCollector {
 public:
  explicit StripCollector(const TW_IMAGEINFO& info);

  // Takes what the source says it has written into `buffer`. False with the reason in error() if
  // that cannot be.
  bool Add(const TW_IMAGEMEMXFER& strip, std::span<const uint8_t> buffer);

  uint32_t rows() const { return rows_; }
  uint64_t bytes() const { return bytes_; }
  const std::string& error() const { return error_; }

  // False with the reason in error() unless all rows have come. The resolution is left open.
  // `zeroIsWhite` is how the samples are meant; in a GreyPicture 0 is black.
  bool Finish(bool zeroIsWhite, GreyPicture* picture);

 private:
  bool Refuse(const std::string& reason);
  bool IsPlausible(const TW_IMAGEMEMXFER& strip, size_t bufferSize);

  GreyPicture picture_;
  uint32_t promisedBits_;
  uint32_t rows_ = 0;
  uint64_t bytes_ = 0;
  std::string error_;
};

}  // namespace zyr
