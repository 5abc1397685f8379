#include "platform/files.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>

#include "platform/name_pattern.h"
#include "platform/own_module.h"
#include "platform/win32/system.h"

namespace zyr::platform {
namespace {

constexpr size_t kLargestTransfer = size_t{1} << 30;  // of one system call

// Small numbers for the handles of open files. Numbers are not used again soon, so that a stale one
// fails.
class HandleTable {
 public:
  int Add(HANDLE file) {
    const auto lock = Lock();
    do {
      next_ = (next_ + 1) & 0x7FFFFFFF;
    } while (files_.count(next_) != 0);
    files_[next_] = file;
    return next_;
  }

  // INVALID_HANDLE_VALUE for an unknown number.
  HANDLE Find(int handle) {
    const auto lock = Lock();
    const auto found = files_.find(handle);
    return found == files_.end() ? INVALID_HANDLE_VALUE : found->second;
  }

  HANDLE Remove(int handle) {
    const auto lock = Lock();
    const auto found = files_.find(handle);
    if (found == files_.end()) return INVALID_HANDLE_VALUE;
    const HANDLE file = found->second;
    files_.erase(found);
    return file;
  }

 private:
  // At the end of the process nobody else is left, and nobody to unlock it.
  std::unique_lock<std::mutex> Lock() {
    return ProcessIsEnding() ? std::unique_lock<std::mutex>() : std::unique_lock(mutex_);
  }

