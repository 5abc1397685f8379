#include "hardware/device/finished_frames.h"

namespace zyr {
namespace {

constexpr char kFolder[] = "LumoUSBII";
constexpr char kTag[] = "RawSensorData";  // an old name: the corrections are in

}  // namespace

CKIPImageTestSaver& ImageTestSaver() {
  static CKIPImageTestSaver saver = [] {
    CKIPImageTestSaver made;
    made.folder = kFolder;
    made.SetEnabled(false);
    return made;
  }();
  return saver;
}

void SaveFinishedFrame(const SensorImage& frame) {
  CKIPImageTestSaver& saver = ImageTestSaver();
  if (saver.enabled == 0) return;
  TestImageFields fields;
  fields.bytesPerSample = 2;
  fields.bitsPerSample = 16;
  fields.value1 = frame.GetWidth();
  fields.dimension1 = frame.GetHeight();
  fields.dimension2 = frame.GetRowPixels();
  fields.value2 = frame.GetDpiX();
  fields.value3 = frame.GetDpiY();
  saver.SaveImage(kTag, frame.data(), fields, "");
}

}  // namespace zyr
