#include "tools/zyrsensor/capture.h"

#include <cstdio>
#include <optional>
#include <string>
#include <utility>

#include "foundation/support/format.h"
#include "platform/clock.h"
#include "tools/images/picture_file.h"
#include "tools/images/read_picture.h"
#include "tools/zyrsensor/frame_picture.h"
#include "tools/zyrsensor/sensors.h"

namespace zyr {
namespace {

void Complain(const std::string& text) { std::fprintf(stderr, "zyrsensor: %s\n", text.c_str()); }

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

PictureFormat FormatOf(const std::string& path) {
  return EndsWith(path, ".tif") || EndsWith(path, ".tiff") ? PictureFormat::kTiff
                                                           : PictureFormat::kPng;
}

SensorExit SavePicture(const SensorOptions& options, Device& device, int32_t type,
                       const std::string& path, GreyPicture* picture) {
  SensorImage* image = nullptr;
  const Result result = device.GetImage(type, &image);
  const Held<SensorImage> held(image);
  if (Failed(result)) {
    Complain(DescribeFailure("There is no image", result));
    return kSensorFailed;
  }
  *picture = PictureOf(*held, false);
  if (!WritePicture(options.film ? PictureOf(*held, true) : *picture, FormatOf(path), path)) {
    Complain(path + " cannot be written.");
    return kSensorNotWritten;
  }
  std::printf("type %d: %lu x %lu, %lu x %lu dpi, %s\n", static_cast<int>(type),
              Lu(held->GetWidth()), Lu(held->GetHeight()), Lu(held->GetDpiX()),
              Lu(held->GetDpiY()), path.c_str());
  return kSensorDone;
}

SensorExit SavePictures(const SensorOptions& options, Device& device, GreyPicture* wanted) {
  for (int32_t type = 1; type <= 5 && !options.allOut.empty(); ++type) {
    GreyPicture picture;
    const std::string path = options.allOut + "\\type-" + std::to_string(type) + ".png";
    const SensorExit exit = SavePicture(options, device, type, path, &picture);
    if (exit != kSensorDone) return exit;
    if (type == options.type) *wanted = std::move(picture);
  }
  if (options.out.empty()) return kSensorDone;
  return SavePicture(options, device, options.type, options.out, wanted);
}

SensorExit PrintDifference(const GreyPicture& picture, const std::string& path) {
  std::string error;
  const std::optional<GreyPicture> reference = ReadPicture(path, &error);
  if (!reference) {
    Complain(error);
    return kSensorNotWritten;
  }
  const std::optional<Difference> difference = Compare(picture, *reference);
  if (!difference) {
    Complain(FormatText("%s has %lu x %lu pixels.", path.c_str(), Lu(reference->width),
                        Lu(reference->height)));
    return kSensorNotWritten;
  }
  std::printf("difference to %s: %s\n", path.c_str(), DescribeDifference(*difference).c_str());
  return kSensorDone;
}

bool SetProperties(const SensorOptions& options, Device& device) {
  for (const auto& [name, value] : options.properties) {
    const Result result = device.SetProperty(name, value);
    if (!Failed(result)) continue;
    Complain(DescribeFailure(name + " does not take '" + value + "'", result));
    return false;
  }
  return true;
}

}  // namespace

void ShowProgress(const std::string& text, int32_t code, int32_t percent, bool isConsole) {
  if (code == kNotifyPoll) return;
  if (isConsole) {
    std::printf("\r%-24s %3d %%%s", text.c_str(), static_cast<int>(percent),
                code == kNotifyDownload && percent == 100 ? "\n" : "");
  } else if (percent == 0 || percent == 100) {
    std::printf("%s %d %%\n", text.c_str(), static_cast<int>(percent));
  }
  std::fflush(stdout);
}

SensorExit Capture(const SensorOptions& options) {
  const Held<Device> device = OpenSensorLike(options.sensor);
  if (device == nullptr) return kSensorNone;
  if (!SetProperties(options, *device)) return kSensorFailed;
  const uint64_t started = platform::Ticks();
  const Result result = device->CaptureImage();
  if (Failed(result)) {
    Complain(DescribeFailure("There is no image", result));
    return kSensorFailed;
  }
  std::printf("captured in %.1f s\n", static_cast<double>(platform::Ticks() - started) / 1000);
  GreyPicture picture;
  const SensorExit exit = SavePictures(options, *device, &picture);
  if (exit != kSensorDone || options.reference.empty()) return exit;
  return PrintDifference(picture, options.reference);
}

}  // namespace zyr
