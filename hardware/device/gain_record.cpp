#include "hardware/device/gain_record.h"

#include <cstring>

namespace zyr {
namespace {

constexpr size_t kRecordSize = 0x40;
constexpr char kMark[] = {'P', 'D', 'I'};
constexpr size_t kEnabled = 0x40 - 0x3C;  // offsets within the record
constexpr size_t kValues = 0x40 - 0x3B;
constexpr size_t kSigns = 0x40 - 0x35;

// The index-th gain: two bytes, the high one first, and a sign byte that is 0 for negative.
double GainIn(std::span<const uint8_t> record, size_t index, double scale) {
  const size_t place = kValues + 2 * index;
  const double value = (record[place] * 256 + record[place + 1]) * scale;
  return record[kSigns + index] == 0 ? -value : value;
}

}  // namespace

PdiRecord ParseGainRecord(std::span<const uint8_t> area) {
  PdiRecord pdi;
  if (area.size() < kRecordSize) return pdi;
  const auto record = area.last(kRecordSize);
  if (std::memcmp(record.data(), kMark, sizeof kMark) != 0) return pdi;
  pdi.enabled = record[kEnabled] == '1' ? 1 : 0;
  pdi.gain_0 = GainIn(record, 0, 0.01);
  pdi.gain_1 = GainIn(record, 1, 0.000001);
  pdi.gain_2 = GainIn(record, 2, 0.0000000001);
  return pdi;
}

}  // namespace zyr
