// A file in memory.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zyr {

// A block of bytes with a position. One thread.
class MemoryStream {
 public:
  MemoryStream() = default;
  ~MemoryStream();
  MemoryStream(const MemoryStream&) = delete;
  MemoryStream& operator=(const MemoryStream&) = delete;

  // Lays the stream over `size` bytes of malloc'd memory and goes to its start. With `owns` the
  // stream frees the block and may move it when it grows; without, it copies the block before it
  // grows.
  void Attach(char* buffer, size_t size, bool owns);
  // Bytes by which the block grows at least; 0 restores the default of 10,240.
  void SetGrowBy(size_t bytes);

  bool IsOpen() const { return buffer_ != nullptr && size_ != 0; }
  const char* data() const { return buffer_; }
  size_t size() const { return size_; }

  size_t Tell() const { return position_; }
  // Both stop at the start and at the end.
  void Seek(int64_t position);
  void Skip(int64_t count);
  bool IsEof() const { return position_ >= size_; }

  // The byte at the position, which advances; 0 at the end, where it stays.
  char ReadChar();
  // The byte `offset` bytes ahead, 0 outside the block. The position stays.
  char PeekChar(int64_t offset) const;
  // Copies what lies from `offset` bytes ahead on, `count` bytes at most; how many, -1 if not open.
  int64_t PeekBytes(void* buffer, size_t count, int64_t offset) const;
  // Writes at the position, growing the block at its end; `count`, or -1 without memory.
  int64_t WriteBytes(const void* bytes, size_t count);

 private:
  static constexpr size_t kDefaultGrowBy = 10240;

  void Release();
  bool Grow(size_t needed);

  size_t position_ = 0;
  char* buffer_ = nullptr;
  size_t size_ = 0;
  size_t capacity_ = 0;
  bool ownsBuffer_ = false;
  size_t growBy_ = kDefaultGrowBy;
};

}  // namespace zyr
