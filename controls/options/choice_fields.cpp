#include "controls/options/choice_fields.h"

#include <algorithm>

#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/options/labelled_field.h"
#include "controls/text_size.h"
#include "foundation/support/phrase_lookup.h"

namespace zyr {
namespace {

constexpr size_t kMostRadioChoices = kPartExtra;

// Pixels of a plain screen.
constexpr int kMark = 18;       // of a check box or radio button, with the gap to its text
constexpr int kMarkLine = 17;   // the least height
constexpr int kBelowLines = 4;  // of a text of several lines, which begins below the upper edge
constexpr int kIndent = 12;     // of radio buttons below their label
constexpr int kBesideChoice = 16;
constexpr SIZE kLeastButton = {84, 26};
constexpr int kBesideCaption = 24;
constexpr int kAboveCaption = 10;  // and below it, together

// What a check box or a radio button has beside its text. The system keeps off by the font, too.
int MarkWidth(HWND button) { return Scaled(kMark) + LineHeight(button) / 2; }

int LeastMarkedWidth(HWND button) {
  return MarkWidth(button) + LongestWordWidth(button, WindowText(button));
}

// A check box or a radio button with its text on as many lines as it takes, the mark at the first
// one. Gives its height.
int PlaceMarked(HWND button, int left, int top, int width) {
  const std::string text = WindowText(button);
  const int oneLine = MarkWidth(button) + static_cast<int>(TextSize(button, text).cx);
  const bool wraps = oneLine > width;
  const int height =
      std::max(WrappedTextHeight(button, text, width - MarkWidth(button)), Scaled(kMarkLine)) +
      (wraps ? Scaled(kBelowLines) : 0);
  const LONG_PTR style = GetWindowLongPtrA(button, GWL_STYLE) & ~LONG_PTR{BS_VCENTER};
  SetWindowLongPtrA(button, GWL_STYLE, style | (wraps ? BS_TOP : BS_VCENTER));
  PlaceWindow(button, left, top, std::min(width, oneLine), height);
  return height;
}

class CheckBoxField : public FieldControl {
 public:
  CheckBoxField(FieldPanel& panel, int firstId, const PageField& field)
      : FieldControl(panel, firstId) {
    box_ = Make(kPartControl, "BUTTON", BS_AUTOCHECKBOX | BS_MULTILINE | WS_TABSTOP | WS_GROUP,
                panel.mnemonics.Mark(GetPhrase(field.label)));
  }

  int LeastWidth() const override { return LeastMarkedWidth(box_); }
  int Place(const FieldPlace& place) override {
    return PlaceMarked(box_, place.left, place.top, place.width);
  }
  FieldEvent EventOf(int /*part*/, int code) override {
    return code == BN_CLICKED ? FieldEvent::kChanged : FieldEvent::kNone;
  }
  bool SetValue(int32_t value) override {
    if (value != 0 && value != 1) return false;
    SendMessageA(box_, BM_SETCHECK, value != 0 ? BST_CHECKED : BST_UNCHECKED, 0);
    return true;
  }
  int32_t Value() const override {
    return SendMessageA(box_, BM_GETCHECK, 0, 0) == BST_CHECKED ? 1 : 0;
  }

 private:
  HWND box_;
};

class RadioField : public LabelledField {
 public:
  RadioField(FieldPanel& panel, int firstId, const PageField& field)
      : LabelledField(panel, firstId, field) {
    for (size_t i = 0; i < std::min(field.choices.size(), kMostRadioChoices); ++i) {
      const DWORD first = i == 0 ? WS_GROUP | WS_TABSTOP : 0;
      buttons_.push_back(Make(static_cast<int>(i), "BUTTON",
                              BS_AUTORADIOBUTTON | BS_MULTILINE | first,
                              panel.mnemonics.Mark(GetPhrase(field.choices[i]))));
    }
  }

  int LeastWidth() const override {
    int width = 0;
    for (const HWND button : buttons_) width = std::max(width, LeastMarkedWidth(button));
    return width + Scaled(kIndent);
  }
  int Place(const FieldPlace& place) override {
    const int indent = label() != nullptr ? Scaled(kIndent) : 0;
    int top = PlaceLabelAbove(place, 0).bottom;
    for (const HWND button : buttons_) {
      if (button != buttons_.front()) top += Scaled(kLabelGap);
      top += PlaceMarked(button, place.left + indent, top, place.width - indent);
    }
    return top - place.top;
  }
  FieldEvent EventOf(int part, int code) override {
    return part < kPartExtra && code == BN_CLICKED ? FieldEvent::kChanged : FieldEvent::kNone;
  }
  // The keyboard comes to the one that is chosen.
  bool SetValue(int32_t value) override {
    if (value < -1 || value >= static_cast<int32_t>(buttons_.size())) return false;
    for (size_t i = 0; i < buttons_.size(); ++i) {
      const bool chosen = static_cast<int32_t>(i) == value;
      SendMessageA(buttons_[i], BM_SETCHECK, chosen ? BST_CHECKED : BST_UNCHECKED, 0);
      const LONG_PTR style = GetWindowLongPtrA(buttons_[i], GWL_STYLE) & ~LONG_PTR{WS_TABSTOP};
      const bool reached = chosen || (value == -1 && i == 0);
      SetWindowLongPtrA(buttons_[i], GWL_STYLE, reached ? style | WS_TABSTOP : style);
    }
    return true;
  }
  int32_t Value() const override {
    const auto chosen = std::find_if(buttons_.begin(), buttons_.end(), [](HWND button) {
      return SendMessageA(button, BM_GETCHECK, 0, 0) == BST_CHECKED;
    });
    return chosen != buttons_.end() ? static_cast<int32_t>(chosen - buttons_.begin()) : -1;
  }

