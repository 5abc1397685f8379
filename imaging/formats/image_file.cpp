#include "imaging/formats/image_file.h"

namespace zyr {
namespace {

std::string& TheLastFileName() {
  static std::string name;
  return name;
}

}  // namespace

const std::string& CKIPImageFile::LastFileName() { return TheLastFileName(); }
void CKIPImageFile::SetLastFileName(const std::string& path) { TheLastFileName() = path; }

}  // namespace zyr
