#include "foundation/support/phrase_lookup.h"
#include "settings/pages/page_makers.h"

namespace zyr {
namespace {

enum : uint32_t { kSettings = 1, kSupportNote };

class CPrefPage_TWAINSettings : public CPrefPage {
 public:
  explicit CPrefPage_TWAINSettings(OptionsServices& services) : services_(services) {}

  std::string Title() const override { return GetPhrase("Current TWAIN Settings"); }

  std::vector<PageField> Fields() const override {
    return {{kSettings, FieldKind::kTable},
            {kSupportNote, FieldKind::kNote,
             PhraseKey("These TWAIN settings are for diagnostic purposes by technical support "
                       "representatives.")}};
  }

  void OnInitPage() override { services_.FillSettingsList(&controls().Table(kSettings)); }

 protected:
  bool Apply() override { return true; }

 private:
  OptionsServices& services_;
};

}  // namespace

std::unique_ptr<CPrefPage> MakeTwainSettingsPage(OptionsServices& services, const std::string&) {
  return std::make_unique<CPrefPage_TWAINSettings>(services);
}

}  // namespace zyr
