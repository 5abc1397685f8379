// printf-style text.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <string>

// The formats' directives are checked against the arguments at compile time.
#ifdef __clang__
#define ZYR_PRINTF(formatIndex, firstArgument) \
  __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define ZYR_PRINTF(formatIndex, firstArgument) \
  __attribute__((format(gnu_printf, formatIndex, firstArgument)))
#endif

namespace zyr {

// Text of any length, with a decimal point whatever locale the host program has set. Empty if the
// format is null or holds a directive that ParseDirective refuses. A null string reads "(null)".
std::string FormatText(const char* format, ...) ZYR_PRINTF(1, 2);
std::string FormatTextV(const char* format, va_list arguments);

// 32-bit numbers for "%lu" and "%lX", whose width differs between systems.
inline unsigned long Lu(uint32_t value) { return value; }
inline long Ld(int32_t value) { return value; }

}  // namespace zyr
