#include "foundation/support/phrase_lookup.h"
#include "settings/pages/page_makers.h"
#include "settings/store.h"

namespace zyr {
namespace {

enum : uint32_t { kMode = 1 };

constexpr int32_t kSingleCapture = 0;  // choices of kMode
constexpr int32_t kContinuousCapture = 1;

// In no group of the options today. Captures go by a setting of the page of TWAIN options.
class CPrefPage_CaptureMode : public CPrefPage {
 public:
  std::string Title() const override { return GetPhrase("Single Or Continuous Capture Mode"); }

  std::vector<PageField> Fields() const override {
    return {{kMode,
             FieldKind::kRadio,
             "",
             {PhraseKey("Capture images in single capture mode"),
              PhraseKey("Capture images in continuous capture mode")}}};
  }

  void OnInitPage() override {
    controls().SetValue(kMode, GetSingleCaptureMode() ? kSingleCapture : kContinuousCapture);
  }

 protected:
  bool Apply() override {
    return TellUnlessSaved(SetSingleCaptureMode(controls().Value(kMode) == kSingleCapture),
                           Scope::kTwain);
  }
};

}  // namespace

std::unique_ptr<CPrefPage> MakeCaptureModePage(OptionsServices&, const std::string&) {
  return std::make_unique<CPrefPage_CaptureMode>();
}

}  // namespace zyr
