// A grid of small pictures, some of which the user has selected.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "imaging/image/image.h"

namespace zyr {

// Sent to the parent window; wParam holds one of the words, lParam a pointer to a ThumbnailEvent.
inline constexpr UINT kMessageThumbnail = 1025;
inline constexpr WPARAM kThumbnailSelectionChanged = 0xAABB;
inline constexpr WPARAM kThumbnailOpenedByMouse = 0xBBAA;
inline constexpr WPARAM kThumbnailOpenedByKey = 0xCCDD;

struct ThumbnailEvent {
  uint32_t item = 0;
  bool selected = false;  // the new state of the item
};

// What the grid shows. Asked on the grid's thread, for items that are in view only.
class ThumbnailSource {
 public:
  virtual ~ThumbnailSource() = default;
  virtual size_t Count() const = 0;
  virtual bool IsSelected(size_t item) const = 0;
  // An upright 8-bit picture of at most that size; null if the item cannot be shown.
  virtual std::unique_ptr<CKIPImage> Picture(size_t item, uint32_t mostWidth,
                                             uint32_t mostHeight) = 0;
};

// A control of a dialog template: its window class is there while an object lives. Rows by columns
// of items fill the window; with more items it scrolls by rows. A caption below tells which items
// are in view. Pictures are asked for one at a time, between other messages, so that the thread is
// never held up for long. User-interface thread only; once the window is gone, operations do
// nothing.
class ThumbnailGrid {
 public:
  ThumbnailGrid();
  ~ThumbnailGrid();
  ThumbnailGrid(const ThumbnailGrid&) = delete;
  ThumbnailGrid& operator=(const ThumbnailGrid&) = delete;

  // Takes over a window of the class, which must not outlive this object; nor may the source be
  // gone before it.
  void Attach(HWND window, ThumbnailSource* source);
  // At least one of each.
  void SetGrid(uint32_t rows, uint32_t columns);
  // Count, selection and pictures are asked for anew.
  void Refresh();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace zyr
