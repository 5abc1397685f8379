#include "foundation/support/format.h"

#include <clocale>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <string_view>

#include "foundation/support/format_directive.h"

namespace zyr {
namespace {

using Length = FormatDirective::Length;

// The host program's locale may write numbers with a comma; this module's texts always have a
// point. The C library has no call for that which all systems share, so the directives are filled
// one by one and the point is put back where it belongs.
class Formatter {
 public:
  explicit Formatter(va_list arguments) { va_copy(arguments_, arguments); }
  ~Formatter() { va_end(arguments_); }
  Formatter(const Formatter&) = delete;
  Formatter& operator=(const Formatter&) = delete;

  bool Fill(std::string_view format);
  std::string TakeText() { return std::move(text_); }

 private:
  bool Append(const FormatDirective& directive);
  bool AppendString(const FormatDirective& directive, const std::string& head);
  bool AppendReal(const FormatDirective& directive, const std::string& head);
  template <typename T>
  bool AppendPiece(const std::string& directive, T value);

  std::string Head(const FormatDirective& directive);
  long long NextSigned(Length length);
  unsigned long long NextUnsigned(Length length);

  va_list arguments_;
  std::string text_;
};

bool Formatter::Fill(std::string_view format) {
  for (;;) {
    const size_t percent = format.find('%');
    text_ += format.substr(0, percent);
    if (percent == std::string_view::npos) return true;
    format.remove_prefix(percent);
    const std::optional<FormatDirective> directive = ParseDirective(format);
    if (!directive || !Append(*directive)) return false;
    format.remove_prefix(directive->size);
  }
}

bool Formatter::Append(const FormatDirective& directive) {
  if (directive.conversion == '%') {
    text_ += '%';
    return true;
  }
  const std::string head = Head(directive);
  switch (directive.conversion) {
    case 'd':
    case 'i':
      return AppendPiece(head + "lld", NextSigned(directive.length));
    case 'u':
    case 'o':
    case 'x':
    case 'X':
      return AppendPiece(head + "ll" + directive.conversion, NextUnsigned(directive.length));
    case 'c':
      return AppendPiece(head + 'c', va_arg(arguments_, int));
    case 'p':
      return AppendPiece(head + 'p', va_arg(arguments_, void*));
    case 's':
      return AppendString(directive, head);
    default:
      return AppendReal(directive, head);
  }
}

bool Formatter::AppendString(const FormatDirective& directive, const std::string& head) {
  const char* string = va_arg(arguments_, const char*);
  if (string == nullptr) string = "(null)";
  if (directive.size > 2) return AppendPiece(head + 's', string);
  text_ += string;
  return true;
}

bool Formatter::AppendReal(const FormatDirective& directive, const std::string& head) {
  const size_t start = text_.size();
  const bool filled =
      directive.length == Length::kLongDouble
          ? AppendPiece(head + 'L' + directive.conversion, va_arg(arguments_, long double))
          : AppendPiece(head + directive.conversion, va_arg(arguments_, double));
  if (!filled) return false;
  const std::string_view point = std::localeconv()->decimal_point;
  if (point.empty() || point == ".") return true;
  const size_t found = text_.find(point, start);
  if (found != std::string::npos) text_.replace(found, point.size(), ".");
  return true;
}

template <typename T>
bool Formatter::AppendPiece(const std::string& directive, T value) {
  const int length = std::snprintf(nullptr, 0, directive.c_str(), value);
  if (length < 0) return false;
  const size_t start = text_.size();
  text_.resize(start + static_cast<size_t>(length) + 1);
  std::snprintf(&text_[start], static_cast<size_t>(length) + 1, directive.c_str(), value);
  text_.pop_back();
  return true;
}

// The directive up to its precision, with the numbers that come as arguments in place of their '*'.
std::string Formatter::Head(const FormatDirective& directive) {
  std::string head = "%";
  head += directive.flags;
  if (directive.WidthIsArgument()) {
    head += std::to_string(va_arg(arguments_, int));  // a minus sign is the flag that it becomes
  } else {
    head += directive.width;
  }
  if (directive.PrecisionIsArgument()) {
    const int precision = va_arg(arguments_, int);
    if (precision >= 0) head += '.' + std::to_string(precision);
  } else {
    head += directive.precision;
  }
  return head;
}

long long Formatter::NextSigned(Length length) {
  switch (length) {
    case Length::kChar:
      return static_cast<signed char>(va_arg(arguments_, int));
    case Length::kShort:
      return static_cast<short>(va_arg(arguments_, int));
    case Length::kLong:
      return va_arg(arguments_, long);
    case Length::kLongLong:
      return va_arg(arguments_, long long);
    case Length::kMax:
      return va_arg(arguments_, intmax_t);
    case Length::kSize:
    case Length::kPointerDifference:
      return va_arg(arguments_, ptrdiff_t);
    default:
      return va_arg(arguments_, int);
  }
}

unsigned long long Formatter::NextUnsigned(Length length) {
  switch (length) {
    case Length::kChar:
      return static_cast<unsigned char>(va_arg(arguments_, unsigned));
    case Length::kShort:
      return static_cast<unsigned short>(va_arg(arguments_, unsigned));
    case Length::kLong:
      return va_arg(arguments_, unsigned long);
    case Length::kLongLong:
      return va_arg(arguments_, unsigned long long);
    case Length::kMax:
      return va_arg(arguments_, uintmax_t);
    case Length::kSize:
    case Length::kPointerDifference:
      return va_arg(arguments_, size_t);
    default:
      return va_arg(arguments_, unsigned);
  }
}

}  // namespace

std::string FormatText(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::string text = FormatTextV(format, arguments);
  va_end(arguments);
  return text;
}

std::string FormatTextV(const char* format, va_list arguments) {
  if (format == nullptr) return {};
  Formatter formatter(arguments);
  if (!formatter.Fill(format)) return {};
  return formatter.TakeText();
}

}  // namespace zyr
