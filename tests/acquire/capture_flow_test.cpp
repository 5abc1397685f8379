// From "Acquire Image" to the image in the cache, with simulated sensors on a stopped clock.
#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "acquire/iface/display_name.h"
#include "foundation/log/log.h"
#include "foundation/support/error.h"
#include "hardware/device/sensor_settings.h"
#include "platform/files.h"
#include "settings/store.h"
#include "tests/acquire/capture_dialog_fixture.h"
#include "tests/support/simulated_sensor.h"

namespace zyr::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class CaptureFlowTest : public CaptureDialogFixture {
 protected:
  void SetUp() override {
    CaptureDialogFixture::SetUp();
    host::SetClock(1'700'000'000);
    host::HoldThreads(true);
    SensorSettings() = {};
    PutSensorSettings("capture_timeout=\"15000\" flush_time=\"400\"");
    SetAlwaysPromptForSensor(false);
  }
  void TearDown() override {
    dialog_.reset();
    host::ResetThreads();
    sensors_.reset();
    manager_.reset();
    sensor_.reset();
    Log().Close();
    EXPECT_FALSE(abort_requested);
    CaptureDialogFixture::TearDown();
  }

  // A sensor that is exposed by itself, or by the test.
  void PlugAndOpen(bool isExposed = true) {
    SensorToPlug what;
    if (!isExposed) what.timing.exposureAfter = 0;
    sensor_.emplace(what);
    manager_.emplace();
    sensors_.emplace(&*manager_);
    ASSERT_TRUE(Open());
  }
  static SensorToPlug AnotherSensor() {
    SensorToPlug another;
    another.instance = "0002";
    return another;
  }
  // Until the thread of the capture has ended, and its messages are handled.
  void Finish() {
    ASSERT_TRUE(host::RunHeldThread());
    host::PumpMessages();
  }
  void CaptureOne() {
    view_->Press(kCommandAcquireImage);
    Finish();
  }
  void OnTitle(const std::string& title, std::function<void()> action) {
    view_->onStatus = [=](const StatusLine& line) {
      if (line.title.starts_with(title)) action();
    };
  }
  std::vector<std::string> Titles() const {
    std::vector<std::string> titles;
    for (const StatusLine& line : view_->lines) titles.push_back(line.title);
    return titles;
  }
  StatusLine Line(const std::string& title) const {
    for (const StatusLine& line : view_->lines) {
      if (line.title == title) return line;
    }
    return {};
  }
  void ExpectIdle(const std::string& what) {
    EXPECT_FALSE(sensors_->IsCapturing()) << what;
    for (const uint32_t command :
         {kCommandAcquireImage, kCommandAcquireSeries, kCommandSelectSensor, kCommandThumbnails}) {
      EXPECT_TRUE(Enabled(command)) << what;
    }
    EXPECT_EQ(Enabled(kCommandReturnImages), images_.GetCount() != 0) << what;
    EXPECT_FALSE(view_->visible[kCommandManualTrigger]) << what;
    EXPECT_FALSE(view_->stopIcon) << what;
    EXPECT_FALSE(view_->split && images_.GetCount() == 0) << what;
    EXPECT_NE(view_->captions[kCommandCancel], "Stop Capture") << what;
    EXPECT_FALSE(abort_requested) << what;
  }
  bool IsOnDisk(size_t index) const {
    const auto bytes = host::FileBytes(images_.GetAt(index)->fileName);
    return bytes && bytes->size() > images_.GetAt(index)->PixelDataSize();
  }

  std::optional<SimulatedSensor> sensor_;
  std::optional<DevMgr> manager_;
};

TEST_F(CaptureFlowTest, TakesASingleImage) {
  SetDisplayManuallyTrigger(true);
  PlugAndOpen();
  view_->Press(kCommandAcquireImage);
  for (const auto& [command, enabled] : view_->enabled) EXPECT_FALSE(enabled) << command;
  EXPECT_TRUE(view_->visible[kCommandManualTrigger]);
  for (const auto& [command, enabled] : std::map(view_->enabled)) {
    view_->Press(command);  // as Enter may, although they are disabled
  }
  EXPECT_EQ(host::HeldThreads(), 1u);
  EXPECT_THAT(host::ShownPrompts(), IsEmpty());
  const std::string name = GetSelectedSensorID();
  EXPECT_EQ(Line("Using ZYR2000 Sensor ( " + name + " )").text,
            RenameForDisplay("Hardware ID: " + sensor_->instanceId()) +
                "\nLoading the hardware preferences\nOpening the selected hardware\nSetting the "
                "hardware preferences\nSpawning Capture Thread");

  ASSERT_TRUE(host::RunHeldThread());
  ASSERT_TRUE(host::PumpOneMessage());
  EXPECT_EQ(view_->panel, CapturePanel::kExposure);
  EXPECT_EQ(view_->exposureText, "Ready For X-ray Exposure");
  EXPECT_THAT(host::PlayedSounds(), ElementsAre(1003));
  host::PumpMessages();
  EXPECT_THAT(
      Titles(),
      ElementsAre("Initializing The Hardware", HasSubstr("Using"), HasSubstr("Flushing ZYR2000"),
                  "Waiting for exposure", "Waiting for exposure", HasSubstr("Retrieving Image"),
                  "Processing Image Acquisition", "Downloading Image From Hardware",
                  "Performing Our Image Enhancements", "Image Successfully Downloaded",
                  "Generating Displayable Image"));
  EXPECT_EQ(Line("Performing Our Image Enhancements"),
            (StatusLine{kStatusStep, "Performing Our Image Enhancements",
                        "Applying the image processing options\nApplying automatic "
                        "B/C\nConsidering brightness, contrast and gamma\nConsidering noise "
                        "removal\nConsidering sharpening\nConsidering laplace\nConsidering "
                        "smoothing\nSaving the image to the cache"}));
  EXPECT_EQ(Line("Image Successfully Downloaded").text, images_.DescribeLast() + "\n" + name);
  EXPECT_EQ(view_->panel, CapturePanel::kThumbnails);
  ASSERT_EQ(images_.GetCount(), 1u);
  const CachedImage& image = *images_.GetAt(0);
  EXPECT_EQ(image.captureTime, static_cast<uint32_t>(1'700'000'000 + host::TimeSlept() / 1000));
  EXPECT_FALSE(image.isZyr303 || image.rowsTopDown());
  EXPECT_TRUE(IsOnDisk(0));
  ExpectIdle("after one image");
  SetErrorText(0, "");
  EXPECT_EQ(sensors_->CaptureImage(view_->window), 0) << "the hardware is closed";

  isDelivering_ = true;
  CaptureOne();
  EXPECT_TRUE(images_.GetAt(1)->rowsTopDown()) << "it goes out with the first one";
}

TEST_F(CaptureFlowTest, TakesASeriesUntilItIsStopped) {
  PlugAndOpen(false);
  OnTitle("Waiting for exposure", [this] { sensor_->Expose(); });
  view_->Press(kCommandAcquireSeries);
  EXPECT_TRUE(view_->split && view_->stopIcon);
  EXPECT_EQ(view_->captions[kCommandCancel], "Stop Capture");
  Finish();
  EXPECT_EQ(Line("Preparing Hardware").text, "Preparing the hardware to capture another image.");
  EXPECT_EQ(view_->refreshes, 1);
  EXPECT_FALSE(Enabled(kCommandReturnImages));
  Finish();
  EXPECT_THAT(host::PlayedSounds(), ElementsAre(1003, 1003));
  ASSERT_EQ(images_.GetCount(), 2u);
  EXPECT_EQ(images_.GetAt(0)->preview, nullptr) << "an endless series would fill the memory";
  const auto titles = Titles();
  EXPECT_EQ(std::count(titles.begin(), titles.end(), "Waiting for exposure"), 4);
  EXPECT_EQ(std::count_if(titles.begin(), titles.end(),
                          [](const std::string& title) { return title.starts_with("Flushing"); }),
            2)
      << "each capture has its own line of progress";
  platform::SendToWindow(view_->window, kMessageRefreshThumbnails, 0, 0);
  EXPECT_EQ(view_->panel, CapturePanel::kStatus) << "what the sensor does stays in view";
  EXPECT_FALSE(Enabled(kCommandReturnImages));

  OnTitle("Waiting for exposure", [this] {
    view_->Press(kCommandCancel);
    EXPECT_TRUE(abort_requested);
    view_->Press(kCommandCancel);  // an impatient user
    view_->Press(kCommandAcquireImage);
  });
  Finish();
  EXPECT_THAT(Titles(), testing::Not(testing::Contains("What Is This Message Area?")));
  EXPECT_EQ(Line("Image Acquisition Error"),
            (StatusLine{kStatusError, "Image Acquisition Error", "Image acquisition canceled"}));
  EXPECT_EQ(host::PlayedSounds().size(), 2u);
  EXPECT_EQ(host::HeldThreads(), 0u);
  EXPECT_EQ(images_.GetCount(), 2u);
  EXPECT_EQ(view_->panel, CapturePanel::kThumbnails);
  EXPECT_FALSE(view_->split) << "the user knows why it has ended";
  ExpectIdle("after the series");
  EXPECT_EQ(closeRequests_, 0);
  view_->Press(kCommandCancel);
  EXPECT_EQ(closeRequests_, 1);
}

TEST_F(CaptureFlowTest, FiresByHand) {
  PlugAndOpen(false);
  view_->Press(kCommandManualTrigger);
  OnTitle("Waiting for exposure", [this] { view_->Press(kCommandManualTrigger); });
  CaptureOne();
  EXPECT_EQ(images_.GetCount(), 1u);
  EXPECT_EQ(view_->visible[kCommandManualTrigger], false);
}

TEST_F(CaptureFlowTest, FailsToArmAgain) {
  PlugAndOpen();
  view_->Press(kCommandAcquireSeries);
  ASSERT_TRUE(host::RunHeldThread());
  host::FailNextThread();
  host::PumpMessages();
  EXPECT_EQ(LastTitle(), "Unable To Reenable Hardware");
  EXPECT_EQ(images_.GetCount(), 1u);
  EXPECT_TRUE(view_->split) << "the image and the reason are both in view";
  ExpectIdle("unable to arm again");
}

TEST_F(CaptureFlowTest, TellsWhichStepOfTheSetUpFails) {
  struct Case {
    const char* log;
    std::function<void()> breakIt;
    std::function<void()> mend;
  };
  std::vector<Case> cases = {
      {"HardwarePropertyManager.LoadPreferences()::",
       [] { platform::RemoveFile("C:\\Windows\\twain_32\\ZYR\\settings.xml"); },
       [] { PutSensorSettings(); }},
      {"ZYRIFace.CreateZYRDevice()::Unable to open", [this] { sensor_->Unplug(); },
       [this] { sensor_->Replug(); }},
      {"ZYRIFace.SetCaptureConfigurationPreferences()::Unable to set integration time",
       [] { SetIntegrationTime("ZYR2000", 1'000'000); },
       [] { SetIntegrationTime("ZYR2000", 300); }},
      {"ZYRIFace.InvokeCaptureThread()::The system was unable", [] { host::FailNextThread(); },
       [] {}},
  };
  SetDisplayManuallyTrigger(true);
  Log().Open("C:\\", "dialog.log");
  Log().SetFlushEachLine(true);
  PlugAndOpen();
  CaptureOne();
  ASSERT_EQ(images_.GetCount(), 1u);
  for (const Case& c : cases) {
    c.breakIt();
    view_->Press(kCommandAcquireImage);
    EXPECT_EQ(view_->lines.back(), (StatusLine{kStatusError, "Hardware Error", LastErrorText()}))
        << c.log;
    EXPECT_TRUE(view_->split);
    ExpectIdle(c.log);
    EXPECT_THAT(host::FileBytes("C:\\dialog.log").value_or(""), HasSubstr(c.log));
    c.mend();
  }
  EXPECT_EQ(host::HeldThreads(), 0u);
  CaptureOne();
  EXPECT_EQ(images_.GetCount(), 2u);
  EXPECT_FALSE(view_->split);
}

TEST_F(CaptureFlowTest, TellsOfCapturesWithoutImage) {
  PlugAndOpen(false);
  OnTitle("Waiting for exposure", [this] {
    sensor_->Unplug();
    sensor_->AnnounceRemoval();
  });
  CaptureOne();
  EXPECT_EQ(Line("Image Acquisition Error").text, "Image acquisition canceled");
  EXPECT_EQ(LastTitle(), "Step #1: Acquire New Image");
  ExpectIdle("unplugged");

  sensor_->Replug();
  sensor_->AnnounceArrival();
  OnTitle("Waiting for exposure", [this] { sensor_->Expose(); });
  view_->Press(kCommandAcquireImage);
  host::FailNextAllocations(1);
  Finish();
  EXPECT_EQ(Line("Unable To Download Image From Hardware!").text, "Out of memory");
  ExpectIdle("without memory");

  view_->Press(kCommandAcquireImage);
  ASSERT_TRUE(host::RunHeldThread());
  ASSERT_TRUE(host::PumpOneMessage());
  EXPECT_EQ(view_->panel, CapturePanel::kExposure);
  view_->Press(kCommandCancel);  // the image is there, but the user does not want it
  EXPECT_EQ(view_->panel, CapturePanel::kStatus) << "no call for an exposure that nobody awaits";
  host::PumpMessages();
  EXPECT_THAT(LastTitle(), "Step #1: Acquire New Image");
  ExpectIdle("too late");
  EXPECT_EQ(images_.GetCount(), 0u);

  const platform::GlobalHandle stray = BlockOf("of nobody's capture");
  platform::SendToWindow(view_->window, kMessageCaptureFinished, 0,
                         reinterpret_cast<intptr_t>(stray));
  platform::SendToWindow(view_->window, kMessageExposureReady, 1, 0);
  EXPECT_NE(view_->panel, CapturePanel::kExposure);
  EXPECT_EQ(TakeBytes(stray), "of nobody's capture");
}

TEST_F(CaptureFlowTest, SurvivesFaultsInEveryPhase) {
  PlugAndOpen();
  CaptureOne();
  const uint32_t before = sensor_->Statistics().transfers;
  CaptureOne();
  const uint32_t transfers = sensor_->Statistics().transfers - before;
  for (const auto kind : {simulator::kFaultError, simulator::kFaultUnplug}) {
    for (const uint32_t command : {kCommandAcquireImage, kCommandAcquireSeries}) {
      for (const uint32_t at : {0u, 5u, transfers / 4, transfers / 2, transfers - 2}) {
        const std::string what = FormatText("%d, %lu: %lu", kind, Lu(command), Lu(at));
        const size_t had = images_.GetCount();
        sensor_->SetFault(kind, at);
        view_->Press(command);
        if (host::RunHeldThread()) host::PumpMessages();
        if (view_->stopIcon) {  // the fault has cost pixels only, and the series goes on
          view_->Press(kCommandCancel);
          Finish();
        }
        ExpectIdle(what);
        const auto titles = Titles();
        const auto hasLine = [&](const char* title) {
          return std::count(titles.begin(), titles.end(), title) == 1;
        };
        EXPECT_EQ(images_.GetCount(), had + (hasLine("Image Successfully Downloaded") ? 1 : 0));
        EXPECT_TRUE(images_.GetCount() > had || hasLine("Hardware Error") ||
                    hasLine("Image Acquisition Error"))
            << what;
        EXPECT_EQ(view_->split, hasLine("Hardware Error") || (images_.GetCount() == had &&
                                                              hasLine("Image Acquisition Error")))
            << what << ": an error stays in view";
        sensor_->SetFault(simulator::kNoFault, 0);
        sensor_->AnnounceRemoval();
        sensor_->Replug();
        sensor_->AnnounceArrival();
      }
    }
    const size_t had = images_.GetCount();
    CaptureOne();
    EXPECT_EQ(images_.GetCount(), had + 1) << kind;
  }
}

TEST_F(CaptureFlowTest, GoesOnByItself) {
  SetReturnImmediatelyAfterCap(true);
  SetProceedDirectlyToScan(true);
  SetSISingleCaptureMode(true);
  PlugAndOpen();
  EXPECT_EQ(view_->captions.count(kCommandCancel), 0u);
  onNotify_ = [this] {
    EXPECT_TRUE(images_.GetAt(0)->rowsTopDown());
    ExpectIdle("while the application fetches");
    images_.DeleteAll();
  };
  Finish();
  EXPECT_EQ(xferReadies_, 1);

  SetSISingleCaptureMode(false);
  ASSERT_TRUE(Open());
  EXPECT_EQ(view_->captions[kCommandCancel], "Stop Capture");
  Finish();
  EXPECT_EQ(xferReadies_, 1) << "a series is not interrupted";
  EXPECT_EQ(host::HeldThreads(), 1u);
}

TEST_F(CaptureFlowTest, AsksForTheSensor) {
  const char always[] = "You will be prompted to select a sensor each time you acquire an image.";
  PlugAndOpen();
  EXPECT_EQ(view_->tips[kCommandSelectSensor], always) << "none is selected";
  EXPECT_THAT(view_->tips[kCommandHelp], HasSubstr("on-line help"));
  const SimulatedSensor second(AnotherSensor());
  sensors_->Initialize();
  view_->Press(kCommandAcquireSeries);
  EXPECT_EQ(LastTitle(), "Step #1: Acquire New Image") << "the user has cancelled";
  EXPECT_EQ(LastErrorText(), "The user did not select a sensor");
  ExpectIdle("cancelled");
  view_->Press(kCommandSelectSensor);
  EXPECT_EQ(LastTitle(), "No Sensor Is Selected!");

  view_->answers.sensor = [](const std::vector<SensorRow>& rows) { return rows.size() - 1; };
  view_->Press(kCommandSelectSensor);
  const std::string chosen = GetSelectedSensorHWID();
  EXPECT_FALSE(chosen.empty());
  EXPECT_THAT(view_->tips[kCommandSelectSensor],
              HasSubstr("acquire an image.\n2000 Sensor " + GetSelectedSensorID()));
  EXPECT_EQ(view_->lines.back().text, RenameForDisplay("Hardware ID: " + chosen));
  CaptureOne();
  EXPECT_EQ(view_->selectionsShown, 3);
  EXPECT_EQ(images_.GetAt(0)->sensorId, GetSelectedSensorID());

  SetAlwaysPromptForSensor(true);
  host::FailRegistryWrites(true);
  view_->answers.sensor = [this](const std::vector<SensorRow>& rows) -> size_t {
    view_->Press(kCommandCancel);  // is not heard now
    return rows[0].deviceId == GetSelectedSensorHWID() ? 1 : 0;
  };
  CaptureOne();
  EXPECT_EQ(LastPrompt(), "Error Saving Settings");
  EXPECT_EQ(GetSelectedSensorHWID(), chosen);
  EXPECT_EQ(images_.GetCount(), 2u);
  EXPECT_THAT(view_->lines.at(1).text, testing::Not(HasSubstr(RenameForDisplay(chosen))))
      << "without the right to store it, the choice holds as long as the dialog";
}

TEST_F(CaptureFlowTest, KeepsWhatCannotBeSaved) {
  PlugAndOpen();
  host::FailWrites(true);
  CaptureOne();
  CaptureOne();
  EXPECT_EQ(Line("Unable To Save Image!").kind, kStatusError);
  EXPECT_TRUE(view_->split);
  EXPECT_EQ(view_->panel, CapturePanel::kThumbnails);
  ASSERT_EQ(images_.GetCount(), 2u);
  ASSERT_NE(dialog_->Thumbnail(0, 10, 10), nullptr);
  EXPECT_FALSE(images_.GetAt(0)->PixelData().empty());
  host::FailWrites(false);
  CaptureOne();
  EXPECT_FALSE(view_->split);
  for (const size_t index : {0, 1, 2}) EXPECT_TRUE(IsOnDisk(index)) << index;

  for (const uint32_t command : {kCommandReturnImages, kCommandCancel}) {
    host::FailWrites(true);
    CaptureOne();
    host::FailWrites(false);
    EXPECT_FALSE(IsOnDisk(images_.GetCount() - 1));
    view_->Press(command);
    EXPECT_TRUE(IsOnDisk(images_.GetCount() - 1));
  }

  ASSERT_TRUE(Open());
  host::FailWrites(true);
  view_->Press(kCommandAcquireSeries);
  Finish();
  host::FailWrites(false);
  view_->Press(kCommandCancel);
  Finish();
  EXPECT_TRUE(view_->split) << "the image that could not be saved is no fault of the user's";
  ExpectIdle("after a series");
}

TEST_F(CaptureFlowTest, StopsASeriesFromBehindABox) {
  PlugAndOpen();
  host::SetFreeSpace(20'000'000);
  host::OnPrompt([this](const host::ShownPrompt&) {
    view_->Press(kCommandCancel);
    view_->Press(kCommandAcquireImage);
  });
  view_->Press(kCommandAcquireSeries);
  Finish();
  ASSERT_EQ(images_.GetCount(), 1u);
  EXPECT_TRUE(IsOnDisk(0));
  EXPECT_EQ(host::HeldThreads(), 0u);
  ExpectIdle("stopped");

  host::OnPrompt([this](const host::ShownPrompt&) {
    view_->Press(kCommandCancel);
    platform::DestroyWindowOf(view_->window);
    dialog_.reset();
  });
  CaptureOne();
  EXPECT_EQ(view_->dialog.lock(), nullptr);
  ASSERT_EQ(images_.GetCount(), 2u);
  EXPECT_TRUE(IsOnDisk(1)) << "and enhanced";
}

TEST_F(CaptureFlowTest, EndsWithItsWindow) {
  PlugAndOpen(false);
  const auto destroy = [this] { platform::DestroyWindowOf(view_->window); };
  OnTitle("Waiting for exposure", destroy);
  view_->Press(kCommandAcquireSeries);
  ASSERT_TRUE(host::RunHeldThread());
  EXPECT_EQ(images_.GetCount(), 0u);
  EXPECT_THAT(host::QueuedMessages(), IsEmpty());
  EXPECT_TRUE(sensors_->WaitForCaptureThread(0));

  for (const bool objectToo : {false, true}) {
    images_.DeleteAll();
    ASSERT_TRUE(Open());
    OnTitle("Waiting for exposure", [this] { sensor_->Expose(); });
    view_->Press(kCommandAcquireImage);
    ASSERT_TRUE(host::RunHeldThread());
    EXPECT_EQ(images_.GetCount(), 0u);
    objectToo ? dialog_.reset() : destroy();  // before the last message is handled
    ASSERT_EQ(images_.GetCount(), 1u);
    EXPECT_TRUE(IsOnDisk(0));
  }

  SetAlwaysPromptForSensor(true);
  const SimulatedSensor second(AnotherSensor());
  second.AnnounceArrival();
  ASSERT_TRUE(Open());
  view_->answers.sensor = [&](const std::vector<SensorRow>&) -> size_t {
    destroy();
    return 0;
  };
  view_->Press(kCommandAcquireImage);
  EXPECT_EQ(LastTitle(), "Initializing The Hardware");
  EXPECT_EQ(host::HeldThreads(), 0u) << "nobody would see it";
}

TEST_F(CaptureFlowTest, FinishesADownloadWithoutItsWindow) {
  host::HoldThreads(false);
  PlugAndOpen(false);
  std::atomic<bool> isThere = false;
  view_->onStatus = [&, this](const StatusLine& line) {
    if (line.title == "Waiting for exposure") sensor_->Expose();
    if (!line.title.starts_with("Retrieving") || isThere.exchange(true)) return;
    while (!view_->goes) std::this_thread::yield();
  };
  view_->Press(kCommandAcquireImage);
  while (!isThere) std::this_thread::yield();
  platform::DestroyWindowOf(view_->window);
  EXPECT_TRUE(sensors_->WaitForCaptureThread(0));
  ASSERT_EQ(images_.GetCount(), 1u);
  EXPECT_TRUE(IsOnDisk(0));
}

}  // namespace
}  // namespace zyr::test
