// Correction data of any content, in both forms, applied to small frames.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "hardware/correction/correct_303.h"
#include "hardware/correction/sensor_defects.h"

namespace {

using namespace zyr;

void Require(bool holds) {
  if (!holds) std::abort();
}

Held<SensorImage> FrameOf(uint32_t width, uint32_t height) {
  Held<SensorImage> frame = NewSensorImage();
  Require(frame->Create(width, height, 770, 770));
  for (uint32_t y = 0; y < height; ++y) {
    for (uint32_t x = 0; x < width; ++x) frame->SetPixel(x, y, (x * 31 + y * 17) & 0xFFF);
  }
  return frame;
}

// Whatever the list holds, good pixels stay as they are.
void Apply(SensorDefects& defects, const SensorImage& raw, bool binned) {
  const Held<SensorImage> image = raw.Clone();
  defects.Apply(image.get(), binned);
  DefectList list = defects.defects();
  if (binned) list.Scale(0.5, false);
  for (uint32_t y = 0; y < raw.GetHeight(); ++y) {
    for (uint32_t x = 0; x < raw.GetWidth(); ++x) {
      if (image->GetPixel(x, y) == raw.GetPixel(x, y)) continue;
      const uint32_t fromBottom = raw.GetHeight() - 1 - y;
      Require(list.IsDefective(static_cast<int32_t>(x), static_cast<int32_t>(fromBottom)));
    }
  }
}

void Calibrate(const SensorDefects& defects, const SensorImage& raw, const PdiRecord& pdi) {
  const Held<SensorImage> dark = FrameOf(raw.GetWidth(), raw.GetHeight());
  dark->Subtract(*dark, 100);
  const Held<SensorImage> image = Correct303(raw, *dark, &defects, pdi, pdi.enabled & 3);
  Require(image->GetWidth() == raw.GetWidth() && image->GetHeight() == raw.GetHeight());
}

}  // namespace

// The first two bytes make the frame, now and then one with a seam, the third the gain.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 3) return 0;
  const Held<SensorImage> raw = FrameOf(data[0] % 64, data[1] < 250 ? data[1] % 40 : 420);
  const PdiRecord pdi = {data[2], 0.01 * data[2], 0.000001 * (data[2] % 16), 0};
  data += 3;
  size -= 3;
  const auto text = MakeTextDefects();
  text->LoadText({reinterpret_cast<const char*>(data), size}, raw->GetWidth(), raw->GetHeight());
  const auto binary = MakeBinaryDefects();
  binary->LoadBinary(data, size, 0, 0);
  for (const bool binned : {false, true}) {
    Apply(*text, *raw, binned);
    Apply(*binary, *raw, binned);
  }
  Calibrate(*binary, *raw, pdi);
  return 0;
}
