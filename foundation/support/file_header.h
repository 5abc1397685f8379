// Identifier and version at the head of the system's own binary files. Failures are recorded with
// SetError.
#pragma once

#include <array>
#include <cstdint>

#include "foundation/support/buffered_file.h"

namespace zyr {

using FileIdentifier = std::array<uint32_t, 2>;

bool ReadFileHeader(BufferedFile& file, FileIdentifier* identifier, uint32_t* version);
// Reads the header and refuses another identifier and a version above `currentVersion`.
bool CheckFileHeader(BufferedFile& file, const FileIdentifier& expectedIdentifier,
                     uint32_t currentVersion, uint32_t* version);
bool WriteFileHeader(BufferedFile& file, const FileIdentifier& identifier, uint32_t version);

}  // namespace zyr
