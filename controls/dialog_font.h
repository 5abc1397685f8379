// The font of the module's windows: the one that the user has chosen for messages.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace zyr {

// A font that is deleted with this object.
class Font {
 public:
  explicit Font(const LOGFONTW& description) : handle_(CreateFontIndirectW(&description)) {}
  ~Font() {
    if (handle_ != nullptr) DeleteObject(handle_);
  }
  Font(const Font&) = delete;
  Font& operator=(const Font&) = delete;

  HFONT handle() const { return handle_; }

 private:
  HFONT handle_;
};

LOGFONTW MessageFont();
LOGFONTW BoldMessageFont();

// Pixels an inch of the screen, 96 at its plain scale.
int ScreenDpi();
// So many pixels of a screen at its plain scale.
int Scaled(int pixels);

// This module's extended dialog template `id` with the message font in place of its own, so that
// its dialog units follow that font. For CreateDialogIndirectParam. Empty if there is no such
// template.
std::vector<uint8_t> TemplateWithMessageFont(WORD id);
// The size of such a template in dialog units; the window may come out smaller on a small screen.
SIZE TemplateSize(const std::vector<uint8_t>& dialogTemplate);

}  // namespace zyr
