// The kernel's interface, for C++.
#pragma once

// Both headers define these two, and not alike.
#include <intrin.h>
#define InterlockedBitTestAndSet ZyrHiddenBitTestAndSet
#define InterlockedBitTestAndReset ZyrHiddenBitTestAndReset
extern "C" {
#include <ntddk.h>
}
#undef InterlockedBitTestAndSet
#undef InterlockedBitTestAndReset

#include <stddef.h>
#include <stdint.h>

namespace zyr::simulator {

inline constexpr ULONG kPoolTag = 0x5372795A;  // "ZyrS" in memory

// Null if there is no memory. Not paged: the blocks are touched under the lock.
template <typename T>
T* AllocatePool(size_t bytes) {
  return static_cast<T*>(ExAllocatePoolWithTag(NonPagedPool, bytes, kPoolTag));
}

}  // namespace zyr::simulator
