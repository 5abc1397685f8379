// Whole files, paths and names of files.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace zyr {

// False for an empty path.
bool FileExists(const std::string& path);
// A bare drive like "C:" counts as existing.
bool DirectoryExists(const std::string& path);
// Creates the directory with all its parents; true if it exists afterwards.
bool CreateDirectories(const std::string& path);

// The file's bytes with a zero behind them. Null on failure, with the last error set. `size`
// receives the number of bytes without that zero.
std::unique_ptr<char[]> LoadFile(const std::string& path, size_t* size);

// "<directory>\<base>.<extension>", or, if that is taken, "<directory>\<base>_<n>.<extension>" with
// the first free n from 1 on. `isTaken` says whether a path may not be used; null asks FileExists.
std::string UniqueFileName(const std::string& directory, const std::string& base,
                           const std::string& extension,
                           bool (*isTaken)(const std::string& path, void* context) = nullptr,
                           void* context = nullptr);

// `path` with what stands behind the last '.' of its file name replaced.
std::string WithExtension(const std::string& path, std::string_view extension);
// The part of `path` before its last separator, empty if there is none.
std::string DirectoryOf(const std::string& path);
// The part of `path` behind its last separator.
std::string FileNameOf(const std::string& path);

}  // namespace zyr
