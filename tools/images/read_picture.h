// Reading of grey pictures.
#pragma once

#include <optional>
#include <string>

#include "tools/images/grey_picture.h"

namespace zyr {

// A PNG, PGM or TIFF file, told by its content: grey, of up to 16 bits. Samples of fewer than 8
// bits, or with another largest value than all ones, are spread over 8 or 16 bits; transparency is
// dropped. Null otherwise, and `error` has a sentence for the user. The resolution is not read.
std::optional<GreyPicture> ReadPicture(const std::string& path, std::string* error);

}  // namespace zyr
