#include "hardware/devmgr/device_path.h"

#include <algorithm>
#include <charconv>

#include "platform/ascii.h"

namespace zyr {
namespace {

constexpr size_t kLabelSize = 4;       // "vid_"
constexpr size_t kNumberSize = 4;      // hexadecimal digits
constexpr size_t kPathPrefixSize = 4;  // "\\?\", or "\\.\"
constexpr char kPathSeparator = '#';   // stands for a backslash

// `lower` is in lower case. Digits up to the first character that is none.
uint16_t NumberBehind(std::string_view label, std::string_view lower) {
  const size_t start = lower.find(label);
  if (start == std::string_view::npos || lower.size() - start < kLabelSize + kNumberSize) {
    return kNoUsbNumber;
  }
  const char* digits = lower.data() + start + kLabelSize;
  uint16_t number = 0;
  std::from_chars(digits, digits + kNumberSize, number, 16);
  return number;
}

char NameCharacter(char c) {
  if (c == kPathSeparator) return '\\';
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

UsbIdentity UsbIdentityOf(std::string_view instanceId) {
  const std::string lower = LowerAscii(instanceId);
  return {NumberBehind("vid", lower), NumberBehind("pid", lower)};
}

std::optional<std::string> InstanceIdOfPath(std::string_view path) {
  const size_t end = path.rfind(kPathSeparator);
  if (end == std::string_view::npos) return std::nullopt;
  const size_t begin = std::min(kPathPrefixSize, end);
  std::string id(path.substr(begin, end - begin));
  std::transform(id.begin(), id.end(), id.begin(), NameCharacter);
  return id;
}

std::string DriverRegistryPath(const std::string& driverKey) {
  return "system\\currentcontrolset\\control\\class\\" + driverKey;
}

}  // namespace zyr
