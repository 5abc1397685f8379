// Paths and names of directories as the system and its users write them.
#pragma once

#include <string>
#include <vector>

namespace zyr {

// The system makes no longer ones, so that there is room for the names of files.
constexpr size_t kLongestDirectory = 247;

struct DirectoryPath {
  std::string root;  // "C:\" or "\\server\share\"; empty for a path without
  std::vector<std::string> names;
};

// "." and ".." are worked out. "C:name" counts from the root of the drive.
DirectoryPath SplitDirectory(const std::string& path);
std::string JoinDirectory(const std::string& parent, const std::string& name);

// Why a new directory cannot be called so, translated; empty if it can.
std::string FaultOfName(const std::string& name);

}  // namespace zyr
