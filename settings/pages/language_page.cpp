#include <algorithm>

#include "foundation/support/files.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/ascii.h"
#include "settings/pages/page_makers.h"
#include "settings/phrases.h"
#include "settings/store.h"

namespace zyr {
namespace {

enum : uint32_t { kLanguages = 1, kLanguageNote };

struct Language {
  std::string name;
  std::string path;  // empty for the language that the texts in the program have
};

// The program's own language comes first, unless a phrase file is installed for it.
std::vector<Language> FindLanguages() {
  const std::string own = PhraseTable().languageName();
  std::vector<Language> languages;
  for (const std::string& path : FindLanguageFiles()) {
    const std::string name = GetLanguageName(path);
    languages.push_back({name.empty() ? FileNameOf(path) : name, path});
  }
  const bool isInstalled =
      std::any_of(languages.begin(), languages.end(),
                  [&](const Language& language) { return EqualIgnoringCase(language.name, own); });
  if (!isInstalled) languages.insert(languages.begin(), {own, ""});
  return languages;
}

class CPrefPage_Language : public CPrefPage {
 public:
  std::string Title() const override { return GetPhrase("Language"); }

  std::vector<PageField> Fields() const override {
    return {{kLanguages, FieldKind::kLines},
            {kLanguageNote, FieldKind::kNote,
             PhraseKey("NOTE:\nThe language displayed by this interface will not be displayed in a "
                       "new language until the next time you access this TWAIN source.")}};
  }

  void OnInitPage() override {
    languages_ = FindLanguages();
    std::vector<std::string> names;
    for (const Language& language : languages_) names.push_back(language.name);
    controls().SetLines(kLanguages, names);
    controls().SetValue(kLanguages, PresentLine());
  }

 protected:
  // A file that gives no phrases would leave the user with neither language.
  bool Apply() override {
    const int32_t line = controls().Value(kLanguages);
    if (line < 0 || static_cast<size_t>(line) >= languages_.size()) return true;
    const Language& chosen = languages_[static_cast<size_t>(line)];
    if (!PhraseTable().Load(chosen.path)) return RefuseUnreadable(chosen.path);
    if (!TellUnlessSaved(SetLanguageFile(chosen.path), Scope::kTwain)) return false;
    Phrases().Load(GetLanguageFile());
    return true;
  }

 private:
  int32_t PresentLine() const {
    const std::string present = GetLanguageFile();
    const std::string own = PhraseTable().languageName();
    for (size_t i = 0; i < languages_.size(); ++i) {
      const Language& language = languages_[i];
      const bool isPresent = present.empty() ? EqualIgnoringCase(language.name, own)
                                             : EqualIgnoringCase(language.path, present);
      if (isPresent) return static_cast<int32_t>(i);
    }
    return -1;
  }

  bool RefuseUnreadable(const std::string& path) const {
    const std::string format =
        GetFormatPhrase("The language was not changed.  The file '%s' could not be read.");
    return Refuse(FormatText(format.c_str(), path.c_str()), GetPhrase("Language"));
  }

  std::vector<Language> languages_;  // by line
};

}  // namespace

std::unique_ptr<CPrefPage> MakeLanguagePage(OptionsServices&, const std::string&) {
  return std::make_unique<CPrefPage_Language>();
}

}  // namespace zyr
