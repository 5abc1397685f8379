// Numbers as texts from outside give them. What is no number counts as 0.
#pragma once

#include <cstdint>
#include <string_view>

namespace zyr {

// The decimal number that the text begins with, held within 32 bits.
int32_t DecimalOf(std::string_view text);
// The same for a real number with a decimal point, whatever the locale; never NaN or infinite.
double RealOf(std::string_view text);

}  // namespace zyr
