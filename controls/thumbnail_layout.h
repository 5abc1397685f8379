// Where the items of a thumbnail grid lie. Arithmetic only.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>

namespace zyr {

enum class GridMove { kLeft, kRight, kUp, kDown, kPageUp, kPageDown, kFirst, kLast };

// `rows` by `columns` items, at least one of each, are in view at a time. Items go from left to
// right, then down; the view moves by whole rows.
struct ThumbnailLayout {
  size_t rows = 1;
  size_t columns = 1;
  size_t count = 0;

  size_t AllRows() const { return (count + columns - 1) / columns; }
  // The greatest number of rows that may be above the view.
  size_t LastTopRow() const { return AllRows() > rows ? AllRows() - rows : 0; }
  // The items in view, from the first to before the end.
  size_t FirstInView(size_t topRow) const;
  size_t EndInView(size_t topRow) const;
  bool InView(size_t item, size_t topRow) const {
    return item >= FirstInView(topRow) && item < EndInView(topRow);
  }
  // The first row of the view once it has moved, no further than needed, to show the item.
  size_t TopRowToShow(size_t item, size_t topRow) const;

  // Where the focus goes; there must be items, of which this is one.
  size_t ItemAfter(size_t item, GridMove move) const;

  // `area` is what all cells in view fill together.
  RECT CellOf(size_t item, size_t topRow, const RECT& area) const;
  std::optional<size_t> ItemAt(POINT point, size_t topRow, const RECT& area) const;

  // Which items are in view, in the user's language.
  std::string Caption(size_t topRow) const;
};

// The largest rectangle of a picture's shape, in the middle of the box. Pictures that already touch
// the box, save for rounding, keep their size.
RECT FitInto(const RECT& box, SIZE picture);

}  // namespace zyr
