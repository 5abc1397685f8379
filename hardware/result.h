// Result codes of the sensor hardware: 0 or positive is success, the sign bit marks failure.
#pragma once

#include <cstdint>

namespace zyr {

using Result = int32_t;

constexpr bool Failed(Result result) { return result < 0; }
constexpr Result ResultOf(uint32_t code) { return static_cast<Result>(code); }

// An error number of the operating system as a result. Numbers that already are results stay.
constexpr Result ResultOfSystemError(uint32_t error) {
  const Result value = ResultOf(error);
  return value > 0 ? ResultOf(0x80070000u | (error & 0xFFFFu)) : value;
}

inline constexpr Result kOk = 0;
inline constexpr Result kNotImplemented = ResultOf(0x80004001);
inline constexpr Result kNoInterface = ResultOf(0x80004002);
inline constexpr Result kUnspecifiedFailure = ResultOf(0x80004005);
inline constexpr Result kUnexpected = ResultOf(0x8000FFFF);
inline constexpr Result kFileNotFound = ResultOf(0x80070002);
inline constexpr Result kAccessDenied = ResultOf(0x80070005);

inline constexpr Result USB_E_OPEN = ResultOf(0x8AAA1000);
inline constexpr Result USB_E_NOT_OPEN = ResultOf(0x8AAA1001);
inline constexpr Result USB_E_BAD_PIPE = ResultOf(0x8AAA1002);
inline constexpr Result USB_E_RESET = ResultOf(0x8AAA1008);

inline constexpr Result DEV_E_MEMORY = ResultOf(0x8AAA2001);
inline constexpr Result DEV_E_BAD_RESPONSE = ResultOf(0x8AAA2004);
inline constexpr Result DEV_E_BAD_SIZE = ResultOf(0x8AAA2005);
inline constexpr Result DEV_E_BAD_BINNING = ResultOf(0x8AAA2006);
inline constexpr Result DEV_E_XILINX = ResultOf(0x8AAA2007);
inline constexpr Result DEV_E_HARDWARE = ResultOf(0x8AAA200F);
inline constexpr Result DEV_E_BAD_VALUE = ResultOf(0x8AAA2010);
inline constexpr Result DEV_E_BAD_IMAGE_TYPE = ResultOf(0x8AAA2011);
inline constexpr Result DEV_E_NO_BLOCKS = ResultOf(0x8AAA2013);
inline constexpr Result DEV_E_BLOCKS_PARTIAL = ResultOf(0x8AAA2014);
inline constexpr Result DEV_E_NO_CORRECTION_DATA = ResultOf(0x8AAA2015);
inline constexpr Result DEV_E_EXPOSURE_TIMEOUT = ResultOf(0x8AAA2016);
inline constexpr Result DEV_E_BAD_IMAGE_NAME = ResultOf(0x8AAA2017);
inline constexpr Result DEV_E_ABORT_TIMEOUT = ResultOf(0x8AAAFFFF);

}  // namespace zyr
