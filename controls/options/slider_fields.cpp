#include "controls/options/slider_fields.h"

// After the system's header.
#include <commctrl.h>

#include <algorithm>
#include <string>

#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/mask_operation.h"
#include "controls/options/labelled_field.h"
#include "controls/text_size.h"

namespace zyr {
namespace {

constexpr LPARAM kPageStep = 10;

// Pixels of a plain screen.
constexpr int kLeastSlider = 120;
constexpr int kSliderHeight = 24;
constexpr int kIndent = 12;  // of a mask below its label

class SliderField : public LabelledField {
 public:
  SliderField(FieldPanel& panel, int firstId, const PageField& field)
      : LabelledField(panel, firstId, field),
        least_(field.least),
        most_(std::max(field.least, field.most)),
        last_(field.least) {
    slider_ = Make(kPartControl, TRACKBAR_CLASSA, TBS_HORZ | TBS_BOTH | TBS_NOTICKS | WS_TABSTOP);
    value_ = Make(kPartExtra, "STATIC", SS_RIGHT | SS_NOPREFIX);
    SendMessageA(slider_, TBM_SETRANGEMIN, FALSE, least_);
    SendMessageA(slider_, TBM_SETRANGEMAX, FALSE, most_);
    SendMessageA(slider_, TBM_SETPAGESIZE, 0, kPageStep);
    SetValue(least_);
  }

  int LabelWidth() const override { return FullLabelWidth(); }
  int LeastWidth() const override { return Scaled(kLeastSlider) + ValueWidth(); }
  int Place(const FieldPlace& place) override {
    const int line = LineHeight(value_);
    const int slider = Scaled(kSliderHeight);
    const int height = std::max(slider, line);
    const Slot slot = PlaceLabel(place, height);
    PlaceWindow(slider_, slot.left, slot.top + (height - slider) / 2, slot.width - ValueWidth(),
                slider);
    PlaceWindow(value_, slot.left + slot.width - ValueWidth(), slot.top + (height - line) / 2,
                ValueWidth(), line);
    return slot.bottom - place.top;
  }
  // It tells several times of one movement, and of its end.
  FieldEvent EventOf(int part, int /*code*/) override {
    if (part != kPartControl || Value() == last_) return FieldEvent::kNone;
    Show();
    return FieldEvent::kChanged;
  }
  bool SetValue(int32_t value) override {
    if (value < least_ || value > most_) return false;
    SendMessageA(slider_, TBM_SETPOS, TRUE, value);
    Show();
    return true;
  }
  int32_t Value() const override {
    return static_cast<int32_t>(SendMessageA(slider_, TBM_GETPOS, 0, 0));
  }

 private:
  void Show() {
    last_ = Value();
    SetWindowTextA(value_, std::to_string(last_).c_str());
  }
  int ValueWidth() const {
    const LONG least = TextSize(value_, std::to_string(least_)).cx;
    const LONG most = TextSize(value_, std::to_string(most_)).cx;
    return static_cast<int>(std::max(least, most)) + Scaled(kFieldGap);
  }

  int32_t least_;
  int32_t most_;
  int32_t last_;
  HWND slider_;
  HWND value_;
};

class MaskField : public LabelledField {
 public:
  MaskField(FieldPanel& panel, int firstId, const PageField& field)
      : LabelledField(panel, firstId, field) {
    Keep(mask_.Create(panel.window, IdOf(kPartControl), panel.font, panel.mnemonics));
    if (field.most > field.least) mask_.SetFactorLimits(field.least, field.most);
  }

  int LabelWidth() const override { return mask_.LabelWidth() + Indent(); }
  int LeastWidth() const override { return mask_.LeastWidth(); }
  int Place(const FieldPlace& place) override {
    const int top = PlaceLabelAbove(place, 0).bottom;
    const int width = place.width - Indent();
    const int height = mask_.Arrange(width, std::max(place.labelWidth - Indent(), 0));
    PlaceWindow(mask_.window(), place.left + Indent(), top, width, height);
    return top + height - place.top;
  }
  FieldEvent EventOf(int part, int code) override {
    return part == kPartControl && code == CKCTRLPMaskOperation::kChanged ? FieldEvent::kChanged
                                                                          : FieldEvent::kNone;
  }
  void SetMask(const MaskOperation& mask) override {
    mask_.SetMaskSize(mask.size);
    mask_.SetFactor(mask.factor);
  }
  MaskOperation Mask() const override { return {mask_.MaskSize(), mask_.Factor()}; }

 private:
  int Indent() const { return label() != nullptr ? Scaled(kIndent) : 0; }

  CKCTRLPMaskOperation mask_;
};

}  // namespace

std::unique_ptr<FieldControl> MakeSliderField(FieldPanel& panel, int firstId,
                                              const PageField& field) {
  return std::make_unique<SliderField>(panel, firstId, field);
}

std::unique_ptr<FieldControl> MakeMaskField(FieldPanel& panel, int firstId,
                                            const PageField& field) {
  return std::make_unique<MaskField>(panel, firstId, field);
}

}  // namespace zyr
