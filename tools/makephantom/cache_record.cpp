#include "tools/makephantom/cache_record.h"

#include <algorithm>

namespace zyr {
namespace {

constexpr size_t kFixedFields = 8;

void Put32(std::vector<uint8_t>* bytes, uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8)
    bytes->push_back(static_cast<uint8_t>(value >> shift));
}

// Reads past the end give 0 and are remembered.
class Reader {
 public:
  explicit Reader(const std::vector<uint8_t>& bytes) : bytes_(bytes) {}

  uint32_t Get(int count) {
    if (Left() < static_cast<size_t>(count)) {
      torn_ = true;
      at_ = bytes_.size();
      return 0;
    }
    uint32_t value = 0;
    for (int i = count; i-- > 0;) value = value << 8 | bytes_[at_ + static_cast<size_t>(i)];
    at_ += static_cast<size_t>(count);
    return value;
  }
  std::string GetText(size_t count) {
    if (Left() < count) torn_ = true;
    if (torn_) return {};
    std::string text(bytes_.begin() + static_cast<std::ptrdiff_t>(at_),
                     bytes_.begin() + static_cast<std::ptrdiff_t>(at_ + count));
    at_ += count;
    return text;
  }
  size_t Left() const { return bytes_.size() - at_; }
  bool torn() const { return torn_; }

 private:
  const std::vector<uint8_t>& bytes_;
  size_t at_ = 0;
  bool torn_ = false;
};

// Bits up to the highest one that any sample has set.
uint32_t DepthPresent(const std::vector<uint16_t>& samples) {
  uint32_t all = 0;
  for (const uint16_t sample : samples) all |= sample;
  uint32_t depth = 1;
  while (all >> depth != 0) ++depth;
  return depth;
}

uint16_t ToEightBits(uint16_t sample, uint32_t depth) {
  if (depth >= 8) return static_cast<uint16_t>(sample >> (depth - 8));
  const double most = static_cast<double>((1u << depth) - 1);
  return static_cast<uint16_t>(std::min(sample * (1 / most) * 255, 255.0));
}

uint16_t ToSixteenBits(uint16_t sample) {
  return static_cast<uint16_t>(
      static_cast<uint32_t>(sample * 0.0002442002442002442 * 65535.0 + 0.5));
}

}  // namespace

std::vector<uint8_t> EncodeCacheRecord(const CacheRecord& record) {
  std::vector<uint8_t> bytes;
  bytes.reserve(4 * (kFixedFields + 1) + record.sensorId.size() + 2 * record.samples.size());
  for (const uint32_t field :
       {record.isZyr303, record.bitsPerPixel, record.width, record.height, record.xResolution,
        record.yResolution, record.captureTime, record.frameNumber}) {
    Put32(&bytes, field);
  }
  Put32(&bytes, static_cast<uint32_t>(record.sensorId.size()));
  bytes.insert(bytes.end(), record.sensorId.begin(), record.sensorId.end());
  for (const uint16_t sample : record.samples) {
    bytes.push_back(static_cast<uint8_t>(sample));
    if (record.bitsPerPixel != 8) bytes.push_back(static_cast<uint8_t>(sample >> 8));
  }
  return bytes;
}

std::optional<CacheRecord> DecodeCacheRecord(const std::vector<uint8_t>& bytes) {
  Reader reader(bytes);
  CacheRecord record;
  for (uint32_t* field :
       {&record.isZyr303, &record.bitsPerPixel, &record.width, &record.height, &record.xResolution,
        &record.yResolution, &record.captureTime, &record.frameNumber}) {
    *field = reader.Get(4);
  }
  record.sensorId = reader.GetText(reader.Get(4));
  const int sampleBytes = record.bitsPerPixel == 8 ? 1 : 2;
  const uint64_t count = uint64_t{record.width} * record.height;
  if (reader.torn() || count == 0 || count > reader.Left() / static_cast<size_t>(sampleBytes))
    return std::nullopt;
  record.samples.resize(static_cast<size_t>(count));
  for (uint16_t& sample : record.samples) sample = static_cast<uint16_t>(reader.Get(sampleBytes));
  return record;
}

GreyPicture ExpectedPicture(const CacheRecord& record, uint32_t bits) {
  GreyPicture picture;
  picture.width = record.width;
  picture.height = record.height;
  // An image that was captured at 8 bits has no more to give.
  picture.bits = record.bitsPerPixel == 8 ? 8 : bits;
  picture.xDpi = record.xResolution;
  picture.yDpi = record.yResolution;
  picture.samples.reserve(record.samples.size());
  const uint32_t depth = record.bitsPerPixel == 8 ? 8 : DepthPresent(record.samples);
  for (size_t y = record.height; y-- > 0;) {
    for (size_t x = 0; x < record.width; ++x) {
      const uint16_t sample = record.samples[y * record.width + x];
      picture.samples.push_back(picture.bits == 8 ? ToEightBits(sample, depth)
                                                  : ToSixteenBits(sample));
    }
  }
  return picture;
}

}  // namespace zyr
