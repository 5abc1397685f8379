// Writing of TIFF files.
#pragma once

#include "imaging/formats/image_file.h"

namespace zyr {

class CKIPTiffSaver : public CKIPImageFile {
 public:
  bool Save(const std::string& path, CKIPImage* image, ProgressCallback progress);

  uint32_t compression = 1;  // of the TIFF tag; 1 is none
  std::string imageDescription;
  std::string artist;
};

}  // namespace zyr
