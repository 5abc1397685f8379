#include "platform/file_version.h"

#include <cstdio>
#include <cstring>
#include <vector>

#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

// Empty if the file has no version resource.
std::vector<uint8_t> VersionBlock(const std::string& path) {
  DWORD ignored = 0;
  std::vector<uint8_t> block(GetFileVersionInfoSizeA(path.c_str(), &ignored));
  const auto size = static_cast<DWORD>(block.size());
  if (size != 0 && !GetFileVersionInfoA(path.c_str(), 0, size, block.data())) block.clear();
  return block;
}

}  // namespace

std::optional<std::string> VersionTranslation(const std::string& path) {
  const std::vector<uint8_t> block = VersionBlock(path);
  void* entry = nullptr;
  UINT length = 0;
  WORD languageAndCodePage[2];
  if (block.empty() ||
      !VerQueryValueA(block.data(), "\\VarFileInfo\\Translation", &entry, &length) ||
      length < sizeof languageAndCodePage) {
    return std::nullopt;
  }
  std::memcpy(languageAndCodePage, entry, sizeof languageAndCodePage);
  char text[16];
  std::snprintf(text, sizeof text, "%04x%04x", languageAndCodePage[0], languageAndCodePage[1]);
  return text;
}

std::optional<std::string> VersionString(const std::string& path, const std::string& block,
                                         const std::string& name) {
  const std::vector<uint8_t> version = VersionBlock(path);
  const std::string query = "\\StringFileInfo\\" + block + "\\" + name;
  void* value = nullptr;
  UINT length = 0;  // in characters, with the terminating zero
  if (version.empty() || !VerQueryValueA(version.data(), query.c_str(), &value, &length)) {
    return std::nullopt;
  }
  const auto* text = static_cast<const char*>(value);
  return std::string(text, strnlen(text, length));
}

std::optional<VersionNumbers> FixedFileVersion(const std::string& path) {
  const std::vector<uint8_t> block = VersionBlock(path);
  void* entry = nullptr;
  UINT length = 0;
  VS_FIXEDFILEINFO fixed;
  if (block.empty() || !VerQueryValueA(block.data(), "\\", &entry, &length) ||
      length < sizeof fixed) {
    return std::nullopt;
  }
  std::memcpy(&fixed, entry, sizeof fixed);
  return VersionNumbers{HIWORD(fixed.dwFileVersionMS), LOWORD(fixed.dwFileVersionMS),
                        HIWORD(fixed.dwFileVersionLS), LOWORD(fixed.dwFileVersionLS)};
}

}  // namespace zyr::platform
