// A phrase file comes from outside: whatever it holds, it loads or is refused, and no translation
// in it makes a formatter read arguments that are not there.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/host/host.h"
#include "settings/phrases.h"

namespace {

using zyr::FormatText;
using zyr::GetFormatPhrase;
using zyr::SameDirectives;

constexpr char kPath[] = "C:\\fuzz.Phrases";

void Require(bool holds) {
  if (!holds) std::abort();
}

// Fills the text as a caller of `format` would, if it may stand for that format.
template <typename... Arguments>
void TryInPlaceOf(const char* format, const std::string& text, Arguments... arguments) {
  if (SameDirectives(format, text.c_str())) FormatText(text.c_str(), arguments...);
  FormatText(GetFormatPhrase(format).c_str(), arguments...);
}

// Looks up what stands between two quotation marks: each key of the file is among that.
void LookUp(std::string key) {
  for (size_t at; (at = key.find("\\n")) != std::string::npos;) key.replace(at, 2, "\n");
  const std::string translation = zyr::Phrases().Translate(key.c_str());
  const std::string format = GetFormatPhrase(key.c_str());
  Require(format == translation || format == key.c_str());
  Require(format == key.c_str() || SameDirectives(key.c_str(), format.c_str()));

  TryInPlaceOf("no argument", translation, 0);
  TryInPlaceOf("%s", translation, "text");
  TryInPlaceOf("%lu", translation, 5ul);
  TryInPlaceOf("%lu of %s", translation, 7ul, "text");
  TryInPlaceOf("%.2lf", translation, 2.5);
  TryInPlaceOf("%*d%c", translation, 12, 34, 'c');
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  zyr::platform::host::PutFile(kPath, bytes);
  zyr::PhraseTable& table = zyr::Phrases();
  const bool loaded = table.Load(kPath);
  Require(loaded == !bytes.empty());
  Require(table.IsActive() == loaded);
  Require(!table.languageName().empty());
  zyr::GetLanguageName(kPath);

  for (size_t start = 0; (start = bytes.find('"', start)) != std::string_view::npos;) {
    const size_t end = bytes.find('"', ++start);
    if (end == std::string_view::npos) break;
    LookUp(std::string(bytes.substr(start, end - start)));
  }
  return 0;
}
