// One capture: arm the sensor, wait for the exposure, fetch its frame and a dark one behind it.
#include <algorithm>
#include <cstddef>
#include <optional>

#include "foundation/support/error.h"
#include "foundation/support/phrase_lookup.h"
#include "hardware/device/device_2000.h"
#include "hardware/device/frame_reader.h"
#include "hardware/device/logged_operation.h"
#include "hardware/failure.h"
#include "platform/clock.h"
#include "settings/store.h"

namespace zyr {
namespace {

constexpr const char* kNoCorrectionData = PhraseKey(
    "The hardware correction data could not be downloaded from the hardware.  Please check the "
    "hardware connection and then retry the operation.");
constexpr const char* kNoThreshold = PhraseKey(
    "The x-ray detection threshold could not be set.  Please check the hardware connection and "
    "then retry the operation.");
constexpr const char* kNoIntegrationTime = PhraseKey(
    "The x-ray integration time could not be set.  Please check the hardware connection and then "
    "retry the operation.");
constexpr const char* kNoFlush = PhraseKey(
    "The hardware could not be flushed.  Please check the hardware connection and then retry the "
    "operation.");
constexpr const char* kNoDetection = PhraseKey(
    "The x-ray detection exposure could not be set.  Please check the hardware connection and "
    "then retry the operation.");
constexpr const char* kTimedOut =
    PhraseKey("The hardware timed-out waiting for x-ray exposure or was unplugged.");

constexpr char kWaitingForExposure[] = "Waiting for exposure.";
constexpr char kDownloading[] = "Downloading image.";

// Milliseconds.
constexpr int64_t kExtraFlush = 3000;
constexpr int64_t kRestAfterArming = 1500;
constexpr uint32_t kFlushStep = 200;
constexpr uint32_t kWaitStep = 100;
constexpr uint32_t kPollInterval = 100;
constexpr uint64_t kPatienceAfterAbort = 10'000;

// States of the CCD logic, in the order in which a wait accepts more of them.
constexpr uint8_t kCcdStates[] = {0x60, 0x50, 0x40, 0x30, 0x10};
constexpr uint8_t kCcdStateMask = 0xF0;
constexpr int32_t kNoTimeLimit = -1;

// How many of the states end a wait.
struct AcceptedStates {
  size_t exposed;
  size_t darkReady;
};
constexpr AcceptedStates kAccepted = {3, 1};
constexpr AcceptedStates kAcceptedBinned = {4, 2};

bool IsAccepted(const CcdStatus& block, uint8_t state) {
  return (block[0] & kCcdStateMask) == state;
}

// Ends the waits that have no time limit of their own, so that a sensor which stays busy for ever
// cannot hold a user who has given up: its last chance begins when the abort is first seen.
class Patience {
 public:
  bool IsOver() {
    if (!abort_requested) return false;
    const uint64_t now = platform::Ticks();
    if (!abortSeen_) abortSeen_ = now;
    return now - *abortSeen_ > kPatienceAfterAbort;
  }

