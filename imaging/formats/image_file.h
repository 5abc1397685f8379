// What the savers and the loader of image files have in common.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/support/progress.h"
#include "imaging/image/image.h"

namespace zyr {

enum ImageFileFormat : uint32_t { kFileFormatBmp = 1, kFileFormatJpeg = 3, kFileFormatTiff = 5 };

// Escape ends a save or a load. A failed or ended save deletes what it has written. A failed load
// leaves the image empty. Failures are in the package's last error. Any thread, one operation at a
// time.
class CKIPImageFile {
 public:
  virtual ~CKIPImageFile() = default;

  // The file that the last operation of any saver or loader worked on.
  static const std::string& LastFileName();

 protected:
  static void SetLastFileName(const std::string& path);
};

}  // namespace zyr
