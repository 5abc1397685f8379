// Movable memory blocks that cross the module's border: whoever receives a handle owns the block.
#pragma once

#include <cstddef>

namespace zyr::platform {

using GlobalHandle = void*;

// A movable block of exactly `bytes` bytes, null if there is no memory. Not zeroed unless asked.
GlobalHandle AllocateMovable(size_t bytes, bool zeroed);

// The block's address, valid until the matching UnlockBlock. Null for a null, freed or foreign
// handle.
void* LockBlock(GlobalHandle handle);
void UnlockBlock(GlobalHandle handle);

void FreeBlock(GlobalHandle handle);

// Size in bytes, at least what was asked for; 0 for a null, freed or foreign handle.
size_t BlockSize(GlobalHandle handle);

// True if the whole range lies in memory that this process may read (write). For addresses that an
// application hands over; a true answer holds only while nobody frees the range.
bool IsReadable(const void* address, size_t bytes);
bool IsWritable(void* address, size_t bytes);

// A block locked for the life of this object.
class LockedBlock {
 public:
  explicit LockedBlock(GlobalHandle handle) : handle_(handle), address_(LockBlock(handle)) {}
  ~LockedBlock() {
    if (address_ != nullptr) UnlockBlock(handle_);
  }
  LockedBlock(const LockedBlock&) = delete;
  LockedBlock& operator=(const LockedBlock&) = delete;

  void* address() const { return address_; }
  size_t size() const { return address_ != nullptr ? BlockSize(handle_) : 0; }

 private:
  GlobalHandle handle_;
  void* address_;
};

}  // namespace zyr::platform
