#include "controls/mnemonics.h"

#include "controls/dialog_window.h"
#include "platform/ascii.h"

namespace zyr {
namespace {

constexpr char kMark = '&';

// Letters beyond ASCII are not on every keyboard.
bool CanBeMnemonic(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// The length of the character at `at`, whose second byte may look like a letter.
size_t CharacterBytes(const std::string& text, size_t at) {
  return IsDBCSLeadByte(static_cast<BYTE>(text[at])) && at + 1 < text.size() ? 2 : 1;
}

// Where the letter of a marked caption is.
std::optional<size_t> MarkedLetter(const std::string& caption) {
  for (size_t i = 0; i + 1 < caption.size(); i += CharacterBytes(caption, i)) {
    if (caption[i] != kMark) continue;
    if (CanBeMnemonic(caption[i + 1])) return i + 1;
    ++i;  // it stands for itself
  }
  return std::nullopt;
}

}  // namespace

std::string Mnemonics::Mark(const std::string& caption) {
  std::string marked = caption;
  if (const std::optional<size_t> chosen = MarkedLetter(caption)) {
    if (Take(caption[*chosen])) return caption;
    marked.erase(*chosen - 1, 1);
  }
  const std::optional<size_t> letter = FreeLetter(marked);
  if (!letter) return marked;
  Take(marked[*letter]);
  return marked.insert(*letter, 1, kMark);
}

std::optional<size_t> Mnemonics::FreeLetter(const std::string& caption) const {
  std::optional<size_t> first;
  bool wordBegins = true;
  for (size_t i = 0; i < caption.size(); i += CharacterBytes(caption, i)) {
    if (CanBeMnemonic(caption[i]) && !IsTaken(caption[i])) {
      if (wordBegins) return i;
      if (!first) first = i;
    }
    wordBegins = caption[i] == ' ';
  }
  return first;
}

bool Mnemonics::Take(char letter) {
  if (IsTaken(letter)) return false;
  taken_ += LowerAscii(letter);
  return true;
}

void Mnemonics::Release(const std::string& marked) {
  const std::optional<size_t> letter = MarkedLetter(marked);
  if (!letter) return;
  const size_t at = taken_.find(LowerAscii(marked[*letter]));
  if (at != std::string::npos) taken_.erase(at, 1);
}

bool Mnemonics::IsTaken(char letter) const {
  return taken_.find(LowerAscii(letter)) != std::string::npos;
}

void SetMarkedCaption(HWND control, const std::string& caption, Mnemonics& mnemonics) {
  mnemonics.Release(WindowText(control));
  SetWindowTextA(control, mnemonics.Mark(caption).c_str());
}

void MarkCaption(HWND control, Mnemonics& mnemonics) {
  SetWindowTextA(control, mnemonics.Mark(WindowText(control)).c_str());
}

}  // namespace zyr
