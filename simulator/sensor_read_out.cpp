#include "simulator/sensor_read_out.h"

namespace zyr::simulator {
namespace {

constexpr uint32_t kSampleBits = 0x0FFF;

uint32_t WordsPerRow(const ReadOut& readOut) {
  return readOut.oddWords ? 2 * readOut.width : readOut.width;
}

// What stands where nothing of meaning does: looks random, and is the same every time.
uint32_t Junk(uint32_t index) { return (index + 1) * 2654435761u >> 16; }

struct Samples {
  const uint16_t* data;
  Geometry size;

  uint32_t At(uint32_t x, uint32_t y) const {
    return data != nullptr && x < size.width && y < size.height ? data[y * size.width + x] : 0;
  }
  uint32_t Binned(uint32_t x, uint32_t y) const {
    const uint32_t left = 2 * x;
    const uint32_t top = 2 * y;
    return (At(left, top) + At(left + 1, top) + At(left, top + 1) + At(left + 1, top + 1) + 2) / 4;
  }
};

// The pixel that is delivered at (x, y): with the lag, one that the raster has passed before.
uint32_t Delivered(const ReadOut& readOut, const Samples& samples, uint32_t x, uint32_t y) {
  if (x >= readOut.lag) {
    x -= readOut.lag;
  } else {
    if (y == 0) return 0;
    x += readOut.width - readOut.lag;
    --y;
  }
  return readOut.binned ? samples.Binned(x, y) : samples.At(x, y);
}

uint32_t WordAt(const ReadOut& readOut, const Samples& samples, uint32_t column, uint32_t row) {
  const uint32_t junk = Junk(row * WordsPerRow(readOut) + column);
  if (readOut.oddWords && column % 2 == 0) return junk & 0xFFFF;
  const uint32_t x = readOut.oddWords ? column / 2 : column;
  const uint32_t sample = Delivered(readOut, samples, x, row) & kSampleBits;
  return (junk & 0xFFFF & ~kSampleBits) | sample;
}

}  // namespace

Geometry GeometryOf(Family family, Size size) {
  constexpr Geometry k2000[] = {{468, 578}, {578, 800}, {890, 1420}, {1156, 1600}};
  constexpr Geometry k303[] = {{0, 0}, {0, 0}, {616, 944}, {798, 1070}};
  if (size > kSizeD) return {0, 0};
  if (family == kFamily2000) return k2000[size];
  if (family == kFamily303) return k303[size];
  return {0, 0};
}

ReadOut ReadOutOf(Family family, Size size, bool binned) {
  const Geometry full = GeometryOf(family, size);
  if (family == kFamily303) return {full.width, full.height, 0, 0, 0};
  const bool small = size == kSizeA || size == kSizeB;  // their pixels are large by nature
  if (small) return {full.width, full.height, 0, 1, 3};
  if (binned) return {full.width / 2, full.height / 2, 1, 1, 3};
  return {full.width, full.height, 0, 0, 6};
}

uint32_t BytesPerRow(const ReadOut& readOut) { return 2 * WordsPerRow(readOut); }

uint32_t FrameBytes(const ReadOut& readOut) { return BytesPerRow(readOut) * readOut.height; }

void PackFrame(const ReadOut& readOut, const uint16_t* samples, const Geometry& sensor,
               uint32_t position, uint8_t* target, uint32_t length) {
  const Samples source{samples, sensor};
  const uint32_t wordsPerRow = WordsPerRow(readOut);
  if (wordsPerRow == 0) return;
  uint32_t row = position / 2 / wordsPerRow;
  uint32_t column = position / 2 % wordsPerRow;
  bool upper = position % 2 != 0;
  uint32_t word = 0;
  for (uint32_t i = 0; i < length; ++i) {
    if (!upper || i == 0) word = WordAt(readOut, source, column, row);
    target[i] = static_cast<uint8_t>(upper ? word >> 8 : word);
    if (upper && ++column == wordsPerRow) {
      column = 0;
      ++row;
    }
    upper = !upper;
  }
}

}  // namespace zyr::simulator
