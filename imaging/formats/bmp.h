// Writing of BMP files.
#pragma once

#include "imaging/formats/image_file.h"

namespace zyr {

class CKIPBmpSaver : public CKIPImageFile {
 public:
  // Sets the image's fileFormat and fileSize.
  bool Save(const std::string& path, CKIPImage* image, ProgressCallback progress);
};

}  // namespace zyr
