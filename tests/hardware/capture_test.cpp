// One capture: what is said to the sensor and to the caller, and the images that come of it.
#include <gmock/gmock.h>

#include <algorithm>

#include "hardware/device/finished_frames.h"
#include "settings/store.h"
#include "tests/hardware/device_fixture.h"

namespace zyr {
namespace {

namespace host = platform::host;
using test::Bytes;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::StartsWith;

constexpr uint16_t kWordStep = 37;  // of the rows: no two neighbours look alike

uint16_t WordAt(uint32_t x, uint32_t y) { return static_cast<uint16_t>(x * 5 + y * kWordStep); }

class CaptureTest : public test::DeviceTest {
 protected:
  void TearDown() override {
    ImageTestSaver().SetEnabled(false);
    ImageTestSaver().folder = "LumoUSBII";
    DeviceTest::TearDown();
  }

  void OpenSensor(const std::string& id, const std::string& settings = "flush_time='0'",
                  const std::string& defects = "") {
    PutSettings(settings);
    PutIdentity(id, defects);
    ASSERT_EQ(Open2000(), kOk);
    Forget();
  }

  // A sensor without any correction data.
  void Open303Sensor(const std::string& id, const std::string& settings = "flush_time='0'") {
    PutSettings(settings);
    sensor_->PutText(0x10, id + " ");
    ASSERT_EQ(Open303(), kOk);
    Forget();
  }

  void Forget() {
    TakeAsked();
    notes_.clear();
    sensor_->transfers = 0;
  }

  Held<SensorImage> Image(int32_t type) {
    SensorImage* image = nullptr;
    EXPECT_EQ(device_->GetImage(type, &image), kOk);
    return Held<SensorImage>(image);
  }

