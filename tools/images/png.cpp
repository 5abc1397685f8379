// PNG without a compressor: the pixels stand in "stored" blocks, which every reader takes.
#include <algorithm>
#include <array>
#include <cstring>

#include "tools/images/picture_file.h"

namespace zyr {
namespace {

constexpr size_t kMostInBlock = 65535;

void PutBig32(std::vector<uint8_t>* bytes, uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8)
    bytes->push_back(static_cast<uint8_t>(value >> shift));
}

std::array<uint32_t, 256> MakeCrcTable() {
  std::array<uint32_t, 256> table{};
  for (uint32_t i = 0; i < 256; ++i) {
    uint32_t value = i;
    for (int bit = 0; bit < 8; ++bit)
      value = (value & 1) != 0 ? 0xEDB88320u ^ (value >> 1) : value >> 1;
    table[i] = value;
  }
  return table;
}

uint32_t Crc32(const uint8_t* bytes, size_t count) {
  static const std::array<uint32_t, 256> table = MakeCrcTable();
  uint32_t crc = 0xFFFFFFFFu;
  for (size_t i = 0; i < count; ++i) crc = table[(crc ^ bytes[i]) & 0xFF] ^ (crc >> 8);
  return ~crc;
}

uint32_t Adler32(const std::vector<uint8_t>& bytes) {
  uint32_t low = 1;
  uint32_t high = 0;
  for (size_t i = 0; i < bytes.size();) {
    // As many as the sums can take before they must be reduced.
    const size_t end = std::min(bytes.size(), i + 5552);
    for (; i < end; ++i) {
      low += bytes[i];
      high += low;
    }
    low %= 65521;
    high %= 65521;
  }
  return (high << 16) | low;
}

std::vector<uint8_t> StoredStream(const std::vector<uint8_t>& data) {
  std::vector<uint8_t> stream = {0x78, 0x01};
  size_t done = 0;
  do {
    const size_t count = std::min(kMostInBlock, data.size() - done);
    const bool last = done + count == data.size();
    stream.push_back(last ? 1 : 0);
    stream.push_back(static_cast<uint8_t>(count));
    stream.push_back(static_cast<uint8_t>(count >> 8));
    stream.push_back(static_cast<uint8_t>(~count));
    stream.push_back(static_cast<uint8_t>(~count >> 8));
    const auto from = data.begin() + static_cast<std::ptrdiff_t>(done);
    stream.insert(stream.end(), from, from + static_cast<std::ptrdiff_t>(count));
    done += count;
  } while (done < data.size());
  PutBig32(&stream, Adler32(data));
  return stream;
}

void PutChunk(std::vector<uint8_t>* file, const char* type, const std::vector<uint8_t>& data) {
  PutBig32(file, static_cast<uint32_t>(data.size()));
  const size_t start = file->size();
  file->insert(file->end(), type, type + 4);
  file->insert(file->end(), data.begin(), data.end());
  PutBig32(file, Crc32(file->data() + start, file->size() - start));
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
  PutChunk(&file, "IDAT", StoredStream(Scanlines(picture)));
  PutChunk(&file, "IEND", {});
  return file;
}

}  // namespace zyr