 private:
  std::optional<uint64_t> abortSeen_;
};

}  // namespace

Result Device2000::CaptureImage() {
  const LoggedOperation operation("Device2000::CaptureImage()");
  SetErrorText(kErrorUnclassified, {});
  const Result armed = Arm();
  if (Failed(armed)) return armed;
  const AcceptedStates& accepted = IsBinned() ? kAcceptedBinned : kAccepted;
  Notify(kWaitingForExposure, kNotifyExposure, 0);
  if (!WaitForCcdStatus(accepted.exposed, capture_timeout_)) {
    AbortCapture();
    trigger_requested_ = false;  // of a user who has seen no end yet: not for the next capture
    return FailWith(DEV_E_EXPOSURE_TIMEOUT, kTimedOut);
  }
  Notify("Exposure detected.", kNotifyExposure, 100);
  // What goes wrong from here on costs pixels and not the image: the patient has had the dose.
  Notify(kDownloading, kNotifyDownload, 0);
  ReadImage(&normal_frame_);
  Notify(kDownloading, kNotifyDownload, 50);
  trigger_requested_ = false;
  WaitForCcdStatus(accepted.darkReady, kNoTimeLimit);
  ReadImage(&dark_frame_);
  Notify(kDownloading, kNotifyDownload, 100);
  return kOk;
}

Result Device2000::Arm() {
  bool valid = false;
  Result result = GetSettingsFrom1WireMemory(&valid);
  if (Failed(result)) return result;
  if (!valid) return FailWith(DEV_E_NO_CORRECTION_DATA, kNoCorrectionData);
  result = SendThreshold(*port_, threshold_);
  if (Failed(result)) return FailWith(result, kNoThreshold);
  result = SendIntegrationTime(*port_, integration_time_);
  if (Failed(result)) return FailWith(result, kNoIntegrationTime);
  result = port_->Flush();
  if (Failed(result)) return FailWith(result, kNoFlush);
  const bool isExtended = family_id_ == "2000" && GetExtendedFlush("ZYR2000");
  WaitFlush(int64_t{flush_time_} + (isExtended ? kExtraFlush : 0));
  result = DetectExposure(*port_, sensitivity_);
  if (Failed(result)) return FailWith(result, kNoDetection);
  if (family_id_ == "LUMORAY") WaitAdditional(kRestAfterArming);
  return kOk;
}

void Device2000::WaitFlush(int64_t milliseconds) {
  WaitInSteps({"Preparing sensor.", kNotifyFlush, kFlushStep}, milliseconds);
}

void Device2000::WaitAdditional(int64_t milliseconds) {
  WaitInSteps({"Waiting.", kNotifyWait, kWaitStep}, milliseconds);
}

void Device2000::WaitInSteps(const SteppedWait& wait, int64_t milliseconds) {
  const int64_t steps = milliseconds / wait.step;
  for (int64_t i = 0; i < steps && !abort_requested; ++i) {
    Notify(wait.text, wait.code, static_cast<int32_t>(i * 100 / steps));
    platform::SleepFor(wait.step);
  }
  Notify(wait.text, wait.code, 100);
}

// True once the CCD logic is in one of the first `count` states; false after `timeout`
// milliseconds, which a negative number means never to end, and as soon as the status cannot be
// read.
bool Device2000::WaitForCcdStatus(size_t count, int32_t timeout) {
  const uint64_t start = platform::Ticks();
  Patience patience;
  for (;;) {
    if (trigger_requested_.exchange(false)) TriggerExposure(*port_);
    Notify(kWaitingForExposure, kNotifyPoll, 0);
    platform::SleepFor(kPollInterval);
    CcdStatus block{};
    if (Failed(ReadCcdStatus(*port_, &block))) return false;
    for (size_t i = 0; i < count; ++i) {
      if (IsAccepted(block, kCcdStates[i])) return true;
      if (timeout >= 0 && platform::Ticks() - start > static_cast<uint64_t>(timeout)) return false;
    }
    if (timeout < 0 && patience.IsOver()) return false;
  }
}

Result Device2000::ReadImage(SensorImage* frame) {
  const FrameGeometry geometry =
      FrameGeometryOf(sensor_width_, sensor_height_, size_code_, full_resolution_ != 0);
  return ReadFrame(*port_, geometry, static_cast<uint32_t>(GetDpiX()),
                   static_cast<uint32_t>(GetDpiY()), frame);
}

// Lets an armed sensor finish its cycle, so that the next capture finds it idle.
Result Device2000::AbortCapture() {
  const LoggedOperation operation("Device2000::AbortCapture()");
  trigger_requested_ = true;
  if (!WaitForCcdStatus(kAccepted.exposed, capture_timeout_)) return DEV_E_ABORT_TIMEOUT;
  trigger_requested_ = false;
  SensorImage thrownAway;
  ReadImage(&thrownAway);
  WaitForCcdStatus(kAccepted.darkReady, kNoTimeLimit);
  ReadImage(&dark_frame_);
  return kOk;
}

void Device2000::ManualTrigger() { trigger_requested_ = true; }

}  // namespace zyr
