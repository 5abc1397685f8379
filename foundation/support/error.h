// The process-wide pair of last error code and text. Any thread; but there is only the one pair, so
// a failure on one thread can overwrite the text that another is about to show.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/support/format.h"

namespace zyr {

enum SupportError : uint32_t {
  kErrorUnclassified = 0,  // only the text tells
  kErrorKeyOrValueNotFound = 0x50000000,
  kErrorIncompatibleType = 0x50000001,
  kErrorDifferentSize = 0x50000002,
  kErrorCannotWrite = 0x10000007,
  kErrorCannotCreateKey = 13,
  kErrorOutOfResources = 0,
  kErrorFileNotFound = 0x10000000,
  kErrorPathNotFound = 0x10000001,
  kErrorBadExecutable = 0x10000002,
  kErrorAccessDenied = 0x10000003,
  kErrorSharingViolation = 0x10000004,
  kErrorNoAssociation = 0xF0000000,
  kErrorCannotStart = 0xF0000001,
};

// Translates the format, fills it and stores both. The text survives until the next failure.
void SetError(uint32_t code, const char* format, ...) ZYR_PRINTF(2, 3);

// Stores a text that is ready to be shown.
void SetErrorText(uint32_t code, std::string text);

uint32_t LastErrorCode();
std::string LastErrorText();

}  // namespace zyr
