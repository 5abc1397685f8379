#include "platform/host/file_version.h"

#include "platform/ascii.h"

namespace zyr::platform {
namespace {

std::map<std::string, host::VersionResource>& Resources() {
  static std::map<std::string, host::VersionResource> resources;
  return resources;
}

}  // namespace

std::optional<std::string> VersionTranslation(const std::string& path) {
  const auto found = Resources().find(LowerAscii(path));
  return found == Resources().end() ? std::nullopt : found->second.translation;
}

std::optional<std::string> VersionString(const std::string& path, const std::string& block,
                                         const std::string& name) {
  const auto file = Resources().find(LowerAscii(path));
  if (file == Resources().end()) return std::nullopt;
  for (const auto& [key, text] : file->second.strings) {
    if (LowerAscii(key.first) == LowerAscii(block) && LowerAscii(key.second) == LowerAscii(name)) {
      return text;
    }
  }
  return std::nullopt;
}

std::optional<VersionNumbers> FixedFileVersion(const std::string& path) {
  const auto found = Resources().find(LowerAscii(path));
  return found == Resources().end() ? std::nullopt : found->second.fixed;
}

namespace host {

void SetVersionResource(const std::string& path, const VersionResource& resource) {
  Resources()[LowerAscii(path)] = resource;
}

void ResetVersions() { Resources().clear(); }

}  // namespace host
}  // namespace zyr::platform
