#include "platform/host/files.h"

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdio>
#include <map>
#include <mutex>
#include <random>
#include <set>
#include <system_error>
#include <vector>

#include "platform/ascii.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/name_pattern.h"

namespace zyr::platform {
namespace {

namespace fs = std::filesystem;

constexpr uint64_t kDefaultFreeSpace = 100'000'000'000;
constexpr size_t kLongestPath = 259;

struct OpenedFile {
  std::FILE* stream = nullptr;
  fs::path path;
  bool writable = false;
};

struct Times {
  int64_t created = 0;
  int64_t modified = 0;
};

// The directory of this process, removed when the process ends.
class ScratchDirectory {
 public:
  ScratchDirectory() {
    std::random_device random;
    do {
      root_ = fs::temp_directory_path() / ("zyr-" + std::to_string(random()));
    } while (!fs::create_directory(root_));
    fs::create_directory(root_ / "C");
  }
  ~ScratchDirectory() {
    std::error_code ignored;
    fs::remove_all(root_, ignored);
  }
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;

  const fs::path& root() const { return root_; }

 private:
  fs::path root_;
};

const fs::path& Root() {
  static const ScratchDirectory directory;
  return directory.root();
}

struct State {
  std::mutex mutex;
  std::map<int, OpenedFile> open;
  int nextHandle = 3;  // never used again, so that a stale handle is none
  std::map<fs::path, Times> times;
  host::FileCounts counts;
  std::optional<uint64_t> writeBudget;
  std::optional<uint64_t> readBudget;
  std::optional<uint64_t> changeBudget;
  bool failWrites = false;
  bool failSyncs = false;
  bool failMoves = false;
  std::vector<std::string> noWriting;
  std::vector<std::string> noOpening;
  std::set<fs::path> hidden;
  std::optional<uint64_t> freeSpace = kDefaultFreeSpace;
};

State& TheState() {
  Root();  // outlives the state
  static State state;
  return state;
}

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

bool HasDrive(const std::string& path) {
  return path.size() >= 2 && path[1] == ':' && LowerAscii(path[0]) >= 'a' &&
         LowerAscii(path[0]) <= 'z';
}

bool IsForbidden(char c) {
  return (c >= 0 && c < 32) || std::string_view("<>:\"|?*").find(c) != std::string_view::npos;
}

std::vector<std::string> PartsOf(std::string_view path) {
  std::vector<std::string> parts;
  std::string part;
  auto finish = [&] {
    if (part == "..") {
      if (!parts.empty()) parts.pop_back();
    } else if (!part.empty() && part != ".") {
      parts.push_back(part);
    }
    part.clear();
  };
  for (char c : path) {
    if (IsSeparator(c)) {
      finish();
    } else {
      part += c;
    }
  }
  finish();
  return parts;
}

// Bytes beyond ASCII have no meaning common to all file systems: they are kept as "%E4".
std::string Escaped(const std::string& name) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string escaped;
  for (char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 128 && c != '%') {
      escaped += c;
    } else {
      escaped += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return escaped;
}

std::string Unescaped(const std::string& name) {
  std::string plain;
  for (size_t i = 0; i < name.size(); ++i) {
    if (name[i] == '%' && i + 2 < name.size()) {
      plain += static_cast<char>(std::stoi(name.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else {
      plain += name[i];
    }
  }
  return plain;
}

// The entry of `directory` called `name`, by exact name if there is one, else without regard to
// case.
fs::path EntryOf(const fs::path& directory, const std::string& name) {
  std::error_code error;
  const fs::path exact = directory / name;
  if (fs::exists(exact, error)) return exact;
  for (fs::directory_iterator i(directory, error), end; !error && i != end; i.increment(error)) {
    if (LowerAscii(i->path().filename().string()) == LowerAscii(name)) return i->path();
  }
  return exact;
}

fs::path UnderRoot(const std::string& top, std::string_view rest) {
  fs::path native = EntryOf(Root(), top);
  for (const std::string& part : PartsOf(rest)) {
    if (std::any_of(part.begin(), part.end(), IsForbidden)) return {};
    native = EntryOf(native, Escaped(part));
  }
  return native;
}

bool StartsWithRoot(const std::string& path) {
  const std::string root = Root().string();
  return path.compare(0, root.size(), root) == 0;
}

// Paths that NativePath gave out come back as they are.
fs::path Native(const std::string& path) {
  if (path.empty() || path.find('\0') != std::string::npos) return {};
  if (StartsWithRoot(path)) return path;
  if (path.size() > kLongestPath) return {};
  if (HasDrive(path)) {
    const auto drive = static_cast<char>(LowerAscii(path[0]) - 32);
    return UnderRoot(std::string(1, drive), std::string_view(path).substr(2));
  }
  if (path.compare(0, 2, "\\\\") == 0) return UnderRoot("UNC", path);
  std::string native = path;
  std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

std::string Comparable(const std::string& path) {
  std::string text;
  for (char c : path) {
    const char plain = IsSeparator(c) ? '\\' : LowerAscii(c);
    if (plain != '\\' || text.size() < 2 || text.back() != '\\') text += plain;
  }
  return text;
}

bool BeginsWithOne(const std::string& path, const std::vector<std::string>& prefixes) {
  const std::string text = Comparable(path);
  return std::any_of(prefixes.begin(), prefixes.end(), [&](const std::string& prefix) {
    return text.compare(0, prefix.size(), prefix) == 0;
  });
}

bool IsOpen(const State& state, const fs::path& native) {
  return std::any_of(state.open.begin(), state.open.end(),
                     [&](const auto& entry) { return entry.second.path == native; });
}

bool HasWriter(const State& state, const fs::path& native) {
  return std::any_of(state.open.begin(), state.open.end(), [&](const auto& entry) {
    return entry.second.writable && entry.second.path == native;
  });
}

bool Exists(const fs::path& native) {
  std::error_code error;
  return !native.empty() && fs::exists(native, error);
}

bool IsDirectory(const fs::path& native) {
  std::error_code error;
  return !native.empty() && fs::is_directory(native, error);
}

// As NTFS lists them.
void SortWithoutCase(std::vector<std::string>& names) {
  std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    return LowerAscii(a) < LowerAscii(b);
  });
}

const char* StreamMode(OpenMode mode, bool exists) {
  switch (mode) {
    case OpenMode::kRead:
      return "rb";
    case OpenMode::kAppend:
      return "ab";
    case OpenMode::kWrite:
      return exists ? "r+b" : "wb";
    case OpenMode::kWriteTruncate:
    case OpenMode::kCreateNew:
      break;
  }
  return "wb";
}

OpenedFile* Find(State& state, int handle) {
  const auto found = state.open.find(handle);
  return found == state.open.end() ? nullptr : &found->second;
}

int64_t LengthOf(std::FILE* stream) {
  const long position = std::ftell(stream);
  if (position < 0 || std::fseek(stream, 0, SEEK_END) != 0) return -1;
  const long length = std::ftell(stream);
  return std::fseek(stream, position, SEEK_SET) == 0 ? length : -1;
}

int64_t SecondsOf(fs::file_time_type time) {
  const auto system = std::chrono::file_clock::to_sys(time);
  return std::chrono::floor<std::chrono::seconds>(system).time_since_epoch().count();
}

size_t Take(std::optional<uint64_t>& budget, size_t count) {
  if (!budget) return count;
  const auto taken = static_cast<size_t>(std::min<uint64_t>(*budget, count));
  *budget -= taken;
  return taken;
}

// False once the file system takes no more changes.
bool MayChange(State& state) { return Take(state.changeBudget, 1) == 1; }

void CloseAll(State& state) {
  for (auto& [handle, file] : state.open) std::fclose(file.stream);
  state.open.clear();
  state.counts.openHandles = 0;
}

}  // namespace

int OpenFile(const std::string& path, OpenMode mode) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const bool writing = mode != OpenMode::kRead;
  if (BeginsWithOne(path, state.noOpening)) return -1;
  if (writing && BeginsWithOne(path, state.noWriting)) return -1;
  const fs::path native = Native(path);
  const bool exists = Exists(native);
  if (native.empty() || IsDirectory(native)) return -1;
  if (exists && mode == OpenMode::kCreateNew) return -1;
  if (writing && (HasWriter(state, native) || !MayChange(state))) return -1;
  std::FILE* stream = std::fopen(native.string().c_str(), StreamMode(mode, exists));
  if (stream == nullptr) return -1;
  std::setvbuf(stream, nullptr, _IONBF, 0);  // what is written is there for every other reader
  if (mode == OpenMode::kAppend) std::fseek(stream, 0, SEEK_END);
  if (!exists) state.times[native] = {Now(), Now()};
  if (exists && mode == OpenMode::kWriteTruncate) state.times[native].modified = Now();
  const int handle = state.nextHandle++;
  state.open[handle] = {stream, native, writing};
  ++state.counts.opens;
  state.counts.mostOpenHandles = std::max(state.counts.mostOpenHandles, ++state.counts.openHandles);
  return handle;
}

void CloseFile(int handle) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const OpenedFile* file = Find(state, handle);
  if (file == nullptr) return;
  std::fclose(file->stream);
  state.open.erase(handle);
  --state.counts.openHandles;
}

int64_t ReadFile(int handle, void* bytes, size_t count) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const OpenedFile* file = Find(state, handle);
  if (file == nullptr || file->writable) return -1;
  ++state.counts.reads;
  std::clearerr(file->stream);  // the file may have grown since its end was met
  const size_t read = std::fread(bytes, 1, count, file->stream);
  if (std::ferror(file->stream) != 0 || Take(state.readBudget, read) < read) return -1;
  state.counts.bytesRead += read;
  return static_cast<int64_t>(read);
}

