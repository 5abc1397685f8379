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

constexpr char kAmericanEnglish[] = "American_English";
constexpr std::string_view kBlanks = " \t\n\v\f\r";
constexpr size_t kLongestPiece = 2047;
constexpr size_t kReadBufferSize = 16384;

std::string_view Trimmed(std::string_view text) {
  const size_t start = text.find_first_not_of(kBlanks);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

std::string FirstWord(std::string_view line) {
  const std::string_view text = Trimmed(line);
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

PhraseTable::PhraseTable() : languageName_(kAmericanEnglish) {}

std::string PhraseTable::Translate(const char* text) {
  if (text == nullptr || *text == '\0') return {};
  if (testMode_) return std::string(std::strlen(text), 'x');
  if (provider_ != nullptr) {
    std::array<char, kProviderBufferSize> buffer{};
    provider_(text, buffer.data(), buffer.size());
    return std::string(buffer.begin(), std::find(buffer.begin(), buffer.end(), '\0'));
  }
  if (loaded_) {
    const auto found = phrases_.find(text);
    if (found != phrases_.end()) return found->second;
  }
  return text;
}

bool PhraseTable::Load(const std::string& path) {
  Reset();
  if (path.empty()) return true;
  BufferedFile file(kReadBufferSize);
  std::string line;
  if (!file.OpenTextRead(path) || !file.ReadLine(&line, kLongestPiece)) return false;
  const std::string name = FirstWord(line);
  if (!name.empty()) languageName_ = name;

  while (file.ReadLine(&line, kLongestPiece)) {
    std::string_view rest = Trimmed(line);
    if (rest.empty() || rest.front() == ';') continue;
    std::optional<std::string> key = TakeQuoted(&rest);
    std::optional<std::string> translation = TakeQuoted(&rest);
    if (!key || !translation) break;
    phrases_.insert_or_assign(std::move(*key), std::move(*translation));
  }
  loaded_ = true;
  fileName_ = path;
  return true;
}

void PhraseTable::Reset() {
  loaded_ = false;
  testMode_ = false;
  provider_ = nullptr;
  fileName_.clear();
  languageName_ = kAmericanEnglish;
  phrases_.clear();
}

bool PhraseTable::IsActive() const { return testMode_ || loaded_ || provider_ != nullptr; }

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
