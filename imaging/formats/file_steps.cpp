#include "imaging/formats/file_steps.h"

#include <new>
#include <utility>

#include "imaging/image/image_error.h"
#include "platform/escape_key.h"
#include "platform/files.h"

namespace zyr {
namespace {

constexpr size_t kStdioBuffer = 256 * 1024;

}  // namespace

bool CheckImageToSave(const CKIPImage* image) {
  if (image == nullptr) {
    ReportImageError(kImageErrorNullPointer, "NULL image pointer specified");
    return false;
  }
  if (!image->IsValid()) {
    ReportImageError(kImageErrorInvalidImage, "Invalid image specified");
    return false;
  }
  return true;
}

bool UserAborted() {
  if (!platform::EscapeKeyWasPressed()) return false;
  ReportImageError(kImageErrorUserAbort, "User abort");
  return true;
}

void ReportCannotOpen(const char* format, const std::string& path) {
  ReportImageError(kImageErrorCannotOpen, "Unable to open %s file '%s'", format, path.c_str());
}

void ReportCannotSave(const char* format, const std::string& path) {
  ReportImageError(kImageErrorCannotSave, "Unable to save %s file '%s'", format, path.c_str());
}

void ReportCannotWriteImage(const std::string& path) {
  ReportImageError(kImageErrorCannotWrite, "Unable to write the image to the file '%s'",
                   path.c_str());
}

uint32_t FileSizeOf(const std::string& path) {
  const std::optional<platform::FileStatus> status = platform::StatusOf(path);
  return status ? static_cast<uint32_t>(status->size) : 0;
}

void CopySwappingRedAndBlue(const uint8_t* source, uint8_t* target, uint32_t width) {
  for (uint32_t x = 0; x < width; ++x, source += 3, target += 3) {
    const uint8_t first = source[0];
    target[1] = source[1];
    target[0] = source[2];
    target[2] = first;
  }
}

const uint8_t* RowReadingAhead(const CKIPImage& image, uint32_t y) {
  constexpr uint32_t kCacheLine = 64;
  constexpr uint32_t kRowsAhead = 2;
  if (y + kRowsAhead < image.height()) {
    const uint8_t* ahead = image.PictureRow(y + kRowsAhead);
    for (uint32_t i = 0; i < image.stride(); i += kCacheLine) __builtin_prefetch(ahead + i);
  }
  return image.PictureRow(y);
}

StdioFile::StdioFile(const std::string& path, const char* mode)
    : buffer_(new (std::nothrow) char[kStdioBuffer]),
      file_(std::fopen(platform::NativePath(path).c_str(), mode)) {
  if (file_ != nullptr && buffer_ != nullptr) {
    std::setvbuf(file_, buffer_.get(), _IOFBF, kStdioBuffer);
  }
}

StdioFile::~StdioFile() { Close(); }

bool StdioFile::Close() {
  FILE* const file = std::exchange(file_, nullptr);
  if (file == nullptr) return true;
  const bool failedBefore = std::ferror(file) != 0;
  return std::fclose(file) == 0 && !failedBefore;
}

}  // namespace zyr