int64_t WriteFile(int handle, const void* bytes, size_t count) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const OpenedFile* file = Find(state, handle);
  if (file == nullptr || !file->writable || state.failWrites || !MayChange(state)) return -1;
  ++state.counts.writes;
  const size_t allowed = Take(state.writeBudget, count);
  const size_t written = std::fwrite(bytes, 1, allowed, file->stream);
  if (std::ferror(file->stream) != 0) return -1;
  state.counts.bytesWritten += written;
  const auto times = state.times.find(file->path);
  if (times != state.times.end()) times->second.modified = Now();
  return static_cast<int64_t>(written);
}

bool SeekFile(int handle, int64_t position) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const OpenedFile* file = Find(state, handle);
  if (file == nullptr || position < 0 || position > LONG_MAX) return false;
  return std::fseek(file->stream, static_cast<long>(position), SEEK_SET) == 0;
}

int64_t FilePosition(int handle) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const OpenedFile* file = Find(state, handle);
  return file == nullptr ? -1 : std::ftell(file->stream);
}

int64_t FileLength(int handle) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const OpenedFile* file = Find(state, handle);
  return file == nullptr ? -1 : LengthOf(file->stream);
}

bool SyncFile(int handle) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const OpenedFile* file = Find(state, handle);
  if (file == nullptr || !file->writable || state.failSyncs || !MayChange(state)) return false;
  ++state.counts.syncs;
  return std::fflush(file->stream) == 0;
}

