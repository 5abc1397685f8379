#include "imaging/operations/medians/rank_list.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace zyr {

CKIPRankList::~CKIPRankList() { std::free(values); }

bool CKIPRankList::Reserve(uint32_t newCapacity) {
  if (size_t{newCapacity} > SIZE_MAX / sizeof(int32_t)) return false;
  // At least one: a block of no size may be null.
  void* block = std::realloc(values, std::max<size_t>(newCapacity, 1) * sizeof(int32_t));
  if (block == nullptr) return false;
  values = static_cast<int32_t*>(block);
  capacity = newCapacity;
  count = std::min(count, capacity);
  return true;
}

bool CKIPRankList::Add(int32_t value) {
  constexpr uint32_t kGrowth = 100 + 1;
  if (count == capacity && (capacity > UINT32_MAX - kGrowth || !Reserve(capacity + kGrowth))) {
    return false;
  }
  values[count++] = value;
  sorted = false;
  return true;
}

void CKIPRankList::Sort() {
  if (sorted || count == 0) return;
  std::sort(values, values + count);
  sorted = true;
}

int32_t CKIPRankList::Median() {
  Sort();
  return count == 0 ? 0 : values[count >> 1];
}

}  // namespace zyr
