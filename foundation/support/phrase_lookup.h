// The way to the translation of a user-visible text. The English text is the key.
#pragma once

#include <string>

namespace zyr {

using PhraseLookup = std::string (*)(const char* text);

// Installs the translation table's lookup; null takes it away again, and texts stay English.
void SetPhraseLookup(PhraseLookup lookup);

// Hears of every text that is looked up, on the thread that asks; null for nobody. Tests hold what
// comes by against the collection of all phrases.
using PhraseWitness = void (*)(const char* text);
void SetPhraseWitness(PhraseWitness witness);

// The translation, or the text itself. A null text gives an empty string.
std::string GetPhrase(const char* text);

// The translation of a printf format, for handing to a formatter. A translation whose directives
// are not those of `format`, in kind and order, is passed over and the English text taken: a phrase
// file comes from outside and must not make the formatter read arguments that are not there.
std::string GetFormatPhrase(const char* format);

// Marks a literal that reaches one of these by way of a table or a variable, so that the collection
// of all phrases finds it.
constexpr const char* PhraseKey(const char* text) { return text; }

// True if both formats take the same arguments in the same order.
bool SameDirectives(const char* format, const char* other);

}  // namespace zyr
