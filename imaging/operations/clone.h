// What operations make their results of. Names, palettes and tables may throw std::bad_alloc, which
// each operation turns into null, as it does with any other lack of memory.
#pragma once

#include <cstdint>
#include <memory>
#include <new>
#include <vector>

#include "imaging/image/deep_image.h"
#include "imaging/image/image.h"

namespace zyr {

// What Clone without pixels gives, but for the pixels, which the caller has to write. Null if the
// image is not valid and without memory. The padding of the deep one's rows is left unwritten, too.
std::unique_ptr<CKIPImage> NewUnwrittenClone(const CKIPImage& image);
std::unique_ptr<CKIPDeepImage> NewUnwrittenClone(const CKIPDeepImage& image);

// Copy the padding behind the row's pixels, or behind those of all rows, between images alike.
void CopyRowPadding(const CKIPImage& source, CKIPImage& target, uint32_t row);
void CopyRowPadding(const CKIPDeepImage& source, CKIPDeepImage& target, uint32_t row);
void CopyPadding(const CKIPDeepImage& source, CKIPDeepImage& target);

// Zeros. Throws std::bad_alloc also for what the address space cannot hold: on 32 bits one row of a
// picture may be that, once each of its bits has become a number.
template <typename T>
std::vector<T> NewVector(uint64_t count) {
  if (count > PTRDIFF_MAX / sizeof(T)) throw std::bad_alloc();
  return std::vector<T>(static_cast<size_t>(count));
}

}  // namespace zyr
