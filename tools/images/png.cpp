// PNG, its rows unfiltered.
#include <zlib.h>

#include "tools/images/picture_file.h"

namespace zyr {
namespace {

void PutBig32(std::vector<uint8_t>* bytes, uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes->push_back(static_cast<uint8_t>(value >> shift));
}

std::vector<uint8_t> Compressed(const std::vector<uint8_t>& data) {
  uLongf size = compressBound(static_cast<uLong>(data.size()));
  std::vector<uint8_t> stream(size);
  compress2(stream.data(), &size, data.data(), static_cast<uLong>(data.size()), Z_BEST_SPEED);
  stream.resize(size);
  return stream;
}

void PutChunk(std::vector<uint8_t>* file, const char* type, const std::vector<uint8_t>& data) {
  PutBig32(file, static_cast<uint32_t>(data.size()));
  const size_t start = file->size();
  file->insert(file->end(), type, type + 4);
  file->insert(file->end(), data.begin(), data.end());
  const auto size = static_cast<uInt>(file->size() - start);
  PutBig32(file, static_cast<uint32_t>(crc32(0, file->data() + start, size)));
}

// Each row with its filter byte, samples with the high byte first.
std::vector<uint8_t> Scanlines(const GreyPicture& picture) {
  std::vector<uint8_t> lines;
  lines.reserve((size_t{picture.width} * (picture.bits / 8) + 1) * picture.height);
  for (uint32_t y = 0; y < picture.height; ++y) {
    lines.push_back(0);
    const uint16_t* row = picture.Row(y);
    for (uint32_t x = 0; x < picture.width; ++x) {
      if (picture.bits == 16) lines.push_back(static_cast<uint8_t>(row[x] >> 8));
      lines.push_back(static_cast<uint8_t>(row[x]));
    }
  }
  return lines;
}

uint32_t PerMetre(double dpi) { return static_cast<uint32_t>(dpi / 0.0254 + 0.5); }

}  // namespace

std::vector<uint8_t> EncodePng(const GreyPicture& picture) {
  std::vector<uint8_t> file = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  std::vector<uint8_t> header;
  PutBig32(&header, picture.width);
  PutBig32(&header, picture.height);
  header.push_back(static_cast<uint8_t>(picture.bits));
  header.insert(header.end(),
                {0, 0, 0, 0});  // grey, the only compression and filter set, not interlaced
  PutChunk(&file, "IHDR", header);
  if (picture.xDpi > 0 && picture.yDpi > 0) {
    std::vector<uint8_t> resolution;
    PutBig32(&resolution, PerMetre(picture.xDpi));
    PutBig32(&resolution, PerMetre(picture.yDpi));
    resolution.push_back(1);
    PutChunk(&file, "pHYs", resolution);
  }
  PutChunk(&file, "IDAT", Compressed(Scanlines(picture)));
  PutChunk(&file, "IEND", {});
  return file;
}

}  // namespace zyr
