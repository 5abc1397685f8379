#include "hardware/device/text_numbers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace zyr {
namespace {

// Without the blanks ahead, and without a plus sign, which the conversions do not know.
std::string_view NumberPart(std::string_view text) {
  const size_t start = text.find_first_not_of(" \t\n\v\f\r");
  if (start == std::string_view::npos) return {};
  text.remove_prefix(start);
  const bool isSigned = text.size() > 1 && text[0] == '+' && text[1] != '-';
  return isSigned ? text.substr(1) : text;
}

}  // namespace

int32_t DecimalOf(std::string_view text) {
  text = NumberPart(text);
  int32_t value = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc::result_out_of_range) return value;
  return text[0] == '-' ? std::numeric_limits<int32_t>::min() : std::numeric_limits<int32_t>::max();
}

double RealOf(std::string_view text) {
  text = NumberPart(text);
  double value = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && std::isfinite(value) ? value : 0;
}

}  // namespace zyr
