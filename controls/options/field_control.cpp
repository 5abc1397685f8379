#include "controls/options/field_control.h"

#include <new>

#include "controls/options/choice_fields.h"
#include "controls/options/list_fields.h"
#include "controls/options/slider_fields.h"
#include "controls/options/text_fields.h"
#include "foundation/support/phrase_lookup.h"
#include "platform/resources.h"

namespace zyr {

HWND FieldControl::Make(int part, const char* className, DWORD style, const std::string& text,
                        DWORD extendedStyle) {
  const HWND window = CreateWindowExA(extendedStyle, className, text.c_str(),
                                      WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, panel_.window,
                                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(IdOf(part))),
                                      static_cast<HINSTANCE>(platform::OwnResources()), nullptr);
  // A page without one of its controls would store zeros for what it does not show.
  if (window == nullptr) throw std::bad_alloc();
  SendMessageA(window, WM_SETFONT, reinterpret_cast<WPARAM>(panel_.font), FALSE);
  windows_.push_back(window);
  return window;
}

HWND FieldControl::MakeLabel(const char* english) {
  const std::string text = english != nullptr ? GetPhrase(english) : std::string();
  if (text.empty()) return nullptr;
  return Make(kPartLabel, "STATIC", SS_LEFT | WS_GROUP, panel_.mnemonics.Mark(text));
}

// The keyboard must not stay where it does nothing.
void FieldControl::Enable(bool enabled) const {
  const HWND focus = GetFocus();
  for (const HWND window : windows_) {
    if (!enabled && focus != nullptr && (focus == window || IsChild(window, focus))) {
      SendMessageA(GetAncestor(window, GA_ROOT), WM_NEXTDLGCTL, 0, FALSE);
    }
    EnableWindow(window, enabled);
  }
}

std::unique_ptr<FieldControl> MakeFieldControl(FieldPanel& panel, int firstId,
                                               const PageField& field) {
  switch (field.kind) {
    case FieldKind::kNote:
      return MakeNoteField(panel, firstId, field);
    case FieldKind::kWarning:
      return MakeWarningField(panel, firstId, field);
    case FieldKind::kCheckBox:
      return MakeCheckBoxField(panel, firstId, field);
    case FieldKind::kRadio:
      return MakeRadioField(panel, firstId, field);
    case FieldKind::kChoice:
      return MakeChoiceField(panel, firstId, field);
    case FieldKind::kSlider:
      return MakeSliderField(panel, firstId, field);
    case FieldKind::kNumber:
      return MakeNumberField(panel, firstId, field);
    case FieldKind::kMask:
      return MakeMaskField(panel, firstId, field);
    case FieldKind::kPicked:
      return MakePickedField(panel, firstId, field);
    case FieldKind::kLines:
      return MakeLinesField(panel, firstId, field);
    case FieldKind::kTable:
      return MakeTableField(panel, firstId, field);
    case FieldKind::kButton:
      return MakeButtonField(panel, firstId, field);
  }
  return nullptr;
}

}  // namespace zyr
