// The file of a captured image, written and read here by code of its own: what the data source
// makes of such a file can then be held against a second opinion.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/images/grey_picture.h"

namespace zyr {

struct CacheRecord {
  uint32_t isZyr303 = 0;
  uint32_t bitsPerPixel = 12;
  uint32_t width = 0;
  uint32_t height = 0;
  uint32_t xResolution = 0;  // dots per inch
  uint32_t yResolution = 0;
  uint32_t captureTime = 0;  // seconds since 1970
  uint32_t frameNumber = 1;
  std::string sensorId;
  std::vector<uint16_t> samples;  // from the bottom row up
};

std::vector<uint8_t> EncodeCacheRecord(const CacheRecord& record);
// Null if the bytes are no whole cache file.
std::optional<CacheRecord> DecodeCacheRecord(const std::vector<uint8_t>& bytes);

// The picture that an imaging program must get of it at 8 or 16 bits, upright.
GreyPicture ExpectedPicture(const CacheRecord& record, uint32_t bits);

}  // namespace zyr
