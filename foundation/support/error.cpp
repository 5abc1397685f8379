#include "foundation/support/error.h"

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

LastError& Last() {
  static LastError last;
  return last;
}

}  // namespace

void SetError(uint32_t code, const char* format, ...) {
  const std::string translated = GetFormatPhrase(format);
  va_list arguments;
  va_start(arguments, format);
  std::string text = FormatTextV(translated.c_str(), arguments);
  va_end(arguments);
  SetErrorText(code, std::move(text));
}

void SetErrorText(uint32_t code, std::string text) {
  const std::lock_guard lock(Last().mutex);
  Last().code = code;
  Last().text = std::move(text);
}

uint32_t LastErrorCode() {
  const std::lock_guard lock(Last().mutex);
  return Last().code;
}

std::string LastErrorText() {
  const std::lock_guard lock(Last().mutex);
  return Last().text;
}

}  // namespace zyr
