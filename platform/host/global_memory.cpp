#include "platform/host/global_memory.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <vector>

#include "platform/global_memory.h"

#if defined(__SANITIZE_ADDRESS__)
#define ZYR_HAS_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZYR_HAS_ASAN 1
#endif
#endif
#ifdef ZYR_HAS_ASAN
#include <sanitizer/asan_interface.h>
#endif

namespace zyr::platform {
namespace {

constexpr uintptr_t kFirstHandle = 0x5A0000;
constexpr uintptr_t kHandleStep = 16;
constexpr uintptr_t kLowestAddress = 0x10000;  // Windows maps nothing below
constexpr size_t kLongestRange = size_t{1} << 30;
constexpr uint8_t kFreshByte = 0xCD;

struct Block {
  std::unique_ptr<uint8_t[]> bytes;
  size_t size = 0;
  size_t locks = 0;
};

struct Range {
  uintptr_t begin = 0;
  uintptr_t end = 0;
};

struct State {
  std::mutex mutex;
  std::map<GlobalHandle, Block> blocks;
  uintptr_t nextHandle = kFirstHandle;
  size_t misuses = 0;
  size_t failingAllocations = 0;
  size_t failingLocks = 0;
  bool plainBlocks = false;
  std::vector<Range> unreadable;
  std::vector<Range> readOnly;
};

State& TheState() {
  static State state;
  return state;
}

Block* Find(State& state, GlobalHandle handle) {
  const auto found = state.blocks.find(handle);
  return found == state.blocks.end() ? nullptr : &found->second;
}

void Relocate(Block& block) {
  std::unique_ptr<uint8_t[]> elsewhere(new uint8_t[block.size]);
  std::memcpy(elsewhere.get(), block.bytes.get(), block.size);
  block.bytes = std::move(elsewhere);
}

bool TakeOne(size_t& count) {
  if (count == 0) return false;
  --count;
  return true;
}

bool Touches(const std::vector<Range>& ranges, uintptr_t begin, size_t bytes) {
  return std::any_of(ranges.begin(), ranges.end(), [&](const Range& range) {
    return begin < range.end && range.begin < begin + bytes;
  });
}

bool IsAccessible(const void* address, size_t bytes) {
  const auto begin = reinterpret_cast<uintptr_t>(address);
  if (begin < kLowestAddress || bytes > kLongestRange || begin > UINTPTR_MAX - bytes) return false;
#ifdef ZYR_HAS_ASAN
  if (bytes == 0) return true;
  return __asan_region_is_poisoned(const_cast<void*>(address), bytes) == nullptr;
#else
  return true;
#endif
}

}  // namespace

GlobalHandle AllocateMovable(size_t bytes, bool zeroed) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  if (TakeOne(state.failingAllocations)) return nullptr;
  Block block;
  block.bytes.reset(new (std::nothrow) uint8_t[bytes]);
  if (block.bytes == nullptr) return nullptr;
  if (zeroed || !state.plainBlocks) {
    std::fill_n(block.bytes.get(), bytes, zeroed ? uint8_t{0} : kFreshByte);
  }
  block.size = bytes;
  const auto handle = reinterpret_cast<GlobalHandle>(state.nextHandle);
  state.nextHandle += kHandleStep;
  state.blocks[handle] = std::move(block);
  return handle;
}

void* LockBlock(GlobalHandle handle) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  Block* block = Find(state, handle);
  // An empty block has no address.
  if (block == nullptr || block->size == 0 || TakeOne(state.failingLocks)) return nullptr;
  ++block->locks;
  return block->bytes.get();
}

void UnlockBlock(GlobalHandle handle) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  Block* block = Find(state, handle);
  if (block == nullptr || block->locks == 0) {
    ++state.misuses;
  } else if (--block->locks == 0 && !state.plainBlocks) {
    Relocate(*block);
  }
}

void FreeBlock(GlobalHandle handle) {
  if (handle == nullptr) return;
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const Block* block = Find(state, handle);
  if (block == nullptr || block->locks != 0) ++state.misuses;
  if (block != nullptr) state.blocks.erase(handle);
}

size_t BlockSize(GlobalHandle handle) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const Block* block = Find(state, handle);
  return block == nullptr ? 0 : block->size;
}

bool IsReadable(const void* address, size_t bytes) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return IsAccessible(address, bytes) &&
         !Touches(state.unreadable, reinterpret_cast<uintptr_t>(address), bytes);
}

bool IsWritable(void* address, size_t bytes) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const auto begin = reinterpret_cast<uintptr_t>(address);
  return IsAccessible(address, bytes) && !Touches(state.unreadable, begin, bytes) &&
         !Touches(state.readOnly, begin, bytes);
}

namespace host {
namespace {

Range RangeOf(const void* address, size_t bytes) {
  const auto begin = reinterpret_cast<uintptr_t>(address);
  return {begin, begin + bytes};
}

}  // namespace

size_t LiveBlocks() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.blocks.size();
}

size_t LiveBytes() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  size_t bytes = 0;
  for (const auto& [handle, block] : state.blocks) bytes += block.size;
  return bytes;
}

size_t HeldLocks() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  size_t locks = 0;
  for (const auto& [handle, block] : state.blocks) locks += block.locks;
  return locks;
}

size_t MemoryMisuses() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.misuses;
}

void FailNextAllocations(size_t count) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.failingAllocations = count;
}

void FailNextLocks(size_t count) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.failingLocks = count;
}

void UsePlainBlocks(bool plain) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.plainBlocks = plain;
}

void DenyReading(const void* address, size_t bytes) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.unreadable.push_back(RangeOf(address, bytes));
}

void DenyWritingTo(const void* address, size_t bytes) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.readOnly.push_back(RangeOf(address, bytes));
}

void ResetGlobalMemory() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.blocks.clear();
  state.misuses = state.failingAllocations = state.failingLocks = 0;
  state.plainBlocks = false;
  state.unreadable.clear();
  state.readOnly.clear();
}

}  // namespace host
}  // namespace zyr::platform
