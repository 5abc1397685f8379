// Test control of the file version double.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "platform/file_version.h"

namespace zyr::platform::host {

struct VersionResource {
  std::optional<std::string> translation;                              // as in "040904b0"
  std::map<std::pair<std::string, std::string>, std::string> strings;  // by block and name
  std::optional<VersionNumbers> fixed;
};
// Paths, blocks and names compare without regard to case.
void SetVersionResource(const std::string& path, const VersionResource& resource);

// No file has a version.
void ResetVersions();

}  // namespace zyr::platform::host