std::optional<FileStatus> StatusOf(const std::string& path) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const fs::path native = Native(path);
  if (!Exists(native)) return std::nullopt;
  FileStatus status;
  std::error_code error;
  status.isDirectory = fs::is_directory(native, error);
  if (!status.isDirectory) status.size = fs::file_size(native, error);
  status.modifiedTime = SecondsOf(fs::last_write_time(native, error));
  status.createdTime = status.modifiedTime;
  const auto times = state.times.find(native);
  if (times != state.times.end()) {
    status.createdTime = times->second.created;
    status.modifiedTime = times->second.modified;
  }
  return status;
}

std::vector<std::string> ListFiles(const std::string& directory, const std::string& pattern) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  std::vector<std::string> names;
  std::error_code error;
  const fs::path native = Native(directory);
  const bool escaped = StartsWithRoot(native.string());
  for (fs::directory_iterator i(native, error), end; !error && i != end; i.increment(error)) {
    std::string name = i->path().filename().string();
    if (escaped) name = Unescaped(name);
    if (!i->is_directory(error) && MatchesPattern(name, pattern)) names.push_back(name);
  }
  SortWithoutCase(names);
  return names;
}

std::optional<std::vector<std::string>> ListDirectories(const std::string& directory) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  ++state.counts.directoriesListed;
  const fs::path native = Native(directory);
  if (!IsDirectory(native) || BeginsWithOne(directory, state.noOpening)) return std::nullopt;
  std::vector<std::string> names;
  std::error_code error;
  const bool escaped = StartsWithRoot(native.string());
  for (fs::directory_iterator i(native, error), end; !error && i != end; i.increment(error)) {
    const std::string name = i->path().filename().string();
    if (!i->is_directory(error) || state.hidden.count(i->path()) != 0) continue;
    names.push_back(escaped ? Unescaped(name) : name);
  }
  SortWithoutCase(names);
  return names;
}

