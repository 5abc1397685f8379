#include "imaging/formats/tiff_output.h"

#include <algorithm>
#include <cstdio>

namespace zyr {
namespace {

constexpr toff_t kFailed = static_cast<toff_t>(-1);

}  // namespace

TiffFile TiffOutput::Open() {
  // The library would write to the error stream or show message boxes in its host's name.
  TIFFSetErrorHandler(nullptr);
  TIFFSetWarningHandler(nullptr);
  return TiffFile(TIFFClientOpen(file_.path().c_str(), "w", this, Read, Write, Seek, Close, Length,
                                 nullptr, nullptr));
}

// A file that is being written is not read.
tmsize_t TiffOutput::Read(thandle_t, void*, tmsize_t) { return -1; }

tmsize_t TiffOutput::Write(thandle_t output, void* bytes, tmsize_t count) {
  auto& self = *static_cast<TiffOutput*>(output);
  const int64_t written = self.file_.Write(bytes, static_cast<size_t>(count));
  if (written > 0) self.position_ += static_cast<toff_t>(written);
  self.length_ = std::max(self.length_, self.position_);
  return static_cast<tmsize_t>(written);
}

toff_t TiffOutput::Seek(thandle_t output, toff_t offset, int origin) {
  auto& self = *static_cast<TiffOutput*>(output);
  if (origin == SEEK_CUR) offset += self.position_;
  if (origin == SEEK_END) offset += self.length_;
  if (offset != self.position_ && !self.file_.Seek(static_cast<int64_t>(offset))) return kFailed;
  return self.position_ = offset;
}

toff_t TiffOutput::Length(thandle_t output) { return static_cast<TiffOutput*>(output)->length_; }

// The file is its owner's to close.
int TiffOutput::Close(thandle_t) { return 0; }

}  // namespace zyr
