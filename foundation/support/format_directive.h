// The parts of a printf directive, for the formatter and for comparing formats.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace zyr {

struct FormatDirective {
  enum class Length {
    kNone,
    kChar,
    kShort,
    kLong,
    kLongLong,
    kMax,
    kSize,
    kPointerDifference,
    kLongDouble
  };

  std::string_view flags;      // of "-+ #0"
  std::string_view width;      // digits, "*" or nothing
  std::string_view precision;  // '.' with digits or '*' behind it, or nothing
  Length length = Length::kNone;
  char conversion = '%';  // '%' for "%%", which takes no argument
  size_t size = 0;        // characters from the '%' on

  bool WidthIsArgument() const { return width == "*"; }
  bool PrecisionIsArgument() const { return precision == ".*"; }
};

// The directive at the head of `text`, which begins with '%'. Null for anything but standard C:
// positions ("%1$s") and letters of single libraries; and for what has no place in a text: "%n" and
// wide characters. A width or precision of more than four digits is refused as well, as formats may
// come from outside.
std::optional<FormatDirective> ParseDirective(std::string_view text);

}  // namespace zyr
