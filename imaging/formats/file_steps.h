// Steps that reading and writing of the formats share.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "imaging/image/image.h"

namespace zyr {

// Reports a null image and one without pixels.
bool CheckImageToSave(const CKIPImage* image);

// True once Escape was pressed; reports it.
bool UserAborted();

void ReportCannotOpen(const char* format, const std::string& path);
void ReportCannotSave(const char* format, const std::string& path);
void ReportCannotWriteImage(const std::string& path);

// Length of the file as `fileSize` holds it, 0 if it is not there.
uint32_t FileSizeOf(const std::string& path);

// Copies `width` pixels and swaps blue and red. The rows may be the same.
void CopySwappingRedAndBlue(const uint8_t* source, uint8_t* target, uint32_t width);

// The picture's row `y` for a saver that goes from the top down, which is backwards through the
// memory: there the processor does not read ahead by itself, so this does.
const uint8_t* RowReadingAhead(const CKIPImage& image, uint32_t y);

// A C stream with a large buffer.
class StdioFile {
 public:
  StdioFile(const std::string& path, const char* mode);
  ~StdioFile();
  StdioFile(const StdioFile&) = delete;
  StdioFile& operator=(const StdioFile&) = delete;

  FILE* get() const { return file_; }  // null if it could not be opened
  // False if bytes were lost.
  bool Close();

 private:
  std::unique_ptr<char[]> buffer_;
  FILE* file_;
};

}  // namespace zyr
