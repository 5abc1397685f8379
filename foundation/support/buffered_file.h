// A byte file with an optional buffer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "foundation/support/format.h"
#include "platform/files.h"

namespace zyr {

// The buffer gathers writes, so that a failure may come to light later than the call that met it.
// Multi-byte numbers are little-endian; a string is its length in bytes as 32 bits, then the bytes
// without a terminator. In text mode reading turns CR LF into LF and writing LF into CR LF. One
// thread.
class BufferedFile {
 public:
  // `bufferSize` in bytes, 0 for no buffer: then each call writes through.
  explicit BufferedFile(size_t bufferSize = 0);
  ~BufferedFile();  // closes
  BufferedFile(const BufferedFile&) = delete;
  BufferedFile& operator=(const BufferedFile&) = delete;

  // Each closes a file that is open first; false if the new one cannot be opened. A file is open
  // either for reading or for writing.
  bool OpenRead(const std::string& path);
  bool OpenWrite(const std::string& path, bool truncate);
  bool OpenAppend(const std::string& path);
  bool OpenTextRead(const std::string& path);
  bool OpenTextWrite(const std::string& path, bool truncate);
  bool OpenTextAppend(const std::string& path);

  // Flushes first. False if bytes were lost, now or in an earlier write.
  bool Close();
  bool Flush();
  // Flushes and waits until the bytes would survive a power loss.
  bool Sync();

  bool IsOpen() const { return handle_ >= 0; }
  bool IsWritable() const { return handle_ >= 0 && writable_; }
  const std::string& path() const { return path_; }
  // Bytes that callers wrote or read since the file was opened, as they see them: a line end is one
  // byte.
  uint64_t total() const { return total_; }
  // Size on opening for appending, 0 otherwise.
  uint64_t initialSize() const { return initialSize_; }

  // Position and length of the file as if the buffer were written; -1 if closed.
  int64_t Tell();
  bool Seek(int64_t position);
  int64_t Length();

  bool PutByte(uint8_t byte);
  // Bytes written or buffered, fewer than `count` if the disk takes no more, -1 if the file is not
  // open for writing.
  int64_t Write(const void* bytes, size_t count);
  bool Printf(const char* format, ...) ZYR_PRINTF(2, 3);
  bool WriteUint16(uint16_t value);
  bool WriteUint32(uint32_t value);
  bool WriteString(const std::string& text);

  // Bytes read, fewer than `count` at the end, -1 if the file is not open for reading.
  int64_t Read(void* bytes, size_t count);
  bool ReadUint16(uint16_t* value);
  bool ReadUint32(uint32_t* value);
  // Refuses a length beyond `limit` or beyond what the file still holds, before allocating.
  bool ReadString(std::string* text, uint32_t limit);
  // The next line without its line feed. A line comes in pieces of `limit` bytes, its line feed
  // being one of them, so that a piece which has the limit's length says nothing about the line's
  // end. False at the end.
  bool ReadLine(std::string* line, size_t limit);

 private:
  bool Open(const std::string& path, platform::OpenMode mode, bool textMode);
  size_t PutBytes(const uint8_t* bytes, size_t count);
  size_t PutText(const uint8_t* text, size_t count);
  size_t WriteOut(const uint8_t* bytes, size_t count);
  bool FlushBuffer();
  size_t TakeBytes(uint8_t* bytes, size_t count);
  int TakeTextByte();
  bool FillBuffer();

  int handle_ = -1;
  bool writable_ = false;
  std::vector<uint8_t> buffer_;
  size_t bufferSize_;
  size_t position_ = 0;  // in the buffer, of the next byte to read
  size_t filled_ = 0;    // bytes in the buffer, read ahead or not yet written
  uint64_t total_ = 0;
  bool textMode_ = false;
  bool appendMode_ = false;
  bool failed_ = false;  // bytes were lost
  uint64_t initialSize_ = 0;
  std::string path_;
};

}  // namespace zyr
