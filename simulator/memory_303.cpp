#include "simulator/memory_303.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace zyr::simulator {
namespace {

constexpr size_t kIdentityAt = 0x10;
constexpr size_t kTextLength = 16;
constexpr size_t kBlocksAt = 0x20;
constexpr size_t kGainFromEnd = 0x40;

constexpr uint8_t kDefectBlock = 0;
constexpr uint8_t kCalibrationBlock = 1;

using Bytes = std::vector<uint8_t>;

// Fields of any width, the least significant bit first.
class BitWriter {
 public:
  void Put(uint32_t value, int bits) {
    for (int i = 0; i < bits; ++i) {
      if (used_ % 8 == 0) bytes_.push_back(0);
      bytes_.back() = static_cast<uint8_t>(bytes_.back() | (value >> i & 1) << used_ % 8);
      ++used_;
    }
  }
  const Bytes& bytes() const { return bytes_; }

 private:
  Bytes bytes_;
  size_t used_ = 0;
};

uint16_t Checksum(const Bytes& bytes, size_t begin) {
  uint16_t crc = 0x0101;
  for (size_t i = begin; i < bytes.size(); ++i) {
    crc = static_cast<uint16_t>(crc ^ bytes[i] << 8);
    for (int bit = 0; bit < 8; ++bit) {
      crc = static_cast<uint16_t>(crc & 0x8000 ? crc << 1 ^ 0x1021 : crc << 1);
    }
  }
  return crc;
}

void AppendNumber(uint32_t value, size_t size, Bytes* bytes) {
  for (size_t i = 0; i < size; ++i) bytes->push_back(static_cast<uint8_t>(value >> 8 * i));
}

std::string Padded(std::string text) {
  text.resize(kTextLength, ' ');
  return text;
}

void AppendBlock(uint8_t kind, const std::string& description, const Bytes& payload,
                 Bytes* chain) {
  const size_t begin = chain->size();
  chain->push_back(1);
  AppendNumber(static_cast<uint32_t>(payload.size()), 4, chain);
  chain->push_back(0);
  chain->push_back(kind);
  const std::string text = Padded(description);
  chain->insert(chain->end(), text.begin(), text.end());
  chain->insert(chain->end(), payload.begin(), payload.end());
  AppendNumber(Checksum(*chain, begin), 2, chain);
}

// Pixels last: a record of less than two bytes at the end of the stream would not be read.
Bytes DefectPayload(const std::vector<Defect>& defects, const Geometry& geometry) {
  constexpr int kCoordinate = 11;
  constexpr uint32_t kOfTheMakers = 4;  // a record that readers pass over
  BitWriter bits;
  bits.Put(kOfTheMakers, 3);
  for (int width : {14, 1, 13, 1}) bits.Put(0x1555, width);
  for (const Defect& defect : defects) {
    if (defect.kind == kBadPixel) continue;
    bits.Put(defect.kind, 3);
    const uint32_t fromBottom = geometry.height - 1 - defect.y;
    bits.Put(defect.kind == kBadColumn ? defect.x : fromBottom, kCoordinate);
  }
  for (const Defect& defect : defects) {
    if (defect.kind != kBadPixel) continue;
    bits.Put(kBadPixel, 3);
    bits.Put(defect.x, kCoordinate);
    bits.Put(geometry.height - 1 - defect.y, kCoordinate);
  }
  return bits.bytes();
}

Bytes CalibrationPayload(const std::vector<ColumnPolynomial>& columns) {
  constexpr uint32_t kPolynomial = 6;
  BitWriter bits;
  for (const ColumnPolynomial& column : columns) {
    bits.Put(kPolynomial, 3);
    bits.Put(0, 5);
    for (int32_t value : {column.a, column.b, column.c}) bits.Put(static_cast<uint32_t>(value), 32);
  }
  return bits.bytes();
}

Bytes BlockChain(const Calibration303& calibration, const std::vector<Defect>& defects,
                 const Geometry& geometry) {
  Bytes chain;
  AppendNumber(0x0001, 2, &chain);
  AppendBlock(kDefectBlock, calibration.description, DefectPayload(defects, geometry), &chain);
  AppendNumber(0x0000, 2, &chain);
  chain.insert(chain.end(), {0x00, 0x5A, 0xFF, 0x00});  // filler
  AppendBlock(kCalibrationBlock, "columns", CalibrationPayload(calibration.columns), &chain);
  AppendNumber(0xFFFF, 2, &chain);
  return chain;
}

Bytes GainRecord(const Gain* gain) {
  const Gain values = gain != nullptr ? *gain : Gain{100, 0, 0};
  Bytes record = {'P', 'D', 'I', ' ', static_cast<uint8_t>(gain != nullptr ? '1' : '0')};
  for (int32_t value : {values.constant, values.linear, values.quadratic}) {
    const int32_t magnitude = std::abs(value);
    record.push_back(static_cast<uint8_t>(magnitude >> 8));
    record.push_back(static_cast<uint8_t>(magnitude));
  }
  for (int32_t value : {values.constant, values.linear, values.quadratic}) {
    record.push_back(value < 0 ? 0 : 1);
  }
  return record;
}

// The memory has room for a chain of any detector of the family; what is beyond its end is dropped.
template <typename Container>
void Put(const Container& bytes, size_t at, Bytes* memory) {
  const size_t count = std::min<size_t>(bytes.size(), memory->size() - at);
  std::copy_n(bytes.begin(), count, memory->begin() + static_cast<ptrdiff_t>(at));
}

}  // namespace

void WriteMemory303(const Calibration303& calibration, const std::vector<Defect>& defects,
                    const Geometry& geometry, std::vector<uint8_t>* memory) {
  Put(calibration.identity.substr(0, kTextLength), kIdentityAt, memory);
  Put(BlockChain(calibration, defects, geometry), kBlocksAt, memory);
  Put(GainRecord(calibration.gain), memory->size() - kGainFromEnd, memory);
}

}  // namespace zyr::simulator