  // Notes without the polls.
  std::vector<std::string> Progress() const {
    std::vector<std::string> progress;
    std::copy_if(notes_.begin(), notes_.end(), std::back_inserter(progress),
                 [](const std::string& note) { return !note.starts_with("999 "); });
    return progress;
  }
};

TEST_F(CaptureTest, Of2000SpeaksInOrder) {
  OpenSensor("CCD1A", "flush_time='1000' capture_timeout='5000'");
  EXPECT_EQ(device_->SetProperty("integration_time", "517"), kOk);
  sensor_->ccd = {0x2F, 0x5C, 0x35, 0x6F};
  const uint64_t slept = host::TimeSlept();
  ASSERT_EQ(device_->CaptureImage(), kOk);
  EXPECT_THAT(TakeAsked(),
              ElementsAre("02 C0", "status", "0E AA 55", "status", "0C 20 00 00 00", "bulk 8192",
                          "02 C0", "status", "06", "bulk 8",         // still the same sensor
                          "05 08", "04 02 05", "02 70", "02 20 40",  // armed
                          "status x2", "bulk 1872 x578", "status x2", "bulk 1872 x578"));
  EXPECT_THAT(
      Progress(),
      ElementsAre("2 0 Preparing sensor.", "2 20 Preparing sensor.", "2 40 Preparing sensor.",
                  "2 60 Preparing sensor.", "2 80 Preparing sensor.", "2 100 Preparing sensor.",
                  "3 0 Waiting for exposure.", "3 100 Exposure detected.", "4 0 Downloading image.",
                  "4 50 Downloading image.", "4 100 Downloading image."));
  EXPECT_EQ(host::TimeSlept() - slept, 2u * 700 + 1000 + 4 * 100);
  EXPECT_EQ(std::count(notes_.begin(), notes_.end(), "999 0 Waiting for exposure."), 4);
}

TEST_F(CaptureTest, Of303WaitsOnceMore) {
  Open303Sensor("K3C", "flush_time='399'");
  ASSERT_EQ(device_->CaptureImage(), kOk);
  EXPECT_THAT(TakeAsked(),
              ElementsAre("0B 00 10 00 10", "bulk 16", "05 A0", "04 01 5E", "02 70", "02 20 70",
                          "status", "bulk 1232 x944", "status", "bulk 1232 x944"));
  const auto progress = Progress();
  EXPECT_THAT(progress, Contains("2 0 Preparing sensor.").Times(1));
  EXPECT_EQ(progress[2], "100 0 Waiting.");
  EXPECT_EQ(progress[16], "100 93 Waiting.");
  EXPECT_EQ(progress[17], "100 100 Waiting.");
  EXPECT_EQ(progress[18], "3 0 Waiting for exposure.");
}

TEST_F(CaptureTest, FramesHaveEachSizesGeometry) {
  const struct {
    const char* id;
    bool isBinned;
    uint32_t width, height, bytes;
    bool everyWord;
    int32_t dpi;
  } kCases[] = {
      {"CCD1A", false, 468, 578, 1872, false, 564}, {"CCD1A", true, 468, 578, 1872, false, 564},
      {"CCD1b", false, 578, 800, 2312, false, 564}, {"CCD1C", false, 890, 1420, 1780, true, 1129},
      {"CCD1C", true, 445, 710, 1780, false, 564},  {"CCD1D", false, 1156, 1600, 2312, true, 1129},
      {"CCD1D", true, 578, 800, 2312, false, 564},  {"K3C", false, 616, 944, 1232, true, 770},
      {"K3D", false, 798, 1070, 1596, true, 770},
  };
  for (const auto& c : kCases) {
    if (c.id[0] == 'K') {
      Open303Sensor(c.id);
    } else {
      OpenSensor(c.id);
    }
    device_->SetProperty("binned", c.isBinned ? "true" : "false");
    sensor_->word = [&c](uint32_t x, uint32_t y) {
      return WordAt(x, y % c.height + y / c.height * 1000);
    };
    ASSERT_EQ(device_->CaptureImage(), kOk);
    EXPECT_EQ(sensor_->asked.back(), FormatText("bulk %lu x%lu", Lu(c.bytes), Lu(c.height)));
    for (const int32_t type : {UNPROCESSED_NORMAL_FRAME, UNPROCESSED_DARK_FRAME}) {
      const auto image = Image(type);
      ASSERT_EQ(image->GetWidth(), c.width) << c.id;
      ASSERT_EQ(image->GetHeight(), c.height) << c.id;
      EXPECT_EQ(image->GetDpiX(), static_cast<uint32_t>(c.dpi));
      size_t wrong = 0;
      for (uint32_t y = 0; y < c.height; ++y) {
        for (uint32_t x = 0; x < c.width; ++x) {
          const uint32_t row = y + (type == UNPROCESSED_DARK_FRAME ? 1000 : 0);
          const uint16_t word = WordAt(c.everyWord ? x : 2 * x + 1, row);
          wrong += image->Row(y)[x] != (word & 0x0FFF) ? 1 : 0;
        }
      }
      EXPECT_EQ(wrong, 0u) << c.id << " " << type;
    }
  }
}

TEST_F(CaptureTest, AFrameThatBreaksOffCostsOnlyItsRows) {
  OpenSensor("CCD1C");
  sensor_->word = WordAt;
  ASSERT_EQ(device_->CaptureImage(), kOk);
  for (const uint32_t row : {0u, 700u}) {
    Forget();
    sensor_->failAt = {{15 + row, 31}};
    ASSERT_EQ(device_->CaptureImage(), kOk);
    EXPECT_THAT(LastErrorText(), StartsWith("Unable to read image data from the hardware."));
    const auto image = Image(UNPROCESSED_NORMAL_FRAME);
    ASSERT_EQ(image->GetHeight(), 1420u);
    EXPECT_EQ(row == 0 || image->GetPixel(9, row - 1) != 0, true);
    EXPECT_TRUE(std::all_of(image->Row(row), image->Row(1419), [](uint16_t p) { return p == 0; }));
    sensor_->failAt.clear();
  }
}

TEST_F(CaptureTest, EachWaitAcceptsItsStates) {
  const std::vector<uint8_t> kAll = {0x00, 0x10, 0x20, 0x30, 0x40, 0x50, 0x60, 0x70, 0xF0};
  const struct {
    const char* id;
    bool isBinned;
    std::vector<uint8_t> first, second;
  } kCases[] = {{"CCD1A", true, {0x40, 0x50, 0x60}, {0x60}},
                {"CCD1C", false, {0x40, 0x50, 0x60}, {0x60}},
                {"CCD1C", true, {0x30, 0x40, 0x50, 0x60}, {0x50, 0x60}}};
  for (const auto& c : kCases) {
    OpenSensor(c.id);
    device_->SetProperty("binned", c.isBinned ? "true" : "false");
    sensor_->rowError = 31;  // the frames do not matter here
    for (const bool isSecond : {false, true}) {
      for (const uint8_t state : kAll) {
        Forget();
        sensor_->ccd = {0x60, 0x60};
        sensor_->ccd[isSecond ? 1 : 0] = state;
        ASSERT_EQ(device_->CaptureImage(), kOk);
        const auto& ends = isSecond ? c.second : c.first;
        const bool isEnd = std::find(ends.begin(), ends.end(), state) != ends.end();
        const auto polls = std::count(notes_.begin(), notes_.end(), "999 0 Waiting for exposure.");
        EXPECT_EQ(polls, isEnd ? 2 : 3) << c.id << " " << isSecond << " " << int{state};
      }
    }
  }
}

TEST_F(CaptureTest, ATimeOutDrainsTheSensor) {
  OpenSensor("CCD1A", "flush_time='0' capture_timeout='1000'");
  sensor_->ccd.assign(11, 0x10);  // the state at which the time is up, 1100 ms after the start
  EXPECT_EQ(device_->CaptureImage(), DEV_E_EXPOSURE_TIMEOUT);
  EXPECT_EQ(LastErrorText(), "The hardware timed-out waiting for x-ray exposure or was unplugged.");
  const Asked asked = TakeAsked();
  EXPECT_THAT(Asked(asked.begin() + 13, asked.end()),
              ElementsAre("02 20 40", "status x11", "02 F0", "status", "bulk 1872 x578", "status",
                          "bulk 1872 x578"));
  // A trigger that comes while it is drained is not for the next capture.
  sensor_->ccd.assign(11, 0x10);
  onNote_ = [this](int32_t) {
    if (sensor_->asked.back() == "bulk 1872 x578") device_->ManualTrigger();
  };
  EXPECT_EQ(device_->CaptureImage(), DEV_E_EXPOSURE_TIMEOUT);
  onNote_ = [](int32_t) {};
  TakeAsked();
  EXPECT_EQ(device_->CaptureImage(), kOk);
  EXPECT_THAT(TakeAsked(), testing::Not(Contains("02 F0")));
  // Not even the trigger helps.
  sensor_->ccd.assign(22, 0x10);
  EXPECT_EQ(device_->CaptureImage(), DEV_E_EXPOSURE_TIMEOUT);
  EXPECT_THAT(sensor_->asked.back(), "status x11");
  // A capture of another kind of answer, and one whose time is over at once.
  sensor_->ccdAnswer = 0x84;
  EXPECT_EQ(device_->CaptureImage(), DEV_E_EXPOSURE_TIMEOUT);
  sensor_->ccdAnswer = 0x83;
  device_->SetProperty("capture_timeout", "0");
  sensor_->ccd = {0x40, 0x60};  // not the first state of the list
  TakeAsked();
  EXPECT_EQ(device_->CaptureImage(), DEV_E_EXPOSURE_TIMEOUT);
}

TEST_F(CaptureTest, ASensorThatIsClosedMeanwhileEndsTheCapture) {
  const struct {
    int32_t when;
    Result result;
    const char* text;
  } kCases[] = {{kNotifyFlush, USB_E_NOT_OPEN, "The x-ray detection exposure could not be set."},
                {kNotifyExposure, DEV_E_EXPOSURE_TIMEOUT, "The hardware timed-out waiting"},
                {kNotifyDownload, kOk, "Unable to read image data from the hardware."}};
  for (const auto& c : kCases) {
    OpenSensor("CCD1A", "flush_time='0' capture_timeout='-1'");
    sensor_->ccd.assign(3, 0x10);
    onNote_ = [&](int32_t code) {
      if (code == c.when) device_->Close();
    };
    EXPECT_EQ(device_->CaptureImage(), c.result) << c.when;
    EXPECT_THAT(LastErrorText(), StartsWith(c.text));
    EXPECT_EQ(host::OpenDriverHandles(), 0u);
  }
}

TEST_F(CaptureTest, ADrainWaitsForTheSameStatesBinnedOrNot) {
  OpenSensor("CCD1C", "flush_time='0' capture_timeout='1000'");
  device_->SetProperty("binned", "true");
  sensor_->ccd.assign(11, 0x10);
  sensor_->ccd.insert(sensor_->ccd.end(), {0x30, 0x40, 0x50, 0x60});
  EXPECT_EQ(device_->CaptureImage(), DEV_E_EXPOSURE_TIMEOUT);
  const Asked asked = TakeAsked();
  EXPECT_THAT(Asked(asked.end() - 6, asked.end()),
              ElementsAre("status x11", "02 F0", "status x2", "bulk 1780 x710", "status x2",
                          "bulk 1780 x710"));
}

TEST_F(CaptureTest, ATriggerIsSentOnce) {
  OpenSensor("CCD1A", "flush_time='0' capture_timeout='-1'");
  sensor_->ccd.assign(3, 0x10);
  onNote_ = [this](int32_t code) {
    if (code == kNotifyExposure) device_->ManualTrigger();  // also when the exposure is over
  };
  ASSERT_EQ(device_->CaptureImage(), kOk);
  const Asked asked = TakeAsked();
  EXPECT_THAT(
      Asked(asked.begin() + 13, asked.end()),
      ElementsAre("02 20 40", "02 F0", "status x4", "bulk 1872 x578", "status", "bulk 1872 x578"));
}

TEST_F(CaptureTest, AnAbortShortensTheWaitsButNotTheCapture) {
  GetExtendedFlush("ZYR2000");
  SetExtendedFlush("ZYR2000", true);
  OpenSensor("CCD1A", "flush_time='2147483647'");
  onNote_ = [this](int32_t code) { abort_requested = code == kNotifyFlush && notes_.size() > 2; };
  ASSERT_EQ(device_->CaptureImage(), kOk);
  EXPECT_EQ(notes_[2], "2 0 Preparing sensor.");
  EXPECT_EQ(notes_[3], "2 100 Preparing sensor.");

  OpenSensor("CCD1A", "flush_time='150'");
  ASSERT_EQ(device_->CaptureImage(), kOk);
  EXPECT_EQ(notes_[1], "2 6 Preparing sensor.");  // 3150 ms, because the user wants it so
}

TEST_F(CaptureTest, ABusySensorCannotHoldAUserWhoHasGivenUp) {
  OpenSensor("CCD1A", "flush_time='0' capture_timeout='-1'");
  sensor_->ccd.assign(100'000, 0x10);
  onNote_ = [this](int32_t) { abort_requested = notes_.size() > 5000; };
  const uint64_t slept = host::TimeSlept();
  EXPECT_EQ(device_->CaptureImage(), DEV_E_EXPOSURE_TIMEOUT);
  EXPECT_GT(host::TimeSlept() - slept, 500'000u);  // no limit before that
  EXPECT_LT(host::TimeSlept() - slept, 530'000u);

  abort_requested = true;
  onNote_ = [](int32_t) {};
  sensor_->ccd.assign(50, 0x10);
  sensor_->ccd.push_back(0x60);
  EXPECT_EQ(device_->CaptureImage(), kOk);  // one that comes round within its last chance
}

TEST_F(CaptureTest, ImagesOf2000AreCorrectedAndCropped) {
  OpenSensor("CCD1C",
             "flush_time='0' left_margin='10' right_margin='7' top_margin='3' bottom_margin='2'",
             "19 1399 0\n");  // the pixel that is (20, 1400) from the bottom: in row 19
  sensor_->word = [](uint32_t x, uint32_t y) -> uint16_t {
    if (y >= 1420) return 100;
    const bool isDefect = x == 20 + 6 && y == 19;  // six pixels late
    return static_cast<uint16_t>(isDefect ? 4000 : x == 60 ? 50 : 600 + x % 2);
  };
  ASSERT_EQ(device_->CaptureImage(), kOk);
  const auto plain = Image(OFFSET_CORRECTED);
  EXPECT_EQ(plain->GetWidth(), 890u - 17);
  EXPECT_EQ(plain->GetHeight(), 1420u - 5);
  EXPECT_EQ(plain->GetPixel(10, 16), 3900);
  EXPECT_EQ(plain->GetPixel(44, 16), 0);  // darker than the dark frame
  for (const int32_t type : {OFFSET_DEFECT_CORRECTED, OFFSET_DEFECT_HISTOGRAM_CORRECTED}) {
    EXPECT_EQ(Image(type)->GetPixel(10, 16), 501) << type;
    EXPECT_EQ(Image(type)->GetPixel(13, 16), plain->GetPixel(13, 16));
  }
  SensorImage* image = nullptr;
  ASSERT_EQ(device_->GetImage(OFFSET_DEFECT_CORRECTED, 1.5f, &image), kOk);
  EXPECT_EQ(image->GetPixel(10, 16), 501);
  EXPECT_EQ(image->Release(), 0u);
  EXPECT_EQ(Image(UNPROCESSED_NORMAL_FRAME)->GetPixel(16, 16), 4000);
  EXPECT_TRUE(Failed(device_->GetImage(1, nullptr)));

  device_->SetProperty("cropping_on", "no");
  EXPECT_EQ(Image(UNPROCESSED_NORMAL_FRAME)->GetWidth(), 890u);
  device_->SetProperty("cropping_on", "TRUE");
  for (const char* tooMuch : {"890", "-1", "99999999999", "-99999999999"}) {
    device_->SetProperty("left_margin", tooMuch);
    EXPECT_EQ(Image(UNPROCESSED_NORMAL_FRAME)->GetWidth(), 890u) << tooMuch;
  }
  PutIdentity("CCD2C");  // another sensor does not have this one's defects
  ASSERT_EQ(device_->CaptureImage(), kOk);
  EXPECT_EQ(Image(OFFSET_DEFECT_CORRECTED)->GetPixel(20, 19), 3900);
}

TEST_F(CaptureTest, ImagesOf303AreRoundedIfWanted) {
  Open303Sensor("K3C");
  sensor_->word = [](uint32_t x, uint32_t y) {
    return static_cast<uint16_t>(y < 944 ? 600 + x % 7 : 100 + x % 3);
  };
  ASSERT_EQ(device_->CaptureImage(), kOk);
  EXPECT_EQ(Image(UNPROCESSED_DARK_FRAME)->GetPixel(1, 1), 101);
  for (const uint32_t x : {0u, 5u, 615u}) {  // these sensors have no lag
    EXPECT_EQ(Image(OFFSET_CORRECTED)->GetPixel(x, 1), 500 + x % 7 - x % 3);
  }
  for (const int32_t type : {OFFSET_DEFECT_CORRECTED, OFFSET_DEFECT_HISTOGRAM_CORRECTED}) {
    EXPECT_EQ(Image(type)->GetPixel(1, 1), 601);  // without calibration nothing is subtracted
  }
  device_->SetProperty("corner_fill", "true");
  device_->SetProperty("corner_color", "65535");
  for (int32_t type = 1; type <= 5; ++type) {
    EXPECT_EQ(Image(type)->GetPixel(0, 89), 65535);
    EXPECT_NE(Image(type)->GetPixel(0, 90), 65535);
  }
  SensorImage* image = nullptr;
  EXPECT_EQ(device_->GetImage(0, &image), DEV_E_BAD_IMAGE_TYPE);
}

TEST_F(CaptureTest, FinishedFramesAreSavedOnlyOnDemand) {
  constexpr char kFile[] = "C:\\LumoUSBII\\_RawSensorData_0.RAW16";
  host::PutFile("C:\\LumoUSBII\\readme.txt", "x");
  EXPECT_EQ(ImageTestSaver().folder, "LumoUSBII");
  ImageTestSaver().folder = "C:\\LumoUSBII";
  OpenSensor("CCD1C", "flush_time='0' right_margin='1'");
  ASSERT_EQ(device_->CaptureImage(), kOk);
  Image(UNPROCESSED_NORMAL_FRAME);
  EXPECT_FALSE(host::FileBytes(kFile));
  ImageTestSaver().SetEnabled(true);
  const auto image = Image(UNPROCESSED_NORMAL_FRAME);
  const auto saved = host::FileBytes(kFile);
  ASSERT_TRUE(saved);
  const Bytes head(saved->begin(), saved->begin() + 32);
  EXPECT_EQ(test::Hex(head),
            "02 00 00 00 10 00 00 00 79 03 00 00 8C 05 00 00 7A 03 00 00 "
            "69 04 00 00 69 04 00 00 00 00 00 00");
  EXPECT_EQ(saved->size(), 32u + 2 * 1420 * 890);
}

}  // namespace
}  // namespace zyr
