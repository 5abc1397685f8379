#include "foundation/support/file_header.h"

#include "foundation/support/error.h"

namespace zyr {

bool ReadFileHeader(BufferedFile& file, FileIdentifier* identifier, uint32_t* version) {
  FileIdentifier readIdentifier{};
  if (!file.ReadUint32(&readIdentifier[0]) || !file.ReadUint32(&readIdentifier[1])) {
    SetError(kErrorUnclassified, "Invalid file specified (unable to read file identifier).");
    return false;
  }
  if (!file.ReadUint32(version)) {
    SetError(kErrorUnclassified, "Invalid file specified (unable to read file version).");
    return false;
  }
  *identifier = readIdentifier;
  return true;
}

bool CheckFileHeader(BufferedFile& file, const FileIdentifier& expectedIdentifier,
                     uint32_t currentVersion, uint32_t* version) {
  FileIdentifier identifier{};
  uint32_t readVersion = 0;
  if (!ReadFileHeader(file, &identifier, &readVersion)) return false;
  if (identifier != expectedIdentifier) {
    SetError(kErrorUnclassified,
             "A invalid file type was specified (the file did not contain the proper file "
             "identifier)");
    return false;
  }
  if (readVersion > currentVersion) {
    SetError(kErrorUnclassified,
             "An unsupported version (version = %08lX) was detected in the specified file",
             Lu(readVersion));
    return false;
  }
  *version = readVersion;
  return true;
}

bool WriteFileHeader(BufferedFile& file, const FileIdentifier& identifier, uint32_t version) {
  if (!file.WriteUint32(identifier[0]) || !file.WriteUint32(identifier[1])) {
    SetError(kErrorUnclassified, "Unable to write the file identifier.");
    return false;
  }
  if (!file.WriteUint32(version)) {
    SetError(kErrorUnclassified, "Unable to write the file version.");
    return false;
  }
  return true;
}

}  // namespace zyr
