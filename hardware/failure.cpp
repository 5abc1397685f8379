#include "hardware/failure.h"

#include "foundation/log/log.h"
#include "foundation/support/error.h"
#include "foundation/support/phrase_lookup.h"

namespace zyr {

Result FailWith(Result result, const char* text) {
  SetErrorText(kErrorUnclassified, GetPhrase(text));
  Log().WriteLine("   %s (result = %08lX)", text, Lu(static_cast<uint32_t>(result)));
  return result;
}

}  // namespace zyr
