#include "foundation/support/phrase_lookup.h"
#include "settings/pages/check_boxes.h"
#include "settings/pages/page_makers.h"
#include "settings/store.h"

namespace zyr {
namespace {

enum : uint32_t { kDepth = 1, kHistogramStretch, kDepthWarning };

constexpr int32_t k8Bit = 0;  // choices of kDepth
constexpr int32_t k16Bit = 1;

constexpr CheckBoxSetting kBoxes[] = {
    {kHistogramStretch, PhraseKey("Allow histogram stretching"), GetHistStretch, SetHistStretch},
};

class CPrefPage_BitDepth : public CPrefPage {
 public:
  explicit CPrefPage_BitDepth(OptionsServices& services) : services_(services) {}

  std::string Title() const override { return GetPhrase("Image Bit Depth"); }

  std::vector<PageField> Fields() const override {
    return {{kDepth,
             FieldKind::kRadio,
             PhraseKey("What image depth should be returned to the calling application?"),
             {PhraseKey("8 Bit"), PhraseKey("16 Bit")}},
            FieldOf(kBoxes[0]),
            {kDepthWarning, FieldKind::kWarning,
             PhraseKey("WARNING! Changing the bit depth may result in an improperly returned "
                       "image.")}};
  }

  void OnInitPage() override {
    controls().SetValue(kDepth, GetDefaultBitDepth() == 8 ? k8Bit : k16Bit);
    LoadCheckBoxes(controls(), kBoxes);
  }

 protected:
  // The depth counts from now on, whether or not it can be kept for the next time.
  bool Apply() override {
    const uint32_t bits = controls().Value(kDepth) == k8Bit ? 8 : 16;
    services_.SetGrayscaleDepth(bits);
    bool saved = SaveCheckBoxes(controls(), kBoxes);
    saved &= SetDefaultBitDepth(bits);
    return TellUnlessSaved(saved, Scope::kTwain);
  }

 private:
  OptionsServices& services_;
};

}  // namespace

std::unique_ptr<CPrefPage> MakeBitDepthPage(OptionsServices& services, const std::string&) {
  return std::make_unique<CPrefPage_BitDepth>(services);
}

}  // namespace zyr
