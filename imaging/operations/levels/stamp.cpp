#include "imaging/operations/levels/stamp.h"

#include <algorithm>

#include "imaging/operations/row_progress.h"

namespace zyr {
namespace {

// The part of a stamp's `stampSize` rows or columns, laid at `at`, that lies within `size`.
struct Span {
  Span(uint32_t stampSize, int64_t at, uint32_t size)
      : first(std::max<int64_t>(0, -at)), end(std::min<int64_t>(stampSize, size - at)) {}

  int64_t first;
  int64_t end;  // may lie before `first`
};

bool IsStamp(const CKIPImage* stamp) {
  return stamp != nullptr && stamp->IsValid() && stamp->bitsPerPixel() == 1 &&
         stamp->width() != 0 && stamp->height() != 0;
}

}  // namespace

bool StampInverted(const CKIPImage* stamp, CKIPDeepImage* image, int32_t x, int32_t y,
                   ProgressCallback progress) {
  if (!IsStamp(stamp) || image == nullptr || !image->IsValid()) return false;
  const RowProgress progressOfRows(progress, stamp->height());
  const Span rows(stamp->height(), y, image->GetHeight());
  const Span columns(stamp->width(), x, image->GetWidth());
  const uint32_t mask = image->GetMask();
  for (int64_t sy = rows.first; sy < rows.end; ++sy) {
    const uint32_t stampRow = stamp->height() - 1 - static_cast<uint32_t>(sy);
    uint16_t* const samples = image->GetRow(static_cast<uint32_t>(y + sy));
    for (int64_t sx = columns.first; sx < columns.end; ++sx) {
      if (stamp->GetBit(static_cast<uint32_t>(sx), stampRow)) continue;
      samples[x + sx] = static_cast<uint16_t>(mask - samples[x + sx]);
    }
    if (!progressOfRows.Continue(static_cast<uint32_t>(sy))) return false;
  }
  return true;
}

}  // namespace zyr
