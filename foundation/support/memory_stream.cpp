#include "foundation/support/memory_stream.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace zyr {
namespace {

// position + offset, held between 0 and `end`; no offset overflows.
size_t Clamped(size_t position, int64_t offset, size_t end) {
  if (offset < 0) {
    const uint64_t back = uint64_t{0} - static_cast<uint64_t>(offset);
    return back > position ? 0 : position - static_cast<size_t>(back);
  }
  const auto ahead = static_cast<uint64_t>(offset);
  return ahead > end - position ? end : position + static_cast<size_t>(ahead);
}

}  // namespace

MemoryStream::~MemoryStream() { Release(); }

void MemoryStream::Attach(char* buffer, size_t size, bool owns) {
  Release();
  buffer_ = buffer;
  size_ = buffer != nullptr ? size : 0;
  capacity_ = size_;
  ownsBuffer_ = owns;
}

void MemoryStream::SetGrowBy(size_t bytes) { growBy_ = bytes != 0 ? bytes : kDefaultGrowBy; }

void MemoryStream::Seek(int64_t position) { position_ = Clamped(0, position, size_); }

void MemoryStream::Skip(int64_t count) { position_ = Clamped(position_, count, size_); }

char MemoryStream::ReadChar() { return IsEof() ? '\0' : buffer_[position_++]; }

char MemoryStream::PeekChar(int64_t offset) const {
  char character = '\0';
  PeekBytes(&character, 1, offset);
  return character;
}

int64_t MemoryStream::PeekBytes(void* buffer, size_t count, int64_t offset) const {
  if (!IsOpen()) return -1;
  const bool beforeStart = offset < 0 && uint64_t{0} - static_cast<uint64_t>(offset) > position_;
  const size_t start = beforeStart ? size_ : Clamped(position_, offset, size_);
  const size_t copied = std::min(count, size_ - start);
  if (copied != 0) std::memcpy(buffer, buffer_ + start, copied);
  return static_cast<int64_t>(copied);
}

int64_t MemoryStream::WriteBytes(const void* bytes, size_t count) {
  if (count == 0) return 0;
  if (count > std::numeric_limits<size_t>::max() - position_) return -1;
  const size_t end = position_ + count;
  if (end > capacity_ && !Grow(end)) return -1;
  std::memcpy(buffer_ + position_, bytes, count);
  position_ = end;
  size_ = std::max(size_, end);
  return static_cast<int64_t>(count);
}

void MemoryStream::Release() {
  if (ownsBuffer_) std::free(buffer_);
  buffer_ = nullptr;
  position_ = size_ = capacity_ = 0;
  ownsBuffer_ = false;
}

bool MemoryStream::Grow(size_t needed) {
  // Half as much again keeps a long row of small writes from copying everything each time.
  const size_t step = std::max(growBy_, capacity_ / 2);
  const bool fits = step <= std::numeric_limits<size_t>::max() - capacity_;
  const size_t capacity = fits ? std::max(needed, capacity_ + step) : needed;
  auto* grown =
      static_cast<char*>(ownsBuffer_ ? std::realloc(buffer_, capacity) : std::malloc(capacity));
  if (grown == nullptr) return false;
  if (!ownsBuffer_ && size_ != 0) std::memcpy(grown, buffer_, size_);
  buffer_ = grown;
  capacity_ = capacity;
  ownsBuffer_ = true;
  return true;
}

}  // namespace zyr
