// From the selected sensor to the image handle, with simulated sensors on a stopped clock.
#include "acquire/iface/iface.h"

#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "acquire/iface/display_name.h"
#include "acquire/iface/status_sink.h"
#include "foundation/support/error.h"
#include "foundation/support/format.h"
#include "hardware/device/device_2000.h"
#include "hardware/device/sensor_settings.h"
#include "platform/host/escape_key.h"
#include "settings/store.h"
#include "tests/acquire/acquire_test.h"
#include "tests/support/simulated_sensor.h"

namespace zyr::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr uint32_t kStatusMessage = 1026;

// Fetches no image from the sensor, and throws in a sensor that the user binned.
class ImagelessDevice : public Device2000 {
 public:
  using Device2000::Device2000;
  Result GetImage(int32_t, SensorImage**) override {
    if (GetProperty("binned") == "true") throw std::bad_alloc();
    return kUnexpected;
  }
};

SensorToPlug SensorOf(simulator::Family family, simulator::Size size) {
  SensorToPlug what;
  what.detector.family = family;
  what.detector.size = size;
  what.generation =
      family == simulator::kFamily303 ? simulator::kEndpointDriver : simulator::kPipeDriver;
  return what;
}

class IFaceTest : public AcquireTest {
 protected:
  void SetUp() override {
    AcquireTest::SetUp();
    host::SetClock(1'700'000'000);
    host::HoldThreads(true);
    SensorSettings() = {};
    PutSensorSettings("capture_timeout=\"15000\" flush_time=\"400\"");
    window_ = std::make_unique<host::FakeWindow>(
        [this](uint32_t message, uintptr_t w, intptr_t l) { return OnMessage(message, w, l); });
    CaptureStatus().SetTarget(window_->window(), kStatusMessage);
    CaptureStatus().SetRename(true);
    CaptureStatus().ResetLines();
  }
  void TearDown() override {
    if (iface_) iface_->CloseZYRHardware();
    host::ResetThreads();
    iface_.reset();
    manager_.reset();
    sensor_.reset();
    CaptureStatus().SetTarget(nullptr, 0);
    window_.reset();
    abort_requested = false;
    AcquireTest::TearDown();
  }

  void Plug(const SensorToPlug& what = {}, DeviceMaker maker = MakeDeviceOfProduct) {
    sensor_.emplace(what);
    manager_.emplace(std::move(maker));
    iface_.emplace(&*manager_);
    ASSERT_EQ(iface_->Initialize(), 1);
    std::vector<DeviceEntry> devices;
    ASSERT_EQ(iface_->GetDevices(&devices), 1u);
    name_ = devices[0].name;
    SetSelectedSensorNAME(name_);
    SetSelectedSensorID(devices[0].sensorId);
    SetSelectedSensorHWID(devices[0].deviceId);
    shown_ = RenameForDisplay(name_) + " " + devices[0].sensorId;
    titled_ = RenameForDisplay(name_ + " ( " + devices[0].sensorId + " )");
  }
  // One that the test exposes.
  void PlugUnexposed(simulator::Family family = simulator::kFamily2000) {
    auto what =
        SensorOf(family, family == simulator::kFamily303 ? simulator::kSizeC : simulator::kSizeA);
    what.timing.exposureAfter = 0;
    Plug(what);
  }
  void OpenSensor() {
    ASSERT_EQ(iface_->CreateLumoDevice(), 1) << LastErrorText();
    ASSERT_EQ(iface_->SetCaptureConfigurationPreferences(), 1) << LastErrorText();
  }
  // To the end of the capture thread, whose messages are handled then.
  void Capture() {
    ASSERT_EQ(iface_->CaptureImage(window_->window()), 1) << LastErrorText();
    EXPECT_TRUE(iface_->IsCapturing());
    ASSERT_TRUE(host::RunHeldThread());
    EXPECT_FALSE(iface_->IsCapturing());
    host::PumpMessages();
  }
  std::unique_ptr<CKIPDeepImage> TakeImage() {
    auto image = DeepImageFromPackedDibHandle(image_, nullptr);
    platform::FreeBlock(image_);
    image_ = nullptr;
    return image;
  }

  std::optional<SimulatedSensor> sensor_;
  std::optional<DevMgr> manager_;
  std::optional<IFace> iface_;
  std::unique_ptr<host::FakeWindow> window_;
  std::string name_;
  std::string shown_;   // name and identity as in final lines
  std::string titled_;  // the same as in lines of progress
  // "kind line title: text"; of updates that follow each other, the last.
  std::vector<std::string> lines_;
  std::vector<std::string> posted_;
  platform::GlobalHandle image_ = nullptr;
  std::function<void(const StatusRecord&)> onStatus_ = [](const StatusRecord&) {};

 private:
  intptr_t OnMessage(uint32_t message, uintptr_t w, intptr_t l) {
    if (message != kStatusMessage) {
      image_ = message == kMessageCaptureFinished ? reinterpret_cast<void*>(l) : image_;
      posted_.push_back(FormatText("%lu %lu %s", Lu(message), Lu(static_cast<uint32_t>(w)),
                                   l == 0 ? "0" : "image"));
      return 0;
    }
    const auto& record = *reinterpret_cast<const StatusRecord*>(l);
    const int32_t line = record.line == kNoStatusLine ? next_++ : record.line;
    const std::string head = FormatText("%d %d ", static_cast<int>(w), line);
    if (w == kStatusLineUpdate && !lines_.empty() && lines_.back().starts_with(head)) {
      lines_.pop_back();
    }
    lines_.push_back(head + record.title + ": " + record.text);
    onStatus_(record);
    return line;
  }

  int32_t next_ = 0;
};

TEST(DisplayNameTest, PutsTheSoldNamesInPlaceOfTheOthers) {
  const char* const kCases[][2] = {
      {"ZYR2000", "ZYR2000"},
      {"LUMORAY K3D", "ZYR303 K3D"},
      {"LUMO Lumo 20002000", "ZYR ZYR ZYR2000ZYR2000"},
      {"LUMO2000", "ZYR2000"},
      {"Lumoray", "ZYRray"},
  };
  for (const auto& c : kCases) EXPECT_EQ(RenameForDisplay(c[0]), c[1]);
}

TEST_F(IFaceTest, InitializesOnce) {
  Plug();
  host::PutFile("C:\\Windows\\twain_32\\ZYR\\settings.xml", "torn");
  EXPECT_EQ(iface_->Initialize(), 1);
  EXPECT_THAT(host::ShownPrompts(), IsEmpty());
  EXPECT_EQ(host::ActiveMonitors(), 1u);
  iface_.reset();
  EXPECT_EQ(host::ActiveMonitors(), 0u);
}

TEST_F(IFaceTest, TellsWhyItCannotInitialize) {
  EXPECT_EQ(IFace(nullptr).Initialize(), 0);
  EXPECT_THAT(host::ShownPrompts(), IsEmpty());

  manager_.emplace();
  iface_.emplace(&*manager_);
  host::FailMonitor({platform::MonitorStep::kCreateWindow, 8});
  EXPECT_EQ(iface_->Initialize(), 0);
  ASSERT_EQ(host::ShownPrompts().size(), 1u);
  EXPECT_EQ(host::ShownPrompts()[0].text,
            "Unable to initialize ZYR Device manager. The monitor class could not be created (OS "
            "error = 8).");
  EXPECT_EQ(iface_->IsDeviceAvailable("x"), 0) << "for good";
  EXPECT_EQ(LastErrorText(), "Unable to initialize ZYR hardware interface.");
  EXPECT_EQ(host::ShownPrompts().size(), 1u);

  host::ResetFiles();
  SensorSettings() = {};
  iface_.emplace(&*manager_);
  EXPECT_EQ(iface_->Initialize(), 0);
  EXPECT_EQ(host::ShownPrompts()[1].text,
            "Unable to initialize ZYR Device manager. " + LastErrorText());
  PutSensorSettings();
  EXPECT_EQ(iface_->Initialize(), 1) << "settings may come later";
}

TEST_F(IFaceTest, KnowsWhichSensorsAreThere) {
  Plug();
  EXPECT_EQ(iface_->IsDeviceAvailable("usb\\vid_082e&pid_2000\\0001"), 1);
  EXPECT_EQ(iface_->IsDeviceAvailable("usb\\vid_082e&pid_2000\\0002"), 0);
  sensor_->Unplug();
  sensor_->AnnounceRemoval();
  EXPECT_EQ(iface_->IsDeviceAvailable(sensor_->instanceId()), 0);
  EXPECT_EQ(LastErrorText(), "No ZYR devices detected. Please check your hardware connection.");
}

TEST_F(IFaceTest, TellsWhyItCannotOpenASensor) {
  Plug();
  EXPECT_EQ(iface_->CreateLumoDevice("2000", "S", " \t"), 0);
  EXPECT_EQ(LastErrorText(),
            "No viable ZYR sensor was selected in the sensor options; the selected sensor system "
            "may no longer be available");
  EXPECT_EQ(iface_->CreateLumoDevice("N", "S", "gone"), 0);
  EXPECT_EQ(LastErrorText(),
            "Unable to create ZYR device for device id: S ( gone ). Please be sure that the N "
            "hardware is plugged in and correctly configured and then retry the operation.");
  sensor_->Unplug();
  const std::string id = sensor_->instanceId();
  EXPECT_EQ(iface_->CreateLumoDevice("N", "S", id), 0);
  EXPECT_EQ(LastErrorText(),
            "Unable to open ZYR device: S ( " + id +
                " ). Please be sure that the N hardware is "
                "plugged in and correctly configured and then retry the operation.");
  EXPECT_EQ(iface_->SetCaptureConfigurationPreferences(), 0);
  EXPECT_EQ(LastErrorText(), "No ZYR hardware was opened");
  EXPECT_EQ(iface_->CaptureImage(window_->window()), 0);
  EXPECT_EQ(LastErrorText(), "No ZYR hardware was opened");
  iface_->ManualTrigger();
}

TEST_F(IFaceTest, TellsWhichPreferenceTheSensorRefuses) {
  Plug();
  ASSERT_EQ(iface_->CreateLumoDevice(), 1);
  const std::pair<bool (*)(const std::string&, uint32_t), const char*> kSettings[] = {
      {SetIntegrationTime, "integration time"},
      {SetThreshold, "detection threshold"},
      {SetSensitivity, "detection sensitivity"}};
  for (const auto& [set, name] : kSettings) {
    set("ZYR2000", 1'000'000);
    EXPECT_EQ(iface_->SetCaptureConfigurationPreferences(), 0);
    EXPECT_EQ(LastErrorText(), std::string("Unable to set ") + name + " for ZYR device.");
  }
  EXPECT_EQ(iface_->SetCaptureConfigurationPreferences("LUMORAY", "", ""), 1) << "has its own";
}

TEST_F(IFaceTest, CapturesFromA2000) {
  SetIntegrationTime("ZYR2000", 412);
  SetBinning("ZYR2000", true);
  Plug(SensorOf(simulator::kFamily2000, simulator::kSizeC));
  OpenSensor();
  Capture();
  EXPECT_EQ(sensor_->Commanded().integrationTime, 412u);
  EXPECT_THAT(posted_, ElementsAre("1035 1 0", "1034 0 image"));
  const std::string flush = ": Flushing the sensor to get it ready for image acquisition.";
  const std::string retrieve = ": Downloading the image from the hardware.";
  EXPECT_THAT(lines_, ElementsAre("3 0 Flushing " + titled_ + " - 0%" + flush,
                                  "4 0 Flushing " + titled_ + " - 100%" + flush,
                                  "3 1 Waiting for exposure: " + shown_,
                                  "3 2 Waiting for exposure: " + shown_,
                                  "3 3 Retrieving Image " + titled_ + " - 0%" + retrieve,
                                  "4 3 Retrieving Image " + titled_ + " - 100%" + retrieve,
                                  "2 4 Processing Image Acquisition: " + shown_));
  EXPECT_EQ(host::StartedThreads(), 1u);
  EXPECT_EQ(host::TimeCriticalThreads(), 1u);
  EXPECT_EQ(TakeImage()->GetWidth(), 445u);
}

TEST_F(IFaceTest, CapturesFromA303) {
  SetIntegrationTime("ZYR303", 401);
  Plug(SensorOf(simulator::kFamily303, simulator::kSizeD));
  OpenSensor();
  Capture();
  EXPECT_EQ(sensor_->Commanded().integrationTime, 401u);
  EXPECT_THAT(posted_, ElementsAre("1035 1 0", "1034 0 image"));
  EXPECT_THAT(lines_, testing::Contains("4 1 Waiting for " + titled_ +
                                        " - 100%: Waiting for the image from the hardware."));
  EXPECT_EQ(lines_.back().substr(4), "Processing Image Acquisition: " + shown_);
  EXPECT_EQ(platform::CurrentResources(), host::HostProgramResources());
  platform::FreeBlock(image_);
}

TEST_F(IFaceTest, EscapeTakesNoStepOutOfAnImage) {
  SensorImage frame;
  ASSERT_TRUE(frame.Create(20, 10, 600, 600));
  for (uint16_t x = 0; x < 20; ++x) frame.Row(x % 10)[x] = static_cast<uint16_t>(50 * x);
  const std::string whole = TakeBytes(IFace(nullptr).ProcessBitmapToImage(frame, 0));
  host::PressEscapeAtQuestion(1);
  EXPECT_EQ(TakeBytes(IFace(nullptr).ProcessBitmapToImage(frame, 0)), whole);
}

TEST_F(IFaceTest, Aborts) {
  PlugUnexposed();
  OpenSensor();
  const auto abortAt = [this](const std::string& title, const std::function<void()>& whileWaiting) {
    posted_.clear();
    onStatus_ = [=, this](const StatusRecord& record) {
      if (record.title.starts_with(title)) abort_requested = true;
      if (record.title == "Waiting for exposure") whileWaiting();
    };
    Capture();
    abort_requested = false;
  };
  const auto trigger = [this] { iface_->ManualTrigger(); };
  abortAt("Waiting for exposure", trigger);
  EXPECT_THAT(posted_, ElementsAre("1034 1 0")) << "nobody may fire any more";
  EXPECT_EQ(lines_.back().substr(4),
            "Aborting Capture: The system is currently aborting the active image acqusition.");
  abortAt("Flushing", trigger);  // before the sensor is armed
  EXPECT_THAT(posted_, ElementsAre("1034 1 0"));
  abortAt("Retrieving", [this] { sensor_->Expose(); });  // too late for the sensor
  EXPECT_THAT(posted_, ElementsAre("1035 1 0", "1034 1 0"));
}

TEST_F(IFaceTest, FailsWithoutImageAndWithoutMemory) {
  Plug({},
       [](uint16_t, const std::string& path, std::unique_ptr<UsbPort> port, DeviceCallback callback)
           -> Device* { return new ImagelessDevice(path, std::move(port), std::move(callback)); });
  OpenSensor();
  Capture();
  EXPECT_EQ(LastErrorText(), "Unable to get image data from ZYR interface.");
  EXPECT_THAT(posted_, ElementsAre("1035 1 0", "1034 1 0"));

  SetBinning("ZYR2000", true);
  OpenSensor();
  posted_.clear();
  Capture();
  EXPECT_EQ(LastErrorText(), "Out of memory");
  EXPECT_THAT(posted_, ElementsAre("1035 1 0", "1034 1 0"));
}

TEST_F(IFaceTest, StartsOneThreadAtMost) {
  Plug();
  OpenSensor();
  EXPECT_EQ(iface_->CaptureImage(nullptr), 0);
  EXPECT_EQ(LastErrorText(), "An internal error occurred");
  host::FailNextThread();
  EXPECT_EQ(iface_->CaptureImage(window_->window()), 0);
  EXPECT_EQ(LastErrorText(), "The system was unable to create the necessary callback thread.");
  EXPECT_FALSE(iface_->IsCapturing());
  EXPECT_EQ(host::StartedThreads(), 0u);

  EXPECT_EQ(iface_->CaptureImage(window_->window()), 1);
  EXPECT_EQ(iface_->CaptureImage(window_->window()), 0);
  iface_->CloseZYRHardware();
  EXPECT_FALSE(iface_->WaitForCaptureThread(0));
  EXPECT_EQ(iface_->CreateLumoDevice(), 0) << "the first thread has not ended";
  EXPECT_TRUE(host::RunHeldThread());
  EXPECT_TRUE(iface_->WaitForCaptureThread(0));
  EXPECT_EQ(iface_->CreateLumoDevice(), 1);
  EXPECT_EQ(host::StartedThreads(), 1u);
  EXPECT_THAT(host::QueuedMessages(), IsEmpty());
}

TEST_F(IFaceTest, PostsNothingOnceItIsClosed) {
  Plug();
  OpenSensor();
  uint64_t slept = 0;
  onStatus_ = [&](const StatusRecord& record) {
    if (record.title != "Waiting for exposure") return;
    iface_->CloseZYRHardware();
    slept = host::TimeSlept();
  };
  Capture();
  EXPECT_LT(host::TimeSlept() - slept, 500u) << "the wait is over at once";
  EXPECT_THAT(posted_, IsEmpty());
}

TEST_F(IFaceTest, KeepsNoTriggerForTheNextCapture) {
  PlugUnexposed();
  OpenSensor();
  onStatus_ = [this](const StatusRecord& record) {
    if (record.title == "Waiting for exposure") {
      sensor_->Expose();
    } else if (!record.title.starts_with("Flushing")) {
      iface_->ManualTrigger();
    }
  };
  iface_->ManualTrigger();
  Capture();
  EXPECT_NE(TakeImage(), nullptr);
  onStatus_ = [](const StatusRecord&) {};
  for (int i = 0; i < 2; ++i) {
    iface_->ManualTrigger();
    Capture();
    EXPECT_EQ(LastErrorText(),
              "The hardware timed-out waiting for x-ray exposure or was unplugged.")
        << "nobody has fired";
    EXPECT_EQ(posted_.back(), "1034 1 0");
  }

  onStatus_ = [this](const StatusRecord& record) {
    if (record.title.starts_with("Flushing")) iface_->ManualTrigger();
  };
  Capture();
  EXPECT_NE(TakeImage(), nullptr) << "it fires as soon as it is armed";
}

TEST_F(IFaceTest, EndsWhateverRuns) {
  host::HoldThreads(false);
  PlugUnexposed();
  EXPECT_TRUE(iface_->EndCapture(0)) << "nothing runs";
  for (const std::string at :
       {"Flushing", "Waiting for exposure", "Retrieving Image", "Processing Image", "all over"}) {
    OpenSensor();
    const bool endsByFlag = at == "Flushing";
    std::atomic<bool> isThere = false;
    std::atomic<bool> mayGoOn = false;
    onStatus_ = [&, this](const StatusRecord& record) {
      if (record.title == "Waiting for exposure" && at != record.title) sensor_->Expose();
      if (!record.title.starts_with(at)) return;
      isThere = true;
      while (!mayGoOn && !(endsByFlag && abort_requested)) std::this_thread::yield();
    };
    ASSERT_EQ(iface_->CaptureImage(window_->window()), 1) << at;
    if (at == "all over") {
      EXPECT_TRUE(iface_->WaitForCaptureThread(60'000));
    } else {
      while (!isThere && iface_->IsCapturing()) std::this_thread::yield();
      EXPECT_EQ(iface_->EndCapture(endsByFlag ? 10'000 : 10), endsByFlag)
          << "while a line is being handled: " << at;
      EXPECT_FALSE(iface_->IsCapturing());
    }
    mayGoOn = true;
    EXPECT_TRUE(iface_->EndCapture(60'000)) << at;
    EXPECT_FALSE(abort_requested);
    EXPECT_THAT(lines_.back(), testing::HasSubstr(at == "all over" ? "Processing" : at));
    host::PumpMessages();
    EXPECT_THAT(posted_, Not(testing::Contains(testing::HasSubstr("1034")))) << at;
  }
  std::vector<DeviceEntry> devices;
  ASSERT_EQ(iface_->GetDevices(&devices), 1u);
  EXPECT_EQ(devices[0].sensorId, GetSelectedSensorID()) << "known while it is closed";
}

TEST_F(IFaceTest, TellsOfTheOtherNotifications) {
  Plug();
  iface_->OnNotify("x", kNotifyExposure, 0);
  EXPECT_THAT(lines_, IsEmpty()) << "no capture";
  OpenSensor();
  ASSERT_EQ(iface_->CaptureImage(window_->window()), 1);
  for (const int32_t code : {0, 1, 6, 7, 999}) iface_->OnNotify("x", code, 0);
  EXPECT_THAT(lines_, IsEmpty());
  iface_->OnNotify("USB\\1", kNotifyRemoved, 0);
  EXPECT_EQ(LastErrorText(), "Device USB\\1 has been removed.");
  EXPECT_THAT(lines_, ElementsAre("3 0 Device removed: " + shown_));
  sensor_->Unplug();
  EXPECT_TRUE(host::RunHeldThread());
  host::PumpMessages();
  EXPECT_THAT(posted_, ElementsAre("1034 1 0")) << "once for each capture";
}

TEST(StatusSinkTest, TakesTheCallbacksAnswer) {
  StatusSink sink;
  std::vector<int32_t> kinds;
  sink.SetCallback(
      [](void* data, int32_t kind, const std::string& title, const std::string&, int32_t line) {
        static_cast<std::vector<int32_t>*>(data)->push_back(kind);
        EXPECT_EQ(title, "Flushing LUMORAY ( 2000 ) - 5%") << "names stay";
        EXPECT_EQ(line, kind == kStatusLineNew ? kNoStatusLine : 7);
        return 7;
      },
      &kinds);
  for (int i = 0; i < 2; ++i) sink.StatusFlush("LUMORAY", "2000", 5);
  EXPECT_THAT(kinds, ElementsAre(kStatusLineNew, kStatusLineUpdate));
}

}  // namespace
}  // namespace zyr::test
