#include "controls/thumbnail_selection.h"

#include <algorithm>
#include <utility>

namespace zyr {

void ThumbnailSelection::Reset(std::vector<bool> selected) {
  selected_ = std::move(selected);
  const size_t last = selected_.empty() ? 0 : selected_.size() - 1;
  focus_ = std::min(focus_, last);
  anchor_ = std::min(anchor_, last);
}

template <typename Wanted>
SelectionChanges ThumbnailSelection::ChangesTo(Wanted wanted) const {
  SelectionChanges changes;
  for (size_t item = 0; item < selected_.size(); ++item) {
    if (wanted(item) != selected_[item]) changes.push_back({item, !selected_[item]});
  }
  return changes;
}

void ThumbnailSelection::MoveFocus(size_t item) {
  if (item < selected_.size()) focus_ = anchor_ = item;
}

SelectionChanges ThumbnailSelection::SelectOnly(size_t item) {
  MoveFocus(item);
  return ChangesTo([item](size_t other) { return other == item; });
}

SelectionChanges ThumbnailSelection::Toggle(size_t item) {
  MoveFocus(item);
  return ChangesTo([&](size_t other) { return selected_[other] != (other == item); });
}

SelectionChanges ThumbnailSelection::SelectTo(size_t item, bool keepOthers) {
  if (item < selected_.size()) focus_ = item;
  const auto [first, last] = std::minmax(anchor_, focus_);
  return ChangesTo([&, first = first, last = last](size_t other) {
    return (other >= first && other <= last) || (keepOthers && selected_[other]);
  });
}

SelectionChanges ThumbnailSelection::SelectAll() const {
  return ChangesTo([](size_t) { return true; });
}

SelectionChanges ThumbnailSelection::SelectNone() const {
  return ChangesTo([](size_t) { return false; });
}

bool ThumbnailSelection::Apply(const SelectionChange& change) {
  if (change.item >= selected_.size() || selected_[change.item] == change.selected) return false;
  selected_[change.item] = change.selected;
  return true;
}

}  // namespace zyr
