#include "foundation/support/phrase_lookup.h"
#include "settings/pages/check_boxes.h"
#include "settings/pages/page_makers.h"
#include "settings/store.h"

namespace zyr {
namespace {

enum : uint32_t {
  kReturnAfterCapture = 1,
  kReturnIfAvailable,
  kOnlyOneImage,
  kProceedToScan,
  kLog,
  kCheckConflicts,
  kManuallyTrigger,
  kCaptureMode,
  kModeNote,
};

constexpr int32_t kSingleCapture = 0;  // choices of kCaptureMode
constexpr int32_t kContinuousCapture = 1;

constexpr CheckBoxSetting kBoxes[] = {
    {kReturnAfterCapture, PhraseKey("Return immediately after capture"),
     GetReturnImmediatelyAfterCap, SetReturnImmediatelyAfterCap},
    {kReturnIfAvailable, PhraseKey("Return immediately if cached images are available"),
     GetReturnImmediatelyIfAvailable, SetReturnImmediatelyIfAvailable},
    {kOnlyOneImage, PhraseKey("Always indicate that only one image is available"),
     GetOnlyReturnOneImage, SetOnlyReturnOneImage},
    {kProceedToScan, PhraseKey("Immediately proceed with acquiring a new image"),
     GetProceedDirectlyToScan, SetProceedDirectlyToScan},
    {kLog, PhraseKey("Generate a log file"), GetLogging, SetLogging},
    {kCheckConflicts, PhraseKey("Check for conflicts"), GetCheckForConflicts, SetCheckForConflicts},
    {kManuallyTrigger, PhraseKey("Display the 'Manually Trigger' option during image acquisition"),
     GetDisplayManuallyTrigger, SetDisplayManuallyTrigger},
};

class CPrefPage_TWAINOptions : public CPrefPage {
 public:
  std::string Title() const override { return GetPhrase("TWAIN Specific Options"); }

  std::vector<PageField> Fields() const override {
    std::vector<PageField> fields;
    for (const CheckBoxSetting& box : kBoxes) fields.push_back(FieldOf(box));
    fields.push_back({kCaptureMode,
                      FieldKind::kChoice,
                      "",
                      {PhraseKey("Capture images in single capture mode"),
                       PhraseKey("Capture images in continuous capture mode")}});
    fields.push_back(
        {kModeNote, FieldKind::kNote,
         PhraseKey("NOTE:\nContinuous capture mode overrides the option 'Return immediately after "
                   "capture'.")});
    return fields;
  }

  void OnInitPage() override {
    LoadCheckBoxes(controls(), kBoxes);
    controls().SetValue(kCaptureMode,
                        GetSISingleCaptureMode() ? kSingleCapture : kContinuousCapture);
    checkedConflicts_ = ChecksConflicts();
  }

 protected:
  bool Apply() override {
    bool saved = SaveCheckBoxes(controls(), kBoxes);
    saved &= SetSISingleCaptureMode(controls().Value(kCaptureMode) == kSingleCapture);
    if (!checkedConflicts_ && ChecksConflicts()) saved &= SetDisplayConflictsMsg(true);
    return TellUnlessSaved(saved, Scope::kTwain);
  }

 private:
  bool ChecksConflicts() const { return controls().Value(kCheckConflicts) == 1; }

  bool checkedConflicts_ = false;  // as the page was loaded
};

}  // namespace

std::unique_ptr<CPrefPage> MakeTwainOptionsPage(OptionsServices&, const std::string&) {
  return std::make_unique<CPrefPage_TWAINOptions>();
}

}  // namespace zyr
