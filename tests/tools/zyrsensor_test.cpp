// zyrsensor, from its command line to the picture, on simulated sensors.
#include <algorithm>
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hardware/device/sensor_settings.h"
#include "hardware/devmgr/dev_mgr.h"
#include "platform/host/host.h"
#include "tests/support/simulated_sensor.h"
#include "tests/tools/words.h"
#include "tools/images/picture_file.h"
#include "tools/images/read_picture.h"
#include "tools/zyrsensor/capture.h"
#include "tools/zyrsensor/frame_picture.h"
#include "tools/zyrsensor/options.h"
#include "tools/zyrsensor/report.h"
#include "tools/zyrsensor/sensors.h"

namespace zyr {
namespace {

namespace host = platform::host;
using testing::HasSubstr;
using testing::internal::CaptureStderr;
using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStderr;
using testing::internal::GetCapturedStdout;

TEST(SensorOptions, SaysWhatIsWrong) {
  for (const auto& [line, error] :
       {std::pair{"", "What shall be done: list, info, capture, watch or trigger?"},
        {"liszt", "There is no command 'liszt'."},
        {"list more", "'more' is too much."},
        {"capture", "capture needs --out FILE or --all-out DIR."},
        {"capture --out=x.png --type=6", "--type does not take '6'."},
        {"capture --out=x.png --set binned", "--set does not take 'binned'."},
        {"info --film", "--out, --all-out, --film, --reference and --set belong to capture."},
        {"list --seconds 3", "--seconds belongs to watch."}})
    EXPECT_EQ(ParseSensorOptions(test::Words(line)).error, error);
  const SensorOptions options =
      ParseSensorOptions({"capture", "--out=x.tif", "--set", "a=b=c", "--set=d="});
  EXPECT_EQ(options.error, "");
  EXPECT_EQ(options.type, 5);
  using Pair = std::pair<std::string, std::string>;
  EXPECT_EQ(options.properties, (std::vector<Pair>{{"a", "b=c"}, {"d", ""}}));
  EXPECT_TRUE(ParseSensorOptions({"--help"}).help);
}

TEST(FramePicture, IsSeenAndComparedInTwelveBits) {
  SensorImage frame;
  ASSERT_TRUE(frame.Create(1, 2, 100, 100));
  frame.SetPixel(0, 0, 5);
  EXPECT_EQ(PictureOf(frame, false).samples, (std::vector<uint16_t>{0, 0x50})) << "upright";
  ASSERT_TRUE(frame.Create(3, 1, 100, 100));
  frame.SetPixel(0, 0, 0xFFF);
  frame.SetPixel(1, 0, 0x001);
  EXPECT_EQ(PictureOf(frame, false).samples, (std::vector<uint16_t>{0xFFF0, 0x0010, 0}));
  EXPECT_EQ(PictureOf(frame, true).samples, (std::vector<uint16_t>{0x000F, 0xFFEF, 0xFFFF}));
  const GreyPicture picture = PictureOf(frame, false);
  frame.SetPixel(2, 0, 0x1000);  // as of a correction that gives 16 bits
  EXPECT_EQ(PictureOf(frame, false).samples, (std::vector<uint16_t>{0xFFF, 1, 0x1000}));

  GreyPicture other = picture;
  other.samples = {0xFFE0, 0x0010, 50 << 4};
  const std::optional<Difference> difference = Compare(picture, other);
  ASSERT_TRUE(difference);
  EXPECT_DOUBLE_EQ(difference->mean, 17);
  EXPECT_EQ(difference->largest, 50u);
  EXPECT_DOUBLE_EQ(difference->shareAbove40, 1.0 / 3);
  other.width = 1;
  EXPECT_FALSE(Compare(picture, other));
}

class SensorToolTest : public testing::Test {
 protected:
  SensorToolTest() {
    host::ResetAll();
    host::SetClock(1'700'000'000);
    SensorSettings() = {};
    test::PutSensorSettings("capture_timeout=\"15000\"");
  }
  ~SensorToolTest() override {
    StopHardware();
    host::ResetAll();
  }
};

TEST_F(SensorToolTest, FindsDescribesCapturesAndTriggers) {
  const std::string folder = std::filesystem::temp_directory_path().string();
  const std::string path = folder + "/zyrsensor_test.png";
  const std::string scenePath = folder + "/zyrsensor_scene.png";
  test::SensorToPlug what;
  what.detector.size = simulator::kSizeA;
  test::SimulatedSensor small(what);
  what.detector.family = simulator::kFamily303;
  what.detector.size = simulator::kSizeC;
  what.generation = simulator::kEndpointDriver;
  what.instance = "0002";
  test::SimulatedSensor large(what);

  ASSERT_TRUE(StartHardware({}));
  const std::vector<SensorEntry> sensors = FoundSensors();
  ASSERT_EQ(sensors.size(), 2u);
  EXPECT_EQ(DescribeSensor(sensors[0]),
            "2000     " + small.detector().identity + "      " + small.instanceId());
  {
    const Held<Device> device = OpenSensorLike("pid_1005");
    ASSERT_NE(device, nullptr);
    const std::string text = DescribeDevice(static_cast<Device2000&>(*device));
    EXPECT_THAT(text, HasSubstr("sensor_size            C\n"));
    EXPECT_THAT(text, HasSubstr("columns                616\n"));
  }

  SensorOptions options;
  options.sensor = "0001";
  options.out = path;
  options.reference = scenePath;
  options.properties = {{"sensitivity", "9"}};
  CaptureStderr();
  EXPECT_EQ(Capture(options), kSensorFailed);
  EXPECT_EQ(
      GetCapturedStderr(),
      "zyrsensor: sensitivity does not take '9' (0x8AAA2010). An invalid sensitivity value of "
      "9 was specified\n");

  options.properties = {{"sensitivity", "3"}};
  const simulator::Scene scene = test::TestScene({468, 578});
  GreyPicture picture{468, 578, 16, 0, 0, scene.samples};
  for (uint16_t& sample : picture.samples) sample = static_cast<uint16_t>(sample << 4);
  for (size_t y = 0; y < 578 / 2; ++y) {
    std::swap_ranges(picture.samples.begin() + y * 468, picture.samples.begin() + (y + 1) * 468,
                     picture.samples.begin() + (577 - y) * 468);
  }
  ASSERT_TRUE(WritePicture(picture, PictureFormat::kPng, scenePath));
  CaptureStdout();
  EXPECT_EQ(Capture(options), kSensorDone);
  const std::string printed = GetCapturedStdout();
  EXPECT_THAT(printed, HasSubstr("type 5: 468 x 578, 564 x 564 dpi, " + path));
  EXPECT_THAT(printed, HasSubstr(": mean 3."));
  EXPECT_EQ(small.Commanded().sensitivity, 0x30u);

  bool isThere = false;
  EXPECT_TRUE(TriggerSensorLike("0002", &isThere));
  const std::string transcript = large.Transcript();
  EXPECT_EQ(transcript.substr(transcript.rfind(": ")), ": 02 F0\n");
  CaptureStderr();
  EXPECT_FALSE(TriggerSensorLike("0003", &isThere));
  EXPECT_FALSE(isThere);
  EXPECT_EQ(GetCapturedStderr(), "zyrsensor: There is no sensor like '0003'.\n");

  small.Unplug();
  small.AnnounceRemoval();
  EXPECT_EQ(FoundSensors().size(), 1u);
  large.Unplug();
  large.AnnounceRemoval();
  CaptureStderr();
  EXPECT_EQ(Capture(options), kSensorNone);
  EXPECT_EQ(GetCapturedStderr(), "zyrsensor: There is no sensor like '0001'.\n");
  std::filesystem::remove(path);
  std::filesystem::remove(scenePath);
}

}  // namespace
}  // namespace zyr
