// What libtiff writes, on its way into a file.
#pragma once

#include <memory>

#include <tiffio.h>

#include "foundation/support/buffered_file.h"

namespace zyr {

struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffFile = std::unique_ptr<TIFF, CloseTiff>;

// The library seeks to the end of its file before each strip, and a strip is one row. Here only a
// seek that moves the position reaches the file, so that rows gather in the file's buffer.
class TiffOutput {
 public:
  // `file` is open for writing, empty, and outlives this.
  explicit TiffOutput(BufferedFile& file) : file_(file) {}
  TiffOutput(const TiffOutput&) = delete;
  TiffOutput& operator=(const TiffOutput&) = delete;

  // Must be closed before this ends. Null without memory.
  TiffFile Open();

 private:
  static tmsize_t Read(thandle_t output, void* bytes, tmsize_t count);
  static tmsize_t Write(thandle_t output, void* bytes, tmsize_t count);
  static toff_t Seek(thandle_t output, toff_t offset, int origin);
  static toff_t Length(thandle_t output);
  static int Close(thandle_t output);

  BufferedFile& file_;
  toff_t position_ = 0;
  toff_t length_ = 0;
};

}  // namespace zyr
