#include "controls/thumbnail_layout.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "foundation/support/phrase_lookup.h"

namespace zyr {
namespace {

// Pixels by which a picture that was made to fit may miss.
constexpr LONG kRounding = 1;

// The edge before cell `index` of `cells`, so that all together fill the length exactly.
LONG EdgeOf(size_t index, size_t cells, LONG length) {
  return static_cast<LONG>(static_cast<uint64_t>(length) * index / cells);
}

// The cell that holds a position within the length: the last whose edge is not beyond it.
size_t CellHolding(LONG position, size_t cells, LONG length) {
  return static_cast<size_t>(((uint64_t{static_cast<uint32_t>(position)} + 1) * cells - 1) /
                             static_cast<uint64_t>(length));
}

template <typename... Numbers>
std::string Formatted(const char* english, Numbers... numbers) {
  char text[200];
  const std::string format = GetFormatPhrase(english);
  std::snprintf(text, sizeof text, format.c_str(), static_cast<unsigned long>(numbers)...);
  return text;
}

}  // namespace

size_t ThumbnailLayout::FirstInView(size_t topRow) const {
  return std::min(topRow * columns, count);
}

size_t ThumbnailLayout::EndInView(size_t topRow) const {
  return std::min((topRow + rows) * columns, count);
}

size_t ThumbnailLayout::TopRowToShow(size_t item, size_t topRow) const {
  const size_t row = item / columns;
  if (row < topRow) return row;
  return row < topRow + rows ? topRow : row - rows + 1;
}

size_t ThumbnailLayout::ItemAfter(size_t item, GridMove move) const {
  const size_t last = count - 1;
  const auto back = [&](size_t step) { return item >= step ? item - step : item; };
  // From the last row but one there may be no item right below.
  const auto down = [&](size_t countRows) {
    const size_t rowsBelow = last / columns - item / columns;
    return std::min(item + std::min(countRows, rowsBelow) * columns, last);
  };
  switch (move) {
    case GridMove::kLeft:
      return back(1);
    case GridMove::kRight:
      return std::min(item + 1, last);
    case GridMove::kUp:
      return back(columns);
    case GridMove::kDown:
      return down(1);
    case GridMove::kPageUp:
      return back(std::min(rows, item / columns) * columns);
    case GridMove::kPageDown:
      return down(rows);
    case GridMove::kFirst:
      return 0;
    case GridMove::kLast:
      return last;
  }
  return item;
}

RECT ThumbnailLayout::CellOf(size_t item, size_t topRow, const RECT& area) const {
  const size_t row = item / columns - topRow;
  const size_t column = item % columns;
  const LONG width = area.right - area.left;
  const LONG height = area.bottom - area.top;
  return {area.left + EdgeOf(column, columns, width), area.top + EdgeOf(row, rows, height),
          area.left + EdgeOf(column + 1, columns, width), area.top + EdgeOf(row + 1, rows, height)};
}

std::optional<size_t> ThumbnailLayout::ItemAt(POINT point, size_t topRow, const RECT& area) const {
  if (!PtInRect(&area, point)) return std::nullopt;
  const size_t row = CellHolding(point.y - area.top, rows, area.bottom - area.top);
  const size_t column = CellHolding(point.x - area.left, columns, area.right - area.left);
  const size_t item = (topRow + row) * columns + column;
  return item < count ? std::optional(item) : std::nullopt;
}

std::string ThumbnailLayout::Caption(size_t topRow) const {
  const size_t first = FirstInView(topRow) + 1;
  const size_t last = EndInView(topRow);
  if (count == 0) return GetPhrase("<No Images>");
  if (first == last) return Formatted(PhraseKey("Item %lu of %lu"), first, count);
  return Formatted(PhraseKey("Items %lu through %lu of %lu"), first, last, count);
}

RECT FitInto(const RECT& box, SIZE picture) {
  const LONG boxWidth = std::max<LONG>(box.right - box.left, 1);
  const LONG boxHeight = std::max<LONG>(box.bottom - box.top, 1);
  LONG width = std::max<LONG>(picture.cx, 1);
  LONG height = std::max<LONG>(picture.cy, 1);
  const bool fits = width <= boxWidth && height <= boxHeight;
  if (!fits || (width + kRounding < boxWidth && height + kRounding < boxHeight)) {
    if (int64_t{width} * boxHeight > int64_t{height} * boxWidth) {
      height = std::max<LONG>(static_cast<LONG>(int64_t{height} * boxWidth / width), 1);
      width = boxWidth;
    } else {
      width = std::max<LONG>(static_cast<LONG>(int64_t{width} * boxHeight / height), 1);
      height = boxHeight;
    }
  }
  const LONG left = box.left + (boxWidth - width) / 2;
  const LONG top = box.top + (boxHeight - height) / 2;
  return {left, top, left + width, top + height};
}

}  // namespace zyr
