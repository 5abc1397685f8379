#include "imaging/operations/levels/levels.h"

#include <algorithm>
#include <numeric>

#include "foundation/support/cpu.h"
#include "imaging/operations/clone.h"

namespace zyr {
namespace {

constexpr size_t kSampleLevels = 65536;

// A line that ends where a rule's levels change is drawn a little above and a little below it: one
// of both falls on the side where the rule's own rounding errors lie, as a rule. The steps are
// greater than the errors of the arithmetic and less than the distance of other levels.
constexpr double kByteSteps[] = {0x1p-12, -0x1p-12};
constexpr double kRoughSteps[] = {0x1p-9, -0x1p-9};
constexpr double kSampleSteps[] = {0x1p-30, -0x1p-30};

}  // namespace

const LevelKernels& TheLevelKernels() { return HasAvx2() ? avx2::kKernels : base::kKernels; }

ByteMapper::ByteMapper(const ByteTable& table, std::optional<LevelLine> line) : table_(table) {
  if (!line || !HasAvx2()) return;
  ByteTable levels;
  std::iota(levels.begin(), levels.end(), uint8_t{0});
  for (const double step : kByteSteps) {
    ByteTable drawn;
    const double offset = line->offset + step;
    avx2::DrawLine8(static_cast<float>(line->slope), static_cast<float>(offset), levels.data(),
                    drawn.data(), drawn.size());
    if (drawn == table_) line_ = {line->slope, offset, 255};
  }
}

void ByteMapper::Map(const uint8_t* source, uint8_t* target, size_t count) const {
  if (line_) {
    avx2::DrawLine8(static_cast<float>(line_->slope), static_cast<float>(line_->offset), source,
                    target, count);
    return;
  }
  TheLevelKernels().lookUp8(table_.data(), source, target, count);
}

SampleMapper::SampleMapper(uint32_t mask, Rule rule, std::optional<LevelLine> line)
    : mask_(mask), rule_(std::move(rule)), table_(kSampleLevels), isWhole_(mask >= 0xFFFF) {
  for (uint32_t level = 0; level <= mask_; ++level) table_[level] = rule_(level);
  if (!line || !HasAvx2()) return;
  const auto tryLine = [&](double step, bool isRough) {
    const Drawing drawing = {{line->slope, line->offset + step, line->top}, isRough};
    if (!drawing_ && IsExact(drawing)) drawing_ = drawing;
  };
  for (const double step : kRoughSteps) tryLine(step, true);
  for (const double step : kSampleSteps) tryLine(step, false);
}

uint16_t SampleMapper::Drawing::Draw(const uint16_t* source, uint16_t* target, size_t count) const {
  if (!isRough) return avx2::DrawLine16(line.slope, line.offset, line.top, source, target, count);
  return avx2::DrawRoughLine16(static_cast<float>(line.slope), static_cast<float>(line.offset),
                               line.top, source, target, count);
}

bool SampleMapper::IsExact(const Drawing& drawing) const {
  uint16_t levels[1024];
  uint16_t drawn[1024];
  for (uint32_t first = 0; first <= mask_; first += std::size(levels)) {
    const size_t count = std::min<size_t>(std::size(levels), mask_ + 1 - first);
    std::iota(levels, levels + count, static_cast<uint16_t>(first));
    drawing.Draw(levels, drawn, count);
    if (!std::equal(drawn, drawn + count, table_.begin() + first)) return false;
  }
  return true;
}

void SampleMapper::AddLevelsBeyondMask() {
  for (uint32_t level = mask_ + 1; level < kSampleLevels; ++level) table_[level] = rule_(level);
  drawing_.reset();
  isWhole_ = true;
}

void SampleMapper::Map(const uint16_t* source, uint16_t* target, size_t count) {
  const LevelKernels& kernels = TheLevelKernels();
  const uint16_t inUse = drawing_ ? drawing_->Draw(source, target, count)
                                  : kernels.lookUp16(table_.data(), source, target, count);
  if (inUse <= mask_ || isWhole_) return;
  AddLevelsBeyondMask();
  kernels.lookUp16(table_.data(), source, target, count);
}

std::unique_ptr<CKIPDeepImage> MapSamples(const CKIPDeepImage& image, SampleMapper& mapper,
                                          const RowProgress& progress, uint32_t firstRow) {
  std::unique_ptr<CKIPDeepImage> result = NewUnwrittenClone(image);
  if (result == nullptr) return nullptr;
  for (uint32_t row = 0; row < image.GetHeight(); ++row) {
    mapper.Map(image.GetRow(row), result->GetRow(row), image.GetWidth());
    CopyRowPadding(image, *result, row);
    if (!progress.Continue(firstRow + row)) return nullptr;
  }
  return result;
}

std::unique_ptr<CKIPImage> MapBytes(const CKIPImage& image, const ByteMapper& mapper,
                                    const RowProgress& progress, uint32_t firstRow) {
  std::unique_ptr<CKIPImage> result = NewUnwrittenClone(image);
  if (result == nullptr) return nullptr;
  const size_t bytes = image.stride() - image.rowPadding();
  for (uint32_t row = 0; row < image.height(); ++row) {
    mapper.Map(image.MemoryRow(row), result->MemoryRow(row), bytes);
    if (!progress.Continue(firstRow + row)) return nullptr;
  }
  return result;
}

int32_t Truncate(double value) {
  if (!(value > -2147483649.0 && value < 2147483648.0)) return INT32_MIN;
  return static_cast<int32_t>(value);
}

}  // namespace zyr
