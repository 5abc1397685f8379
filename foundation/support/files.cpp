#include "foundation/support/files.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <optional>

#include "foundation/support/error.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/ascii.h"
#include "platform/files.h"

namespace zyr {
namespace {

constexpr char kSeparators[] = "\\/";

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

bool IsBareDrive(const std::string& path) {
  return path.size() == 2 && path[1] == ':' && LowerAscii(path[0]) >= 'a' &&
         LowerAscii(path[0]) <= 'z';
}

// Index of the file name in `path`.
size_t NameStart(const std::string& path) {
  const size_t separator = path.find_last_of(kSeparators);
  return separator == std::string::npos ? 0 : separator + 1;
}

// Where the part of `path` ends that nobody can create: a share's "\\server\share".
size_t RootLength(const std::string& path) {
  if (path.size() < 2 || !IsSeparator(path[0]) || !IsSeparator(path[1])) return 0;
  const size_t serverEnd = path.find_first_of(kSeparators, 2);
  if (serverEnd == std::string::npos) return path.size();
  return std::min(path.find_first_of(kSeparators, serverEnd + 1), path.size());
}

std::unique_ptr<char[]> FailLoad(const char* text) {
  SetErrorText(kErrorUnclassified, GetPhrase(text));
  return nullptr;
}

// An open file, closed on every way out.
struct OpenedFile {
  explicit OpenedFile(const std::string& path)
      : handle(platform::OpenFile(path, platform::OpenMode::kRead)) {}
  ~OpenedFile() {
    if (handle >= 0) platform::CloseFile(handle);
  }
  OpenedFile(const OpenedFile&) = delete;
  OpenedFile& operator=(const OpenedFile&) = delete;

  const int handle;
};

}  // namespace

bool FileExists(const std::string& path) {
  return !path.empty() && platform::StatusOf(path).has_value();
}

bool DirectoryExists(const std::string& path) {
  // The status call of some systems knows no directory "C:\Scans\", only "C:\Scans".
  const size_t last = path.find_last_not_of(kSeparators);
  const std::string bare = last == std::string::npos ? path : path.substr(0, last + 1);
  if (bare.empty()) return false;
  if (IsBareDrive(bare)) return true;
  const auto status = platform::StatusOf(bare);
  return status && status->isDirectory;
}

bool CreateDirectories(const std::string& path) {
  if (path.empty()) return false;
  for (size_t end = RootLength(path); end < path.size();) {
    end = std::min(path.find_first_of(kSeparators, end + 1), path.size());
    const std::string level = path.substr(0, end);
    if (!DirectoryExists(level) && !platform::MakeDirectory(level)) return false;
  }
  return DirectoryExists(path);
}

std::unique_ptr<char[]> LoadFile(const std::string& path, size_t* size) {
  const auto status = platform::StatusOf(path);
  if (!status) return FailLoad(PhraseKey("The file did not exist"));
  if (status->isDirectory) return FailLoad(PhraseKey("The file could not be opened."));
  if (status->size == 0) return FailLoad(PhraseKey("The file was empty"));

  const OpenedFile file(path);
  if (file.handle < 0) return FailLoad(PhraseKey("The file could not be opened."));
  if (status->size >= std::numeric_limits<size_t>::max())
    return FailLoad(PhraseKey("Out of memory."));
  const auto count = static_cast<size_t>(status->size);
  std::unique_ptr<char[]> bytes(new (std::nothrow) char[count + 1]);
  if (bytes == nullptr) return FailLoad(PhraseKey("Out of memory."));
  if (platform::ReadFile(file.handle, bytes.get(), count) != static_cast<int64_t>(count)) {
    return FailLoad(PhraseKey("The entire file could not be read."));
  }
  bytes[count] = '\0';
  *size = count;
  return bytes;
}

std::string UniqueFileName(const std::string& directory, const std::string& base,
                           const std::string& extension,
                           bool (*isTaken)(const std::string& path, void* context), void* context) {
  const auto taken = [&](const std::string& path) {
    return isTaken != nullptr ? isTaken(path, context) : FileExists(path);
  };
  std::string path = FormatText("%s\\%s.%s", directory.c_str(), base.c_str(), extension.c_str());
  for (uint32_t n = 1; taken(path); ++n) {
    path = FormatText("%s\\%s_%lu.%s", directory.c_str(), base.c_str(), Lu(n), extension.c_str());
  }
  return path;
}

std::string WithExtension(const std::string& path, std::string_view extension) {
  const size_t dot = path.find_last_of('.');
  const bool hasExtension = dot != std::string::npos && dot >= NameStart(path);
  std::string changed = hasExtension ? path.substr(0, dot) : path;
  changed += '.';
  changed += extension;
  return changed;
}

std::string DirectoryOf(const std::string& path) {
  const size_t name = NameStart(path);
  return name == 0 ? std::string() : path.substr(0, name - 1);
}

std::string FileNameOf(const std::string& path) { return path.substr(NameStart(path)); }

}  // namespace zyr
