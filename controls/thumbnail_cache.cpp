#include "controls/thumbnail_cache.h"

#include <iterator>
#include <tuple>
#include <utility>

namespace zyr {
namespace {

size_t Distance(size_t a, size_t b) { return a > b ? a - b : b - a; }

}  // namespace

const ThumbnailCache::Entry* ThumbnailCache::Find(size_t item) const {
  const auto found = entries_.find(item);
  return found != entries_.end() ? &found->second : nullptr;
}

void ThumbnailCache::Store(size_t item, std::unique_ptr<CKIPImage> picture, SIZE asked) {
  entries_[item] = {std::move(picture), asked, false};
}

void ThumbnailCache::Outdate() {
  for (auto& [item, entry] : entries_) entry.outdated = true;
}

void ThumbnailCache::Trim(size_t first, size_t end, size_t most) {
  const size_t middle = (first + end) / 2;
  while (entries_.size() > most) {
    const auto last = std::prev(entries_.end());
    const auto lowest = entries_.begin();
    entries_.erase(Distance(lowest->first, middle) > Distance(last->first, middle) ? lowest : last);
  }
}

std::optional<size_t> ThumbnailCache::NextWanted(size_t first, size_t end, size_t focus,
                                                 SIZE size) const {
  using Rank = std::tuple<bool, size_t, size_t>;  // there is a picture, distance, item
  std::optional<Rank> best;
  for (size_t item = first; item < end; ++item) {
    const Entry* entry = Find(item);
    const bool current = entry != nullptr && !entry->outdated && entry->asked.cx == size.cx &&
                         entry->asked.cy == size.cy;
    const Rank rank = {entry != nullptr, Distance(item, focus), item};
    if (!current && (!best || rank < *best)) best = rank;
  }
  return best ? std::optional(std::get<2>(*best)) : std::nullopt;
}

}  // namespace zyr
