// The way to the translation of a user-visible text. The English text is the key.
#pragma once

#include <string>

namespace zyr {

using PhraseLookup = std::string (*)(const char* text);

// Installs the translation table's lookup; null takes it away again, and texts stay English.
void SetPhraseLookup(PhraseLookup lookup);

// The translation, or the text itself. A null text gives an empty string.
std::string GetPhrase(const char* text);

// The translation of a printf format, for handing to a formatter. A translation whose directives
// are not those of `format`, in kind and order, is passed over and the English text taken: a phrase
// file comes from outside and must not make the formatter read arguments that are not there.
std::string GetFormatPhrase(const char* format);

// True if both formats take the same arguments in the same order.
bool SameDirectives(const char* format, const char* other);

}  // namespace zyr
