// The file of a sensor without memory, beside the module: "<identity>.lumo", or else
// "<identity>.fix".
#pragma once

#include <string>

#include "hardware/result.h"

namespace zyr {

// Puts the whole file into `text`. kFileNotFound if there is none, or if the identity, which a user
// may have typed, is no plain file name: `text` stays as it was. kAccessDenied if it cannot be
// read, or is far too large for a list of defects: `text` is empty then.
Result LoadCorrectionFile(const std::string& identity, std::string* text);

}  // namespace zyr
