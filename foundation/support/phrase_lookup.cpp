#include "foundation/support/phrase_lookup.h"

#include <optional>
#include <string_view>
#include <tuple>
#include <vector>

#include "foundation/support/format_directive.h"

namespace zyr {
namespace {

PhraseLookup g_lookup = nullptr;
PhraseWitness g_witness = nullptr;

// What a directive takes: a width, a precision, and a value of this length and conversion.
using Taken = std::tuple<bool, bool, FormatDirective::Length, char>;

// Null if a directive cannot be understood.
std::optional<std::vector<Taken>> TakenArguments(std::string_view format) {
  std::vector<Taken> taken;
  for (size_t percent; (percent = format.find('%')) != std::string_view::npos;) {
    format.remove_prefix(percent);
    const std::optional<FormatDirective> directive = ParseDirective(format);
    if (!directive) return std::nullopt;
    if (directive->conversion != '%') {
      taken.emplace_back(directive->WidthIsArgument(), directive->PrecisionIsArgument(),
                         directive->length, directive->conversion);
    }
    format.remove_prefix(directive->size);
  }
  return taken;
}

}  // namespace

void SetPhraseLookup(PhraseLookup lookup) { g_lookup = lookup; }

void SetPhraseWitness(PhraseWitness witness) { g_witness = witness; }

std::string GetPhrase(const char* text) {
  if (text == nullptr) return {};
  if (g_witness != nullptr) g_witness(text);
  return g_lookup != nullptr ? g_lookup(text) : text;
}

std::string GetFormatPhrase(const char* format) {
  std::string translation = GetPhrase(format);
  if (format == nullptr || SameDirectives(format, translation.c_str())) return translation;
  return format;
}

bool SameDirectives(const char* format, const char* other) {
  if (format == nullptr || other == nullptr) return false;
  const auto taken = TakenArguments(format);
  return taken && taken == TakenArguments(other);
}

}  // namespace zyr
