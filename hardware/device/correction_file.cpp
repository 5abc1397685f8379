#include "hardware/device/correction_file.h"

#include <algorithm>

#include "foundation/support/buffered_file.h"
#include "foundation/support/files.h"
#include "foundation/support/format.h"
#include "platform/directories.h"

namespace zyr {
namespace {

constexpr size_t kBufferSize = 0xC800;
constexpr int64_t kLargestFile = 16 * 1024 * 1024;

// An identity must not lead out of the module's folder, nor to a device or a stream of a file.
bool IsFileName(const std::string& identity) {
  const auto isForbidden = [](char c) {
    return static_cast<unsigned char>(c) < ' ' ||
           std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos;
  };
  return identity.find("..") == std::string::npos &&
         std::none_of(identity.begin(), identity.end(), isForbidden);
}

// Empty if there is no such file.
std::string PathOf(const std::string& identity) {
  const std::string folder = DirectoryOf(platform::ModulePath());
  for (const char* extension : {"lumo", "fix"}) {
    std::string path = FormatText("%s\\%s.%s", folder.c_str(), identity.c_str(), extension);
    if (FileExists(path)) return path;
  }
  return {};
}

}  // namespace

Result LoadCorrectionFile(const std::string& identity, std::string* text) {
  const std::string path = IsFileName(identity) ? PathOf(identity) : std::string();
  if (path.empty()) return kFileNotFound;
  text->clear();
  BufferedFile file(kBufferSize);
  if (!file.OpenRead(path)) return kAccessDenied;
  const int64_t length = file.Length();
  if (length < 0 || length > kLargestFile) return kAccessDenied;
  std::string content(static_cast<size_t>(length), '\0');
  if (file.Read(content.data(), content.size()) != length) return kAccessDenied;
  *text = std::move(content);
  return kOk;
}

}  // namespace zyr
