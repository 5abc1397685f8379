// Commands that change what the device knows of its sensor.
#include "hardware/device/device_2000.h"
#include "hardware/device/sensor_commands.h"
#include "platform/ascii.h"

namespace zyr {
namespace {

struct ReadOut {
  uint8_t command;
  uint32_t fullResolution;
};
struct SensorSize {
  const char* letter;
  uint32_t width;  // pixels
  uint32_t height;
  ReadOut readOut[2];  // not binned, binned
};
constexpr SensorSize kSizes[] = {
    {"A", 468, 578, {{0x25, 0}, {0x27, 0}}},
    {"B", 578, 800, {{0x29, 0}, {0x2B, 0}}},
    {"C", 890, 1420, {{0x2D, 1}, {0x2F, 0}}},
    {"D", 1156, 1600, {{0x21, 1}, {0x23, 0}}},
};
constexpr char kPixelPitch[] = "22.5";  // micrometres

}  // namespace

Result Device2000::SensorReset() { return SendSensorReset(*port_); }

Result Device2000::GetSensorSize() {
  if (sensor_id_.empty()) return DEV_E_BAD_SIZE;
  const char letter = LowerAscii(sensor_id_.back());
  if (letter < 'a' || letter > 'd') return DEV_E_BAD_SIZE;
  SetSensorSize(static_cast<uint32_t>(letter - 'a'));
  return kOk;
}

Result Device2000::SetSensorSize(uint32_t code) {
  if (code >= std::size(kSizes)) return DEV_E_BAD_SIZE;
  if (binned_ >= std::size(kSizes[code].readOut)) return DEV_E_BAD_BINNING;
  const SensorSize& size = kSizes[code];
  const ReadOut& readOut = size.readOut[binned_];
  size_code_ = code;
  sensor_width_ = size.width;
  sensor_height_ = size.height;
  full_resolution_ = readOut.fullResolution;
  properties_.Set("sensor_size", size.letter);
  properties_.Set("micron_resX", kPixelPitch);
  properties_.Set("micron_resY", kPixelPitch);
  return SendSensorSize(*port_, readOut.command);
}

// Two by two pixels of the sensor in each of the frame's.
bool Device2000::IsBinned() const {
  return full_resolution_ == 0 && (size_code_ == 2 || size_code_ == 3);
}

}  // namespace zyr
