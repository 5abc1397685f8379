#include "controls/options/text_fields.h"

#include <algorithm>
#include <string>

#include "controls/dialog_font.h"
#include "controls/dialog_window.h"
#include "controls/options/labelled_field.h"
#include "controls/text_size.h"
#include "foundation/support/phrase_lookup.h"
#include "foundation/support/raised_flag.h"

namespace zyr {
namespace {

constexpr size_t kMostDigits = 9;

// Pixels of a plain screen.
constexpr int kAroundText = 7;  // of an edit, border and all; the text stands at its top
constexpr int kBesideText = 16;
constexpr int kLeastNumber = 64;
constexpr int kLeastPath = 160;
constexpr int kPickButton = 32;
constexpr int kWarningIcon = 20;

int EditHeight(HWND edit) { return LineHeight(edit) + Scaled(kAroundText); }

class NoteField : public FieldControl {
 public:
  NoteField(FieldPanel& panel, int firstId, const PageField& field) : FieldControl(panel, firstId) {
    text_ = Make(kPartControl, "STATIC", SS_LEFT | SS_NOPREFIX | WS_GROUP, GetPhrase(field.label));
  }

  int LeastWidth() const override { return LongestWordWidth(text_, WindowText(text_)); }
  int Place(const FieldPlace& place) override {
    const int height = WrappedTextHeight(text_, WindowText(text_), place.width);
    PlaceWindow(text_, place.left, place.top, place.width, height);
    return height;
  }

 protected:
  HWND text() const { return text_; }

 private:
  HWND text_;
};

// Bold, behind an icon that the page draws.
class WarningField : public NoteField {
 public:
  WarningField(FieldPanel& panel, int firstId, const PageField& field)
      : NoteField(panel, firstId, field) {
    SendMessageA(text(), WM_SETFONT, reinterpret_cast<WPARAM>(panel.boldFont), FALSE);
    icon_ = Make(kPartExtra, "STATIC", SS_OWNERDRAW);
  }

  int LeastWidth() const override { return NoteField::LeastWidth() + BesideIcon(); }
  int Place(const FieldPlace& place) override {
    FieldPlace rest = place;
    rest.left += BesideIcon();
    rest.width -= BesideIcon();
    const int icon = Scaled(kWarningIcon);
    const int firstLine = LineHeight(text());
    rest.top += std::max((icon - firstLine) / 2, 0);
    PlaceWindow(icon_, place.left, place.top + std::max((firstLine - icon) / 2, 0), icon, icon);
    return std::max(NoteField::Place(rest) + rest.top - place.top, icon);
  }

 private:
  static int BesideIcon() { return Scaled(kWarningIcon) + Scaled(kFieldGap); }

  HWND icon_;
};

class NumberField : public LabelledField {
 public:
  NumberField(FieldPanel& panel, int firstId, const PageField& field)
      : LabelledField(panel, firstId, field),
        digits_(field.most > 0 ? std::to_string(field.most).size() : kMostDigits) {
    edit_ =
        Make(kPartControl, "EDIT", ES_NUMBER | ES_AUTOHSCROLL | WS_TABSTOP, {}, WS_EX_CLIENTEDGE);
    SendMessageA(edit_, EM_LIMITTEXT, digits_, 0);
  }

  int LabelWidth() const override { return FullLabelWidth(); }
  int LeastWidth() const override {
    const SIZE text = TextSize(edit_, std::string(digits_, '0'));
    return std::max(static_cast<int>(text.cx) + Scaled(kBesideText), Scaled(kLeastNumber));
  }
  int Place(const FieldPlace& place) override {
    const int height = EditHeight(edit_);
    const Slot slot = PlaceLabel(place, height);
    PlaceWindow(edit_, slot.left, slot.top, std::min(LeastWidth(), slot.width), height);
    return slot.bottom - place.top;
  }

  FieldEvent EventOf(int part, int code) override {
    return part == kPartControl && code == EN_CHANGE && !setting_ ? FieldEvent::kChanged
                                                                  : FieldEvent::kNone;
  }
  void SetText(const std::string& text) override {
    const RaisedFlag setting(setting_);
    SetWindowTextA(edit_, text.c_str());
  }
  std::string Text() const override { return WindowText(edit_); }

 private:
  size_t digits_;
  HWND edit_;
  bool setting_ = false;
};

class PickedField : public LabelledField {
 public:
  PickedField(FieldPanel& panel, int firstId, const PageField& field)
      : LabelledField(panel, firstId, field) {
    edit_ =
        Make(kPartControl, "EDIT", ES_READONLY | ES_AUTOHSCROLL | WS_TABSTOP, {}, WS_EX_CLIENTEDGE);
    button_ = Make(kPartExtra, "BUTTON", BS_PUSHBUTTON | WS_TABSTOP | WS_GROUP, "...");
  }

  int LeastWidth() const override { return Scaled(kLeastPath); }
  int Place(const FieldPlace& place) override {
    const int height = EditHeight(edit_);
    const int button = std::max(Scaled(kPickButton), height);
    const Slot slot = PlaceLabelAbove(place, height);
    const int width = slot.width - button - Scaled(kLabelGap);
    PlaceWindow(edit_, slot.left, slot.top, width, height);
    PlaceWindow(button_, slot.left + slot.width - button, slot.top, button, height);
    return slot.bottom - place.top;
  }

  FieldEvent EventOf(int part, int code) override {
    return part == kPartExtra && code == BN_CLICKED ? FieldEvent::kButton : FieldEvent::kNone;
  }
  void SetText(const std::string& text) override { SetWindowTextA(edit_, text.c_str()); }
  std::string Text() const override { return WindowText(edit_); }

 private:
  HWND edit_;
  HWND button_;
};

}  // namespace

std::unique_ptr<FieldControl> MakeNoteField(FieldPanel& panel, int firstId,
                                            const PageField& field) {
  return std::make_unique<NoteField>(panel, firstId, field);
}

std::unique_ptr<FieldControl> MakeWarningField(FieldPanel& panel, int firstId,
                                               const PageField& field) {
  return std::make_unique<WarningField>(panel, firstId, field);
}

std::unique_ptr<FieldControl> MakeNumberField(FieldPanel& panel, int firstId,
                                              const PageField& field) {
  return std::make_unique<NumberField>(panel, firstId, field);
}

std::unique_ptr<FieldControl> MakePickedField(FieldPanel& panel, int firstId,
                                              const PageField& field) {
  return std::make_unique<PickedField>(panel, firstId, field);
}

}  // namespace zyr
