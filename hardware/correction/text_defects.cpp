#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>

#include "hardware/correction/defect_mask.h"
#include "hardware/correction/sensor_defects.h"
#include "hardware/correction/weighted_repair.h"

namespace zyr {
namespace {

enum RecordKind : int32_t { kPixel = 0, kColumn = 2, kRow = 3, kCalibration = 6 };

struct Record {
  int32_t x = 0;
  int32_t y = 0;
  int32_t kind = 0;
};

// Takes what stands ahead of the next `separator` off `text`, and the separator with it.
std::string_view TakeUpTo(char separator, std::string_view* text) {
  const size_t end = text->find(separator);
  const std::string_view part = text->substr(0, end);
  text->remove_prefix(end == std::string_view::npos ? text->size() : end + 1);
  return part;
}

int32_t HeldWithin32Bits(int64_t value) {
  if (value < std::numeric_limits<int32_t>::min()) return std::numeric_limits<int32_t>::min();
  if (value > std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
  return static_cast<int32_t>(value);
}

// The number at the head of `text`, 0 if there is none.
int32_t DecimalAt(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  int64_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    value = text.front() == '-' ? std::numeric_limits<int64_t>::min()
                                : std::numeric_limits<int64_t>::max();
  }
  return HeldWithin32Bits(value);
}

std::optional<Record> RecordOf(std::string_view line) {
  const size_t first = line.find(' ');
  if (first == std::string_view::npos) return std::nullopt;
  const size_t second = line.find(' ', first + 1);
  if (second == std::string_view::npos) return std::nullopt;
  return Record{DecimalAt(line), DecimalAt(line.substr(first + 1)),
                DecimalAt(line.substr(second + 1))};
}

int32_t Next(int32_t coordinate) { return HeldWithin32Bits(int64_t{coordinate} + 1); }

// Lines near the edges of the sensor are listed by their own number, all others by the one before.
int32_t LineOf(int32_t coordinate, uint32_t size) {
  const bool isNearEdge = coordinate < 3 || coordinate > int64_t{size} - 3;
  return isNearEdge ? coordinate : Next(coordinate);
}

// Lines of text: x, y and kind in decimal, a blank between.
class TextDefects : public SensorDefects {
 public:
  Result LoadText(std::string_view text, uint32_t width, uint32_t height) override {
    Clear();
    text = text.substr(0, text.find('\0'));
    while (!text.empty()) {
      const std::string_view line = TakeUpTo('\n', &text);
      if (line.empty() || line.front() == '\r') continue;
      const std::optional<Record> record = RecordOf(line);
      if (!record) return kUnexpected;
      Add(*record, width, height);
    }
    return kOk;
  }

  Result LoadBinary(const uint8_t*, size_t, uint32_t, uint32_t) override { return kNotImplemented; }

 private:
  void Add(const Record& record, uint32_t width, uint32_t height) {
    if (record.kind == kPixel) defects_.AddPixel(Next(record.x), Next(record.y));
    if (record.kind == kColumn) defects_.AddColumn(LineOf(record.x, width));
    if (record.kind == kRow) defects_.AddRow(LineOf(record.y, height));
    if (record.kind == kCalibration) calibration_.push_back({record.x, record.y, 0});
  }

  void RepairLines(const DefectMask& mask, WeightedRepair* repair) const override {
    for (const int64_t y : mask.badRows()) {
      for (int64_t x = 0; x < mask.width(); ++x) repair->RepairRowPixel(x, y);
    }
    for (const int64_t x : mask.badColumns()) {
      for (int64_t y = 0; y < mask.height(); ++y) repair->RepairColumnPixel(x, y);
    }
  }
};

}  // namespace

std::unique_ptr<SensorDefects> MakeTextDefects() { return std::make_unique<TextDefects>(); }

}  // namespace zyr
