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
#include "imaging/operations/levels/histogram.h"
#include "imaging/operations/levels/invert.h"
#include "platform/host/escape_key.h"
#include "settings/store.h"
#include "tests/acquire/acquire_test.h"
#include "tests/support/simulated_sensor.h"

namespace zyr::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr uint32_t kStatusMessage = 1026;
constexpr char kTimedOut[] = "The hardware timed-out waiting for x-ray exposure or was unplugged.";

// Fetches no image from the sensor, and throws in a sensor that the user binned.
class ImagelessDevice : public Device2000 {
 public:
  using Device2000::Device2000;
  Result GetImage(int32_t, SensorImage**) override {
    if (GetProperty("binned") == "true") throw std::bad_alloc();
    return kUnexpected;
  }
};

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
  // The frame that the sensor's device still has.
  Held<SensorImage> Frame() {
    Device* device = nullptr;
    SensorImage* frame = nullptr;
    EXPECT_EQ(manager_->CreateDevice(sensor_->instanceId(), &device), kOk);
    const Held<Device> held(device);
    EXPECT_EQ(device->GetImage(OFFSET_DEFECT_HISTOGRAM_CORRECTED, &frame), kOk);
    return Held<SensorImage>(frame);
  }
  std::unique_ptr<CKIPDeepImage> TakeImage() {
    auto image = DeepImageFromPackedDibHandle(image_, nullptr);
    platform::FreeBlock(image_);
    image_ = nullptr;
    return image;
  }
  // The handle's image is the frame's, turned, spread and, where it is marked, turned again.
  void ExpectImageOfFrame(const std::function<bool(uint32_t x, uint32_t y)>& isMarked) {
    const auto image = TakeImage();
    ASSERT_NE(image, nullptr);
    const auto frame = Frame();
    ASSERT_EQ(image->GetWidth(), frame->GetWidth());
    ASSERT_EQ(image->GetHeight(), frame->GetHeight());
    EXPECT_EQ(image->GetBits(), 16u);
    EXPECT_NEAR(image->GetXResolution(), frame->GetDpiX(), 1);
    CKIPDeepImage raw;
    raw.Attach(frame->GetData(), frame->GetWidth(), frame->GetHeight(), frame->GetRowPixels(), 16,
               false);
    const auto spread = DeepAutoBrightnessContrast(DeepInvert(&raw, nullptr).get(), 1, 1, nullptr);
    size_t wrong = 0;
    for (uint32_t y = 0; y < image->GetHeight(); ++y) {
      for (uint32_t x = 0; x < image->GetWidth(); ++x) {
        const uint16_t level = *spread->GetPixelPtr(x, y);
        const int expected = isMarked(x, y) ? 0xFFFF - level : level;
        wrong += *image->GetPixelPtr(x, y) != expected ? 1 : 0;
      }
    }
    EXPECT_EQ(wrong, 0u);
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

SensorToPlug SensorOf(simulator::Family family, simulator::Size size) {
  SensorToPlug what;
  what.detector.family = family;
  what.detector.size = size;
  what.generation =
      family == simulator::kFamily303 ? simulator::kEndpointDriver : simulator::kPipeDriver;
  return what;
}

TEST(DisplayNameTest, PutsTheSoldNamesInPlaceOfTheOthers) {
  const char* const kCases[][2] = {
      {"", ""},
      {"2000", "ZYR2000"},
      {"ZYR2000", "ZYR2000"},
      {"LUMORAY K3D", "ZYR303 K3D"},
      {"LUMO Lumo 20002000", "ZYR ZYR ZYR2000ZYR2000"},
      {"LUMO2000", "ZYR2000"},
      {"Lumoray", "ZYRray"},
  };
  for (const auto& c : kCases) EXPECT_EQ(RenameForDisplay(c[0]), c[1]);
}

TEST_F(IFaceTest, InitializesOnce) {
  Plug(SensorOf(simulator::kFamily2000, simulator::kSizeA));
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
  Plug(SensorOf(simulator::kFamily2000, simulator::kSizeA));
  EXPECT_EQ(iface_->IsDeviceAvailable("usb\\vid_082e&pid_2000\\0001"), 1);
  EXPECT_EQ(iface_->IsDeviceAvailable("usb\\vid_082e&pid_2000\\0002"), 0);
  sensor_->Unplug();
  sensor_->AnnounceRemoval();
  EXPECT_EQ(iface_->IsDeviceAvailable(sensor_->instanceId()), 0);
  EXPECT_EQ(LastErrorText(), "No ZYR devices detected. Please check your hardware connection.");
}

TEST_F(IFaceTest, TellsWhyItCannotOpenASensor) {
  Plug(SensorOf(simulator::kFamily2000, simulator::kSizeA));
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
  Plug(SensorOf(simulator::kFamily2000, simulator::kSizeA));
  ASSERT_EQ(iface_->CreateLumoDevice(), 1);
  SetIntegrationTime("ZYR2000", 1'000'000);
  EXPECT_EQ(iface_->SetCaptureConfigurationPreferences(), 0);
  EXPECT_EQ(LastErrorText(), "Unable to set integration time for ZYR device.");
  SetThreshold("ZYR2000", 1'000'000);
  EXPECT_EQ(iface_->SetCaptureConfigurationPreferences(), 0);
  EXPECT_EQ(LastErrorText(), "Unable to set detection threshold for ZYR device.");
  SetSensitivity("ZYR2000", 1'000'000);
  EXPECT_EQ(iface_->SetCaptureConfigurationPreferences(), 0);
  EXPECT_EQ(LastErrorText(), "Unable to set detection sensitivity for ZYR device.");
  EXPECT_EQ(iface_->SetCaptureConfigurationPreferences("LUMORAY", "", ""), 1) << "has its own";
}

TEST_F(IFaceTest, CapturesFromA2000) {
  SetIntegrationTime("ZYR2000", 412);
  SetBinning("ZYR2000", true);
  Plug(SensorOf(simulator::kFamily2000, simulator::kSizeC));
  OpenSensor();
  host::PressEscapeAtQuestion(1);
  Capture();
  host::ResetEscapeKey();
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
  EXPECT_EQ(Frame()->GetWidth(), 445u);
  ExpectImageOfFrame([](uint32_t, uint32_t) { return false; });
}

TEST_F(IFaceTest, CapturesFromA303AndMarksTheImage) {
  // One black pixel more in each row from the bottom up, 55 x 22 at 1 bit.
  BitmapInfoHeader header;
  header.biWidth = 55;
  header.biHeight = 22;
  header.biBitCount = 1;
  std::vector<uint8_t> stamp(sizeof header + 8 + 8 * 22, 0xFF);
  std::memcpy(stamp.data(), &header, sizeof header);
  std::fill_n(stamp.begin() + sizeof header, 4, uint8_t{0});
  for (size_t y = 0; y < 22; ++y) {
    for (size_t x = 0; x <= y; ++x) {
      stamp[sizeof header + 8 + 8 * y + x / 8] &= static_cast<uint8_t>(~(0x80 >> x % 8));
    }
  }
  host::AddBitmap(platform::OwnResources(), 26003, stamp);

  SetIntegrationTime("ZYR303", 401);
  Plug(SensorOf(simulator::kFamily303, simulator::kSizeD));
  OpenSensor();
  Capture();
  EXPECT_EQ(sensor_->Commanded().integrationTime, 401u);
  EXPECT_THAT(posted_, ElementsAre("1035 1 0", "1034 0 image"));
  const std::string wait = "Waiting for " + titled_ +
                           " - 100%: Waiting for the image from the "
                           "hardware.";
  EXPECT_THAT(lines_, testing::Contains("4 1 " + wait));
  EXPECT_EQ(lines_.back().substr(4), "Processing Image Acquisition: " + shown_);
  EXPECT_EQ(platform::CurrentResources(), host::HostProgramResources());

  ExpectImageOfFrame([](uint32_t x, uint32_t y) { return y < 22 && x <= y; });
}

TEST_F(IFaceTest, CapturesAgainInASeries) {
  Plug(SensorOf(simulator::kFamily2000, simulator::kSizeA));
  OpenSensor();
  for (int i = 0; i < 2; ++i) {
    CaptureStatus().ResetLines();
    Capture();
    EXPECT_NE(TakeImage(), nullptr);
  }
  EXPECT_THAT(posted_, ElementsAre("1035 1 0", "1034 0 image", "1035 1 0", "1034 0 image"));
}

TEST_F(IFaceTest, Aborts) {
  auto what = SensorOf(simulator::kFamily2000, simulator::kSizeA);
  what.timing.exposureAfter = 0;
  Plug(what);
  OpenSensor();
  onStatus_ = [this](const StatusRecord& record) {
    if (record.title != "Waiting for exposure") return;
    abort_requested = true;
    iface_->ManualTrigger();
  };
  Capture();
  EXPECT_THAT(posted_, ElementsAre("1034 1 0")) << "nobody may fire any more";
  EXPECT_EQ(lines_.back().substr(4),
            "Aborting Capture: The system is currently aborting the active image acqusition.");

  abort_requested = false;
  onStatus_ = [this](const StatusRecord& record) {  // before the sensor is armed
    if (record.title.starts_with("Flushing")) abort_requested = true;
    if (record.title == "Waiting for exposure") iface_->ManualTrigger();
  };
  Capture();
  EXPECT_THAT(posted_, ElementsAre("1034 1 0", "1034 1 0"));

  abort_requested = false;
  onStatus_ = [this](const StatusRecord& record) {  // too late for the sensor
    if (record.title == "Waiting for exposure") sensor_->Expose();
    if (record.title.starts_with("Retrieving")) abort_requested = true;
  };
  Capture();
  EXPECT_THAT(posted_, ElementsAre("1034 1 0", "1034 1 0", "1035 1 0", "1034 1 0"));
}

TEST_F(IFaceTest, FailsWithoutAnExposureAndWithoutASensor) {
  auto what = SensorOf(simulator::kFamily2000, simulator::kSizeA);
  what.timing.exposureAfter = 0;
  Plug(what);
  OpenSensor();
  Capture();
  EXPECT_EQ(LastErrorText(), kTimedOut);
  EXPECT_THAT(posted_, ElementsAre("1035 1 0", "1034 1 0"));

  OpenSensor();
  SetErrorText(0, "");
  onStatus_ = [this](const StatusRecord& record) {
    if (record.title != "Waiting for exposure") return;
    sensor_->Unplug();
    sensor_->AnnounceRemoval();
  };
  Capture();
  EXPECT_EQ(LastErrorText(), kTimedOut);
  EXPECT_THAT(posted_, ElementsAre("1035 1 0", "1034 1 0", "1035 1 0", "1034 1 0"));
  iface_->CloseZYRHardware();

  onStatus_ = [](const StatusRecord&) {};
  sensor_->Replug();
  sensor_->AnnounceArrival();
  OpenSensor();
  EXPECT_EQ(iface_->CaptureImage(window_->window()), 1) << "the next one can begin";
}

TEST_F(IFaceTest, FailsWithoutImageAndWithoutMemory) {
  const auto what = SensorOf(simulator::kFamily2000, simulator::kSizeA);
  Plug(what,
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
  SetBinning("ZYR2000", false);

  iface_.reset();
  manager_.reset();
  sensor_.reset();
  Plug(what);
  OpenSensor();
  SetErrorText(0, "");
  host::FailNextAllocations(1);
  posted_.clear();
  Capture();
  EXPECT_EQ(LastErrorText(), "Out of memory");
  EXPECT_THAT(posted_, ElementsAre("1035 1 0", "1034 0 0"));
}

TEST_F(IFaceTest, StartsOneThreadAtMost) {
  Plug(SensorOf(simulator::kFamily2000, simulator::kSizeA));
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
  Plug(SensorOf(simulator::kFamily2000, simulator::kSizeA));
  OpenSensor();
  onStatus_ = [this](const StatusRecord& record) {
    if (record.title == "Processing Image Acquisition") iface_->CloseZYRHardware();
  };
  Capture();
  EXPECT_THAT(posted_, ElementsAre("1035 1 0")) << "and the image is freed";

  OpenSensor();
  uint64_t slept = 0;
  onStatus_ = [&](const StatusRecord& record) {
    if (record.title != "Waiting for exposure") return;
    iface_->CloseZYRHardware();
    slept = host::TimeSlept();
  };
  Capture();
  EXPECT_LT(host::TimeSlept() - slept, 500u) << "the wait is over at once";
  EXPECT_EQ(posted_.size(), 1u);
}

TEST_F(IFaceTest, KeepsNoTriggerForTheNextCapture) {
  auto what = SensorOf(simulator::kFamily2000, simulator::kSizeA);
  what.timing.exposureAfter = 0;
  Plug(what);
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
    EXPECT_EQ(LastErrorText(), kTimedOut) << "nobody has fired";
  }

  onStatus_ = [this](const StatusRecord& record) {
    if (record.title.starts_with("Flushing")) iface_->ManualTrigger();
  };
  Capture();
  EXPECT_NE(TakeImage(), nullptr) << "it fires as soon as it is armed";
}

TEST_F(IFaceTest, EndsWhateverRuns) {
  host::HoldThreads(false);
  auto what = SensorOf(simulator::kFamily2000, simulator::kSizeA);
  what.timing.exposureAfter = 0;
  Plug(what);
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
  onStatus_ = [this](const StatusRecord& record) {
    if (record.title == "Waiting for exposure") sensor_->Expose();
  };
  OpenSensor();
  ASSERT_EQ(iface_->CaptureImage(window_->window()), 1);
  ASSERT_TRUE(iface_->WaitForCaptureThread(60'000));
  host::PumpMessages();
  EXPECT_EQ(posted_.back(), "1034 0 image") << "and the next one goes well";
  EXPECT_NE(TakeImage(), nullptr);
  iface_->CloseZYRHardware();
  std::vector<DeviceEntry> devices;
  ASSERT_EQ(iface_->GetDevices(&devices), 1u);
  EXPECT_EQ(devices[0].sensorId, GetSelectedSensorID()) << "known while it is closed";
}

TEST_F(IFaceTest, HandsOverWhatHasBeenExposed) {
  host::HoldThreads(false);
  auto what = SensorOf(simulator::kFamily2000, simulator::kSizeA);
  what.timing.exposureAfter = 0;
  Plug(what);
  EXPECT_EQ(iface_->TakeImageOver(0), nullptr) << "nothing runs";
  for (const std::string at : {"Flushing", "Retrieving Image"}) {
    OpenSensor();
    std::atomic<bool> isThere = false;
    std::atomic<bool> mayGoOn = false;
    onStatus_ = [&, this](const StatusRecord& record) {
      if (record.title == "Waiting for exposure") sensor_->Expose();
      if (!record.title.starts_with(at)) return;
      isThere = true;
      while (!mayGoOn) std::this_thread::yield();
    };
    ASSERT_EQ(iface_->CaptureImage(window_->window()), 1) << at;
    while (!isThere && iface_->IsCapturing()) std::this_thread::yield();
    EXPECT_EQ(iface_->TakeImageOver(10), nullptr) << "not yet: " << at;
    mayGoOn = at != "Flushing";
    image_ = iface_->TakeImageOver(60'000);
    EXPECT_EQ(image_ != nullptr, at != "Flushing");
    mayGoOn = true;
    EXPECT_TRUE(iface_->EndCapture(60'000));
    platform::FreeBlock(image_);
    image_ = nullptr;
  }
}

TEST_F(IFaceTest, CapturesOnAThreadOfItsOwn) {
  host::HoldThreads(false);
  auto what = SensorOf(simulator::kFamily303, simulator::kSizeC);
  what.timing.exposureAfter = 0;
  Plug(what);
  OpenSensor();
  onStatus_ = [this](const StatusRecord& record) {
    if (record.title == "Waiting for exposure") sensor_->Expose();
  };
  for (int i = 0; i < 3; ++i) {
    posted_.clear();
    ASSERT_EQ(iface_->CaptureImage(window_->window()), 1) << "as soon as the last one is heard of";
    while (posted_.empty() || !posted_.back().starts_with("1034")) host::PumpMessages();
    EXPECT_THAT(posted_, ElementsAre("1035 1 0", "1034 0 image"));
    EXPECT_NE(TakeImage(), nullptr);
  }
}

TEST_F(IFaceTest, TellsOfTheOtherNotifications) {
  Plug(SensorOf(simulator::kFamily2000, simulator::kSizeA));
  iface_->OnNotify("x", kNotifyExposure, 0);
  EXPECT_THAT(lines_, IsEmpty()) << "no capture";
  OpenSensor();
  ASSERT_EQ(iface_->CaptureImage(window_->window()), 1);
  abort_requested = true;
  iface_->OnNotify("x", kNotifyExposure, 0);
  abort_requested = false;
  iface_->OnNotify("x", kNotifyExposure, 100);
  EXPECT_THAT(host::QueuedMessages(), IsEmpty());
  lines_.clear();
  for (const int32_t code : {0, 1, 6, 7, 999}) iface_->OnNotify("x", code, 0);
  EXPECT_THAT(lines_, IsEmpty());
  iface_->OnNotify("USB\\1", kNotifyRemoved, 0);
  EXPECT_EQ(LastErrorText(), "Device USB\\1 has been removed.");
  EXPECT_THAT(lines_, ElementsAre("3 2 Device removed: " + shown_));
  sensor_->Unplug();
  EXPECT_TRUE(host::RunHeldThread());
  host::PumpMessages();
  EXPECT_THAT(posted_, ElementsAre("1034 1 0")) << "once for each capture";
}

TEST(StatusSinkTest, TakesTheCallbacksAnswer) {
  host::ResetAll();
  StatusSink sink;
  EXPECT_EQ(sink.Post(kStatusLineNew, "a", "b", kNoStatusLine), kNoStatusLine);
  std::vector<int32_t> kinds;
  sink.SetCallback(
      [](void* data, int32_t kind, const std::string& title, const std::string&, int32_t line) {
        static_cast<std::vector<int32_t>*>(data)->push_back(kind);
        EXPECT_EQ(title, "Flushing LUMORAY ( 2000 ) - 5%") << "names stay";
        EXPECT_EQ(line, kind == kStatusLineNew ? kNoStatusLine : 7);
        return 7;
      },
      &kinds);
  const host::FakeWindow window([](uint32_t, uintptr_t, intptr_t) { return 3; });
  sink.SetTarget(window.window(), kStatusMessage);
  for (int i = 0; i < 2; ++i) sink.StatusFlush("LUMORAY", "2000", 5);
  sink.ResetLines();
  sink.StatusFlush("LUMORAY", "2000", 5);
  EXPECT_THAT(kinds, ElementsAre(3, 4, 3));
}

}  // namespace
}  // namespace zyr::test
