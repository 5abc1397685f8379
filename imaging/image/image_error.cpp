#include "imaging/image/image_error.h"

#include <cstdarg>
#include <mutex>
#include <utility>

#include "foundation/support/phrase_lookup.h"

namespace zyr {
namespace {

struct LastError {
  std::mutex mutex;
  uint32_t code = 0;
  std::string text;
};

LastError& TheLastError() {
  static LastError error;
  return error;
}

}  // namespace

void ReportImageError(uint32_t code, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::string text = FormatTextV(GetFormatPhrase(format).c_str(), arguments);
  va_end(arguments);
  const std::lock_guard lock(TheLastError().mutex);
  TheLastError().code = code;
  TheLastError().text = std::move(text);
}

uint32_t LastImageErrorCode() {
  const std::lock_guard lock(TheLastError().mutex);
  return TheLastError().code;
}

std::string LastImageErrorText() {
  const std::lock_guard lock(TheLastError().mutex);
  return TheLastError().text;
}

}  // namespace zyr
