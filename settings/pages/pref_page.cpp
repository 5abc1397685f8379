#include "settings/pages/pref_page.h"

#include "foundation/support/error.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/prompt.h"

namespace zyr {

// Controls whose window has gone give nothing, which must not be stored.
bool CPrefPage::OnApply() {
  if (!WasShown()) return true;
  return platform::IsWindowAlive(controls_->window()) && Apply();
}

bool CPrefPage::TellUnlessSaved(bool saved, Scope scope) const {
  if (saved) return true;
  const std::string format =
      scope == Scope::kTwain
          ? GetFormatPhrase(
                "The TWAIN settings could not be saved.  The user may not have appropirate "
                "permissions to save values to the registry.\n\n%s")
          : GetFormatPhrase(
                "The settings could not be saved.  The user may not have appropirate permissions "
                "to save values to the registry.\n\n%s");
  return Refuse(FormatText(format.c_str(), LastErrorText().c_str()),
                GetPhrase("Error Saving Settings"));
}

bool CPrefPage::Refuse(const std::string& text, const std::string& title) const {
  platform::ShowPrompt(controls_->window(), text, title, platform::PromptKind::kError);
  return false;
}

bool CPrefPage::AskForDefaults() const {
  return platform::ShowPrompt(
      controls_->window(),
      GetPhrase("Are you sure you want to set all the values back to their defaults?"),
      GetPhrase("Reset To Defaults"), platform::PromptKind::kQuestion);
}

}  // namespace zyr
