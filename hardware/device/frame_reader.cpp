#include "hardware/device/frame_reader.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <new>

#include "foundation/support/phrase_lookup.h"
#include "hardware/failure.h"

namespace zyr {
namespace {

static_assert(std::endian::native == std::endian::little, "rows are read as they come");

constexpr const char* kNoImageData = PhraseKey(
    "Unable to read image data from the hardware.  Please check the hardware connection and then "
    "retry the operation.");

Result ReadRow(UsbPort& port, uint16_t* words, uint32_t count) {
  return port.ReadBulk(reinterpret_cast<uint8_t*>(words), count * sizeof(uint16_t));
}

Result ReadWholeRows(UsbPort& port, const FrameGeometry& geometry, SensorImage* frame) {
  for (uint32_t y = 0; y < geometry.height; ++y) {
    const Result result = ReadRow(port, frame->Row(y), geometry.wordsPerRow);
    if (Failed(result)) return result;
  }
  return kOk;
}

Result ReadEveryOtherWord(UsbPort& port, const FrameGeometry& geometry, SensorImage* frame) {
  const std::unique_ptr<uint16_t[]> words(new (std::nothrow) uint16_t[geometry.wordsPerRow]);
  if (words == nullptr) return kOutOfMemory;
  for (uint32_t y = 0; y < geometry.height; ++y) {
    std::fill_n(words.get(), geometry.wordsPerRow, uint16_t{0});  // of a row that comes short
    const Result result = ReadRow(port, words.get(), geometry.wordsPerRow);
    if (Failed(result)) return result;
    uint16_t* row = frame->Row(y);
    for (uint32_t x = 0; x < geometry.width; ++x) row[x] = words[2 * x + 1];
  }
  return kOk;
}

}  // namespace

FrameGeometry FrameGeometryOf(uint32_t sensorWidth, uint32_t sensorHeight, uint32_t sizeCode,
                              bool fullResolution) {
  const uint32_t division = fullResolution ? 1 : 2;
  const uint32_t factor = sizeCode <= 1 ? 2 : 1;  // the small sensors send each pixel twice
  return {sensorWidth / division * factor, sensorHeight / division * factor,
          fullResolution ? sensorWidth : sensorWidth * factor, fullResolution};
}

Result ReadFrame(UsbPort& port, const FrameGeometry& geometry, uint32_t dpiX, uint32_t dpiY,
                 SensorImage* frame) {
  if (!frame->Create(geometry.width, geometry.height, dpiX, dpiY)) {
    return FailWith(kOutOfMemory, kNoImageData);
  }
  const Result result = geometry.everyWord ? ReadWholeRows(port, geometry, frame)
                                           : ReadEveryOtherWord(port, geometry, frame);
  if (Failed(result)) return FailWith(result, kNoImageData);
  frame->MaskPixels();
  return kOk;
}

}  // namespace zyr
