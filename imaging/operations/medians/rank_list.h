// CKIPRankList: the values of a window, put in order to take one by its rank.
#pragma once

#include <cstdint>

namespace zyr {

// Owns `values`. Where memory runs out, Reserve and Add are false and the list stays as it was.
class CKIPRankList {
 public:
  CKIPRankList() = default;
  CKIPRankList(const CKIPRankList&) = delete;
  CKIPRankList& operator=(const CKIPRankList&) = delete;
  ~CKIPRankList();

  // Makes room for exactly `newCapacity` values; those that no longer fit go.
  bool Reserve(uint32_t newCapacity);
  // A full list grows by some more places than the one needed.
  bool Add(int32_t value);
  void Clear() { count = 0; }
  void Sort();  // ascending
  // The value that as many lie below as above; of an even number the upper of the two. 0 if empty.
  int32_t Median();

  int32_t* values = nullptr;  // malloc'd
  uint32_t capacity = 0;
  uint32_t count = 0;
  bool sorted = false;
  uint32_t reserved = 0;
};

}  // namespace zyr
