// CPrefPage: a page of the options.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "settings/pages/options_services.h"
#include "settings/pages/page_controls.h"
#include "settings/pages/page_field.h"

namespace zyr {

// A page says what it consists of; its controls come into being when it is first shown, and only
// then it loads. User-interface thread only.
class CPrefPage {
 public:
  virtual ~CPrefPage() = default;

  virtual std::string Title() const = 0;  // translated
  virtual std::vector<PageField> Fields() const = 0;

  // First of all, before it is shown. The controls live as long as the page is used; null when the
  // window has gone.
  void SetControls(PageControls* controls) { controls_ = controls; }
  bool WasShown() const { return controls_ != nullptr; }

  // Brings the settings into the controls.
  virtual void OnInitPage() = 0;
  // Checks and stores what the controls hold. False if that was refused or failed, which the user
  // has been told then. A page that was never shown leaves everything alone and answers true; one
  // whose window has gone leaves everything alone and answers false.
  bool OnApply();

  // Events of its controls.
  virtual void OnChanged(uint32_t /*field*/) {}  // by the user
  virtual void OnButton(uint32_t /*field*/) {}   // kButton, and the button of kPicked

 protected:
  // What a page's settings are for, as the user is told when they cannot be saved.
  enum class Scope { kTwain, kSensorFamily };

  virtual bool Apply() = 0;
  PageControls& controls() const { return *controls_; }

  // `saved`, having told the user if it is false; for the results of all setters together.
  bool TellUnlessSaved(bool saved, Scope scope) const;
  // Tells why Apply refuses; false. Both texts come translated.
  bool Refuse(const std::string& text, const std::string& title) const;
  // Whether all controls are to take their defaults.
  bool AskForDefaults() const;

 private:
  PageControls* controls_ = nullptr;
};

// By the name of its class, as in "CPrefPage_BitDepth"; `system` is "ZYR2000" or "ZYR303" for pages
// of a sensor family. Null for a name that there is not. The services must outlive the page.
std::unique_ptr<CPrefPage> CreatePrefPage(const std::string& className, OptionsServices& services,
                                          const std::string& system = {});

}  // namespace zyr
