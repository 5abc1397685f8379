#include "settings/phrases.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "foundation/support/buffered_file.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/files.h"
#include "settings/directories.h"

namespace zyr {
namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";
constexpr size_t kLongestPiece = 2047;
constexpr size_t kReadBufferSize = 16384;
// A hundred times and more what all texts of the system take.
constexpr int64_t kLargestFile = 16 << 20;

std::string_view Trimmed(std::string_view text) {
  const size_t start = text.find_first_not_of(kBlanks);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

std::string FirstWord(std::string_view line) {
  const std::string_view text = Trimmed(line.substr(0, line.find('\0')));
  return std::string(text.substr(0, text.find_first_of(kBlanks)));
}

// The two characters "\n" stand for a line feed.
std::string WithLineFeeds(std::string_view text) {
  std::string unescaped;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool lineFeed = text.substr(i, 2) == "\\n";
    unescaped += lineFeed ? '\n' : text[i];
    if (lineFeed) ++i;
  }
  return unescaped;
}

// What stands between the next two quotation marks, which are cut off from `line` with all before
// them.
std::optional<std::string> TakeQuoted(std::string_view* line) {
  const size_t opening = line->find('"');
  if (opening == std::string_view::npos) return std::nullopt;
  const size_t closing = line->find('"', opening + 1);
  if (closing == std::string_view::npos) return std::nullopt;
  const std::string_view quoted = line->substr(opening + 1, closing - opening - 1);
  line->remove_prefix(closing + 1);
  return WithLineFeeds(quoted);
}

// The global table, and the way of the lower floors to it for as long as it lives.
struct InstalledTable {
  InstalledTable() {
    SetPhraseLookup([](const char* text) { return Phrases().Translate(text); });
  }
  ~InstalledTable() { SetPhraseLookup(nullptr); }
  InstalledTable(const InstalledTable&) = delete;
  InstalledTable& operator=(const InstalledTable&) = delete;

  PhraseTable table;
};

}  // namespace

std::string PhraseTable::Translate(const char* text) const {
  if (text == nullptr || *text == '\0') return {};
  std::unique_lock lock(mutex_);
  if (contents_.testMode) return std::string(std::strlen(text), 'x');
  if (const Provider provider = contents_.provider; provider != nullptr) {
    lock.unlock();
    std::array<char, kProviderBufferSize> buffer{};
    provider(text, buffer.data(), buffer.size());
    return std::string(buffer.begin(), std::find(buffer.begin(), buffer.end(), '\0'));
  }
  if (contents_.loaded) {
    const auto found = contents_.phrases.find(text);
    if (found != contents_.phrases.end()) return found->second;
  }
  return text;
}

bool PhraseTable::Load(const std::string& path) {
  Contents contents;
  const bool read = path.empty() || Read(path, &contents);
  Replace(std::move(contents));
  return read;
}

bool PhraseTable::Read(const std::string& path, Contents* contents) {
  BufferedFile file(kReadBufferSize);
  std::string line;
  if (!file.OpenTextRead(path) || file.Length() > kLargestFile) return false;
  if (!file.ReadLine(&line, kLongestPiece)) return false;
  const std::string name = FirstWord(line);
  if (!name.empty()) contents->languageName = name;

  while (file.ReadLine(&line, kLongestPiece)) {
    std::string_view rest = Trimmed(line);
    if (rest.empty() || rest.front() == ';') continue;
    std::optional<std::string> key = TakeQuoted(&rest);
    std::optional<std::string> translation = TakeQuoted(&rest);
    if (!key || !translation) break;
    contents->phrases.insert_or_assign(std::move(*key), std::move(*translation));
  }
  contents->loaded = true;
  contents->fileName = path;
  return true;
}

void PhraseTable::Reset() { Replace({}); }

// What was there is freed when the lock is gone.
void PhraseTable::Replace(Contents contents) {
  const std::lock_guard lock(mutex_);
  std::swap(contents_, contents);
}

void PhraseTable::SetTestMode(bool on) {
  const std::lock_guard lock(mutex_);
  contents_.testMode = on;
}

void PhraseTable::SetProvider(Provider provider) {
  const std::lock_guard lock(mutex_);
  contents_.provider = provider;
}

bool PhraseTable::IsActive() const {
  return contents_.testMode || contents_.loaded || contents_.provider != nullptr;
}

PhraseTable& Phrases() {
  static InstalledTable installed;
  return installed.table;
}

std::string GetLanguageName(const std::string& path) {
  BufferedFile file;
  std::string line;
  if (!file.OpenTextRead(path) || !file.ReadLine(&line, kLongestPiece)) return {};
  return FirstWord(line);
}

std::vector<std::string> FindLanguageFiles() {
  const std::string directory = GetLanguagesDirectory();
  std::vector<std::string> paths;
  for (const std::string& name : platform::ListFiles(directory, "*.Phrases")) {
    paths.push_back(FormatText("%s\\%s", directory.c_str(), name.c_str()));
  }
  return paths;
}

}  // namespace zyr
