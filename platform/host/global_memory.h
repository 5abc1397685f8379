// Test control of the global memory double. Handles are numbers, not addresses, and none comes
// twice, so freed and foreign handles are known as such. Each block is an allocation of its own, of
// exactly its size, and it really moves when its last lock is undone: who keeps its address is
// caught by the sanitizer.
#pragma once

#include <cstddef>

namespace zyr::platform::host {

// Blocks that nobody has freed yet, their bytes, and their locks.
size_t LiveBlocks();
size_t LiveBytes();
size_t HeldLocks();
// Unlocks without a lock, frees of locked blocks, unlocks and frees of freed or foreign handles so
// far.
size_t MemoryMisuses();

// The next `count` allocations fail.
void FailNextAllocations(size_t count);
// The next `count` locks fail.
void FailNextLocks(size_t count);

// For measurements: new blocks are not filled, and none moves.
void UsePlainBlocks(bool plain);

// Makes a range unreadable, or readable but not writable, for IsReadable and IsWritable. Other
// addresses are accessible from 64 KB on; under AddressSanitizer only where it says so.
void DenyReading(const void* address, size_t bytes);
void DenyWritingTo(const void* address, size_t bytes);

// Frees what is left, lifts the refusals and sets the counts to 0.
void ResetGlobalMemory();

}  // namespace zyr::platform::host
