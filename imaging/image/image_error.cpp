#include "imaging/image/image_error.h"

#include <cstdarg>

#include "foundation/support/phrase_lookup.h"

namespace zyr {
namespace {

struct LastError {
  uint32_t code = 0;
  std::string text;
};

LastError& TheLastError() {
  static LastError error;
  return error;
}

}  // namespace

void ReportImageError(uint32_t code, const char* format, ...) {
  // An argument may be the old text itself, so it is replaced last.
  va_list arguments;
  va_start(arguments, format);
  std::string text = FormatTextV(GetFormatPhrase(format).c_str(), arguments);
  va_end(arguments);
  TheLastError() = {code, std::move(text)};
}

uint32_t LastImageErrorCode() { return TheLastError().code; }
const std::string& LastImageErrorText() { return TheLastError().text; }

}  // namespace zyr
