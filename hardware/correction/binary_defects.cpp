#include <cstddef>
#include <cstdint>

#include "foundation/log/log.h"
#include "hardware/correction/line_interpolation.h"
#include "hardware/correction/sensor_defects.h"

namespace zyr {
namespace {

enum RecordKind : uint32_t { kPixel = 0, kColumn = 2, kRow = 3, kCalibration = 6 };
constexpr uint32_t kKindBits = 3;
constexpr uint32_t kCoordinateBits = 11;
constexpr uint32_t kUnknownBitsOfCalibration = 5;
// Behind the kind, by kind; 0 for no kind at all. What the records of kinds 4 and 5 tell is
// unknown.
constexpr uint32_t kRecordBits[8] = {22, 0, 11, 11, 29, 29, 101, 0};

// A series of bits, the lowest of each byte first; so is a number's lowest bit.
class BitStream {
 public:
  BitStream(const uint8_t* bytes, size_t size) : bytes_(bytes), end_(uint64_t{size} * 8) {}

  uint64_t BitsLeft() const { return end_ - at_; }
  void Skip(uint32_t count) { at_ += count; }
  // No more than are left, and 32 at the most.
  uint32_t Take(uint32_t count) {
    uint32_t value = 0;
    for (uint32_t i = 0; i < count; ++i, ++at_) {
      value |= (bytes_[static_cast<size_t>(at_ / 8)] >> (at_ % 8) & 1u) << i;
    }
    return value;
  }
  int32_t TakeCoordinate() { return static_cast<int32_t>(Take(kCoordinateBits)); }
  int32_t TakeSigned() { return static_cast<int32_t>(Take(32)); }

 private:
  const uint8_t* bytes_;
  uint64_t end_;
  uint64_t at_ = 0;
};

// One byte or less behind the last record is filling, whatever it holds.
bool IsAtEnd(const BitStream& stream) { return stream.BitsLeft() / 8 <= 1; }

// Records of bits without gaps, each of a kind and what belongs to it.
class BinaryDefects : public SensorDefects {
 public:
  Result LoadText(std::string_view, uint32_t, uint32_t) override { return kNotImplemented; }

  Result LoadBinary(const uint8_t* data, size_t size, uint32_t, uint32_t) override {
    Clear();
    for (BitStream stream(data, size); !IsAtEnd(stream);) {
      const uint32_t kind = stream.Take(kKindBits);
      if (kRecordBits[kind] == 0) return kUnexpected;
      if (stream.BitsLeft() < kRecordBits[kind]) {
        Log().WriteLine("The sensor's correction data end in the middle of a record.");
        break;
      }
      Add(kind, &stream);
    }
    return kOk;
  }

 private:
  void Add(uint32_t kind, BitStream* stream);

  void RepairLines(const DefectMask& mask, WeightedRepair* repair) const override {
    InterpolateRows(mask, repair);
    InterpolateColumns(mask, repair);
  }
};

void BinaryDefects::Add(uint32_t kind, BitStream* stream) {
  if (kind == kPixel) {
    const int32_t x = stream->TakeCoordinate();
    const int32_t y = stream->TakeCoordinate();
    defects_.AddPixel(x, y);
  } else if (kind == kColumn) {
    defects_.AddColumn(stream->TakeCoordinate());
  } else if (kind == kRow) {
    defects_.AddRow(stream->TakeCoordinate());
  } else if (kind == kCalibration) {
    stream->Skip(kUnknownBitsOfCalibration);
    CalibrationTriple triple;
    triple.a = stream->TakeSigned();
    triple.b = stream->TakeSigned();
    triple.c = stream->TakeSigned();
    calibration_.push_back(triple);
  } else {
    stream->Skip(kRecordBits[kind]);
  }
}

}  // namespace

std::unique_ptr<SensorDefects> MakeBinaryDefects() { return std::make_unique<BinaryDefects>(); }

}  // namespace zyr
