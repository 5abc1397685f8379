// The capture thread's side.
#include <exception>
#include <utility>

#include "acquire/iface/display_name.h"
#include "acquire/iface/iface.h"
#include "acquire/iface/status_sink.h"
#include "foundation/log/log.h"
#include "foundation/support/error.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"

namespace zyr {
namespace {

enum : uint32_t { kThreadDone = 0, kThreadFailed = 1 };
enum : uintptr_t { kCaptureSucceeded = 0, kCaptureFailed = 1 };

// Null for what is not worth a line.
const char* LabelOf(int32_t code) {
  switch (code) {
    case kNotifyFlush:
      return PhraseKey("Flushing sensor");
    case kNotifyExposure:
      return PhraseKey("Waiting for exposure");
    case kNotifyDownload:
      return abort_requested ? PhraseKey("Aborting Capture") : PhraseKey("Retrieving image");
    case kNotifyRemoved:
      return PhraseKey("Device removed");
    case kNotifyInserted:
      return PhraseKey("Device inserted");
    case kNotifyWait:
      return PhraseKey("Waiting for sensor");
    case kNotifyPoll:
      return nullptr;
    default:
      return PhraseKey("Unknown status");
  }
}

std::string SensorText(const std::string& family, const std::string& sensor) {
  return RenameForDisplay(FormatText("%s %s", family.c_str(), sensor.c_str()));
}

void TellOfNoMemory() {
  try {
    SetErrorText(kErrorOutOfResources, GetPhrase("Out of memory"));
  } catch (const std::exception&) {  // nor for the words
  }
}

void PostLine(StatusLineKind kind, const char* title, const std::string& text) {
  CaptureStatus().Post(kind, GetPhrase(title), text, kNoStatusLine);
}

}  // namespace

void IFace::OnNotify(const std::string& text, int32_t code, int32_t percent) {
  const char* const label = LabelOf(code);
  if (label != nullptr) Log().WriteLine("%s", label);
  const auto capture = CurrentCapture();
  if (capture == nullptr) return;  // given up
  const std::string family = capture->device->family_id();
  const std::string sensor = capture->device->sensor_id();
  switch (code) {
    case kNotifyFlush:
      return CaptureStatus().StatusFlush(family, sensor, percent);
    case kNotifyExposure:
      return OnExposure(*capture, SensorText(family, sensor), percent);
    case kNotifyDownload:
      return CaptureStatus().StatusRetrieve(family, sensor, percent);
    case kNotifyWait:
      return CaptureStatus().StatusWait(family, sensor, percent);
    case kNotifyRemoved:
      return OnRemoved(*capture, SensorText(family, sensor), text);
    default:
      return;
  }
}

void IFace::OnExposure(Capture& capture, const std::string& sensor, int32_t percent) {
  capture.waiting = percent == 0;
  capture.exposed = percent != 0;
  PassTrigger(capture);
  PostLine(kStatusLineNew, LabelOf(kNotifyExposure), sensor);
  if (percent == 0 && !abort_requested) {
    platform::PostToWindow(capture.dialog, kMessageExposureReady, 1, 0);
  }
}

void IFace::OnRemoved(Capture& capture, const std::string& sensor, const std::string& text) {
  SetError(kErrorUnclassified, "Device %s has been removed.", text.c_str());
  PostLine(kStatusLineNew, LabelOf(kNotifyRemoved), sensor);
  PostFinish(capture, kCaptureFailed, nullptr);
}

// Nothing may be thrown out of a thread; all that is thrown here is a want of memory.
uint32_t IFace::RunCaptureProc(Capture& capture) {
  try {
    return CaptureProc(capture);
  } catch (const std::exception&) {
    TellOfNoMemory();
    return FailCapture(capture);
  }
}

uint32_t IFace::CaptureProc(Capture& capture) {
  Device& device = *capture.device;
  const Result captured = device.CaptureImage();
  capture.waiting = false;
  if (Failed(captured) || capture.dialog == nullptr) return FailCapture(capture);
  SensorImage* taken = nullptr;
  if (Failed(device.GetImage(OFFSET_DEFECT_HISTOGRAM_CORRECTED, &taken))) {
    SetErrorText(kErrorUnclassified, GetPhrase("Unable to get image data from ZYR interface."));
    return FailCapture(capture);
  }
  Held<SensorImage> image(taken);
  if (abort_requested) {
    PostLine(kStatusLineFinal, PhraseKey("Aborting Capture"),
             GetPhrase("The system is currently aborting the active image acqusition."));
    image.reset();
    FailCapture(capture);
  } else {
    DeliverImage(capture, std::move(image));
  }
  return kThreadDone;
}

uint32_t IFace::FailCapture(Capture& capture) {
  capture.waiting = false;
  capture.capturing = false;
  PostFinish(capture, kCaptureFailed, nullptr);
  return kThreadFailed;
}

void IFace::DeliverImage(Capture& capture, Held<SensorImage> image) {
  Device& device = *capture.device;
  PostLine(kStatusLineFinal, PhraseKey("Processing Image Acquisition"),
           SensorText(device.GetProperty("id"), device.GetProperty("sensor_id")));
  const platform::GlobalHandle handle = ProcessBitmapToImage(*image, device.IsDevice2000Family());
  image.reset();
  capture.capturing = false;
  if (!PostFinish(capture, kCaptureSucceeded, handle) && handle != nullptr) {
    platform::FreeBlock(handle);  // nobody is there to take it
  }
}

// Once for each capture.
bool IFace::PostFinish(Capture& capture, uintptr_t failed, platform::GlobalHandle image) {
  if (capture.finished.exchange(true)) return false;
  return platform::PostToWindow(capture.dialog, kMessageCaptureFinished, failed,
                                reinterpret_cast<intptr_t>(image));
}

}  // namespace zyr
