// Grey PNG files of every depth, with or without transparency, interlaced or not.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <zlib.h>

#include "tools/images/picture_decoders.h"

namespace zyr {
namespace {

constexpr uint8_t kSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

uint32_t Big32(const uint8_t* bytes) {
  return uint32_t{bytes[0]} << 24 | uint32_t{bytes[1]} << 16 | uint32_t{bytes[2]} << 8 | bytes[3];
}

struct Header {
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t depth = 0;     // bits of a sample
  uint32_t channels = 0;  // 1, or 2 with transparency
  bool interlaced = false;
};

// The pixels (x0 + i * dx, y0 + j * dy), a picture of its own in the data.
struct Pass {
  uint32_t x0, y0, dx, dy;

  uint32_t Columns(const Header& header) const {
    return header.width > x0 ? (header.width - x0 + dx - 1) / dx : 0;
  }
  uint32_t Rows(const Header& header) const {
    return header.height > y0 ? (header.height - y0 + dy - 1) / dy : 0;
  }
  size_t RowBytes(const Header& header) const {
    return (size_t{Columns(header)} * header.channels * header.depth + 7) / 8;
  }
  // Each row has its filter's number ahead. An empty pass has no rows.
  size_t Bytes(const Header& header) const {
    return Columns(header) == 0 ? 0 : Rows(header) * (RowBytes(header) + 1);
  }
};

const std::vector<Pass>& PassesOf(const Header& header) {
  static const std::vector<Pass> whole = {{0, 0, 1, 1}};
  static const std::vector<Pass> seven = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                                          {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}};
  return header.interlaced ? seven : whole;
}

bool ParseHeader(const uint8_t* data, size_t size, Header* header) {
  if (size != 13) return false;
  header->width = Big32(data);
  header->height = Big32(data + 4);
  header->depth = data[8];
  const uint8_t colour = data[9];
  header->channels = colour == 0 ? 1 : colour == 4 ? 2 : 0;
  header->interlaced = data[12] == 1;
  const bool knownDepth =
      header->depth == 8 || header->depth == 16 ||
      (colour == 0 && (header->depth == 1 || header->depth == 2 || header->depth == 4));
  return header->channels != 0 && knownDepth && data[10] == 0 && data[11] == 0 && data[12] <= 1 &&
         IsSaneSize(header->width, header->height);
}

// Takes the header and the compressed data out of the chunks. False if the file is torn.
bool ReadChunks(const std::vector<uint8_t>& file, std::vector<uint8_t>* header,
                std::vector<uint8_t>* packed) {
  size_t at = sizeof kSignature;
  while (file.size() - at >= 12) {
    const size_t size = Big32(&file[at]);
    if (size > file.size() - at - 12) return false;
    const uint8_t* type = &file[at + 4];
    const uint8_t* data = type + 4;
    if (crc32(0, type, static_cast<uInt>(size + 4)) != Big32(data + size)) return false;
    if (std::memcmp(type, "IEND", 4) == 0) return true;
    if (std::memcmp(type, "IHDR", 4) == 0) header->assign(data, data + size);
    if (std::memcmp(type, "IDAT", 4) == 0) packed->insert(packed->end(), data, data + size);
    at += size + 12;
  }
  return false;
}

uint8_t Paeth(int left, int up, int corner) {
  const int estimate = left + up - corner;
  const int toLeft = std::abs(estimate - left);
  const int toUp = std::abs(estimate - up);
  const int toCorner = std::abs(estimate - corner);
  if (toLeft <= toUp && toLeft <= toCorner) return static_cast<uint8_t>(left);
  return static_cast<uint8_t>(toUp <= toCorner ? up : corner);
}

// `row` and the one above it, or null, are `size` bytes; `step` bytes are a pixel, at least one.
bool Unfilter(uint8_t filter, uint8_t* row, const uint8_t* above, size_t size, size_t step) {
  if (filter > 4) return false;
  for (size_t i = 0; i < size; ++i) {
    const int left = i >= step ? row[i - step] : 0;
    const int up = above != nullptr ? above[i] : 0;
    const int corner = above != nullptr && i >= step ? above[i - step] : 0;
    const int guess = filter == 1   ? left
                      : filter == 2 ? up
                      : filter == 3 ? (left + up) / 2
                      : filter == 4 ? Paeth(left, up, corner)
                                    : 0;
    row[i] = static_cast<uint8_t>(row[i] + guess);
  }
  return true;
}

uint16_t SampleOf(const uint8_t* row, uint32_t column, const Header& header) {
  const size_t index = size_t{column} * header.channels;
  if (header.depth == 16) return static_cast<uint16_t>(row[2 * index] << 8 | row[2 * index + 1]);
  if (header.depth == 8) return row[index];
  const size_t bit = index * header.depth;
  const uint32_t largest = (1u << header.depth) - 1;
  const uint32_t value = row[bit / 8] >> (8 - header.depth - bit % 8) & largest;
  return static_cast<uint16_t>(value * (255 / largest));
}

bool ReadPass(const Header& header, const Pass& pass, uint8_t* data, GreyPicture* picture) {
  const size_t size = pass.RowBytes(header);
  const size_t step = std::max<size_t>(1, header.channels * header.depth / 8);
  const uint8_t* above = nullptr;
  for (uint32_t row = 0; row < pass.Rows(header); ++row) {
    uint8_t* line = data + row * (size + 1);
    if (!Unfilter(line[0], line + 1, above, size, step)) return false;
    above = line + 1;
    const size_t start = size_t{pass.y0 + row * pass.dy} * header.width + pass.x0;
    for (uint32_t column = 0; column < pass.Columns(header); ++column) {
      picture->samples[start + size_t{column} * pass.dx] = SampleOf(above, column, header);
    }
  }
  return true;
}

bool ReadPixels(const Header& header, const std::vector<uint8_t>& packed, GreyPicture* picture) {
  size_t size = 0;
  for (const Pass& pass : PassesOf(header)) size += pass.Bytes(header);
  std::vector<uint8_t> data(size);
  uLongf unpacked = static_cast<uLongf>(size);
  if (uncompress(data.data(), &unpacked, packed.data(), static_cast<uLong>(packed.size())) !=
          Z_OK ||
      unpacked != size)
    return false;
  picture->samples.resize(size_t{header.width} * header.height);
  size_t at = 0;
  for (const Pass& pass : PassesOf(header)) {
    if (pass.Bytes(header) == 0) continue;
    if (!ReadPass(header, pass, &data[at], picture)) return false;
    at += pass.Bytes(header);
  }
  return true;
}

}  // namespace

bool IsPng(const std::vector<uint8_t>& file) {
  return file.size() >= sizeof kSignature &&
         std::equal(std::begin(kSignature), std::end(kSignature), file.begin());
}

std::optional<GreyPicture> DecodePng(const std::vector<uint8_t>& file, std::string* error) {
  std::vector<uint8_t> head;
  std::vector<uint8_t> packed;
  if (!ReadChunks(file, &head, &packed)) {
    *error = "is torn";
    return {};
  }
  Header header;
  if (!ParseHeader(head.data(), head.size(), &header)) {
    *error = "is no grey PNG";
    return {};
  }
  GreyPicture picture;
  picture.width = header.width;
  picture.height = header.height;
  picture.bits = header.depth == 16 ? 16 : 8;
  if (ReadPixels(header, packed, &picture)) return picture;
  *error = "is torn";
  return {};
}

}  // namespace zyr
