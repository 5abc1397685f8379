#include "foundation/support/format_directive.h"

#include <algorithm>

namespace zyr {
namespace {

using Length = FormatDirective::Length;

constexpr size_t kMaxDigits = 4;

// Cuts a directive into its parts from the front.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  size_t position() const { return position_; }
  char Take() { return position_ < text_.size() ? text_[position_++] : '\0'; }

  bool TakeIf(std::string_view wanted) {
    if (text_.substr(position_, wanted.size()) != wanted) return false;
    position_ += wanted.size();
    return true;
  }

  std::string_view TakeAllOf(std::string_view characters) {
    const size_t start = position_;
    position_ = std::min(text_.find_first_not_of(characters, start), text_.size());
    return Since(start);
  }

  // "*" or digits, which may be missing; false if there are too many.
  bool TakeNumber() { return TakeIf("*") || TakeAllOf("0123456789").size() <= kMaxDigits; }

  std::string_view Since(size_t start) const { return text_.substr(start, position_ - start); }

 private:
  std::string_view text_;
  size_t position_ = 0;
};

Length TakeLength(Scanner& scanner) {
  static constexpr struct {
    std::string_view text;
    Length length;
  } kLengths[] = {
      {"hh", Length::kChar},
      {"h", Length::kShort},
      {"ll", Length::kLongLong},
      {"l", Length::kLong},
      {"j", Length::kMax},
      {"z", Length::kSize},
      {"t", Length::kPointerDifference},
      {"L", Length::kLongDouble},
  };
  for (const auto& candidate : kLengths) {
    if (scanner.TakeIf(candidate.text)) return candidate.length;
  }
  return Length::kNone;
}

bool IsConversion(char conversion, Length length) {
  const auto isOneOf = [=](std::string_view set) {
    return set.find(conversion) != std::string_view::npos;
  };
  if (isOneOf("diuoxX")) return length != Length::kLongDouble;
  if (length == Length::kNone) return isOneOf("cspaAeEfFgG");
  return (length == Length::kLong || length == Length::kLongDouble) && isOneOf("aAeEfFgG");
}

}  // namespace

std::optional<FormatDirective> ParseDirective(std::string_view text) {
  FormatDirective directive;
  Scanner scanner(text);
  if (scanner.TakeIf("%%")) {
    directive.size = scanner.position();
    return directive;
  }
  if (!scanner.TakeIf("%")) return std::nullopt;

  directive.flags = scanner.TakeAllOf("-+ #0");
  const size_t widthStart = scanner.position();
  if (!scanner.TakeNumber()) return std::nullopt;
  directive.width = scanner.Since(widthStart);

  const size_t precisionStart = scanner.position();
  if (scanner.TakeIf(".") && !scanner.TakeNumber()) return std::nullopt;
  directive.precision = scanner.Since(precisionStart);

  directive.length = TakeLength(scanner);
  directive.conversion = scanner.Take();
  if (!IsConversion(directive.conversion, directive.length)) return std::nullopt;
  directive.size = scanner.position();
  return directive;
}

}  // namespace zyr
