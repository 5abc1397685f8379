// Files and folders by 8-bit path in the system's code page, with '\' between the parts, as the
// core forms them. Both '\' and '/' separate; names compare without regard to case.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zyr::platform {

enum class OpenMode {
  kRead,           // the file must exist
  kWriteTruncate,  // created if missing, emptied otherwise
  kWrite,          // created if missing, kept otherwise, position 0
  kAppend,         // created if missing, every write goes to the end
  kCreateNew,      // fails if the file exists
};

// Bytes as they are; no line end is translated here. A negative handle is no file. One thread a
// handle.
int OpenFile(const std::string& path, OpenMode mode);
void CloseFile(int handle);
// Bytes read: fewer than `count` only at the end of the file; -1 on error.
int64_t ReadFile(int handle, void* bytes, size_t count);
// Bytes written: fewer than `count` if the disk is full; -1 on error.
int64_t WriteFile(int handle, const void* bytes, size_t count);
bool SeekFile(int handle, int64_t position);
int64_t FilePosition(int handle);
// Length in bytes, -1 on error.
int64_t FileLength(int handle);
// Returns once the file's bytes are on the disk and would survive a power loss.
bool SyncFile(int handle);

struct FileStatus {
  bool isDirectory = false;
  uint64_t size = 0;
  int64_t createdTime = 0;   // seconds since 1970, UTC
  int64_t modifiedTime = 0;  // seconds since 1970, UTC
};

// Null if nothing of that name exists.
std::optional<FileStatus> StatusOf(const std::string& path);

// Names (without folder) of the files in `directory` that match a pattern of '*' and '?', in the
// order in which the file system lists them.
std::vector<std::string> ListFiles(const std::string& directory, const std::string& pattern);

// Names of the directories in `directory` that users see and that this interface can reach: not
// hidden or the system's own, and without characters outside the code page. Sorted without regard
// to case. Null if the directory cannot be read; an empty drive brings up no box of the system.
std::optional<std::vector<std::string>> ListDirectories(const std::string& directory);

// One level; true if the directory exists afterwards.
bool MakeDirectory(const std::string& path);
bool RemoveFile(const std::string& path);

// Renames in one step, so that at every instant either the old `to` or the new one stands there
// whole. Without `replace` it fails if `to` exists.
bool MoveFileTo(const std::string& from, const std::string& to, bool replace);

// Bytes that this user may still write on the drive of `path`; null if that cannot be found out.
std::optional<uint64_t> FreeDriveSpace(const std::string& path);

// `path` as the C library's fopen and other libraries' file functions want it.
std::string NativePath(const std::string& path);

}  // namespace zyr::platform
