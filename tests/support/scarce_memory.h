// Memory that runs out when a test says so: g_blocksLeft more blocks can be had, or kEnough. It takes
// the place of the program's operator new, so one source of a program includes it.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr int kEnough = std::numeric_limits<int>::max();
int g_blocksLeft = kEnough;

void* NewBlock(size_t bytes) {
  if (g_blocksLeft == 0) return nullptr;
  if (g_blocksLeft != kEnough) --g_blocksLeft;
  return std::malloc(bytes == 0 ? 1 : bytes);
}

}  // namespace

void* operator new(size_t bytes) {
  void* block = NewBlock(bytes);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void* operator new(size_t bytes, const std::nothrow_t&) noexcept { return NewBlock(bytes); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
