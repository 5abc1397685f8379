// Test control of the files double. "C:\a\b" lies at <scratch root>/C/a/b, "\\server\share\a" at
// <scratch root>/UNC/server/share/a; a path without drive is taken as it stands. Rules of Windows
// hold under the root: names compare without regard to case, characters that Windows forbids and
// paths of 260 characters or more fail, one file has one writer at a time, and an open file cannot
// be moved, replaced or removed. Drive C is there from the start, another one once PutFile has put
// something on it. Times of files that were made through the double come from platform::Now().
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace zyr::platform::host {

// A temporary directory of this process, made at first use and removed at exit.
std::filesystem::path ScratchRoot();
// Closes all files and empties the scratch root; faults and counts stay.
void ResetScratch();
// ResetScratch, and no faults, counts 0, free space as at the start.
void ResetFiles();

// Where `path` lies on this machine; empty if Windows would not take the path.
std::filesystem::path NativeOf(const std::string& path);

// Writes a file with its parent folders, past all faults and counts.
void PutFile(const std::string& path, std::string_view bytes);
// The file's bytes; null if it cannot be read.
std::optional<std::string> FileBytes(const std::string& path);
void SetFileTimes(const std::string& path, int64_t created, int64_t modified);

// After `bytes` more bytes the disk is full: writes come back short, then 0. Null: never.
void FillDiskAfter(std::optional<uint64_t> bytes);
// Every write fails outright.
void FailWrites(bool fail);
// A read beyond the next `bytes` bytes fails. Null: never.
void FailReadsAfter(std::optional<uint64_t> bytes);
// After so many more changes (an opening for writing, a write, a sync, a move, a removal, a new
// folder) every further one fails: what stands on disk is then what a crash at that instant leaves.
// Null: never.
void FailChangesAfter(std::optional<uint64_t> changes);
void FailSyncs(bool fail);
void FailMoves(bool fail);
// Paths that begin with `prefix`, drive included, can't be opened for writing, made, moved or
// removed; DenyOpening: can't be opened at all. They add up.
void DenyWriting(const std::string& prefix);
void DenyOpening(const std::string& prefix);
// An existing directory is left out of listings, as its attribute has it.
void HideDirectory(const std::string& path);
// 100 GB at first; null: cannot be found out.
void SetFreeSpace(std::optional<uint64_t> bytes);

struct FileCounts {
  int opens = 0;  // successful ones
  int reads = 0;
  int writes = 0;
  int syncs = 0;
  int directoriesListed = 0;  // or tried to
  uint64_t bytesRead = 0;
  uint64_t bytesWritten = 0;
  int openHandles = 0;  // now
  int mostOpenHandles = 0;
};
FileCounts CountsOfFiles();

}  // namespace zyr::platform::host
