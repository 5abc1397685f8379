#include "foundation/support/buffered_file.h"

#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <limits>

#include "foundation/support/little_endian.h"

namespace zyr {
namespace {

using platform::OpenMode;

// Reading is always ahead, also for a file without a buffer: text mode must look behind a CR.
constexpr size_t kSmallestReadBuffer = 4096;

constexpr uint8_t kCr = '\r';
constexpr uint8_t kLf = '\n';
constexpr uint8_t kLineEnd[] = {kCr, kLf};

}  // namespace

BufferedFile::BufferedFile(size_t bufferSize) : bufferSize_(bufferSize) {}

BufferedFile::~BufferedFile() { Close(); }

bool BufferedFile::OpenRead(const std::string& path) { return Open(path, OpenMode::kRead, false); }

bool BufferedFile::OpenWrite(const std::string& path, bool truncate) {
  return Open(path, truncate ? OpenMode::kWriteTruncate : OpenMode::kWrite, false);
}

bool BufferedFile::OpenAppend(const std::string& path) {
  return Open(path, OpenMode::kAppend, false);
}

bool BufferedFile::OpenTextRead(const std::string& path) {
  return Open(path, OpenMode::kRead, true);
}

bool BufferedFile::OpenTextWrite(const std::string& path, bool truncate) {
  return Open(path, truncate ? OpenMode::kWriteTruncate : OpenMode::kWrite, true);
}

bool BufferedFile::OpenTextAppend(const std::string& path) {
  return Open(path, OpenMode::kAppend, true);
}

bool BufferedFile::Open(const std::string& path, OpenMode mode, bool textMode) {
  Close();
  handle_ = platform::OpenFile(path, mode);
  if (handle_ < 0) return false;
  path_ = path;
  writable_ = mode != OpenMode::kRead;
  appendMode_ = mode == OpenMode::kAppend;
  textMode_ = textMode;
  failed_ = false;
  total_ = 0;
  initialSize_ =
      appendMode_ ? static_cast<uint64_t>(std::max<int64_t>(platform::FileLength(handle_), 0)) : 0;
  buffer_.resize(writable_ ? bufferSize_ : std::max(bufferSize_, kSmallestReadBuffer));
  position_ = filled_ = 0;
  return true;
}

bool BufferedFile::Close() {
  if (!IsOpen()) return true;
  const bool complete = Flush();
  platform::CloseFile(handle_);
  handle_ = -1;
  position_ = filled_ = 0;
  return complete;
}

bool BufferedFile::Flush() {
  if (IsWritable()) FlushBuffer();
  return IsOpen() && !failed_;
}

bool BufferedFile::Sync() { return Flush() && platform::SyncFile(handle_); }

int64_t BufferedFile::Tell() {
  if (!IsOpen()) return -1;
  if (appendMode_) return Length();  // wherever the position was, a write goes to the end
  const int64_t position = platform::FilePosition(handle_);
  if (position < 0) return -1;
  const auto pending = static_cast<int64_t>(filled_ - position_);
  return writable_ ? position + pending : position - pending;
}

bool BufferedFile::Seek(int64_t position) {
  if (!IsOpen() || position < 0) return false;
  if (writable_ && !FlushBuffer()) return false;
  position_ = filled_ = 0;
  return platform::SeekFile(handle_, position);
}

int64_t BufferedFile::Length() {
  if (!IsOpen()) return -1;
  const int64_t length = platform::FileLength(handle_);
  if (length < 0 || !writable_ || filled_ == 0) return length;
  const auto pending = static_cast<int64_t>(filled_);
  return appendMode_ ? length + pending
                     : std::max(length, platform::FilePosition(handle_) + pending);
}

bool BufferedFile::PutByte(uint8_t byte) { return Write(&byte, 1) == 1; }

int64_t BufferedFile::Write(const void* bytes, size_t count) {
  if (!IsWritable()) return -1;
  if (count == 0) return 0;
  const auto* source = static_cast<const uint8_t*>(bytes);
  const size_t written = textMode_ ? PutText(source, count) : PutBytes(source, count);
  total_ += written;
  return static_cast<int64_t>(written);
}

bool BufferedFile::Printf(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string text = FormatTextV(format, arguments);
  va_end(arguments);
  return Write(text.data(), text.size()) == static_cast<int64_t>(text.size());
}

bool BufferedFile::WriteUint16(uint16_t value) {
  uint8_t bytes[sizeof value];
  StoreLittleEndian(bytes, value);
  return Write(bytes, sizeof bytes) == sizeof bytes;
}

bool BufferedFile::WriteUint32(uint32_t value) {
  uint8_t bytes[sizeof value];
  StoreLittleEndian(bytes, value);
  return Write(bytes, sizeof bytes) == sizeof bytes;
}

bool BufferedFile::WriteString(const std::string& text) {
  if (text.size() > std::numeric_limits<uint32_t>::max()) return false;
  return WriteUint32(static_cast<uint32_t>(text.size())) &&
         Write(text.data(), text.size()) == static_cast<int64_t>(text.size());
}

int64_t BufferedFile::Read(void* bytes, size_t count) {
  if (!IsOpen() || writable_) return -1;
  auto* target = static_cast<uint8_t*>(bytes);
  size_t taken = 0;
  if (textMode_) {
    for (int byte; taken < count && (byte = TakeTextByte()) >= 0; ++taken) {
      target[taken] = static_cast<uint8_t>(byte);
    }
  } else {
    taken = TakeBytes(target, count);
  }
  total_ += taken;
  return static_cast<int64_t>(taken);
}

bool BufferedFile::ReadUint16(uint16_t* value) {
  uint8_t bytes[sizeof *value];
  if (Read(bytes, sizeof bytes) != sizeof bytes) return false;
  *value = LoadLittleEndian<uint16_t>(bytes);
  return true;
}

bool BufferedFile::ReadUint32(uint32_t* value) {
  uint8_t bytes[sizeof *value];
  if (Read(bytes, sizeof bytes) != sizeof bytes) return false;
  *value = LoadLittleEndian<uint32_t>(bytes);
  return true;
}

bool BufferedFile::ReadString(std::string* text, uint32_t limit) {
  uint32_t size = 0;
  if (!ReadUint32(&size) || size > limit || int64_t{size} > Length() - Tell()) return false;
  std::string read(size, '\0');
  if (Read(read.data(), size) != int64_t{size}) return false;
  *text = std::move(read);
  return true;
}

bool BufferedFile::ReadLine(std::string* line, size_t limit) {
  if (!IsOpen() || writable_) return false;
  std::string piece;
  size_t taken = 0;
  for (int byte; taken < limit && (byte = TakeTextByte()) >= 0;) {
    ++taken;
    if (byte == kLf) break;
    piece += static_cast<char>(byte);
  }
  total_ += taken;
  if (taken == 0) return false;
  *line = std::move(piece);
  return true;
}

// How many of the bytes are in the buffer or the file. A buffer that could not be written is lost
// whole.
size_t BufferedFile::PutBytes(const uint8_t* bytes, size_t count) {
  if (bufferSize_ == 0) return WriteOut(bytes, count);
  for (size_t done = 0; done < count;) {
    const size_t piece = std::min(count - done, bufferSize_ - filled_);
    std::memcpy(buffer_.data() + filled_, bytes + done, piece);
    filled_ += piece;
    if (filled_ == bufferSize_ && !FlushBuffer()) return done;
    done += piece;
  }
  return count;
}

size_t BufferedFile::PutText(const uint8_t* text, size_t count) {
  for (size_t done = 0; done < count;) {
    const auto* lineFeed = static_cast<const uint8_t*>(std::memchr(text + done, kLf, count - done));
    const size_t end = lineFeed != nullptr ? static_cast<size_t>(lineFeed - text) : count;
    const size_t put = PutBytes(text + done, end - done);
    if (put != end - done) return done + put;
    done = end;
    if (lineFeed == nullptr) break;
    if (PutBytes(kLineEnd, sizeof kLineEnd) != sizeof kLineEnd) return done;
    ++done;
  }
  return count;
}

size_t BufferedFile::WriteOut(const uint8_t* bytes, size_t count) {
  size_t done = 0;
  while (done < count) {
    const int64_t written = platform::WriteFile(handle_, bytes + done, count - done);
    if (written <= 0) {
      failed_ = true;
      break;
    }
    done += static_cast<size_t>(written);
  }
  return done;
}

bool BufferedFile::FlushBuffer() {
  const size_t pending = filled_;
  filled_ = 0;
  return WriteOut(buffer_.data(), pending) == pending;
}

size_t BufferedFile::TakeBytes(uint8_t* bytes, size_t count) {
  size_t done = 0;
  while (done < count) {
    if (position_ == filled_ && count - done >= buffer_.size()) {
      const int64_t read = platform::ReadFile(handle_, bytes + done, count - done);
      return done + static_cast<size_t>(std::max<int64_t>(read, 0));
    }
    if (position_ == filled_ && !FillBuffer()) break;
    const size_t piece = std::min(count - done, filled_ - position_);
    std::memcpy(bytes + done, buffer_.data() + position_, piece);
    position_ += piece;
    done += piece;
  }
  return done;
}

// The next byte, a CR LF counting as one; negative at the end. Outside text mode bytes are as they
// are.
int BufferedFile::TakeTextByte() {
  if (position_ == filled_ && !FillBuffer()) return -1;
  const uint8_t byte = buffer_[position_++];
  if (!textMode_ || byte != kCr) return byte;
  const bool more = position_ < filled_ || FillBuffer();
  if (!more || buffer_[position_] != kLf) return byte;
  ++position_;
  return kLf;
}

bool BufferedFile::FillBuffer() {
  const int64_t read = platform::ReadFile(handle_, buffer_.data(), buffer_.size());
  position_ = 0;
  filled_ = read > 0 ? static_cast<size_t>(read) : 0;
  return filled_ != 0;
}

}  // namespace zyr
