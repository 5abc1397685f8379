// Which items of a thumbnail grid are selected, and where its keyboard is.
#pragma once

#include <cstddef>
#include <vector>

namespace zyr {

struct SelectionChange {
  size_t item;
  bool selected;

  bool operator==(const SelectionChange&) const = default;
};

using SelectionChanges = std::vector<SelectionChange>;

// What the user does moves the focus at once but answers the changes of the selection instead of
// making them: each is made when the owner applies it, for other things may happen between two.
// Items that do not exist are left alone.
class ThumbnailSelection {
 public:
  // The selection of all items anew. The focus stays where it is if there is still an item.
  void Reset(std::vector<bool> selected);

  bool IsSelected(size_t item) const { return item < selected_.size() && selected_[item]; }
  size_t focus() const { return focus_; }  // 0 if there are no items

  void MoveFocus(size_t item);
  SelectionChanges SelectOnly(size_t item);
  SelectionChanges Toggle(size_t item);
  // All from the item of the last other step to this one; `keepOthers` leaves the rest as it is.
  SelectionChanges SelectTo(size_t item, bool keepOthers);
  SelectionChanges SelectAll() const;
  SelectionChanges SelectNone() const;

  // False if that changes nothing.
  bool Apply(const SelectionChange& change);

 private:
  template <typename Wanted>
  SelectionChanges ChangesTo(Wanted wanted) const;

  std::vector<bool> selected_;
  size_t focus_ = 0;
  size_t anchor_ = 0;  // where a range begins
};

}  // namespace zyr
