#include "platform/global_memory.h"

#include <algorithm>

#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

constexpr DWORD kReadableProtections = PAGE_READONLY | PAGE_READWRITE | PAGE_WRITECOPY |
                                       PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE |
                                       PAGE_EXECUTE_WRITECOPY;
constexpr DWORD kWritableProtections =
    PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;

// True if every page of the range is committed with one of `protections` and is no guard page.
bool IsAccessible(const void* address, size_t bytes, DWORD protections) {
  const auto begin = reinterpret_cast<uintptr_t>(address);
  const size_t length = std::max<size_t>(bytes, 1);
  if (begin == 0 || begin > UINTPTR_MAX - length) return false;
  for (uintptr_t at = begin; at < begin + length;) {
    MEMORY_BASIC_INFORMATION region;
    if (VirtualQuery(reinterpret_cast<const void*>(at), &region, sizeof region) == 0) return false;
    if (region.State != MEM_COMMIT || (region.Protect & PAGE_GUARD) != 0 ||
        (region.Protect & protections) == 0) {
      return false;
    }
    at = reinterpret_cast<uintptr_t>(region.BaseAddress) + region.RegionSize;
    if (at == 0) return true;  // the last region of the address space
  }
  return true;
}

// A fixed block's handle is its address, which is aligned to two pointers; a movable block's handle
// lies one pointer further, inside an entry of the system's table.
constexpr size_t kAlignment = 2 * sizeof(void*);

bool IsFixedBlock(GlobalHandle handle) {
  const auto* header = static_cast<const uint8_t*>(handle) - kAlignment;
  return IsReadable(header, kAlignment + 1) && HeapValidate(GetProcessHeap(), 0, handle);
}

bool IsMovableBlock(GlobalHandle handle) {
  const auto* entry = static_cast<const uint8_t*>(handle) - sizeof(void*);
  return IsReadable(entry, kAlignment) && GlobalFlags(handle) != GMEM_INVALID_HANDLE;
}

// The system believes any address that looks like a handle, so it is asked only about plausible
// ones.
bool IsBlock(GlobalHandle handle) {
  const size_t offset = reinterpret_cast<uintptr_t>(handle) % kAlignment;
  if (handle == nullptr) return false;
  if (offset == 0) return IsFixedBlock(handle);
  return offset == sizeof(void*) && IsMovableBlock(handle);
}

}  // namespace

GlobalHandle AllocateMovable(size_t bytes, bool zeroed) {
  return GlobalAlloc(GMEM_MOVEABLE | (zeroed ? GMEM_ZEROINIT : 0), bytes);
}

void* LockBlock(GlobalHandle handle) { return IsBlock(handle) ? GlobalLock(handle) : nullptr; }

void UnlockBlock(GlobalHandle handle) {
  if (IsBlock(handle)) GlobalUnlock(handle);
}

void FreeBlock(GlobalHandle handle) {
  if (IsBlock(handle)) GlobalFree(handle);
}

size_t BlockSize(GlobalHandle handle) { return IsBlock(handle) ? GlobalSize(handle) : 0; }

bool IsReadable(const void* address, size_t bytes) {
  return IsAccessible(address, bytes, kReadableProtections);
}

bool IsWritable(void* address, size_t bytes) {
  return IsAccessible(address, bytes, kWritableProtections);
}

}  // namespace zyr::platform
