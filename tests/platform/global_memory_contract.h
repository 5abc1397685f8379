// What both implementations of the global memory service keep to.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "platform/global_memory.h"

namespace zyr::platform {

TEST(GlobalMemoryContract, BlocksKeepTheirBytesAcrossLocks) {
  const GlobalHandle handle = AllocateMovable(1001, true);
  ASSERT_NE(handle, nullptr);
  EXPECT_GE(BlockSize(handle), 1001u);
  {
    const LockedBlock outer(handle);
    ASSERT_NE(outer.address(), nullptr);
    const LockedBlock inner(handle);
    EXPECT_EQ(outer.address(), inner.address());
    auto* bytes = static_cast<uint8_t*>(outer.address());
    for (int i = 0; i < 1001; ++i) ASSERT_EQ(bytes[i], 0);
    std::memset(bytes, 7, 1001);
  }
  EXPECT_EQ(static_cast<const uint8_t*>(LockedBlock(handle).address())[1000], 7);
  FreeBlock(handle);
}

TEST(GlobalMemoryContract, OtherHandlesAreKnownAsSuch) {
  alignas(16) uint8_t stack[64] = {};
  const std::vector<uint8_t> heap(64);
  const GlobalHandle freed = AllocateMovable(100, false);
  FreeBlock(freed);
  const auto address = [](const void* pointer) { return reinterpret_cast<uintptr_t>(pointer); };
  for (const uintptr_t number :
       {uintptr_t{0}, address(freed), address(stack), address(stack) + sizeof(void*),
        address(stack) + 3, address(heap.data()) + 32, uintptr_t{0x1234}, uintptr_t{0x20},
        UINTPTR_MAX, UINTPTR_MAX - 7, UINTPTR_MAX - 15}) {
    const auto handle = reinterpret_cast<GlobalHandle>(number);
    EXPECT_EQ(LockBlock(handle), nullptr) << handle;
    EXPECT_EQ(BlockSize(handle), 0u) << handle;
    EXPECT_EQ(LockedBlock(handle).size(), 0u) << handle;
    UnlockBlock(handle);
    FreeBlock(handle);
  }
}

TEST(GlobalMemoryContract, AccessIsKnownForWholeRanges) {
  uint8_t local[100] = {};
  EXPECT_TRUE(IsReadable(local, sizeof local));
  EXPECT_TRUE(IsWritable(local, sizeof local));
  auto* low = reinterpret_cast<void*>(uintptr_t{0x1234});
  auto* high = reinterpret_cast<void*>(UINTPTR_MAX - 4);
  for (void* address : {static_cast<void*>(nullptr), low, high}) {
    EXPECT_FALSE(IsReadable(address, 100)) << address;
    EXPECT_FALSE(IsWritable(address, 100)) << address;
  }
  EXPECT_FALSE(IsReadable(local, SIZE_MAX));
  EXPECT_FALSE(IsWritable(local, SIZE_MAX / 2));
}

}  // namespace zyr::platform