  std::mutex mutex_;
  std::map<int, HANDLE> files_;
  int next_ = 2;
};

// Never destroyed: the log closes its file while the module is being unloaded, when what was made
// after the log has gone already. The file would stay open and the next load could not open it
// again.
HandleTable& Handles() {
  static HandleTable& table = *new HandleTable;
  return table;
}

// A zero within a path would end it early and lead to another file.
bool IsPath(const std::string& path) {
  return !path.empty() && path.find('\0') == std::string::npos;
}

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

DWORD AccessOf(OpenMode mode) {
  if (mode == OpenMode::kRead) return GENERIC_READ;
  // Without the right to write elsewhere, the system puts every write at the end.
  return mode == OpenMode::kAppend ? FILE_APPEND_DATA : GENERIC_WRITE;
}

// A reader bears a writer beside it; a writer bears readers and no second writer.
DWORD SharingOf(OpenMode mode) {
  return mode == OpenMode::kRead ? FILE_SHARE_READ | FILE_SHARE_WRITE : FILE_SHARE_READ;
}

DWORD DispositionOf(OpenMode mode) {
  switch (mode) {
    case OpenMode::kRead:
      return OPEN_EXISTING;
    case OpenMode::kWriteTruncate:
      return CREATE_ALWAYS;
    case OpenMode::kCreateNew:
      return CREATE_NEW;
    case OpenMode::kWrite:
    case OpenMode::kAppend:
      break;
  }
  return OPEN_ALWAYS;
}

int64_t MovePosition(HANDLE file, int64_t distance, DWORD origin) {
  LARGE_INTEGER by;
  LARGE_INTEGER result;
  by.QuadPart = distance;
  return SetFilePointerEx(file, by, &result, origin) ? result.QuadPart : -1;
}

bool IsDirectory(const std::string& path) {
  const DWORD attributes = GetFileAttributesA(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

// "C:\" or "\\server\share\"; empty for a path without either.
std::string DriveOf(const std::string& path) {
  if (path.size() >= 2 && path[1] == ':') return path.substr(0, 2) + "\\";
  if (path.size() < 3 || !IsSeparator(path[0]) || !IsSeparator(path[1])) return {};
  const auto serverEnd = std::find_if(path.begin() + 2, path.end(), IsSeparator);
  if (serverEnd == path.end()) return {};
  const auto shareEnd = std::find_if(serverEnd + 1, path.end(), IsSeparator);
  return std::string(path.begin(), shareEnd) + "\\";
}

// A '?' stands for what the code page does not have.
bool IsSeenDirectory(const WIN32_FIND_DATAA& data) {
  constexpr DWORD kUnseen = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
  const std::string_view name = data.cFileName;
  return (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 &&
         (data.dwFileAttributes & kUnseen) == 0 && name != "." && name != ".." &&
         name.find('?') == std::string_view::npos;
}

bool ComesBefore(const std::string& a, const std::string& b) {
  return CompareStringA(LOCALE_USER_DEFAULT, NORM_IGNORECASE, a.data(), static_cast<int>(a.size()),
                        b.data(), static_cast<int>(b.size())) == CSTR_LESS_THAN;
}

struct FindCloser {
  using pointer = HANDLE;
  void operator()(HANDLE find) const { FindClose(find); }
};

}  // namespace

int OpenFile(const std::string& path, OpenMode mode) {
  if (!IsPath(path)) return -1;
  const HANDLE file = CreateFileA(path.c_str(), AccessOf(mode), SharingOf(mode), nullptr,
                                  DispositionOf(mode), FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return -1;
  // Names such as "COM1" lead to devices, which could block for ever.
  if (GetFileType(file) != FILE_TYPE_DISK ||
      (mode == OpenMode::kAppend && MovePosition(file, 0, FILE_END) < 0)) {
    CloseHandle(file);
    return -1;
  }
  return Handles().Add(file);
}

void CloseFile(int handle) {
  const HANDLE file = Handles().Remove(handle);
  if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
}

int64_t ReadFile(int handle, void* bytes, size_t count) {
  const HANDLE file = Handles().Find(handle);
  if (file == INVALID_HANDLE_VALUE) return -1;
  size_t done = 0;
  while (done < count) {
    const auto piece = static_cast<DWORD>(std::min(count - done, kLargestTransfer));
    DWORD read = 0;
    if (!::ReadFile(file, static_cast<uint8_t*>(bytes) + done, piece, &read, nullptr)) return -1;
    done += read;
    if (read < piece) break;
  }
  return static_cast<int64_t>(done);
}

int64_t WriteFile(int handle, const void* bytes, size_t count) {
  const HANDLE file = Handles().Find(handle);
  if (file == INVALID_HANDLE_VALUE) return -1;
  size_t done = 0;
  while (done < count) {
    const auto piece = static_cast<DWORD>(std::min(count - done, kLargestTransfer));
    DWORD written = 0;
    if (!::WriteFile(file, static_cast<const uint8_t*>(bytes) + done, piece, &written, nullptr)) {
      const DWORD error = GetLastError();
      if (error != ERROR_DISK_FULL && error != ERROR_HANDLE_DISK_FULL) return -1;
    }
    done += written;
    if (written < piece) break;
  }
  return static_cast<int64_t>(done);
}

bool SeekFile(int handle, int64_t position) {
  const HANDLE file = Handles().Find(handle);
  return file != INVALID_HANDLE_VALUE && position >= 0 &&
         MovePosition(file, position, FILE_BEGIN) == position;
}

int64_t FilePosition(int handle) {
  const HANDLE file = Handles().Find(handle);
  return file == INVALID_HANDLE_VALUE ? -1 : MovePosition(file, 0, FILE_CURRENT);
}

int64_t FileLength(int handle) {
  const HANDLE file = Handles().Find(handle);
  LARGE_INTEGER length;
  if (file == INVALID_HANDLE_VALUE || !GetFileSizeEx(file, &length)) return -1;
  return length.QuadPart;
}

bool SyncFile(int handle) {
  const HANDLE file = Handles().Find(handle);
  return file != INVALID_HANDLE_VALUE && FlushFileBuffers(file);
}

std::optional<FileStatus> StatusOf(const std::string& path) {
  const NoSystemBoxes quiet;
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!IsPath(path) || !GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data)) {
    return std::nullopt;
  }
  FileStatus status;
  status.isDirectory = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  if (!status.isDirectory) status.size = uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow;
  status.createdTime = SecondsOf(data.ftCreationTime);
  status.modifiedTime = SecondsOf(data.ftLastWriteTime);
  return status;
}

std::vector<std::string> ListFiles(const std::string& directory, const std::string& pattern) {
  std::vector<std::string> names;
  if (!IsPath(directory)) return names;
  // The system would also match short names: "*.RAW" finds "x.RAWBACK". So all are listed.
  WIN32_FIND_DATAA data;
  const HANDLE first = FindFirstFileA((directory + "\\*").c_str(), &data);
  if (first == INVALID_HANDLE_VALUE) return names;
  const std::unique_ptr<HANDLE, FindCloser> find(first);
  do {
    const bool isFile = (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
    if (isFile && MatchesPattern(data.cFileName, pattern)) names.push_back(data.cFileName);
  } while (FindNextFileA(find.get(), &data));
  return names;
}

std::optional<std::vector<std::string>> ListDirectories(const std::string& directory) {
  if (!IsPath(directory)) return std::nullopt;
  const NoSystemBoxes quiet;
  const char* const end = IsSeparator(directory.back()) ? "*" : "\\*";
  WIN32_FIND_DATAA data;
  const HANDLE first =
      FindFirstFileExA((directory + end).c_str(), FindExInfoBasic, &data,
                       FindExSearchLimitToDirectories, nullptr, FIND_FIRST_EX_LARGE_FETCH);
  std::vector<std::string> names;
  if (first == INVALID_HANDLE_VALUE) {
    if (GetLastError() != ERROR_FILE_NOT_FOUND) return std::nullopt;
    return names;  // the root of an empty drive
  }
  const std::unique_ptr<HANDLE, FindCloser> find(first);
  do {
    if (IsSeenDirectory(data)) names.push_back(data.cFileName);
  } while (FindNextFileA(find.get(), &data));
  std::sort(names.begin(), names.end(), ComesBefore);
  return names;
}

bool MakeDirectory(const std::string& path) {
  if (!IsPath(path)) return false;
  const NoSystemBoxes quiet;
  return CreateDirectoryA(path.c_str(), nullptr) || IsDirectory(path);
}

bool RemoveFile(const std::string& path) { return IsPath(path) && DeleteFileA(path.c_str()); }

bool MoveFileTo(const std::string& from, const std::string& to, bool replace) {
  const DWORD flags = MOVEFILE_WRITE_THROUGH | (replace ? MOVEFILE_REPLACE_EXISTING : 0);
  return IsPath(from) && IsPath(to) && MoveFileExA(from.c_str(), to.c_str(), flags);
}

std::optional<uint64_t> FreeDriveSpace(const std::string& path) {
  const std::string drive = DriveOf(path);
  ULARGE_INTEGER available;
  if (!GetDiskFreeSpaceExA(drive.empty() ? nullptr : drive.c_str(), &available, nullptr, nullptr)) {
    return std::nullopt;
  }
  return available.QuadPart;
}

std::string NativePath(const std::string& path) { return path; }

}  // namespace zyr::platform
