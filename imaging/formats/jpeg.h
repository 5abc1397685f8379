// Writing and reading of JPEG files.
#pragma once

#include "imaging/formats/image_file.h"

namespace zyr {

class CKIPJpegSaver : public CKIPImageFile {
 public:
  // `quality` is 1 to 100; others count as the nearest. 1-bit images are written as grey, 8-bit
  // images with colours as 24-bit. Sets the image's fileFormat and fileSize.
  bool Save(const std::string& path, CKIPImage* image, uint32_t quality, ProgressCallback progress);
};

class CKIPJpegLoader : public CKIPImageFile {
 public:
  bool Load(const std::string& path, CKIPImage* image, ProgressCallback progress);
};

}  // namespace zyr
