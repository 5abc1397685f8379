// The pictures that a thumbnail grid has been given so far.
#pragma once

#include <windows.h>

#include <cstddef>
#include <map>
#include <memory>
#include <optional>

#include "imaging/image/image.h"

namespace zyr {

class ThumbnailCache {
 public:
  struct Entry {
    std::unique_ptr<CKIPImage> picture;  // null if the item cannot be shown
    SIZE asked = {};                     // the size it was asked for in
    bool outdated = false;               // shown until there is a newer one
  };

  bool empty() const { return entries_.empty(); }
  size_t size() const { return entries_.size(); }
  // Null if the item has not been asked for.
  const Entry* Find(size_t item) const;

  void Store(size_t item, std::unique_ptr<CKIPImage> picture, SIZE asked);
  void Outdate();
  void Clear() { entries_.clear(); }
  // Keeps the `most` items that are nearest to the middle of those from `first` to before `end`.
  void Trim(size_t first, size_t end, size_t most);

  // Of the items from `first` to before `end` the one to ask for next in that size: one without a
  // picture if there is any, nearest to `focus`.
  std::optional<size_t> NextWanted(size_t first, size_t end, size_t focus, SIZE size) const;

 private:
  std::map<size_t, Entry> entries_;
};

}  // namespace zyr
