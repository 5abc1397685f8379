// The words that zyracquire prints.
#pragma once

#include <cstdint>
#include <string>

#include "tools/zyracquire/options.h"
#include "twain/twain_types.h"

namespace zyr {

const char* MechanismName(Mechanism mechanism);

struct ImageReport {
  uint32_t number = 0;
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t bits = 0;
  double xDpi = 0;  // 0: unknown
  double yDpi = 0;
  Mechanism mechanism = Mechanism::kNative;
  uint64_t bytes = 0;
  double seconds = 0;
  std::string path;
};

// "image 1: 1156 x 1600, 16 bit, 1129 x 1129 dpi, native, 3699240 bytes in 12.3 ms (300.7 MB/s),
// x.png"
std::string DescribeImage(const ImageReport& report);

// "TWCC_SEQERROR (11): DG DAT MSG is out of expected sequence."
std::string DescribeConditionCode(TW_UINT16 code);

struct TripletName {
  TW_UINT32 dataGroup = 0;
  TW_UINT16 dataArgumentType = 0;
  TW_UINT16 message = 0;
  TW_UINT16 capability = 0;  // of DAT_CAPABILITY
};

// "DG_CONTROL / DAT_CAPABILITY / MSG_SET (ICAP_BITDEPTH)"
std::string DescribeTriplet(const TripletName& triplet);

std::string DescribeMessage(TW_UINT16 message);

// One line of the trace, without line end. `at` is the time since the start, both in seconds.
std::string DescribeCall(const TripletName& triplet, TW_UINT16 result, double at, double took);

// "ZYR TWAIN (Korvida, Inc., TWAIN, version 1.1, TWAIN 1.9)"
std::string DescribeSource(const TW_IDENTITY& identity);

// A text field, which the other side may have left without its terminating zero.
template <size_t kSize>
std::string FieldText(const char (&field)[kSize]) {
  size_t length = 0;
  while (length < kSize && field[length] != 0) ++length;
  return std::string(field, length);
}

bool ContainsIgnoringCase(const std::string& text, const std::string& part);

}  // namespace zyr