bool MakeDirectory(const std::string& path) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const fs::path native = Native(path);
  if (IsDirectory(native)) return true;
  if (native.empty() || BeginsWithOne(path, state.noWriting) || !MayChange(state)) return false;
  std::error_code error;
  return fs::create_directory(native, error);
}

bool RemoveFile(const std::string& path) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  const fs::path native = Native(path);
  if (!Exists(native) || IsDirectory(native) || IsOpen(state, native)) return false;
  if (BeginsWithOne(path, state.noWriting) || !MayChange(state)) return false;
  state.times.erase(native);
  std::error_code error;
  return fs::remove(native, error);
}

bool MoveFileTo(const std::string& from, const std::string& to, bool replace) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  if (state.failMoves || BeginsWithOne(from, state.noWriting) ||
      BeginsWithOne(to, state.noWriting)) {
    return false;
  }
  const fs::path source = Native(from);
  const fs::path target = Native(to);
  if (!Exists(source) || target.empty() || IsOpen(state, source) || IsOpen(state, target))
    return false;
  if (Exists(target) && (!replace || IsDirectory(target))) return false;
  if (!MayChange(state)) return false;
  std::error_code error;
  fs::rename(source, target, error);
  if (error) return false;
  auto times = state.times.extract(source);
  if (!times.empty()) state.times[target] = times.mapped();
  return true;
}

std::optional<uint64_t> FreeDriveSpace(const std::string&) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.freeSpace;
}

std::string NativePath(const std::string& path) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return Native(path).string();
}

namespace host {

fs::path ScratchRoot() { return Root(); }

void ResetScratch() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  CloseAll(state);
  state.times.clear();
  std::error_code error;
  for (fs::directory_iterator i(Root(), error), end; !error && i != end; i.increment(error)) {
    std::error_code ignored;
    fs::remove_all(i->path(), ignored);
  }
  fs::create_directory(Root() / "C", error);
}

void ResetFiles() {
  ResetScratch();
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.counts = {};
  state.writeBudget.reset();
  state.readBudget.reset();
  state.changeBudget.reset();
  state.failWrites = state.failSyncs = state.failMoves = false;
  state.noWriting.clear();
  state.noOpening.clear();
  state.hidden.clear();
  state.freeSpace = kDefaultFreeSpace;
}

fs::path NativeOf(const std::string& path) { return Native(path); }

void PutFile(const std::string& path, std::string_view bytes) {
  const fs::path native = Native(path);
  std::error_code error;
  fs::create_directories(native.parent_path(), error);
  std::FILE* stream = std::fopen(native.string().c_str(), "wb");
  if (stream == nullptr) return;
  std::fwrite(bytes.data(), 1, bytes.size(), stream);
  std::fclose(stream);
}

std::optional<std::string> FileBytes(const std::string& path) {
  const fs::path native = Native(path);
  if (IsDirectory(native)) return std::nullopt;
  std::FILE* stream = std::fopen(native.string().c_str(), "rb");
  if (stream == nullptr) return std::nullopt;
  std::string bytes;
  char piece[4096];
  while (const size_t count = std::fread(piece, 1, sizeof piece, stream))
    bytes.append(piece, count);
  std::fclose(stream);
  return bytes;
}

void SetFileTimes(const std::string& path, int64_t created, int64_t modified) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.times[Native(path)] = {created, modified};
}

void FillDiskAfter(std::optional<uint64_t> bytes) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.writeBudget = bytes;
}

void FailWrites(bool fail) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.failWrites = fail;
}

void FailReadsAfter(std::optional<uint64_t> bytes) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.readBudget = bytes;
}

void FailChangesAfter(std::optional<uint64_t> changes) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.changeBudget = changes;
}

void FailSyncs(bool fail) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.failSyncs = fail;
}

void FailMoves(bool fail) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.failMoves = fail;
}

void DenyWriting(const std::string& prefix) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.noWriting.push_back(Comparable(prefix));
}

void DenyOpening(const std::string& prefix) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.noOpening.push_back(Comparable(prefix));
}

void HideDirectory(const std::string& path) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.hidden.insert(Native(path));
}

void SetFreeSpace(std::optional<uint64_t> bytes) {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  state.freeSpace = bytes;
}

FileCounts CountsOfFiles() {
  State& state = TheState();
  const std::lock_guard lock(state.mutex);
  return state.counts;
}

}  // namespace host
}  // namespace zyr::platform