 private:
  std::vector<HWND> buttons_;
};

class ChoiceField : public LabelledField {
 public:
  ChoiceField(FieldPanel& panel, int firstId, const PageField& field)
      : LabelledField(panel, firstId, field) {
    box_ = Make(kPartControl, "COMBOBOX", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP);
    for (const char* const choice : field.choices) {
      const std::string text = GetPhrase(choice);
      SendMessageA(box_, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
      textWidth_ = std::max(textWidth_, static_cast<int>(TextSize(box_, text).cx));
    }
  }

  int LabelWidth() const override { return FullLabelWidth(); }
  int LeastWidth() const override {
    return textWidth_ + GetSystemMetrics(SM_CXVSCROLL) + Scaled(kBesideChoice);
  }
  int Place(const FieldPlace& place) override {
    const int height = WindowHeight(box_);
    const Slot slot = PlaceLabel(place, height);
    PlaceWindow(box_, slot.left, slot.top, std::min(LeastWidth(), slot.width), height);
    SendMessageA(box_, CB_SETDROPPEDWIDTH, static_cast<WPARAM>(LeastWidth()), 0);
    return slot.bottom - place.top;
  }
  FieldEvent EventOf(int part, int code) override {
    return part == kPartControl && code == CBN_SELCHANGE ? FieldEvent::kChanged : FieldEvent::kNone;
  }
  bool SetValue(int32_t value) override {
    if (value < -1 || value >= SendMessageA(box_, CB_GETCOUNT, 0, 0)) return false;
    SendMessageA(box_, CB_SETCURSEL, static_cast<WPARAM>(value), 0);
    return true;
  }
  int32_t Value() const override {
    return static_cast<int32_t>(SendMessageA(box_, CB_GETCURSEL, 0, 0));
  }

 private:
  HWND box_;
  int textWidth_ = 0;
};

class ButtonField : public FieldControl {
 public:
  ButtonField(FieldPanel& panel, int firstId, const PageField& field)
      : FieldControl(panel, firstId) {
    button_ = Make(kPartControl, "BUTTON", BS_PUSHBUTTON | BS_MULTILINE | WS_TABSTOP | WS_GROUP,
                   panel.mnemonics.Mark(GetPhrase(field.label)));
  }

  int LeastWidth() const override {
    return LongestWordWidth(button_, WindowText(button_)) + Scaled(kBesideCaption);
  }
  int Place(const FieldPlace& place) override {
    const std::string text = WindowText(button_);
    const int beside = Scaled(kBesideCaption);
    const int full = static_cast<int>(TextSize(button_, text).cx) + beside;
    const int width = std::min(std::max(full, Scaled(kLeastButton.cx)), place.width);
    const int height =
        std::max(WrappedTextHeight(button_, text, width - beside) + Scaled(kAboveCaption),
                 Scaled(kLeastButton.cy));
    PlaceWindow(button_, place.left, place.top, width, height);
    return height;
  }
  FieldEvent EventOf(int /*part*/, int code) override {
    return code == BN_CLICKED ? FieldEvent::kButton : FieldEvent::kNone;
  }

 private:
  HWND button_;
};

}  // namespace

std::unique_ptr<FieldControl> MakeCheckBoxField(FieldPanel& panel, int firstId,
                                                const PageField& field) {
  return std::make_unique<CheckBoxField>(panel, firstId, field);
}

std::unique_ptr<FieldControl> MakeRadioField(FieldPanel& panel, int firstId,
                                             const PageField& field) {
  return std::make_unique<RadioField>(panel, firstId, field);
}

std::unique_ptr<FieldControl> MakeChoiceField(FieldPanel& panel, int firstId,
                                              const PageField& field) {
  return std::make_unique<ChoiceField>(panel, firstId, field);
}

std::unique_ptr<FieldControl> MakeButtonField(FieldPanel& panel, int firstId,
                                              const PageField& field) {
  return std::make_unique<ButtonField>(panel, firstId, field);
}

}  // namespace zyr
