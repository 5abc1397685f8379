// The imaging package's last error: a code and a translated text, one pair for all threads.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/support/format.h"

namespace zyr {

enum ImageError : uint32_t {
  kImageErrorOutOfMemory = 0,
  kImageErrorNullPointer = 1,
  kImageErrorUserAbort = 3,
  kImageErrorCannotOpen = 0x10000005,
  kImageErrorCannotSave = 0x10000006,
  kImageErrorCannotWrite = 0x10000007,
  kImageErrorBitsPerPixel = 0x20000000,
  kImageErrorDimensions = 0x20000001,
  kImageErrorColorBits = 0x20000002,
  kImageErrorBitPlanes = 0x20000003,
  kImageErrorCompression = 0x20000004,
  kImageErrorInvalidImage = 0x20000005,
  kImageErrorColorScheme = 0x2000000D,
  kImageErrorImageIndex = 0x2000000E,
  kImageErrorColorIndex = 0x2000000F,
};

// Translates the format, fills it and stores both.
void ReportImageError(uint32_t code, const char* format, ...) ZYR_PRINTF(2, 3);
uint32_t LastImageErrorCode();
std::string LastImageErrorText();

}  // namespace zyr
