// Translation of the texts that the user sees.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

namespace zyr {

// Maps English texts to another language's, as a phrase file gives them. Written on the dialog's
// thread at load time, read everywhere without a lock.
class PhraseTable {
 public:
  static constexpr size_t kProviderBufferSize = 2024;
  // Takes the table's place: writes the translation of `text` into `buffer` of `size` bytes.
  using Provider = void (*)(const char* text, char* buffer, size_t size);

  PhraseTable();

  // The translation, or the text itself; a null text gives an empty string.
  std::string Translate(const char* text);

  // Replaces the table by a phrase file's. An empty path means American English and succeeds. False
  // if the file cannot be opened or has no first line; the table is empty then. A torn line ends
  // the reading, and what stood before it counts.
  bool Load(const std::string& path);
  void Reset();

  // True if texts may come out changed.
  bool IsActive() const;

  const std::string& languageName() const { return languageName_; }
  const std::string& fileName() const { return fileName_; }

  void SetTestMode(bool on) { testMode_ = on; }
  void SetProvider(Provider provider) { provider_ = provider; }

 private:
  std::unordered_map<std::string, std::string> phrases_;
  bool loaded_ = false;
  bool testMode_ = false;
  Provider provider_ = nullptr;
  std::string languageName_;
  std::string fileName_;
};

// The one table of the process, constructed at first use; from then on GetPhrase goes through it.
PhraseTable& Phrases();

// The language's name as a phrase file gives it; empty if there is no such file.
std::string GetLanguageName(const std::string& path);

// Full paths of the installed phrase files, in the order of the directory listing.
std::vector<std::string> FindLanguageFiles();

}  // namespace zyr
