// Translation of the texts that the user sees.
#pragma once

#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace zyr {

// Maps English texts to another language's, as a phrase file gives them. Any thread may translate
// at any time; all else is for the one thread that loads.
class PhraseTable {
 public:
  static constexpr size_t kProviderBufferSize = 2024;
  // Takes the table's place: writes the translation of `text` into `buffer` of `size` bytes.
  using Provider = void (*)(const char* text, char* buffer, size_t size);

  // The translation, or the text itself; a null text gives an empty string.
  std::string Translate(const char* text) const;

  // Replaces the table by a phrase file's. An empty path means American English and succeeds. False
  // if the file cannot be opened, has no first line or is larger than any phrase file; the table is
  // empty then. A torn line ends the reading, and what stood before it counts.
  bool Load(const std::string& path);
  void Reset();

  // True if texts may come out changed.
  bool IsActive() const;

  const std::string& languageName() const { return contents_.languageName; }
  const std::string& fileName() const { return contents_.fileName; }

  void SetTestMode(bool on);
  void SetProvider(Provider provider);

 private:
  struct Contents {
    std::unordered_map<std::string, std::string> phrases;
    bool loaded = false;
    bool testMode = false;
    Provider provider = nullptr;
    std::string languageName = "American_English";
    std::string fileName;
  };

  static bool Read(const std::string& path, Contents* contents);
  void Replace(Contents contents);

  mutable std::mutex mutex_;  // guards contents_ against those who translate
  Contents contents_;
};

// The one table of the process, constructed at first use; from then on GetPhrase goes through it.
PhraseTable& Phrases();

// The language's name as a phrase file gives it; empty if there is no such file.
std::string GetLanguageName(const std::string& path);

// Full paths of the installed phrase files, in the order of the directory listing.
std::vector<std::string> FindLanguageFiles();

}  // namespace zyr
