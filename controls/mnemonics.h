// The underlined letters by which the keyboard reaches the buttons of a dialog.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>

namespace zyr {

// Deals letters and digits out to captions, each once. Captions come in the user's code page and as
// they stand in the phrase files: mostly without a mnemonic.
class Mnemonics {
 public:
  // The caption with an ampersand before a letter that was still free: the first one that begins a
  // word, or else any. As it is if none is free. A mnemonic that the caption brings along stays if
  // its letter is free, and is taken away otherwise.
  std::string Mark(const std::string& caption);
  // The mnemonic of a marked caption is free again.
  void Release(const std::string& marked);

 private:
  std::optional<size_t> FreeLetter(const std::string& caption) const;
  bool Take(char letter);  // false if it is taken already
  bool IsTaken(char letter) const;

  std::string taken_;  // lower case
};

// Gives a button, or the label before a field, that caption with a mnemonic, in place of the one it
// has now.
void SetMarkedCaption(HWND control, const std::string& caption, Mnemonics& mnemonics);
// The same for the caption that it has, which has got no mnemonic here so far.
void MarkCaption(HWND control, Mnemonics& mnemonics);

}  // namespace zyr
