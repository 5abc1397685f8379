// PGM, with its samples as bytes or as numbers in plain text.
#include <algorithm>

#include "tools/images/picture_decoders.h"

namespace zyr {
namespace {

class PgmReader {
 public:
  PgmReader(const std::vector<uint8_t>& file, size_t position) : file_(file), position_(position) {}

  // The next number in text. False at the end, or if something else stands there.
  bool Number(uint32_t* number) {
    SkipBlanks();
    uint64_t value = 0;
    const size_t start = position_;
    while (position_ < file_.size() && file_[position_] >= '0' && file_[position_] <= '9') {
      value = value * 10 + (file_[position_++] - '0');
      if (value > kMostPixels) return false;
    }
    *number = static_cast<uint32_t>(value);
    return position_ > start;
  }

  // One blank parts the head from the bytes.
  bool SkipOne() { return position_++ < file_.size(); }
  bool Bytes(uint32_t count, uint32_t* number) {
    if (file_.size() - position_ < count) return false;
    *number = 0;
    for (uint32_t i = 0; i < count; ++i) *number = *number << 8 | file_[position_++];
    return true;
  }

 private:
  void SkipBlanks() {
    bool comment = false;
    for (; position_ < file_.size(); ++position_) {
      const uint8_t byte = file_[position_];
      if (byte == '#') comment = true;
      if (byte == '\n' || byte == '\r') comment = false;
      if (!comment && byte != ' ' && (byte < '\t' || byte > '\r')) return;
    }
  }

  const std::vector<uint8_t>& file_;
  size_t position_;
};

}  // namespace

bool IsPgm(const std::vector<uint8_t>& file) {
  return file.size() > 2 && file[0] == 'P' && (file[1] == '2' || file[1] == '5');
}

std::optional<GreyPicture> DecodePgm(const std::vector<uint8_t>& file, std::string* error) {
  const bool binary = file[1] == '5';
  PgmReader reader(file, 2);
  GreyPicture picture;
  uint32_t largest = 0;
  if (!reader.Number(&picture.width) || !reader.Number(&picture.height) ||
      !reader.Number(&largest) || largest == 0 || largest > 65535 ||
      !IsSaneSize(picture.width, picture.height) || (binary && !reader.SkipOne())) {
    *error = "has no regular PGM head";
    return {};
  }
  const uint32_t full = largest > 255 ? 65535 : 255;
  picture.bits = largest > 255 ? 16 : 8;
  const size_t count = size_t{picture.width} * picture.height;
  for (size_t i = 0; i < count; ++i) {
    uint32_t sample = 0;
    if (!(binary ? reader.Bytes(picture.bits / 8, &sample) : reader.Number(&sample))) {
      *error = "is torn";
      return {};
    }
    sample = std::min(sample, largest);
    picture.samples.push_back(static_cast<uint16_t>((sample * full + largest / 2) / largest));
  }
  return picture;
}

}  // namespace zyr
