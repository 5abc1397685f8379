// The classes of characters of an XML text. A byte is a character; those above 127 are in no class.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace zyr::xml {

enum CharacterClass : uint8_t {
  kSpace = 1,
  kNameStart = 2,
  kNameCharacter = 4,
  kDecimalDigit = 8,
  kHexadecimalDigit = 16,
  kText = 32,  // all that does not end character data
};

constexpr std::array<uint8_t, 256> MakeCharacterTable() {
  struct {
    CharacterClass type;
    std::string_view members;
  } constexpr kClasses[] = {
      {kSpace, " \t\n\r"},
      {kNameStart, ":_abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"},
      {kNameCharacter, "-.:_0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"},
      {kDecimalDigit, "0123456789"},
      {kHexadecimalDigit, "0123456789ABCDEFabcdef"},
  };
  std::array<uint8_t, 256> table = {};
  for (const auto& entry : kClasses) {
    for (const char c : entry.members) table[static_cast<uint8_t>(c)] |= entry.type;
  }
  for (unsigned c = 0; c < table.size(); ++c) {
    if (c != '<' && c != '&') table[c] |= kText;
  }
  return table;
}

inline constexpr std::array<uint8_t, 256> kCharacterTable = MakeCharacterTable();

constexpr bool IsOf(CharacterClass type, char c) {
  return (kCharacterTable[static_cast<uint8_t>(c)] & type) != 0;
}

constexpr std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsOf(kSpace, text.front())) text.remove_prefix(1);
  while (!text.empty() && IsOf(kSpace, text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace zyr::xml
