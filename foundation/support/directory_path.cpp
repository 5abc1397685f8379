#include "foundation/support/directory_path.h"

#include <algorithm>
#include <string_view>

#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/ascii.h"

namespace zyr {
namespace {

constexpr char kSeparators[] = "\\/";
constexpr char kForbidden[] = "\\ / : * ? \" < > |";

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

bool HasDrive(const std::string& path) {
  return path.size() >= 2 && path[1] == ':' && LowerAscii(path[0]) >= 'a' &&
         LowerAscii(path[0]) <= 'z';
}

// Takes the next name off the front of `path`; empty at its end.
std::string TakeName(std::string_view& path) {
  path.remove_prefix(std::min(path.find_first_not_of(kSeparators), path.size()));
  const std::string name(path.substr(0, path.find_first_of(kSeparators)));
  path.remove_prefix(name.size());
  return name;
}

std::string TakeRoot(std::string_view& path) {
  if (HasDrive(std::string(path))) {
    const char letter = path[0];
    path.remove_prefix(2);
    return {letter, ':', '\\'};
  }
  if (path.size() < 2 || !IsSeparator(path[0]) || !IsSeparator(path[1])) return {};
  const std::string server = TakeName(path);
  const std::string share = TakeName(path);
  return server.empty() || share.empty() ? std::string() : "\\\\" + server + "\\" + share + "\\";
}

bool IsForbidden(char c) {
  return (c >= 0 && c < ' ') ||
         (c != ' ' && std::string_view(kForbidden).find(c) != std::string::npos);
}

// The system takes these for devices, with whatever stands behind a dot.
bool IsDevice(const std::string& name) {
  std::string base = LowerAscii(name.substr(0, name.find('.')));
  base.resize(base.find_last_not_of(' ') + 1);
  for (const char* device : {"con", "prn", "aux", "nul", "conin$", "conout$"}) {
    if (base == device) return true;
  }
  if (base.size() != 4 || base[3] < '1' || base[3] > '9') return false;
  return base.compare(0, 3, "com") == 0 || base.compare(0, 3, "lpt") == 0;
}

}  // namespace

DirectoryPath SplitDirectory(const std::string& path) {
  std::string_view rest = path;
  DirectoryPath parts = {TakeRoot(rest), {}};
  for (std::string name = TakeName(rest); !name.empty(); name = TakeName(rest)) {
    if (name == "..") {
      if (!parts.names.empty()) parts.names.pop_back();
    } else if (name != ".") {
      parts.names.push_back(name);
    }
  }
  return parts;
}

std::string JoinDirectory(const std::string& parent, const std::string& name) {
  return !parent.empty() && IsSeparator(parent.back()) ? parent + name : parent + "\\" + name;
}

std::string FaultOfName(const std::string& name) {
  if (name.empty()) return GetPhrase("Please enter a name for the new directory.");
  if (std::any_of(name.begin(), name.end(), IsForbidden)) {
    return FormatText(
        GetFormatPhrase("The name of a directory cannot contain any of these characters:\n%s")
            .c_str(),
        kForbidden);
  }
  if (name.back() == '.') return GetPhrase("The name of a directory cannot end with a dot.");
  if (IsDevice(name)) {
    return FormatText(
        GetFormatPhrase("The name %s is reserved by the system.  Please choose another one.")
            .c_str(),
        name.c_str());
  }
  return {};
}

}  // namespace zyr
